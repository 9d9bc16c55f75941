#include "Led.h"

#include "SysfsLed.h"
#include <algorithm>

Led::Led(const QString &name, QObject *parent)
    : QObject(parent)
    , m_led(std::make_unique<libled::SysfsLed>(name))
{
    m_offTimer.setSingleShot(true);
    m_offTimer.setTimerType(Qt::PreciseTimer); // a coarse one may be early
    QObject::connect(&m_offTimer, &QTimer::timeout, this, &Led::off);
    QObject::connect(&m_toggleTimer, &QTimer::timeout, this, &Led::toggle);
}

Led::~Led() = default;

bool Led::isValid() const
{
    return m_led->isValid();
}

void Led::on()
{
    show(m_led->maxBrightness());
}

void Led::off()
{
    show(0);
}

void Led::blink(int periodMs, int durationMs)
{
    m_offTimer.stop();
    if (!m_led->isUsable()) {
        m_toggleTimer.stop();
        return;
    }
    const int halfPeriodMs = std::max(1, periodMs / 2); // the kernel reads 0 as "your choice"
    if (m_led->hasTimerTrigger()) {
        m_toggleTimer.stop();
        m_led->blink(halfPeriodMs);
    } else {
        blinkByItself(halfPeriodMs);
    }
    if (durationMs >= 0) {
        m_offTimer.start(durationMs);
    }
}

void Led::show(int brightness)
{
    m_offTimer.stop();
    m_toggleTimer.stop();
    if (m_led->isUsable()) {
        m_led->setBrightness(brightness);
    }
}

// Asked again for the blinking it is at, the LED keeps its rhythm, as the kernel's would.
void Led::blinkByItself(int halfPeriodMs)
{
    if (m_toggleTimer.isActive() && m_toggleTimer.interval() == halfPeriodMs) {
        return;
    }
    m_toggleTimer.start(halfPeriodMs);
    m_isLit = false;
    toggle();
}

void Led::toggle()
{
    m_isLit = !m_isLit;
    if (m_led->isUsable()) {
        m_led->setBrightness(m_isLit ? m_led->maxBrightness() : 0);
    }
}
