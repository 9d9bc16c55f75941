#pragma once

#include <memory>
#include <QString>

class MockDevices;

/// An evdev keyboard in a mocked /dev: answers what the kernel answers to the questions asked at opening, and
/// sends the events it is told to send.
class MockKeyboard
{
public:
    MockKeyboard(const MockDevices &devices, const QString &path);
    ~MockKeyboard();
    MockKeyboard(const MockKeyboard &) = delete;
    MockKeyboard &operator=(const MockKeyboard &) = delete;

    void press(int key);
    /// The event of a key that is being held, as the kernel repeats it.
    void repeat(int key) const;
    void release(int key);

    /// Keys that change while the reader does not keep up: the kernel's state changes, no event tells of it.
    void pressUnseen(int key);
    void releaseUnseen(int key);
    /// What the kernel sends instead of the events for which its buffer had no room.
    void overrun() const;

    /// The device is pulled out: reading gives ENODEV, as from the kernel.
    void vanish();
    /// The other end of the device is closed: reading gives nothing any more.
    void hangUp() const;

    /// Whether anyone has asked to have the device for themselves.
    bool isGrabbed() const;

private:
    class Kernel;

    void send(int type, int code, int value) const;
    void sendKey(int key, int value) const;

    std::unique_ptr<Kernel> m_kernel;
    int m_events; ///< what is written here is read from the device
};
