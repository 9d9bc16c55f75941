#include "SysfsLed.h"

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

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

QString ledFile(const QString &led, const char *file)
{
    return QStringLiteral("/sys/class/leds/%1/%2").arg(led, QLatin1String(file));
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
    : m_trigger{ledFile(name, "trigger")}
    , m_brightness{ledFile(name, "brightness")}
    , m_delayOn{ledFile(name, "delay_on")}
    , m_delayOff{ledFile(name, "delay_off")}
    , m_isValid(QFileInfo(m_brightness.path).isWritable())
    , m_maxBrightness(parseMaxBrightness(readFile(ledFile(name, "max_brightness"))))
{
    const QByteArray triggers = readFile(m_trigger.path);
    m_hasTriggers = !triggers.isEmpty();
    m_hasTimerTrigger = offersTrigger(triggers, timerTrigger());
}

void SysfsLed::setBrightness(int brightness)
{
    if (m_hasTriggers) {
        setTrigger(noTrigger());
    }
    write(m_brightness, QByteArray::number(brightness));
}

// The delay files exist only while the timer trigger is in use.
void SysfsLed::blink(int halfPeriodMs)
{
    setTrigger(timerTrigger());
    write(m_delayOn, QByteArray::number(halfPeriodMs));
    write(m_delayOff, QByteArray::number(halfPeriodMs));
}

void SysfsLed::setTrigger(const QByteArray &trigger)
{
    if (m_trigger.written == trigger) {
        return;
    }
    write(m_trigger, trigger);
    m_brightness.written.clear();
    m_delayOn.written.clear();
    m_delayOff.written.clear();
}

void SysfsLed::write(Attribute &attribute, const QByteArray &value)
{
    if (attribute.written == value) {
        return;
    }
    const QString failure = writeFile(attribute.path, value);
    if (failure.isNull()) {
        attribute.written = value;
        attribute.isFailing = false;
    } else {
        attribute.written.clear();
        logFirstFailure(attribute, failure);
    }
}

void SysfsLed::logFirstFailure(Attribute &attribute, const QString &reason)
{
    if (!attribute.isFailing) {
        attribute.isFailing = true;
        qCCritical(logLed) << "Writing" << attribute.path << "failed:" << reason;
    }
}

} // namespace libled
