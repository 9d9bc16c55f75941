#include "SysfsLed.h"

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <sys/stat.h>

namespace libled {

namespace {

Q_LOGGING_CATEGORY(logLed, "libled", QtCriticalMsg)

constexpr int defaultMaxBrightness = 255;

QByteArray noTrigger()
{
    return QByteArrayLiteral("none");
}

QByteArray timerTrigger()
{
    return QByteArrayLiteral("timer");
}

quint64 inodeOf(const QString &path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_ino : 0;
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The reason of a failure, or nothing. The file is never created: sysfs would not, and a plain file left in
// its place would hide that the LED has gone.
QString writeFile(const QString &path, const QByteArray &value)
{
    QFile file(path);
    const bool isWritten = file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::ExistingOnly |
                                     QIODevice::Unbuffered) &&
                           file.write(value) == value.size();
    return isWritten ? QString() : file.errorString();
}

// The trigger file names all that can be chosen, separated by blanks, the one in use in brackets.
bool offersTrigger(const QByteArray &triggers, const QByteArray &name)
{
    const QList<QByteArray> words = triggers.simplified().split(' ');
    return words.contains(name) || words.contains('[' + name + ']');
}

int parseMaxBrightness(const QByteArray &content)
{
    const int brightness = content.trimmed().toInt();
    return brightness > 0 ? brightness : defaultMaxBrightness;
}

} // namespace

SysfsLed::SysfsLed(const QString &name)
    : m_directory(QStringLiteral("/sys/class/leds/%1/").arg(name))
    , m_trigger{m_directory + QStringLiteral("trigger")}
    , m_brightness{m_directory + QStringLiteral("brightness")}
    , m_delayOn{m_directory + QStringLiteral("delay_on")}
    , m_delayOff{m_directory + QStringLiteral("delay_off")}
    , m_inode(isValid() ? inodeOf(m_directory) : 0)
{
}

bool SysfsLed::isValid() const
{
    return QFileInfo(m_brightness.path).isWritable();
}

bool SysfsLed::isUsable()
{
    const quint64 inode = isValid() ? inodeOf(m_directory) : 0;
    if (inode != m_inode) {
        forgetWritten();
        m_hasTimerTrigger = false;
        m_inode = inode;
        if (inode == 0) {
            qCCritical(logLed) << "LED" << m_directory << "went away.";
        }
    }
    // A module that brings it may be loaded late; what a LED has offered once it keeps.
    m_hasTimerTrigger = m_hasTimerTrigger || offersTrigger(readFile(m_trigger.path), timerTrigger());
    return inode != 0;
}

bool SysfsLed::hasTriggers() const
{
    return !readFile(m_trigger.path).isEmpty();
}

int SysfsLed::maxBrightness() const
{
    return parseMaxBrightness(readFile(m_directory + QStringLiteral("max_brightness")));
}

// A kernel may be built without any triggers.
void SysfsLed::setBrightness(int brightness)
{
    if (hasTriggers()) {
        setTrigger(noTrigger());
    }
    write(m_brightness, QByteArray::number(brightness));
}

// The delay files exist only while the timer trigger is in use.
void SysfsLed::blink(int halfPeriodMs)
{
    const QByteArray delay = QByteArray::number(halfPeriodMs);
    if (setTrigger(timerTrigger()) && write(m_delayOn, delay)) {
        write(m_delayOff, delay);
    }
}

bool SysfsLed::setTrigger(const QByteArray &trigger)
{
    if (m_trigger.written == trigger) {
        return true;
    }
    forgetWritten();
    return write(m_trigger, trigger);
}

void SysfsLed::forgetWritten()
{
    for (Attribute *attribute : {&m_trigger, &m_brightness, &m_delayOn, &m_delayOff}) {
        attribute->written.clear();
    }
}

bool SysfsLed::write(Attribute &attribute, const QByteArray &value)
{
    if (attribute.written == value) {
        return true;
    }
    const QString failure = writeFile(attribute.path, value);
    if (!failure.isNull()) {
        attribute.written.clear();
        logFirstFailure(attribute, failure);
        return false;
    }
    attribute.written = value;
    attribute.isFailing = false;
    return true;
}

void SysfsLed::logFirstFailure(Attribute &attribute, const QString &reason)
{
    if (!attribute.isFailing) {
        attribute.isFailing = true;
        qCCritical(logLed) << "Writing" << attribute.path << "failed:" << reason;
    }
}

} // namespace libled
