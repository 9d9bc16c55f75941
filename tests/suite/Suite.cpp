#include "Suite.h"

#include <cstdio>
#include <QCoreApplication>

const AnySuite *AnySuite::s_last = nullptr;

AnySuite::AnySuite(const QMetaObject &test) noexcept
    : m_test(test)
    , m_previous(s_last)
{
    s_last = this;
}

const AnySuite *AnySuite::find(const QString &name)
{
    const AnySuite *suite = s_last;
    while (suite != nullptr && name != QLatin1String(suite->m_test.className())) {
        suite = suite->m_previous;
    }
    return suite;
}

QStringList AnySuite::names()
{
    QStringList names;
    for (const AnySuite *suite = s_last; suite != nullptr; suite = suite->m_previous) {
        names.append(QString::fromLatin1(suite->m_test.className()));
    }
    names.sort();
    return names;
}

int runSuite()
{
    QStringList arguments = QCoreApplication::arguments();
    const AnySuite *const suite = arguments.size() > 1 ? AnySuite::find(arguments.takeAt(1)) : nullptr;
    if (suite == nullptr) {
        constexpr int wrongUsage = 2;
        std::fprintf(stderr, "Usage: %s CLASS [OPTIONS OF QT TEST]\nClasses: %s\n",
                     qPrintable(arguments.first()), qPrintable(AnySuite::names().join(QLatin1Char(' '))));
        return wrongUsage;
    }
    return suite->run(arguments);
}
