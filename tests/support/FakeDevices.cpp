#include "FakeDevices.h"
#include "Text.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <umockdev.h>

namespace test_support {

namespace {
const QStringList ledAttributes = {"brightness"_s, "trigger"_s, "delay_on"_s, "delay_off"_s};

// The kernel lists all triggers, the one in use in brackets; the fake file keeps what was written.
constexpr char idleTriggers[] = "[none] timer heartbeat\n";

bool hasTimer(const QByteArray &trigger)
{
    return trigger == "timer" || trigger.contains("[timer]");
}
} // namespace

char *toString(const LedPattern &pattern)
{
    switch (pattern.kind) {
    case LedPattern::Kind::Off:
        return qstrdup("off");
    case LedPattern::Kind::On:
        return qstrdup("on");
    case LedPattern::Kind::Blink:
        return qstrdup(QByteArrayLiteral("blink every ") + QByteArray::number(pattern.periodMs) + " ms");
    }
    return nullptr;
}

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

QString FakeDevices::ledFile(const QString &led, const QString &file) const
{
    return "%1/sys/class/leds/%2/%3"_s.arg(root(), led, file);
}

QByteArray FakeDevices::readLed(const QString &led, const QString &file) const
{
    QFile attribute(ledFile(led, file));
    if (!attribute.open(QIODevice::ReadOnly)) {
        return {};
    }
    return attribute.readAll().trimmed();
}

LedPattern FakeDevices::led(const QString &name) const
{
    if (hasTimer(readLed(name, "trigger"_s))) {
        return LedPattern::blink(readLed(name, "delay_on"_s).toInt() + readLed(name, "delay_off"_s).toInt());
    }
    return readLed(name, "brightness"_s).toInt() > 0 ? LedPattern::on() : LedPattern::off();
}

void FakeDevices::rewriteTriggers() const
{
    const QDir leds(root() + "/sys/class/leds"_s);
    for (const QString &name : leds.entryList(QDir::AllDirs | QDir::NoDotAndDotDot)) {
        const bool isTimer = hasTimer(readLed(name, "trigger"_s));
        QFile trigger(ledFile(name, "trigger"_s));
        if (trigger.open(QIODevice::WriteOnly | QIODevice::ExistingOnly)) {
            trigger.write(isTimer ? "none [timer] heartbeat\n" : idleTriggers);
        }
    }
}

QStringList FakeDevices::ledFiles(const QString &name) const
{
    QStringList files;
    for (const QString &attribute : ledAttributes) {
        files << ledFile(name, attribute);
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
