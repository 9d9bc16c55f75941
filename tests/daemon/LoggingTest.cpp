#include "EventWait.h"
#include "Scene.h"
#include "Suite.h"
#include <algorithm>
#include <QRegularExpression>
#include <QTest>

using namespace test_support;

/// The logging categories, shown on one session in which each has something to say that is not critical.
class LoggingTest : public QObject
{
    Q_OBJECT
private slots:
    void sessionIsSilentByDefault();
    void categoryIsSwitchedOnByItsName_data();
    void categoryIsSwitchedOnByItsName();
    void criticalLineCarriesItsCategory();
    void lineCarriesWhereItComesFrom();
};

namespace {
const QString regionApplied = "iw reg set SE"_s;

/// A board with a radio that is switched off, so that nothing goes on in the background.
struct Session : TestDevice
{
    Session()
    {
        daemon.sandbox().setSettings("region"_s, scene::regionSweden);
        simulator.setTechnologyProperty("wifi"_s, "Powered"_s, false);
        // No property of ConnMan's is an object path.
        const QVariant strange = QVariant::fromValue(QDBusObjectPath("/strange"_s));
        simulator.addService(scene::home, {{"Name"_s, "Home"_s}, {"Strange"_s, strange}});
    }

    bool run()
    {
        if (!startAndAttach() || !commands().waitForCall(regionApplied)) {
            return false;
        }
        simulator.callAgent("Release"_s, {});
        simulator.emitSignal("/"_s, "net.connman.Manager"_s, "PropertyChanged"_s,
                             {"State"_s, QVariant::fromValue(QDBusVariant("idle"_s))});
        simulator.setTechnologyProperty("wifi"_s, "Connected"_s, true);
        simulator.setServiceProperty(scene::home, "Strength"_s, QVariant::fromValue<uchar>(61));
        return !client.call("forgetWifi", QString()).toBool();
    }
};
} // namespace

void LoggingTest::sessionIsSilentByDefault()
{
    Session session;
    QVERIFY(session.run());
    QVERIFY(session.daemon.stop());
    QCOMPARE(session.log().lines(), QStringList());
}

void LoggingTest::categoryIsSwitchedOnByItsName_data()
{
    QTest::addColumn<QString>("category");
    QTest::addColumn<QString>("begin"); // of a line of the session
    const auto row = [](const char *category, const char *begin) {
        QTest::newRow(category) << category << begin;
    };
    row("NetworkManager", "warning|Can't forget an empty SSID.");
    row("ConnmanManager", "debug|ConnmanManager()");
    row("ConnmanManager.services", "debug|Adding service \"/net/connman/service/");
    row("ConnmanManager.properties", "debug|PropertyChanged( \"State\"");
    row("ConnmanService", "debug|ConnmanService(");
    row("ConnmanService.properties", "debug|propertyChanged( \"Strength\"");
    row("ConnmanTechnology", "debug|propertyChanged( \"Connected\"");
    row("ConnmanAgent", "debug|Release()");
    row("NetworkSettings", "debug|The region has been set successfully.");
    row("Utils", "warning|Unknown QVariant::UserType:");
}

void LoggingTest::categoryIsSwitchedOnByItsName()
{
    QFETCH(QString, category);
    QFETCH(QString, begin);
    const QString prefix = category + QLatin1Char('|');
    Session session;
    session.daemon.setLoggingRules("%1.debug=true;%1.warning=true"_s.arg(category));
    QVERIFY(session.run());
    const auto isWanted = [&](const QString &line) { return line.startsWith(prefix + begin); };
    QVERIFY(waitUntil([&] {
        const QStringList lines = session.log().lines();
        return std::any_of(lines.cbegin(), lines.cend(), isWanted);
    }));
    const QStringList lines = session.log().lines();
    for (const QString &line : lines) {
        QVERIFY2(line.startsWith(prefix), qPrintable(line));
    }
}

void LoggingTest::criticalLineCarriesItsCategory()
{
    Session session;
    QVERIFY(session.run());
    const Fault failing =
        session.simulator.injectFault("net.connman.Manager"_s, "GetTechnologies"_s,
                                      FaultKind::error("net.connman.Error.Failed"_s, "Not today"_s));
    QCOMPARE(session.client.call("checkWifiTechnology").toBool(), false);
    QVERIFY(session.log().takeProblem(
        "ConnmanManager.technology|critical|Call to GetTechnologies failed: \"Not today\""_s));
}

void LoggingTest::lineCarriesWhereItComesFrom()
{
    LonelyDaemon device;
    device.daemon.setVariable("QT_MESSAGE_PATTERN"_s, "%{category}|%{type}|%{file}:%{line} %{function}"_s);
    QVERIFY(device.start());
    QVERIFY(!device.client.call("getHwAddress", "x"_s).isNull());
    QVERIFY(waitUntil([&] { return !device.daemon.log().lines().isEmpty(); }));
    const QString line = device.daemon.log().lines().constFirst();
    const QRegularExpression place(
        "^NetworkManager\\|critical\\|.*src/NetworkManager\\.cpp:[1-9][0-9]* NetworkManager::getHwAddress$"_s);
    QVERIFY2(place.match(line).hasMatch(), qPrintable(line));
    QVERIFY(device.daemon.log().takeProblem(line));
}

static const Suite<LoggingTest> loggingTest;
#include "LoggingTest.moc"
