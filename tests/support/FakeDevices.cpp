#include "FakeDevices.h"
#include "Text.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <umockdev.h>

namespace test_support {

namespace {
const QStringList ledAttributes = {"brightness"_s, "trigger"_s, "delay_on"_s, "delay_off"_s};

// As the kernel has it: all triggers, the one in use in brackets.
constexpr char idleTriggers[] = "[none] timer heartbeat\n";
} // namespace

void FakeDevices::Unref::operator()(UMockdevTestbed *testbed) const
{
    g_object_unref(testbed);
}

FakeDevices::FakeDevices(SeenBy who)
    : m_testbed(umockdev_testbed_new())
{
    if (who == SeenBy::StartedProcesses) {
        // Those that are given environment(), not every child of the test.
        qunsetenv("UMOCKDEV_DIR");
    } else if (umockdev_in_mock_environment() == FALSE) {
        qFatal("umockdev's library is not loaded: run this test through ctest, or under umockdev-wrapper");
    }
}

FakeDevices::~FakeDevices() = default;

QString FakeDevices::root() const
{
    char *directory = umockdev_testbed_get_root_dir(m_testbed.get());
    const QString path = QString::fromUtf8(directory);
    g_free(directory);
    return path;
}

QStringList FakeDevices::environment() const
{
    return {"UMOCKDEV_DIR="_s + root(), QStringLiteral("LD_PRELOAD=" FAKE_DEVICES_PRELOAD)};
}

FakeDevices::LedFiles FakeDevices::shiningLed()
{
    return {{"brightness"_s, "255\n"},
            {"max_brightness"_s, "255\n"},
            {"trigger"_s, idleTriggers},
            {"delay_on"_s, "0\n"},
            {"delay_off"_s, "0\n"}};
}

void FakeDevices::addLed(const QString &name, const LedFiles &files)
{
    const QByteArray device = name.toUtf8();
    g_free(
        umockdev_testbed_add_device(m_testbed.get(), "leds", device.constData(), nullptr, nullptr, nullptr));
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        umockdev_testbed_set_attribute(m_testbed.get(), ("/sys/devices/" + device).constData(),
                                       file.key().toUtf8().constData(), file.value().constData());
    }
}

void FakeDevices::removeLed(const QString &name)
{
    umockdev_testbed_remove_device(m_testbed.get(), ("/sys/devices/" + name.toUtf8()).constData());
}

QString FakeDevices::ledDirectory(const QString &led) const
{
    return "%1/sys/class/leds/%2/"_s.arg(root(), led);
}

LedPattern FakeDevices::led(const QString &name) const
{
    return LedPattern::shownBy(ledDirectory(name));
}

void FakeDevices::rewriteTriggers() const
{
    const QDir leds(root() + "/sys/class/leds"_s);
    for (const QString &name : leds.entryList(QDir::AllDirs | QDir::NoDotAndDotDot)) {
        const bool blinks = led(name).kind == LedPattern::Kind::Blink;
        QFile trigger(ledDirectory(name) + "trigger"_s);
        if (trigger.open(QIODevice::WriteOnly | QIODevice::ExistingOnly)) {
            trigger.write(blinks ? "none [timer] heartbeat\n" : idleTriggers);
        }
    }
}

QStringList FakeDevices::ledFiles(const QString &name) const
{
    QStringList files;
    for (const QString &attribute : ledAttributes) {
        files << ledDirectory(name) + attribute;
    }
    return files;
}

bool FakeDevices::waitForLed(const QString &name, const LedPattern &pattern, int timeoutMs) const
{
    return waitUntilFilesSatisfy(
        ledFiles(name), [&] { return led(name) == pattern; }, timeoutMs);
}

FakeKeyboard &FakeDevices::addKeyboard(const QString &node)
{
    m_keyboards.push_back(std::make_unique<FakeKeyboard>(m_testbed.get(), node));
    return *m_keyboards.back();
}

} // namespace test_support
