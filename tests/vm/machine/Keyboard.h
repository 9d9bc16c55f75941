#pragma once

#include <memory>
#include <QString>

/// The keyboard, an evdev node, with the two LEDs that appear as /sys/class/leds/led8 and led10. It lives as
/// long as this object.
class Keyboard
{
public:
    Keyboard();
    ~Keyboard();
    Keyboard(const Keyboard &) = delete;
    Keyboard &operator=(const Keyboard &) = delete;

    bool plugIn();
    /// Such as /dev/input/event0; empty before `plugIn()`.
    QString device() const;

    void press(int key);
    void release(int key);
    /// Presses and releases `key` while `modifier` is held.
    void chord(int modifier, int key);

private:
    class Node;
    std::unique_ptr<Node> m_node;
};

/// What an LED does: "off", "on" or "blink <period in ms>".
QString ledState(const QString &name);
