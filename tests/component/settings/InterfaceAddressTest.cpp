#include "NetworkSettings.h"
#include "PrivateBus.h"
#include "SettingsFixture.h"
#include "SimulatorClient.h"
#include "Suite.h"
#include "Text.h"

#include <QFile>

namespace {

const QString down = "ip link set dev wlan0 down"_s;
const QString up = "ip link set dev wlan0 up"_s;
const QString anyAddress = "ip link set dev wlan0 address"_s;
const QString configurationManager = "com.tactora.ConfigurationManager"_s;

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

    // Before the PATH leads to the fakes only.
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
    QCOMPARE(complaints(), QStringList());
}

void InterfaceAddressTest::serialNumberIsAskedForOnce()
{
    m_device.clearCalls();
    QVERIFY(m_settings.initMacAddress());
    QCOMPARE(m_device.calls(), QStringList("/ com.tactora.ConfigurationManager.process({\"commandId\": <3>, "
                                           "\"senderId\": <0>, \"subCommandId\": <0>})"_s));
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
    QCOMPARE(complaints(), QStringList(plainLine("SystemInfo::process ERROR: interface is not valid."_s)));
}

void InterfaceAddressTest::exitCodesAreNotLookedAt()
{
    commands().script("ip"_s, {"error Cannot find device"_s, "exit 1"_s});

    QVERIFY(m_settings.initMacAddress());
    QCOMPARE(commands().calls(), QStringList({down, address("02:a7:c4:03:0d:a4"), up}));
    QCOMPARE(complaints(), QStringList());
}

void InterfaceAddressTest::failureToSetTheInterfaceDownEndsIt()
{
    commands().script(down, {"crash"_s});

    QVERIFY(!m_settings.initMacAddress());
    QCOMPARE(commands().calls(), QStringList(down));
    QCOMPARE(complaints(), QStringList(plainLine("Failed to set interface down."_s)));
}

void InterfaceAddressTest::serialNumberIsNotAskedForWhileTheInterfaceIsUp()
{
    m_device.clearCalls();
    commands().script(down, {"crash"_s});

    QVERIFY(!m_settings.initMacAddress());
    QCOMPARE(m_device.calls(), QStringList());
}

void InterfaceAddressTest::missingProgramEndsIt()
{
    commands().removeProgram("ip"_s);

    QVERIFY(!m_settings.initMacAddress());
    QCOMPARE(complaints(), QStringList(plainLine("Failed to set interface down."_s)));
}

void InterfaceAddressTest::failureToSetTheAddressIsLoggedWithItsOutput_data()
{
    QTest::addColumn<QStringList>("script");
    QTest::addColumn<QString>("output");

    const QString crash = "crash"_s;
    QTest::newRow("silent") << QStringList(crash) << "\"\""_s;
    QTest::newRow("output") << QStringList({"print first"_s, "print second"_s, crash})
                            << "\"first\\nsecond\\n\""_s;
    QTest::newRow("complaint") << QStringList({"error RTNETLINK answers: Busy"_s, crash})
                               << "\"RTNETLINK answers: Busy\\n\""_s;
    QTest::newRow("output and complaint in their order")
        << QStringList({"print one"_s, "error two"_s, "print three"_s, crash})
        << "\"one\\ntwo\\nthree\\n\""_s;
    QTest::newRow("outside ASCII") << QStringList({"print k\u00f6k \u2615"_s, crash})
                                   << "\"k\u00f6k \u2615\\n\""_s;
}

void InterfaceAddressTest::failureToSetTheAddressIsLoggedWithItsOutput()
{
    QFETCH(QStringList, script);
    QFETCH(QString, output);
    commands().script(anyAddress, script);

    QVERIFY(!m_settings.initMacAddress());
    QCOMPARE(commands().calls(), QStringList({down, address("02:a7:c4:03:0d:a4")}));
    QCOMPARE(complaints(), QStringList(plainLine("Failed to set interface address: "_s + output)));
}

void InterfaceAddressTest::makeIpVanishAfterItsFirstRun()
{
    const QString ip = commands().path() + "/ip"_s;
    commands().removeProgram("ip"_s);
    writeFile(ip, "#!/bin/sh\nexec /bin/rm \"$0\"\n");
    QVERIFY(QFile::setPermissions(ip, QFile::ReadOwner | QFile::ExeOwner));
}

void InterfaceAddressTest::failureToStartTheAddressCommandIsLoggedWithoutOutput()
{
    makeIpVanishAfterItsFirstRun();

    QVERIFY(!m_settings.initMacAddress());
    QCOMPARE(complaints(), QStringList(plainLine("Failed to set interface address: \"\""_s)));
}

void InterfaceAddressTest::failureToSetTheInterfaceUpIsLogged()
{
    commands().script(up, {"crash"_s});

    QVERIFY(!m_settings.initMacAddress());
    QCOMPARE(commands().calls(), QStringList({down, address("02:a7:c4:03:0d:a4"), up}));
    QCOMPARE(complaints(), QStringList(plainLine("Failed to set interface up."_s)));
}

void InterfaceAddressTest::addressCommandIsFollowedWhileItPrints()
{
    constexpr int MoreLinesThanAPipeHolds = 2000;
    QStringList script;
    QString printed;
    for (int line = 0; line < MoreLinesThanAPipeHolds; ++line) {
        const QString text = "line %1 of a long story that nobody reads"_s.arg(line);
        script.append("print "_s + text);
        printed += text + "\\n"_s;
    }
    script.append("crash"_s);
    commands().script(anyAddress, script);

    QVERIFY(!m_settings.initMacAddress());
    QCOMPARE(complaints(), QStringList(plainLine("Failed to set interface address: \"%1\""_s.arg(printed))));
}

void InterfaceAddressTest::addressCommandIsFollowedThroughItsPauses()
{
    commands().script(anyAddress, {"hold"_s, "print late"_s, "crash"_s});

    std::thread release = releaseLater();
    const bool isSet = m_settings.initMacAddress();
    release.join();
    QVERIFY(!isSet);
    QCOMPARE(complaints(), QStringList(plainLine("Failed to set interface address: \"late\\n\""_s)));
}

static const Suite<InterfaceAddressTest> interfaceAddressTest;
#include "InterfaceAddressTest.moc"
