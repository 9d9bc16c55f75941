#pragma once

#include <memory>
#include <QString>

/// The keyboard, an evdev node. It lives as long as this object.
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

private:
    class Node;
    std::unique_ptr<Node> m_node;
};
