#include "TestDevice.h"
#include "Text.h"
#include <libtactora/DBusArgument.h>
#include <QTest>

using namespace test_support;

/// The list queries of the bus interface: networks, wpsNetworks, activeNetworks, and the technologies.
class QueriesTest : public QObject
{
    Q_OBJECT
private slots:
    void networksAnswersTwiceWhateverAPropertyHolds_data();
    void networksAnswersTwiceWhateverAPropertyHolds();
    void getConfigurationAnswersTwiceWhateverItHolds_data();
    void getConfigurationAnswersTwiceWhateverItHolds();
};

namespace {
const QString identifier = "wifi_020000000200_486f6d65_managed_psk"_s;

/// A reply in words, plain at every depth.
QString textOf(const QVariant &reply)
{
    QString text;
    QDebug(&text) << libtactora::dbusArgumentUnpack(reply);
    return text;
}
} // namespace

void QueriesTest::networksAnswersTwiceWhateverAPropertyHolds_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("array of integers") << QVariant::fromValue(QList<int>{1, 2, 3});
    QTest::newRow("object paths") << QVariant::fromValue(QList<QDBusObjectPath>{QDBusObjectPath("/a"_s)});
    QTest::newRow("dictionary in a dictionary")
        << QVariant(QVariantMap{{"Outer"_s, QVariantMap{{"Inner"_s, 7}}}});
    QTest::newRow("list of variants") << QVariant(QVariantList{1, "two"_s});
}

void QueriesTest::networksAnswersTwiceWhateverAPropertyHolds()
{
    QFETCH(QVariant, value);
    TestDevice device;
    device.simulator.addService(identifier, {{"Strange"_s, value}});
    QVERIFY(device.startWithoutRadio());

    const QString first = textOf(device.client.call("networks"));
    QVERIFY(first.contains("Strange"_s));
    QCOMPARE(textOf(device.client.call("networks")), first);
}

void QueriesTest::getConfigurationAnswersTwiceWhateverItHolds_data()
{
    networksAnswersTwiceWhateverAPropertyHolds_data();
}

void QueriesTest::getConfigurationAnswersTwiceWhateverItHolds()
{
    QFETCH(QVariant, value);
    TestDevice device;
    device.simulator.addService(identifier,
                                {{"IPv4"_s, QVariantMap{{"Method"_s, "dhcp"_s}, {"Strange"_s, value}}}});
    QVERIFY(device.startWithoutRadio());

    const QString first = textOf(device.client.call("getConfiguration", identifier));
    QVERIFY(first.contains("Strange"_s));
    QCOMPARE(textOf(device.client.call("getConfiguration", identifier)), first);
}

QTEST_GUILESS_MAIN(QueriesTest)
#include "QueriesTest.moc"
