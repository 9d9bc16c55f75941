#include "FakeLed.h"
#include "Text.h"
#include <array>
#include <QDir>
#include <QFile>
#include <sys/inotify.h>
#include <unistd.h>
#include <utility>

using test_support::FakeDevices;

namespace {

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
}

} // namespace

FakeLed::Files FakeLed::kernelBlinking()
{
    return {{"brightness"_s, "0\n"},
            {"max_brightness"_s, "127\n"},
            {"trigger"_s, "[none] kbd-capslock timer heartbeat\n"},
            {"delay_on"_s, "500\n"},
            {"delay_off"_s, "500\n"}};
}

FakeLed::Files FakeLed::withoutTimerTrigger()
{
    return {{"brightness"_s, "0\n"},
            {"max_brightness"_s, "127\n"},
            {"trigger"_s, "[none] kbd-capslock oneshot-timer\n"}};
}

FakeLed::FakeLed(FakeDevices &devices, const QString &name, Files files)
    : m_directory("%1/sys/devices/%2/"_s.arg(devices.root(), name))
    , m_files(std::move(files))
    , m_inotify(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
    devices.addLed(name, m_files);
    if (inotify_add_watch(m_inotify, QFile::encodeName(m_directory).constData(), IN_CLOSE_WRITE) < 0) {
        qFatal("cannot watch %s", qPrintable(m_directory));
    }
}

FakeLed::~FakeLed()
{
    close(m_inotify);
}

void FakeLed::setUp(const Files &files) const
{
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        writeFile(realPath(file.key()), file.value());
    }
}

// The old directory stays, out of sight: the next one must not be given its number.
void FakeLed::unplug()
{
    ++m_timesUnplugged;
    QDir().rename(m_directory, m_directory.chopped(1) + ".gone%1"_s.arg(m_timesUnplugged));
}

void FakeLed::plugIn()
{
    QDir().mkdir(m_directory);
    setUp(m_files);
}

QString FakeLed::realPath(const QString &file) const
{
    return m_directory + file;
}

QByteArray FakeLed::content(const QString &file) const
{
    QFile reader(realPath(file));
    return reader.open(QIODevice::ReadOnly) ? reader.readAll() : QByteArray();
}

QStringList FakeLed::takeWrites() const
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

void FakeLed::breakFile(const QString &file) const
{
    QFile::rename(realPath(file), realPath(file) + ".saved"_s);
    QFile::link("/dev/full"_s, realPath(file));
}

void FakeLed::restoreFile(const QString &file) const
{
    QFile::remove(realPath(file));
    QFile::rename(realPath(file) + ".saved"_s, realPath(file));
}
