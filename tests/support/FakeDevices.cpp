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

FakeDevices::FakeDevices()
    : m_testbed(umockdev_testbed_new())
{
    // It is for the processes that are given environment(), not for every child of the test.
    qunsetenv("UMOCKDEV_DIR");
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
    QString preload = "libumockdev-preload.so.0"_s;
#ifdef SANITIZER_RUNTIME
    // The sanitizer's allocator must be there before anything else that is preloaded.
    preload.prepend(QStringLiteral(SANITIZER_RUNTIME ":"));
#endif
    return {"UMOCKDEV_DIR="_s + root(), "LD_PRELOAD="_s + preload};
}

void FakeDevices::addLed(const QString &name)
{
    const char *const attributes[] = {"brightness", "255\n",      "max_brightness", "255\n",
                                      "trigger",    idleTriggers, "delay_on",       "0\n",
                                      "delay_off",  "0\n",        nullptr};
    const char *const properties[] = {nullptr};
    g_free(umockdev_testbed_add_devicev(m_testbed.get(), "leds", name.toUtf8().constData(), nullptr,
                                        const_cast<char **>(attributes), const_cast<char **>(properties)));
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
