#pragma once

#include <array>
#include <mutex>
#include <QByteArray>
#include <QString>

struct _UMockdevTestbed;
struct _UMockdevIoctlBase;
struct _UMockdevIoctlClient;

namespace test_support {

/// An evdev node in a umockdev testbed that answers the ioctls a reader of key events makes.
class FakeKeyboard
{
public:
    /// `node`: the name below /dev/input. A failure is one critical line.
    FakeKeyboard(_UMockdevTestbed *testbed, const QString &node);
    ~FakeKeyboard();
    FakeKeyboard(const FakeKeyboard &) = delete;
    FakeKeyboard &operator=(const FakeKeyboard &) = delete;

    /// Reports a key going down or up; `key` is an evdev key code.
    void press(int key);
    void release(int key);
    /// The event of a key that is being held, as the kernel repeats it.
    void repeat(int key) const;

    /// Keys that change while the reader does not keep up: the kernel's state changes, no event tells of it.
    void pressUnseen(int key) { setHeld(key, true); }
    void releaseUnseen(int key) { setHeld(key, false); }
    /// What the kernel sends instead of the events for which its buffer had no room.
    void overrun() const;

    /// The device is pulled out: reading gives ENODEV, as from the kernel.
    void vanish();
    /// The device node loses its other end: reading gives nothing any more.
    void hangUp() const;

    /// What a file that is no keyboard answers when it is asked what one is asked; an emulated processor's
    /// system answers in words of its own.
    static QString answerOfOtherFiles();

    /// Whether anyone has asked to have the device for themselves.
    bool isGrabbed() const;

private:
    static constexpr int keyBytes = 32;
    using KeyBits = std::array<unsigned char, keyBytes>;

    // umockdev's questions come on a thread of its own.
    static int handleIoctl(_UMockdevIoctlBase *base, _UMockdevIoctlClient *client, void *keyboard);
    static int handleRead(_UMockdevIoctlBase *base, _UMockdevIoctlClient *client, void *keyboard);
    void answer(_UMockdevIoctlClient *client);

    void setHeld(int key, bool isHeld);
    KeyBits heldKeys() const;
    void writeKey(int key, int value) const;
    void write(int type, int code, int value) const;

    _UMockdevTestbed *m_testbed;
    QByteArray m_path;
    _UMockdevIoctlBase *m_ioctls = nullptr;
    int m_fd = -1;
    mutable std::mutex m_mutex; // of what follows
    KeyBits m_held{};
    bool m_hasVanished = false;
    bool m_isGrabbed = false;
};

} // namespace test_support
