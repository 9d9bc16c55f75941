#include "NetworkSettings.h"
#include "SettingsFixture.h"
#include "Suite.h"
#include "Text.h"

namespace {
const QString list = "iw list"_s;
}

class WlanDetectionTest : public SettingsFixture
{
    Q_OBJECT

private slots:
    void wlanIsThereWhereTheCommandPrintsAnything_data();
    void wlanIsThereWhereTheCommandPrintsAnything();
    void wlanIsMissingOtherwise_data();
    void wlanIsMissingOtherwise();
    void wlanIsMissingWhereTheCommandIs();
    void everyQuestionRunsTheCommandAnew();

private:
    NetworkSettings m_settings;
};

void WlanDetectionTest::wlanIsThereWhereTheCommandPrintsAnything_data()
{
    QTest::addColumn<QStringList>("script");

    QTest::newRow("a radio") << QStringList("print Wiphy phy0"_s);
    QTest::newRow("a line feed") << QStringList("print"_s);
    QTest::newRow("a complaint") << QStringList("error nl80211 not found."_s);
    QTest::newRow("a radio, exit code not zero") << QStringList({"print Wiphy phy0"_s, "exit 1"_s});
}

void WlanDetectionTest::wlanIsThereWhereTheCommandPrintsAnything()
{
    QFETCH(QStringList, script);
    commands().script(list, script);

    QVERIFY(m_settings.getWlanSupported());
    QCOMPARE(commands().calls(), QStringList(list));
    QCOMPARE(complaints(), QStringList());
}

void WlanDetectionTest::wlanIsMissingOtherwise_data()
{
    QTest::addColumn<QStringList>("script");

    QTest::newRow("nothing printed") << QStringList();
    QTest::newRow("nothing printed, exit code not zero") << QStringList("exit 1"_s);
    QTest::newRow("a crash after a radio") << QStringList({"print Wiphy phy0"_s, "crash"_s});
}

void WlanDetectionTest::wlanIsMissingOtherwise()
{
    QFETCH(QStringList, script);
    commands().script(list, script);

    QVERIFY(!m_settings.getWlanSupported());
    QCOMPARE(commands().calls(), QStringList(list));
    QCOMPARE(complaints(), QStringList(plainLine("WLAN not supported on this board."_s)));
}

void WlanDetectionTest::wlanIsMissingWhereTheCommandIs()
{
    commands().removeProgram("iw"_s);

    QVERIFY(!m_settings.getWlanSupported());
    QCOMPARE(complaints(), QStringList(plainLine("WLAN not supported on this board."_s)));
}

void WlanDetectionTest::everyQuestionRunsTheCommandAnew()
{
    QVERIFY(m_settings.getWlanSupported());
    commands().script(list, {});
    QVERIFY(!m_settings.getWlanSupported());
    QCOMPARE(commands().calls(), QStringList({list, list}));
}

static const Suite<WlanDetectionTest> wlanDetectionTest;
#include "WlanDetectionTest.moc"
