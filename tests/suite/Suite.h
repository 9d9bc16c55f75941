#pragma once

#include <QStringList>
#include <QTest>

/// A Qt Test class among several in one program. Each is run in a process of its own, so that none meets what
/// another has left; a program for each would cost more to build than the tests themselves.
class AnySuite
{
public:
    /// Its exit status, as `QTest::qExec()` has it.
    virtual int run(const QStringList &arguments) const = 0;

    /// The class of that name, or nullptr.
    static const AnySuite *find(const QString &name);
    static QStringList names();

protected:
    explicit AnySuite(const QMetaObject &test) noexcept;
    ~AnySuite() = default;

private:
    Q_DISABLE_COPY_MOVE(AnySuite)

    static const AnySuite *s_last;

    const QMetaObject &m_test;
    const AnySuite *const m_previous;
};

/// One static object of this makes `Test` known to its program.
template <typename Test>
class Suite final : public AnySuite
{
public:
    Suite() noexcept
        : AnySuite(Test::staticMetaObject)
    {
    }

    int run(const QStringList &arguments) const override
    {
        Test test;
        return QTest::qExec(&test, arguments);
    }
};

/// The main() of a program of suites: `PROGRAM CLASS [Qt Test's arguments]`. Status 2 when there is no such
/// class. Needs a QCoreApplication.
int runSuite();
