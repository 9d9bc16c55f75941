#include "EvdevDevice.h"

#include <cerrno>
#include <fcntl.h>
#include <libevdev/libevdev.h>
#include <poll.h>
#include <QFile>
#include <unistd.h>

namespace libkeyboard {

namespace {
constexpr int autoRepeat = 2; // the value of a key event that is neither a press (1) nor a release (0)
}

void EvdevDevice::Free::operator()(libevdev *device) const
{
    libevdev_free(device);
}

EvdevDevice::~EvdevDevice()
{
    if (m_fileDescriptor >= 0) {
        ::close(m_fileDescriptor);
    }
}

int EvdevDevice::open(const QString &path)
{
    m_fileDescriptor =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (m_fileDescriptor < 0) {
        return errno;
    }
    libevdev *device = nullptr;
    const int status = libevdev_new_from_fd(m_fileDescriptor, &device);
    m_device.reset(device);
    return -status;
}

std::optional<EvdevDevice::KeyChange> EvdevDevice::nextKeyChange()
{
    input_event event = {};
    while (readEvent(event)) {
        if (event.type == EV_KEY && event.value != autoRepeat) {
            return KeyChange{event.code, event.value != 0};
        }
    }
    return std::nullopt;
}

bool EvdevDevice::readEvent(input_event &event)
{
    int status = nextEvent(event);
    if (status == -EAGAIN && m_isResynchronising) {
        m_isResynchronising = false;
        status = nextEvent(event);
    }
    if (status == LIBEVDEV_READ_STATUS_SYNC) {
        m_isResynchronising = true;
    }
    if (status >= 0) {
        return true;
    }
    if (status != -EAGAIN) {
        m_failure = -status;
    } else if (isHungUp()) {
        m_failure = ENODEV;
    }
    return false;
}

int EvdevDevice::nextEvent(input_event &event)
{
    const unsigned flag = m_isResynchronising ? LIBEVDEV_READ_FLAG_SYNC : LIBEVDEV_READ_FLAG_NORMAL;
    return libevdev_next_event(m_device.get(), flag, &event);
}

// libevdev takes the end of the file for "nothing there yet", and the event loop would call for reading for
// ever.
bool EvdevDevice::isHungUp() const
{
    pollfd request = {m_fileDescriptor, POLLIN, 0};
    return ::poll(&request, 1, 0) > 0 && (request.revents & (POLLHUP | POLLERR)) != 0;
}

} // namespace libkeyboard
