#include "EventWait.h"
#include "JammedLed.h"
#include "Keys.h"
#include "Scene.h"
#include "Suite.h"
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTest>

#include <optional>

using namespace test_support;

/// What the user sees and hears: the LED of each link in each state, and the requests to the speech service.
class FeedbackTest : public QObject
{
    Q_OBJECT
private slots:
    void ledShowsTheStateOfItsLink_data();
    void ledShowsTheStateOfItsLink();
    void vanishedLinkTurnsItsLedOff_data();
    void vanishedLinkTurnsItsLedOff();
    void failureBlinksForTwoSeconds_data();
    void failureBlinksForTwoSeconds();
    void progressBlinksEndlessly_data();
    void progressBlinksEndlessly();
    void missingLedsAreDrivenWithoutHarm();
    void lightComesBeforeTheSentenceOfTwoKeys();
    void sentenceWithArgumentsHasThreeKeys();
    void eachRequestHasAnIdOfItsOwn();
    void refusedSpeechIsOneLineEachTimeAndStopsNothing();
    void silentSpeechServiceIsNotWaitedFor();
};

Q_DECLARE_METATYPE(test_support::LedPattern)

namespace {
const QString wifiLed = "led8"_s;
const QString speechFailed = "NetworkManager|critical|ERROR: Failed to queue speech-request."_s;

/// A device with a cable and a Wi-Fi network, both idle.
struct Links : TestDevice
{
    Links()
    {
        simulator.addService(scene::cable);
        simulator.addService(scene::home);
    }

    static QString serviceOf(const QString &interface)
    {
        return interface == "eth0"_s ? scene::cable : scene::home;
    }
    void report(const QString &interface, const QString &state) { reportState(serviceOf(interface), state); }
};

void switchWifiOffByKeys(TestDevice &device)
{
    keys::pressChord(device.daemon.sandbox().keyboard(), keys::wifiOff);
}
} // namespace

void FeedbackTest::ledShowsTheStateOfItsLink_data()
{
    QTest::addColumn<QString>("interface");
    QTest::addColumn<QString>("before"); // leaves the interface's own LED on, unless the row is about on
    QTest::addColumn<QString>("state");
    QTest::addColumn<LedPattern>("ethernet");
    QTest::addColumn<LedPattern>("wifi");
    const auto on = LedPattern::on();
    const auto off = LedPattern::off();
    const auto blink = [](int period) { return LedPattern::blink(period); };
    const char *wlan0 = "wlan0";
    const char *eth0 = "eth0";
    QTest::newRow("wlan0 association") << wlan0 << "online"
                                       << "association" << on << blink(500);
    QTest::newRow("wlan0 configuration") << wlan0 << "online"
                                         << "configuration" << on << blink(1000);
    QTest::newRow("wlan0 ready") << wlan0 << "configuration"
                                 << "ready" << on << on;
    QTest::newRow("wlan0 online") << wlan0 << "association"
                                  << "online" << on << on;
    QTest::newRow("wlan0 failure") << wlan0 << "online"
                                   << "failure" << on << blink(500);
    QTest::newRow("wlan0 disconnect") << wlan0 << "online"
                                      << "disconnect" << on << off;
    QTest::newRow("wlan0 idle") << wlan0 << "online"
                                << "idle" << on << off;
    QTest::newRow("eth0 configuration") << eth0 << "online"
                                        << "configuration" << blink(1000) << on;
    QTest::newRow("eth0 ready, was on") << eth0 << "online"
                                        << "ready" << on << on;
    QTest::newRow("eth0 ready, blinked") << eth0 << "configuration"
                                         << "ready" << blink(1000) << on;
    QTest::newRow("eth0 online") << eth0 << "configuration"
                                 << "online" << on << on;
    QTest::newRow("eth0 failure") << eth0 << "online"
                                  << "failure" << blink(500) << on;
    QTest::newRow("eth0 idle, was on") << eth0 << "online"
                                       << "idle" << on << on;
    QTest::newRow("eth0 idle, blinked") << eth0 << "configuration"
                                        << "idle" << blink(1000) << on;
    QTest::newRow("eth0 disconnect") << eth0 << "online"
                                     << "disconnect" << off << on;
    QTest::newRow("eth0 association") << eth0 << "online"
                                      << "association" << off << on;
}

void FeedbackTest::ledShowsTheStateOfItsLink()
{
    QFETCH(QString, interface);
    QFETCH(QString, before);
    QFETCH(QString, state);
    Links device;
    QVERIFY(device.startWithoutRadio());
    device.report("eth0"_s, "online"_s);
    device.report("wlan0"_s, "online"_s);
    QCOMPARE(device.devices().led(scene::ethernetLed), LedPattern::on());
    QCOMPARE(device.devices().led(wifiLed), LedPattern::on());

    device.report(interface, before);
    device.report(interface, state);
    QTEST(device.devices().led(scene::ethernetLed), "ethernet");
    QTEST(device.devices().led(wifiLed), "wifi");
}

void FeedbackTest::vanishedLinkTurnsItsLedOff_data()
{
    QTest::addColumn<QString>("interface");
    QTest::addColumn<QString>("led");
    QTest::addColumn<QString>("otherLed");
    QTest::newRow("eth0") << "eth0" << scene::ethernetLed << wifiLed;
    QTest::newRow("wlan0") << "wlan0" << wifiLed << scene::ethernetLed;
}

void FeedbackTest::vanishedLinkTurnsItsLedOff()
{
    QFETCH(QString, interface);
    QFETCH(QString, led);
    QFETCH(QString, otherLed);
    Links device;
    QVERIFY(device.startWithoutRadio());
    device.report("eth0"_s, "online"_s);
    device.report("wlan0"_s, "online"_s);
    QCOMPARE(device.devices().led(led), LedPattern::on());
    device.simulator.removeService(Links::serviceOf(interface));
    QVERIFY(device.devices().waitForLed(led, LedPattern::off()));
    QCOMPARE(device.devices().led(otherLed), LedPattern::on());
}

void FeedbackTest::failureBlinksForTwoSeconds_data()
{
    vanishedLinkTurnsItsLedOff_data();
}

void FeedbackTest::failureBlinksForTwoSeconds()
{
    QFETCH(QString, interface);
    QFETCH(QString, led);
    Links device;
    QVERIFY(device.startWithoutRadio());
    device.report(interface, "failure"_s);
    QCOMPARE(device.devices().led(led), LedPattern::blink(500));
    QElapsedTimer clock;
    clock.start();
    QVERIFY(device.devices().waitForLed(led, LedPattern::off()));
    QVERIFY(scene::isBetween(clock, 1700, 3800));
}

void FeedbackTest::progressBlinksEndlessly_data()
{
    QTest::addColumn<QString>("interface");
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("led");
    QTest::newRow("wlan0 association") << "wlan0"
                                       << "association" << wifiLed;
    QTest::newRow("wlan0 configuration") << "wlan0"
                                         << "configuration" << wifiLed;
    QTest::newRow("eth0 configuration") << "eth0"
                                        << "configuration" << scene::ethernetLed;
}

void FeedbackTest::progressBlinksEndlessly()
{
    QFETCH(QString, interface);
    QFETCH(QString, state);
    QFETCH(QString, led);
    Links device;
    QVERIFY(device.startWithoutRadio());
    device.report(interface, state);
    const LedPattern pattern = device.devices().led(led);
    constexpr int longerThanAFailureBlinks = 2500;
    QVERIFY(!device.devices().waitForLed(led, LedPattern::off(), longerThanAFailureBlinks));
    QCOMPARE(device.devices().led(led), pattern);
}

void FeedbackTest::missingLedsAreDrivenWithoutHarm()
{
    Links device;
    device.devices().removeLed(wifiLed);
    device.devices().removeLed(scene::ethernetLed);
    QVERIFY(device.startWithoutRadio());
    const QStringList states{"association"_s, "configuration"_s, "ready"_s,
                             "online"_s,      "failure"_s,       "idle"_s};
    for (const QString &state : states) {
        device.report("wlan0"_s, state);
        device.report("eth0"_s, state);
    }
    QVERIFY(device.daemon.isRunning());
    QVERIFY(device.log().takeProblem("NetworkManager|critical|Eth-led is invalid."_s));
    QVERIFY(device.log().takeProblem("NetworkManager|critical|Wlan-led is invalid."_s));
}

void FeedbackTest::lightComesBeforeTheSentenceOfTwoKeys()
{
    Links device;
    device.simulator.setTechnologyProperty("wifi"_s, "Powered"_s, false);
    QVERIFY(device.startWithoutRadio());
    QVERIFY(device.client.call("setWifiPower", true).toBool());
    JammedLed led(device.devices().root() + "/sys/class/leds/led8/brightness"_s);
    QVERIFY(led.isJammed());
    std::optional<QStringList> saidBefore;
    connect(&led, &JammedLed::isWaitedFor, this, [&] {
        saidBefore = device.simulator.speech();
        led.letThrough();
    });
    device.report("wlan0"_s, "online"_s);
    QVERIFY(saidBefore.has_value());
    QCOMPARE(*saidBefore, QStringList());
    QVERIFY(waitUntil([&] { return !device.simulator.speech().isEmpty(); }));
    QCOMPARE(scene::spoken(device.simulator), QStringList("{\"sentenceId\": <7>, \"serviceId\": <4>}"_s));
}

void FeedbackTest::sentenceWithArgumentsHasThreeKeys()
{
    Links device;
    device.simulator.setServiceProperty(scene::cable, "IPv4"_s,
                                        QVariantMap{{"Method"_s, "dhcp"_s}, {"Address"_s, "10.0.0.5"_s}});
    device.simulator.setServiceProperty(scene::cable, "IPv6.Configuration"_s,
                                        QVariantMap{{"Method"_s, "auto"_s}, {"Address"_s, QString()}});
    QVERIFY(device.startWithoutRadio());
    device.report("eth0"_s, "ready"_s);
    QVERIFY(waitUntil([&] { return !device.simulator.speech().isEmpty(); }));
    QCOMPARE(
        scene::spoken(device.simulator),
        QStringList(
            "{\"arguments\": <[\"10\", \"0\", \"0\", \"5\"]>, \"sentenceId\": <0>, \"serviceId\": <4>}"_s));
}

void FeedbackTest::eachRequestHasAnIdOfItsOwn()
{
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    switchWifiOffByKeys(device);
    switchWifiOffByKeys(device);
    QVERIFY(waitUntil([&] { return device.simulator.speech().size() == 2; }));
    const QRegularExpression request(
        "^speakFromId\\(\"([0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12})\", "_s);
    QSet<QString> ids;
    const QStringList lines = device.simulator.speech();
    for (const QString &line : lines) {
        const QRegularExpressionMatch match = request.match(line);
        QVERIFY2(match.hasMatch(), qPrintable(line));
        ids << match.captured(1);
    }
    QCOMPARE(ids.size(), 2);
}

void FeedbackTest::refusedSpeechIsOneLineEachTimeAndStopsNothing()
{
    TestDevice device;
    device.simulator.setPresent("com.tactora.Speech"_s, false);
    QVERIFY(device.startWithoutRadio());
    switchWifiOffByKeys(device);
    QVERIFY(device.client.waitFor("powerChanged(false)"_s));
    QVERIFY(device.log().takeProblem(speechFailed));
    QCOMPARE(device.log().problems(), QStringList());
    switchWifiOffByKeys(device);
    QVERIFY(device.client.waitFor("powerChanged(false)"_s, 2));
    QVERIFY(device.log().takeProblem(speechFailed));
}

void FeedbackTest::silentSpeechServiceIsNotWaitedFor()
{
    TestDevice device;
    QVERIFY(device.startWithoutRadio());
    const Fault silence =
        device.simulator.injectFault("com.tactora.Speech"_s, "speakFromId"_s, FaultKind::never());
    switchWifiOffByKeys(device);
    QVERIFY(device.client.waitFor("powerChanged(false)"_s));
    QVERIFY(waitUntil([&] { return silence.fired() == 1; }));
}

static const Suite<FeedbackTest> feedbackTest;
#include "FeedbackTest.moc"
