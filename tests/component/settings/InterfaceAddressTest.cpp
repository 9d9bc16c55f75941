#include "NetworkSettings.h"
#include "PrivateBus.h"
#include "SettingsFixture.h"
#include "SimulatorClient.h"
#include "Suite.h"

#include <QFile>

namespace {

const QString down = QStringLiteral("ip link set dev wlan0 down");
const QString up = QStringLiteral("ip link set dev wlan0 up");
const QString anyAddress = QStringLiteral("ip link set dev wlan0 address");
const QString configurationManager = QStringLiteral("com.tactora.ConfigurationManager");

QString address(const char *text)
{
    return anyAddress + QLatin1Char(' ') + QLatin1String(text);
}

} // namespace

/// Giving "wlan0" the address that belongs to the device.
class InterfaceAddressTest : public SettingsFixture
{
    Q_OBJECT

private slots:
    void initTestCase();

    void addressIsSetWhileTheInterfaceIsDown();
    void serialNumberIsAskedForOnce();
    void addressBelongsToTheSerialNumber_data();
    void addressBelongsToTheSerialNumber();
    void addressWithoutConfigurationManagerIsThatOfSerialNumberZero();
    void exitCodesAreNotLookedAt();

    void failureToSetTheInterfaceDownEndsIt();
    void serialNumberIsNotAskedForWhileTheInterfaceIsUp();
    void missingProgramEndsIt();
    void failureToSetTheAddressIsLoggedWithItsOutput_data();
    void failureToSetTheAddressIsLoggedWithItsOutput();
    void failureToStartTheAddressCommandIsLoggedWithoutOutput();
    void failureToSetTheInterfaceUpIsLogged();
    void addressCommandIsFollowedWhileItPrints();
    void addressCommandIsFollowedThroughItsPauses();

private:
    /// A program in the place of "ip" that ends as usual, but is gone once it has run.
    void makeIpVanishAfterItsFirstRun();

    // Before the PATH leads to the stand-ins only.
    test_support::PrivateBus m_bus;
    test_support::SimulatorClient m_device{m_bus.address()};
    NetworkSettings m_settings;
};

void InterfaceAddressTest::initTestCase()
{
    QVERIFY(m_device.isReady());
    m_device.setSerialNumber(100);
}

void InterfaceAddressTest::addressIsSetWhileTheInterfaceIsDown()
{
    QVERIFY(m_settings.initMacAddress());
    QCOMPARE(commands().calls(), QStringList({down, address("02:a7:c4:03:0d:a4"), up}));
    QCOMPARE(criticalLines(), QStringList());
}

void InterfaceAddressTest::serialNumberIsAskedForOnce()
{
    m_device.clearCalls();
    QVERIFY(m_settings.initMacAddress());
    QCOMPARE(m_device.calls(),
             QStringList(QStringLiteral("/ com.tactora.ConfigurationManager.process({\"commandId\": <3>, "
                                        "\"senderId\": <0>, \"subCommandId\": <0>})")));
}

void InterfaceAddressTest::addressBelongsToTheSerialNumber_data()
{
    QTest::addColumn<int>("serialNumber");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("zero") << 0 << QByteArray("02:a7:c4:03:0d:40");
    QTest::newRow("last in use") << 848575 << QByteArray("02:a7:c4:0f:ff:ff");
    QTest::newRow("first with an odd piece") << 848576 << QByteArray("02:a7:c4:01:00:00:0");
}

void InterfaceAddressTest::addressBelongsToTheSerialNumber()
{
    QFETCH(int, serialNumber);
    QFETCH(QByteArray, expected);
    m_device.setSerialNumber(serialNumber);

    QVERIFY(m_settings.initMacAddress());
    m_device.setSerialNumber(100);
    QCOMPARE(commands().calls(), QStringList({down, address(expected.constData()), up}));
}

void InterfaceAddressTest::addressWithoutConfigurationManagerIsThatOfSerialNumberZero()
{
    m_device.setPresent(configurationManager, false);

    const bool isSet = m_settings.initMacAddress();
    m_device.setPresent(configurationManager, true);
    QVERIFY(isSet);
    QCOMPARE(commands().calls(), QStringList({down, address("02:a7:c4:03:0d:40"), up}));
    QCOMPARE(criticalLines(),
             QStringList(plainLine(QStringLiteral("SystemInfo::process ERROR: interface is not valid."))));
}

void InterfaceAddressTest::exitCodesAreNotLookedAt()
{
    commands().script(QStringLiteral("ip"),
                      {QStringLiteral("error Cannot find device"), QStringLiteral("exit 1")});

    QVERIFY(m_settings.initMacAddress());
    QCOMPARE(commands().calls(), QStringList({down, address("02:a7:c4:03:0d:a4"), up}));
    QCOMPARE(criticalLines(), QStringList());
}

void InterfaceAddressTest::failureToSetTheInterfaceDownEndsIt()
{
    commands().script(down, {QStringLiteral("crash")});

    QVERIFY(!m_settings.initMacAddress());
    QCOMPARE(commands().calls(), QStringList(down));
    QCOMPARE(criticalLines(), QStringList(plainLine(QStringLiteral("Failed to set interface down."))));
}

void InterfaceAddressTest::serialNumberIsNotAskedForWhileTheInterfaceIsUp()
{
    m_device.clearCalls();
    commands().script(down, {QStringLiteral("crash")});

    QVERIFY(!m_settings.initMacAddress());
    QCOMPARE(m_device.calls(), QStringList());
}

void InterfaceAddressTest::missingProgramEndsIt()
{
    commands().removeProgram(QStringLiteral("ip"));

    QVERIFY(!m_settings.initMacAddress());
    QCOMPARE(criticalLines(), QStringList(plainLine(QStringLiteral("Failed to set interface down."))));
}

void InterfaceAddressTest::failureToSetTheAddressIsLoggedWithItsOutput_data()
{
    QTest::addColumn<QStringList>("script");
    QTest::addColumn<QString>("output");

    const QString crash = QStringLiteral("crash");
    QTest::newRow("silent") << QStringList(crash) << QStringLiteral("\"\"");
    QTest::newRow("output") << QStringList(
                                   {QStringLiteral("print first"), QStringLiteral("print second"), crash})
                            << QStringLiteral("\"first\\nsecond\\n\"");
    QTest::newRow("complaint") << QStringList({QStringLiteral("error RTNETLINK answers: Busy"), crash})
                               << QStringLiteral("\"RTNETLINK answers: Busy\\n\"");
    QTest::newRow("output and complaint in their order")
        << QStringList({QStringLiteral("print one"), QStringLiteral("error two"),
                        QStringLiteral("print three"), crash})
        << QStringLiteral("\"one\\ntwo\\nthree\\n\"");
    QTest::newRow("outside ASCII") << QStringList({QStringLiteral("print k\u00f6k \u2615"), crash})
                                   << QStringLiteral("\"k\u00f6k \u2615\\n\"");
}

void InterfaceAddressTest::failureToSetTheAddressIsLoggedWithItsOutput()
{
    QFETCH(QStringList, script);
    QFETCH(QString, output);
    commands().script(anyAddress, script);

    QVERIFY(!m_settings.initMacAddress());
    QCOMPARE(commands().calls(), QStringList({down, address("02:a7:c4:03:0d:a4")}));
    QCOMPARE(criticalLines(),
             QStringList(plainLine(QStringLiteral("Failed to set interface address: ") + output)));
}

void InterfaceAddressTest::makeIpVanishAfterItsFirstRun()
{
    const QString ip = commands().path() + QStringLiteral("/ip");
    commands().removeProgram(QStringLiteral("ip"));
    writeFile(ip, "#!/bin/sh\nexec /bin/rm \"$0\"\n");
    QVERIFY(QFile::setPermissions(ip, QFile::ReadOwner | QFile::ExeOwner));
}

void InterfaceAddressTest::failureToStartTheAddressCommandIsLoggedWithoutOutput()
{
    makeIpVanishAfterItsFirstRun();

    QVERIFY(!m_settings.initMacAddress());
    QCOMPARE(criticalLines(),
             QStringList(plainLine(QStringLiteral("Failed to set interface address: \"\""))));
}

void InterfaceAddressTest::failureToSetTheInterfaceUpIsLogged()
{
    commands().script(up, {QStringLiteral("crash")});

    QVERIFY(!m_settings.initMacAddress());
    QCOMPARE(commands().calls(), QStringList({down, address("02:a7:c4:03:0d:a4"), up}));
    QCOMPARE(criticalLines(), QStringList(plainLine(QStringLiteral("Failed to set interface up."))));
}

void InterfaceAddressTest::addressCommandIsFollowedWhileItPrints()
{
    constexpr int MoreLinesThanAPipeHolds = 2000;
    QStringList script;
    QString printed;
    for (int line = 0; line < MoreLinesThanAPipeHolds; ++line) {
        const QString text = QStringLiteral("line %1 of a long story that nobody reads").arg(line);
        script.append(QStringLiteral("print ") + text);
        printed += text + QStringLiteral("\\n");
    }
    script.append(QStringLiteral("crash"));
    commands().script(anyAddress, script);

    QVERIFY(!m_settings.initMacAddress());
    QCOMPARE(criticalLines(),
             QStringList(plainLine(QStringLiteral("Failed to set interface address: \"%1\"").arg(printed))));
}

void InterfaceAddressTest::addressCommandIsFollowedThroughItsPauses()
{
    commands().script(anyAddress,
                      {QStringLiteral("hold"), QStringLiteral("print late"), QStringLiteral("crash")});

    std::thread release = releaseLater();
    const bool isSet = m_settings.initMacAddress();
    release.join();
    QVERIFY(!isSet);
    QCOMPARE(criticalLines(),
             QStringList(plainLine(QStringLiteral("Failed to set interface address: \"late\\n\""))));
}

static const Suite<InterfaceAddressTest> suite;
#include "InterfaceAddressTest.moc"
