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
    void press(int key) { report(key, true); }
    void release(int key) { report(key, false); }
    /// The device node loses its other end, as when the keyboard is unplugged.
    void unplug();

private:
    static constexpr int keyBytes = 32;
    using KeyBits = std::array<unsigned char, keyBytes>;

    void report(int key, bool down);
    bool answer(_UMockdevIoctlClient *client);
    KeyBits heldKeys();
    void write(int type, int code, int value);

    _UMockdevTestbed *m_testbed;
    QByteArray m_path;
    _UMockdevIoctlBase *m_ioctls = nullptr;
    int m_fd = -1;
    std::mutex m_mutex; // the ioctls are answered on a thread of umockdev's
    KeyBits m_held{};
};

} // namespace test_support
