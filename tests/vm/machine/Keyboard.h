#pragma once

#include <QString>
#include <unistd.h>

/// A keyboard that exists as far as the kernel is concerned: an evdev node, and two real LEDs, which appear
/// as /sys/class/leds/led8 and led10. It lives as long as this object.
class Keyboard
{
public:
    Keyboard();
    ~Keyboard();
    Keyboard(const Keyboard &) = delete;
    Keyboard &operator=(const Keyboard &) = delete;

    bool plugIn();
    /// Such as /dev/input/event0; empty before `plugIn()`.
    QString device() const { return m_device; }

    void press(int key) const { send(key, 1); }
    void release(int key) const { send(key, 0); }
    /// Presses and releases `key` while `modifier` is held.
    void chord(int modifier, int key) const;

private:
    void send(int key, int value) const;
    bool findNodes();

    int m_uinput = -1;
    QString m_device;
};

/// What an LED of the kernel does: "off", "on" or "blink <period in ms>".
QString ledState(const QString &name);
