#include "DeviceCommands.h"

#include "Device.h"
#include "Feed.h"

namespace {

// evdev codes of the chord: one key held, one that switches on, one that switches off.
constexpr int modifierKey = 32;
constexpr int switchOnKey = 37;
constexpr int switchOffKey = 38;

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
    using Words = const QStringList &;
    return {
        command("daemon", "start|stop", "start or end the daemon",
                [&](Words words) { switchDaemon(device, feed, words.at(0)); }),
        command("chord", "on|off", "press the keys that switch Wi-Fi",
                [&](Words words) { pressChord(device, words.at(0)); }),
    };
}
