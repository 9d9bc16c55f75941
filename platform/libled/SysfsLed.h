#pragma once

#include <QByteArray>
#include <QString>

namespace libled {

/// The files of one LED in sysfs, and what has been written to them. They are looked at when they are used:
/// the LED may come, go and come back.
///
/// A value that is known to be there already is not written; the kernel changes brightness and delays by
/// itself when the trigger changes, so a new trigger makes them unknown, and a LED that was away has lost
/// everything. Of a file that cannot be written only the first failure is logged, until a write succeeds
/// again.
class SysfsLed
{
public:
    explicit SysfsLed(const QString &name);

    /// Whether the LED is there and its brightness writable.
    bool isValid() const;
    /// The same, to be asked before the LED is used. That it went away is logged once.
    bool isUsable();
    /// As of the last isUsable().
    bool hasTimerTrigger() const { return m_hasTimerTrigger; }
    int maxBrightness() const;

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

    bool hasTriggers() const;
    bool setTrigger(const QByteArray &trigger);
    static bool write(Attribute &attribute, const QByteArray &value);
    static void logFirstFailure(Attribute &attribute, const QString &reason);
    void forgetWritten();

    const QString m_directory;
    Attribute m_trigger;
    Attribute m_brightness;
    Attribute m_delayOn;
    Attribute m_delayOff;
    bool m_hasTimerTrigger = false;
    quint64 m_inode = 0; ///< of the directory, which is another one each time the LED comes; 0 without a LED
};

} // namespace libled
