#include "NetworkSettings.h"
#include "SettingsFixture.h"
#include "Suite.h"

namespace {
const QString list = QStringLiteral("iw list");
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

    QTest::newRow("a radio") << QStringList(QStringLiteral("print Wiphy phy0"));
    QTest::newRow("a line feed") << QStringList(QStringLiteral("print"));
    QTest::newRow("a complaint") << QStringList(QStringLiteral("error nl80211 not found."));
    QTest::newRow("a radio, exit code not zero")
        << QStringList({QStringLiteral("print Wiphy phy0"), QStringLiteral("exit 1")});
}

void WlanDetectionTest::wlanIsThereWhereTheCommandPrintsAnything()
{
    QFETCH(QStringList, script);
    commands().script(list, script);

    QVERIFY(m_settings.getWlanSupported());
    QCOMPARE(commands().calls(), QStringList(list));
    QCOMPARE(criticalLines(), QStringList());
}

void WlanDetectionTest::wlanIsMissingOtherwise_data()
{
    QTest::addColumn<QStringList>("script");

    QTest::newRow("nothing printed") << QStringList();
    QTest::newRow("nothing printed, exit code not zero") << QStringList(QStringLiteral("exit 1"));
    QTest::newRow("a crash after a radio")
        << QStringList({QStringLiteral("print Wiphy phy0"), QStringLiteral("crash")});
}

void WlanDetectionTest::wlanIsMissingOtherwise()
{
    QFETCH(QStringList, script);
    commands().script(list, script);

    QVERIFY(!m_settings.getWlanSupported());
    QCOMPARE(commands().calls(), QStringList(list));
    QCOMPARE(criticalLines(), QStringList(plainLine(QStringLiteral("WLAN not supported on this board."))));
}

void WlanDetectionTest::wlanIsMissingWhereTheCommandIs()
{
    commands().removeProgram(QStringLiteral("iw"));

    QVERIFY(!m_settings.getWlanSupported());
    QCOMPARE(criticalLines(), QStringList(plainLine(QStringLiteral("WLAN not supported on this board."))));
}

void WlanDetectionTest::everyQuestionRunsTheCommandAnew()
{
    QVERIFY(m_settings.getWlanSupported());
    commands().script(list, {});
    QVERIFY(!m_settings.getWlanSupported());
    QCOMPARE(commands().calls(), QStringList({list, list}));
}

static const Suite<WlanDetectionTest> suite;
#include "WlanDetectionTest.moc"
