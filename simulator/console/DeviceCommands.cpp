#include "DeviceCommands.h"

#include "Device.h"
#include "Feed.h"

namespace {

const QString connman = QStringLiteral("net.connman");

// evdev codes of the chord: one key held, one that switches on, one that switches off.
constexpr int modifierKey = 32;
constexpr int switchOnKey = 37;
constexpr int switchOffKey = 38;

void addNetwork(Device &device, Feed &feed, const QString &ssid, QVariantMap options)
{
    options.insert(QStringLiteral("ssid"), ssid);
    const QString identifier = device.simulator().addNetwork(options);
    feed.happened(QStringLiteral("air"), QStringLiteral("%1 is there as %2").arg(ssid, identifier));
}

QVariantMap options(const char *security, const char *secretKey, const QString &secret)
{
    QVariantMap map{{QStringLiteral("security"), QString::fromLatin1(security)}};
    if (!secret.isEmpty()) {
        map.insert(QString::fromLatin1(secretKey), secret);
    }
    return map;
}

void switchConnman(Device &device, const QString &what)
{
    if (what == QStringLiteral("restart")) {
        device.simulator().restartConnman();
    } else {
        device.simulator().setPresent(connman, what == QStringLiteral("start"));
    }
}

void switchDaemon(Device &device, Feed &feed, const QString &what)
{
    if (what == QStringLiteral("stop")) {
        device.daemon().stop();
    } else if (device.daemon().isRunning()) {
        feed.tell(QStringLiteral("It is running already."));
    } else if (!device.daemon().start()) {
        feed.happened(QStringLiteral("daemon"), QStringLiteral("cannot be started"));
    }
}

void pressChord(Device &device, const QString &what)
{
    const int key = what == QStringLiteral("on") ? switchOnKey : switchOffKey;
    test_support::FakeKeyboard &keyboard = device.sandbox().keyboard();
    keyboard.press(modifierKey);
    keyboard.press(key);
    keyboard.release(key);
    keyboard.release(modifierKey);
}

} // namespace

QVector<Command> deviceCommands(Device &device, Feed &feed)
{
    const auto row = [](const char *name, const char *form, const char *help, auto run) {
        return Command{QString::fromLatin1(name), QString::fromLatin1(form), QString::fromLatin1(help), run};
    };
    using Words = const QStringList &;
    return {
        row("add", "SSID", "put an open network on the air",
            [&](Words words) { addNetwork(device, feed, words.at(0), options("none", "", {})); }),
        row("add", "SSID PASSPHRASE", "a WPA2 one",
            [&](Words words) {
                addNetwork(device, feed, words.at(0), options("psk", "passphrase", words.at(1)));
            }),
        row("add-hidden", "SSID PASSPHRASE", "a hidden one",
            [&](Words words) {
                QVariantMap hidden = options("psk", "passphrase", words.at(1));
                hidden.insert(QStringLiteral("hidden"), true);
                addNetwork(device, feed, words.at(0), hidden);
            }),
        row("add-enterprise", "SSID IDENTITY PASSWORD", "a WPA2-Enterprise one",
            [&](Words words) {
                QVariantMap enterprise = options("ieee8021x", "passphrase", words.at(2));
                enterprise.insert(QStringLiteral("identity"), words.at(1));
                addNetwork(device, feed, words.at(0), enterprise);
            }),
        row("add-wps", "SSID [PIN]", "one with WPS",
            [&](Words words) {
                addNetwork(device, feed, words.at(0), options("wps", "pin", words.value(1)));
            }),
        row("remove", "SSID", "take a network off the air",
            [&](Words words) { device.simulator().removeNetwork(words.at(0)); }),
        row("cable", "in|out", "plug the Ethernet cable in or pull it out",
            [&](Words words) { device.simulator().setCable(words.at(0) == QStringLiteral("in")); }),
        row("connman", "start|stop|restart", "ConnMan comes, goes, or both",
            [&](Words words) { switchConnman(device, words.at(0)); }),
        row("daemon", "start|stop", "start or end the daemon",
            [&](Words words) { switchDaemon(device, feed, words.at(0)); }),
        row("chord", "on|off", "press the keys that switch Wi-Fi",
            [&](Words words) { pressChord(device, words.at(0)); }),
    };
}
