// Which call a fault fires for, how often, and how it is told.

#include "Faults.h"
#include "Suite.h"
#include "Text.h"
#include <QTest>

using namespace simulator;

namespace {
Call call(const char *path, const char *interface, const char *member)
{
    return {QDBusMessage::createMethodCall("a.name"_s, QString::fromLatin1(path),
                                           QString::fromLatin1(interface), QString::fromLatin1(member)),
            QString()};
}
} // namespace

class FaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void faultFiresForItsCallOnly_data();
    void faultFiresForItsCallOnly();
    void faultFiresAsOftenAsToldTo();
    void faultKindIsReadFromItsMap_data();
    void faultKindIsReadFromItsMap();
    void unknownFaultKindIsNone();
};

void FaultsTest::faultFiresForItsCallOnly_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("interface");
    QTest::addColumn<QByteArray>("member");
    QTest::addColumn<bool>("fires");
    QTest::newRow("its call") << QByteArray("/a") << QByteArray("a.B") << QByteArray("C") << true;
    QTest::newRow("other path") << QByteArray("/b") << QByteArray("a.B") << QByteArray("C") << false;
    QTest::newRow("other interface") << QByteArray("/a") << QByteArray("a.X") << QByteArray("C") << false;
    QTest::newRow("other member") << QByteArray("/a") << QByteArray("a.B") << QByteArray("X") << false;
}

void FaultsTest::faultFiresForItsCallOnly()
{
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, interface);
    QFETCH(QByteArray, member);
    QFETCH(bool, fires);
    Faults faults;
    const uint id = faults.inject({"a.B"_s, "C"_s, "/a"_s}, 1, {});
    QCOMPARE(faults.take(call(path, interface, member)).has_value(), fires);
    QCOMPARE(faults.timesFired(id), fires ? 1U : 0U);
}

void FaultsTest::faultFiresAsOftenAsToldTo()
{
    Faults faults;
    const uint id = faults.inject({"a.B"_s, "C"_s, QString()}, 2, {});
    QVERIFY(faults.take(call("/a", "a.B", "C")).has_value());
    QVERIFY(faults.take(call("/b", "a.B", "C")).has_value());
    QVERIFY(!faults.take(call("/a", "a.B", "C")).has_value());
    QCOMPARE(faults.timesFired(id), 2U);
}

void FaultsTest::faultKindIsReadFromItsMap_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("kind");
    QTest::newRow("error") << "error"_s << static_cast<int>(Fault::Kind::Error);
    QTest::newRow("reply") << "reply"_s << static_cast<int>(Fault::Kind::Reply);
    QTest::newRow("delay") << "delay"_s << static_cast<int>(Fault::Kind::Delay);
    QTest::newRow("never") << "never"_s << static_cast<int>(Fault::Kind::Never);
    QTest::newRow("vanish") << "vanish"_s << static_cast<int>(Fault::Kind::Vanish);
}

void FaultsTest::faultKindIsReadFromItsMap()
{
    QFETCH(QString, name);
    QFETCH(int, kind);
    const std::optional<Fault> fault = Fault::fromMap({{"kind"_s, name},
                                                       {"name"_s, "a.B"_s},
                                                       {"message"_s, "text"_s},
                                                       {"milliseconds"_s, 7},
                                                       {"arguments"_s, QVariantList{1}}});
    QVERIFY(fault.has_value());
    QCOMPARE(static_cast<int>(fault->kind), kind);
    QCOMPARE(fault->error.name, "a.B"_s);
    QCOMPARE(fault->error.message, "text"_s);
    QCOMPARE(fault->milliseconds, 7);
    QCOMPARE(fault->arguments, QVariantList{1});
}

void FaultsTest::unknownFaultKindIsNone()
{
    QVERIFY(!Fault::fromMap({{"kind"_s, "explode"_s}}).has_value());
    QVERIFY(!Fault::fromMap({}).has_value());
}

static const Suite<FaultsTest> faultsTest;
#include "FaultsTest.moc"
