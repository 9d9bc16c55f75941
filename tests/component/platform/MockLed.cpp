#include <umockdev.h>

#include "MockDevices.h"
#include "MockLed.h"
#include "Text.h"
#include <array>
#include <QDir>
#include <QFile>
#include <sys/inotify.h>
#include <unistd.h>
#include <utility>

namespace {

void addToTestbed(UMockdevTestbed *testbed, const QString &name)
{
    const QByteArray nameBytes = name.toLocal8Bit();
    gchar *path =
        umockdev_testbed_add_device(testbed, "leds", nameBytes.constData(), nullptr, nullptr, nullptr);
    g_free(path);
}

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
}

} // namespace

MockLed::Files MockLed::kernelBlinking()
{
    return {{"brightness"_s, "0\n"},
            {"max_brightness"_s, "127\n"},
            {"trigger"_s, "[none] kbd-capslock timer heartbeat\n"},
            {"delay_on"_s, "500\n"},
            {"delay_off"_s, "500\n"}};
}

MockLed::Files MockLed::withoutTimerTrigger()
{
    return {{"brightness"_s, "0\n"},
            {"max_brightness"_s, "127\n"},
            {"trigger"_s, "[none] kbd-capslock oneshot-timer\n"}};
}

MockLed::MockLed(const MockDevices &devices, const QString &name, Files files)
    : m_directory(devices.realPath("/sys/devices/%1/"_s.arg(name)))
    , m_files(std::move(files))
    , m_inotify(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
    addToTestbed(devices.testbed(), name);
    setUp(m_files);
    if (inotify_add_watch(m_inotify, QFile::encodeName(m_directory).constData(), IN_CLOSE_WRITE) < 0) {
        qFatal("cannot watch %s", qPrintable(m_directory));
    }
}

MockLed::~MockLed()
{
    close(m_inotify);
}

void MockLed::setUp(const Files &files) const
{
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        writeFile(realPath(file.key()), file.value());
    }
}

// The old directory stays, out of sight: the next one must not be given its number.
void MockLed::unplug()
{
    ++m_timesUnplugged;
    QDir().rename(m_directory, m_directory.chopped(1) + ".gone%1"_s.arg(m_timesUnplugged));
}

void MockLed::plugIn()
{
    QDir().mkdir(m_directory);
    setUp(m_files);
}

QString MockLed::realPath(const QString &file) const
{
    return m_directory + file;
}

QByteArray MockLed::content(const QString &file) const
{
    QFile reader(realPath(file));
    return reader.open(QIODevice::ReadOnly) ? reader.readAll() : QByteArray();
}

QStringList MockLed::takeWrites() const
{
    QStringList writes;
    alignas(inotify_event) std::array<char, 4096> buffer{};
    ssize_t size = 0;
    while ((size = read(m_inotify, buffer.data(), buffer.size())) > 0) {
        for (ssize_t position = 0; position < size;) {
            const auto *event = reinterpret_cast<const inotify_event *>(buffer.data() + position);
            const QString file = QString::fromLocal8Bit(event->name);
            writes.append(file + QLatin1Char('=') + QString::fromLatin1(content(file)));
            position += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    }
    return writes;
}

void MockLed::breakFile(const QString &file) const
{
    QFile::rename(realPath(file), realPath(file) + ".saved"_s);
    QFile::link("/dev/full"_s, realPath(file));
}

void MockLed::restoreFile(const QString &file) const
{
    QFile::remove(realPath(file));
    QFile::rename(realPath(file) + ".saved"_s, realPath(file));
}
