// The client of the configuration manager, which the simulated device is.

#include <dbus/SystemInfo.h>

#include "LogCapture.h"
#include "OddValues.h"
#include "PrivateBus.h"
#include "SimulatorClient.h"
#include "Suite.h"
#include "Text.h"

#include <libtactora/Singleton.h>

#include <QElapsedTimer>
#include <QTest>

#include <csignal>
#include <memory>

using detail::SystemInfo;
using test_support::Fault;
using test_support::FaultKind;
using test_support::LogCapture;

namespace {

const QLatin1String ServiceName("com.tactora.ConfigurationManager");
const QLatin1String Plain("default");
const QLatin1String Process("process");
const QLatin1String SystemInfoKey("systemInfo");
const QLatin1String SerialNo("serialNo");

QVariantMap replyWithSerial(const QVariant &serial)
{
    return {{SystemInfoKey, QVariantMap{{SerialNo, serial}}}};
}

} // namespace

class SystemInfoTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void serialNumberIsTheConfigurationManagers_data();
    void serialNumberIsTheConfigurationManagers();
    void serialNumberQueryIsOneCallWithThreeInts();
    void serialNumberIsAskedForEachTime();
    void replyWithoutAUsableSerialNumberGivesZero_data();
    void replyWithoutAUsableSerialNumberGivesZero();

    void requestGoesOutAsItIs();
    void replyIsUnpackedAtEveryLevel();
    void errorIsOneLineAndAnEmptyReply();
    void errorGivesSerialNumberZero();
    void replyThatIsNoDictionaryIsOneLineAndEmpty_data();
    void replyThatIsNoDictionaryIsOneLineAndEmpty();
    void managerThatVanishesDuringTheCallIsOneLine();

    void absentManagerIsTwoLinesAndZero();
    void absentManagerIsAskedOnceItIsThere();
    void managerThatIsThereIsSilentlyTakenUp();
    void hangingManagerHoldsNoConstructionUp();
    void thereIsOneInstance();

private:
    std::unique_ptr<test_support::PrivateBus> m_bus;
    std::unique_ptr<test_support::SimulatorClient> m_simulator;
};

void SystemInfoTest::initTestCase()
{
    m_bus = std::make_unique<test_support::PrivateBus>();
    m_simulator = std::make_unique<test_support::SimulatorClient>(m_bus->address());
    QVERIFY(m_simulator->isReady());
    registerOddTypes();
}

void SystemInfoTest::init()
{
    m_simulator->clearFaults();
    m_simulator->setPresent(ServiceName, true);
    m_simulator->setSerialNumber(4711);
    m_simulator->clearCalls();
}

void SystemInfoTest::serialNumberIsTheConfigurationManagers_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("usual") << 4711;
    QTest::newRow("zero") << 0;
    QTest::newRow("largest") << std::numeric_limits<int>::max();
    QTest::newRow("negative") << -1;
}

void SystemInfoTest::serialNumberIsTheConfigurationManagers()
{
    QFETCH(int, number);
    m_simulator->setSerialNumber(number);
    const LogCapture log;
    const SystemInfo info;
    QCOMPARE(info.serialNumber(), number);
    QVERIFY(log.messages().isEmpty());
}

void SystemInfoTest::serialNumberQueryIsOneCallWithThreeInts()
{
    const SystemInfo info;
    info.serialNumber();
    // No type is named: ConnMan's call log does so for all but texts, booleans and 32-bit ints.
    QCOMPARE(m_simulator->calls(), {"/ com.tactora.ConfigurationManager.process("
                                    "{\"commandId\": <3>, \"senderId\": <0>, \"subCommandId\": <0>})"_s});
}

void SystemInfoTest::serialNumberIsAskedForEachTime()
{
    const SystemInfo info;
    QCOMPARE(info.serialNumber(), 4711);
    m_simulator->setSerialNumber(4712);
    QCOMPARE(info.serialNumber(), 4712);
    QCOMPARE(m_simulator->calls().size(), 2);
}

void SystemInfoTest::replyWithoutAUsableSerialNumberGivesZero_data()
{
    QTest::addColumn<QVariantMap>("reply");
    const QVariantMap other{{"version"_s, "1"_s}};
    QTest::newRow("empty") << QVariantMap();
    QTest::newRow("without systemInfo") << other;
    QTest::newRow("serialNo on the wrong level") << QVariantMap{{SerialNo, 4711}};
    QTest::newRow("empty systemInfo") << QVariantMap{{SystemInfoKey, QVariantMap()}};
    QTest::newRow("without serialNo") << QVariantMap{{SystemInfoKey, other}};
    QTest::newRow("systemInfo a text") << QVariantMap{{SystemInfoKey, "4711"_s}};
    QTest::newRow("systemInfo a number") << QVariantMap{{SystemInfoKey, 4711}};
    QTest::newRow("serialNo a word") << replyWithSerial("none"_s);
    QTest::newRow("serialNo empty") << replyWithSerial(QString());
    QTest::newRow("serialNo a dictionary") << replyWithSerial(other);
    QTest::newRow("serialNo a path") << replyWithSerial(QVariant::fromValue(QDBusObjectPath("/x"_s)));
    const QVector<OddValue> odd = rawOddValues();
    for (int i = 0; i < odd.size(); ++i) {
        QTest::addRow("systemInfo %d %s", i, odd[i].signature) << QVariantMap{{SystemInfoKey, odd[i].value}};
        QTest::addRow("serialNo %d %s", i, odd[i].signature) << replyWithSerial(odd[i].value);
    }
}

void SystemInfoTest::replyWithoutAUsableSerialNumberGivesZero()
{
    QFETCH(QVariantMap, reply);
    m_simulator->setConfigurationReply(reply);
    const LogCapture log;
    const SystemInfo info;
    QCOMPARE(info.serialNumber(), 0);
    QVERIFY(log.messages().isEmpty());
}

void SystemInfoTest::requestGoesOutAsItIs()
{
    const SystemInfo info;
    info.process({{"commandId"_s, 9}, {"text"_s, "x"_s}});
    QCOMPARE(m_simulator->calls(), {"/ com.tactora.ConfigurationManager.process("
                                    "{\"commandId\": <9>, \"text\": <\"x\">})"_s});
}

void SystemInfoTest::replyIsUnpackedAtEveryLevel()
{
    const QVariantMap innermost{{"number"_s, 7}};
    const QVariantMap inner{{"inner"_s, innermost}, {"list"_s, QVariantList{1, "x"_s}}};
    const QVariantMap reply{{"outer"_s, inner}};
    m_simulator->setConfigurationReply(reply);
    const SystemInfo info;
    QCOMPARE(info.process({}), reply);
}

void SystemInfoTest::errorIsOneLineAndAnEmptyReply()
{
    const SystemInfo info;
    const Fault fault = m_simulator->injectFault(
        ServiceName, Process, FaultKind::error("com.tactora.Error.Failed"_s, "Not today"_s));
    const LogCapture log;
    QVERIFY(info.process({{SerialNo, 1}}).isEmpty());
    QCOMPARE(log.messages().size(), 1);
    QCOMPARE(log.lines(Plain, QtCriticalMsg),
             {"SystemInfo::process ERROR: reply is not valid \"Not today\""_s});
}

void SystemInfoTest::errorGivesSerialNumberZero()
{
    const SystemInfo info;
    const Fault fault = m_simulator->injectFault(
        ServiceName, Process, FaultKind::error("com.tactora.Error.Failed"_s, "Not today"_s));
    const LogCapture log;
    QCOMPARE(info.serialNumber(), 0);
    QCOMPARE(log.messages().size(), 1);
}

void SystemInfoTest::replyThatIsNoDictionaryIsOneLineAndEmpty_data()
{
    QTest::addColumn<QVariantList>("arguments");
    QTest::newRow("nothing") << QVariantList();
    QTest::newRow("text") << QVariantList{"4711"_s};
    QTest::newRow("number") << QVariantList{4711};
    const QVector<OddValue> odd = rawOddValues();
    for (int i = 0; i < odd.size(); ++i) {
        QTest::addRow("%d %s", i, odd[i].signature) << QVariantList{odd[i].value};
    }
}

void SystemInfoTest::replyThatIsNoDictionaryIsOneLineAndEmpty()
{
    QFETCH(QVariantList, arguments);
    const SystemInfo info;
    const Fault fault = m_simulator->injectFault(ServiceName, Process, FaultKind::reply(arguments));
    const LogCapture log;
    QCOMPARE(info.serialNumber(), 0);
    QCOMPARE(log.messages().size(), 1);
    QVERIFY(log.lines(Plain, QtCriticalMsg)
                .value(0)
                .startsWith("SystemInfo::process ERROR: reply is not valid \"Unexpected reply"_s));
}

void SystemInfoTest::managerThatVanishesDuringTheCallIsOneLine()
{
    const SystemInfo info;
    const Fault fault = m_simulator->injectFault(ServiceName, Process, FaultKind::vanish());
    const LogCapture log;
    QCOMPARE(info.serialNumber(), 0);
    QCOMPARE(log.messages().size(), 1);
    QVERIFY(log.lines(Plain, QtCriticalMsg)
                .value(0)
                .startsWith("SystemInfo::process ERROR: reply is not valid \""_s));
}

void SystemInfoTest::absentManagerIsTwoLinesAndZero()
{
    m_simulator->setPresent(ServiceName, false);
    const LogCapture log;
    const SystemInfo info;
    QCOMPARE(info.serialNumber(), 0);
    const QStringList expected{
        "Critical error! \"com.tactora.ConfigurationManager\" interface is not valid."_s,
        "SystemInfo::process ERROR: interface is not valid."_s};
    QCOMPARE(log.messages().size(), 2);
    QCOMPARE(log.lines(Plain, QtCriticalMsg), expected);
    QCOMPARE(m_simulator->calls(), QStringList());
}

// The daemon starts before the configuration manager may have; the one client must not stay deaf for ever.
void SystemInfoTest::absentManagerIsAskedOnceItIsThere()
{
    m_simulator->setPresent(ServiceName, false);
    const SystemInfo info;
    QCOMPARE(info.serialNumber(), 0);
    m_simulator->setPresent(ServiceName, true);
    QTRY_COMPARE(info.serialNumber(), 4711);
}

void SystemInfoTest::managerThatIsThereIsSilentlyTakenUp()
{
    const LogCapture log;
    const SystemInfo info;
    QVERIFY(log.messages().isEmpty());
    QCOMPARE(m_simulator->calls(), QStringList());
}

void SystemInfoTest::hangingManagerHoldsNoConstructionUp()
{
    constexpr qint64 sureSignOfWaitingMs = 10000;
    const auto manager = static_cast<pid_t>(m_simulator->processId());
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(kill(manager, SIGSTOP), 0);
    const SystemInfo info;
    QCOMPARE(kill(manager, SIGCONT), 0);
    QVERIFY2(clock.elapsed() < sureSignOfWaitingMs, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(info.serialNumber(), 4711);
}

void SystemInfoTest::thereIsOneInstance()
{
    SystemInfo *first = libtactora::Singleton<SystemInfo>::instance();
    QVERIFY(first);
    QVERIFY(!first->parent());
    QCOMPARE(libtactora::Singleton<SystemInfo>::instance(), first);
    QCOMPARE(first->serialNumber(), 4711);
}

static const Suite<SystemInfoTest> systemInfoTest;
#include "SystemInfoTest.moc"
