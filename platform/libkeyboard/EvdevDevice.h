#pragma once

#include <memory>
#include <optional>
#include <QString>

struct input_event;
struct libevdev;

namespace libkeyboard {

/// An open evdev device, read without waiting. After a buffer overrun in the kernel it compares what it knows
/// of the keys with what the kernel says and makes up the presses and releases in between.
class EvdevDevice
{
public:
    struct KeyChange
    {
        int code;
        bool isPressed;
    };

    EvdevDevice() = default;
    ~EvdevDevice();
    EvdevDevice(const EvdevDevice &) = delete;
    EvdevDevice &operator=(const EvdevDevice &) = delete;

    /// 0, or the system's error number. To be called once.
    int open(const QString &path);
    int fileDescriptor() const { return m_fileDescriptor; }

    /// The next press or release that is waiting to be read, if there is one. When there is none, failure()
    /// tells whether there ever will be.
    std::optional<KeyChange> nextKeyChange();
    /// 0, or the system's error number once the device has gone.
    int failure() const { return m_failure; }

private:
    bool readEvent(input_event &event);
    int nextEvent(input_event &event);
    bool isHungUp() const;

    struct Free
    {
        void operator()(libevdev *device) const;
    };

    int m_fileDescriptor = -1;
    std::unique_ptr<libevdev, Free> m_device;
    bool m_isResynchronising = false;
    int m_failure = 0;
};

} // namespace libkeyboard
