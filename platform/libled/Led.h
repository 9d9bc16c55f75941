#pragma once

#include <memory>
#include <QObject>
#include <QString>
#include <QTimer>

namespace libled {
class SysfsLed;
}

/// One LED of the kernel's LED class, /sys/class/leds/<name>/. The object is taken to be the LED's only user:
/// what it has written is not written again. A write that fails, or a LED that went away, is a critical line
/// of the category "libled".
///
/// Each call ends what the one before it started. Without the LED the calls do nothing; one that comes, or
/// comes back, is used from the next call on.
class Led : public QObject
{
    Q_OBJECT

public:
    explicit Led(const QString &name, QObject *parent = nullptr);
    ~Led() override;

    /// Whether the LED is there, and its brightness writable.
    bool isValid() const;

    /// As bright as it can be.
    void on();
    void off();
    /// Blinks, half of `periodMs` on and half of it off; with `durationMs` >= 0 the LED is switched off that
    /// many milliseconds later. The kernel's timer trigger does it; on a kernel without that the event loop
    /// must run.
    void blink(int periodMs, int durationMs);

private:
    void show(int brightness);
    void blinkByItself(int halfPeriodMs);
    void toggle();

    std::unique_ptr<libled::SysfsLed> m_led;
    QTimer m_toggleTimer;
    QTimer m_offTimer;
    bool m_isLit = false;
};
