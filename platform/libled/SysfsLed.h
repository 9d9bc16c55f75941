#pragma once

#include <QByteArray>
#include <QString>

namespace libled {

/// The files of one LED in sysfs, and what has been written to them.
///
/// A value that is known to be there already is not written; the kernel changes brightness and delays by
/// itself when the trigger changes, so a new trigger makes them unknown. Of a file that cannot be written
/// only the first failure is logged, until a write succeeds again.
class SysfsLed
{
public:
    explicit SysfsLed(const QString &name);

    bool isValid() const { return m_isValid; }
    bool hasTimerTrigger() const { return m_hasTimerTrigger; }
    int maxBrightness() const { return m_maxBrightness; }

    /// Steady light, from 0 to maxBrightness().
    void setBrightness(int brightness);
    /// Blinking by the kernel; needs hasTimerTrigger().
    void blink(int halfPeriodMs);

private:
    struct Attribute
    {
        QString path;
        QByteArray written = {}; ///< null when not known
        bool isFailing = false;
    };

    void setTrigger(const QByteArray &trigger);
    static void write(Attribute &attribute, const QByteArray &value);
    static void logFirstFailure(Attribute &attribute, const QString &reason);

    Attribute m_trigger;
    Attribute m_brightness;
    Attribute m_delayOn;
    Attribute m_delayOff;
    const bool m_isValid;
    const int m_maxBrightness;
    bool m_hasTriggers = false; ///< a kernel may be built without any
    bool m_hasTimerTrigger = false;
};

} // namespace libled
