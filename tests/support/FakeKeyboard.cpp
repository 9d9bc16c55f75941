#include "FakeKeyboard.h"
#include "Text.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/input.h>
#include <QDebug>
#include <QFile>
#include <sys/ioctl.h>
#include <umockdev.h>
#include <unistd.h>
#include <vector>

namespace test_support {

namespace {
constexpr char deviceDescription[] = "P: /devices/platform/keys/input/input0/%1\n"
                                     "N: input/%1\n"
                                     "E: DEVNAME=/dev/input/%1\n"
                                     "E: SUBSYSTEM=input\n"
                                     "A: dev=13:64\n";
constexpr char deviceName[] = "fake keyboard";
constexpr int evdevProtocolVersion = 0x010001;

using Bytes = std::vector<unsigned char>;

template <typename T>
Bytes bytesOf(const T &value)
{
    const auto *begin = reinterpret_cast<const unsigned char *>(&value);
    return {begin, begin + sizeof(value)};
}

bool isBitmapOf(unsigned number, unsigned eventType)
{
    return number == _IOC_NR(EVIOCGBIT(eventType, 0));
}

// Writes the answer of an ioctl that reads `content`, cut to the size the caller asked for; as the kernel
// does, the result is the number of bytes written.
void completeWith(UMockdevIoctlClient *client, const Bytes &content)
{
    const auto capacity = static_cast<std::size_t>(_IOC_SIZE(umockdev_ioctl_client_get_request(client)));
    Bytes answer(capacity, 0);
    const std::size_t length = std::min(capacity, content.size());
    std::copy_n(content.begin(), length, answer.begin());

    UMockdevIoctlData *pointer = umockdev_ioctl_client_get_arg(client);
    UMockdevIoctlData *memory = umockdev_ioctl_data_resolve(pointer, 0, capacity, nullptr);
    umockdev_ioctl_data_update(memory, 0, answer.data(), static_cast<int>(answer.size()));
    umockdev_ioctl_data_unref(memory);
    umockdev_ioctl_client_complete(client, static_cast<long>(length), 0);
}
} // namespace

FakeKeyboard::FakeKeyboard(UMockdevTestbed *testbed, const QString &node)
    : m_testbed(testbed)
    , m_path(QByteArrayLiteral("/dev/input/") + node.toUtf8())
    , m_ioctls(umockdev_ioctl_base_new())
{
    g_signal_connect(m_ioctls, "handle-ioctl", G_CALLBACK(&FakeKeyboard::handleIoctl), this);
    g_signal_connect(m_ioctls, "handle-read", G_CALLBACK(&FakeKeyboard::handleRead), this);
    const QByteArray description = QString::fromLatin1(deviceDescription).arg(node).toUtf8();
    GError *error = nullptr;
    if (umockdev_testbed_add_from_string(testbed, description.constData(), &error) == FALSE ||
        umockdev_testbed_attach_ioctl(testbed, m_path.constData(), m_ioctls, &error) == FALSE) {
        qCritical() << "Fake keyboard:" << m_path << error->message;
        g_error_free(error);
        return;
    }
    m_fd = umockdev_testbed_get_dev_fd(testbed, m_path.constData());
    // The reader of the keyboard must not inherit its other end.
    fcntl(m_fd, F_SETFD, FD_CLOEXEC);
}

FakeKeyboard::~FakeKeyboard()
{
    umockdev_testbed_detach_ioctl(m_testbed, m_path.constData(), nullptr);
    g_object_unref(m_ioctls);
}

void FakeKeyboard::press(int key)
{
    setHeld(key, true);
    writeKey(key, 1);
}

void FakeKeyboard::release(int key)
{
    setHeld(key, false);
    writeKey(key, 0);
}

void FakeKeyboard::repeat(int key) const
{
    writeKey(key, 2);
}

void FakeKeyboard::overrun() const
{
    write(EV_SYN, SYN_DROPPED, 0);
    write(EV_SYN, SYN_REPORT, 0);
}

void FakeKeyboard::vanish()
{
    {
        const std::lock_guard lock(m_mutex);
        m_hasVanished = true;
    }
    write(EV_SYN, SYN_REPORT, 0); // makes the device readable, as the kernel does
}

// The descriptor stays taken, since umockdev closes it in the end.
void FakeKeyboard::hangUp() const
{
    const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup3(nowhere, m_fd, O_CLOEXEC);
    close(nowhere);
}

QString FakeKeyboard::answerOfOtherFiles()
{
    QFile file("/proc/version"_s);
    int version = 0;
    if (!file.open(QIODevice::ReadOnly) || ioctl(file.handle(), EVIOCGVERSION, &version) == 0) {
        return {};
    }
    return QString::fromLocal8Bit(std::strerror(errno));
}

bool FakeKeyboard::isGrabbed() const
{
    const std::lock_guard lock(m_mutex);
    return m_isGrabbed;
}

void FakeKeyboard::setHeld(int key, bool isHeld)
{
    const std::lock_guard lock(m_mutex);
    const auto byte = static_cast<std::size_t>(key / 8);
    const auto bit = static_cast<unsigned char>(1U << (key % 8));
    m_held.at(byte) = static_cast<unsigned char>(isHeld ? m_held.at(byte) | bit : m_held.at(byte) & ~bit);
}

FakeKeyboard::KeyBits FakeKeyboard::heldKeys() const
{
    const std::lock_guard lock(m_mutex);
    return m_held;
}

void FakeKeyboard::writeKey(int key, int value) const
{
    write(EV_KEY, key, value);
    write(EV_SYN, SYN_REPORT, 0);
}

void FakeKeyboard::write(int type, int code, int value) const
{
    input_event event{};
    event.type = static_cast<unsigned short>(type);
    event.code = static_cast<unsigned short>(code);
    event.value = value;
    if (::write(m_fd, &event, sizeof(event)) != sizeof(event)) {
        qCritical() << "Fake keyboard:" << m_path << std::strerror(errno);
    }
}

int FakeKeyboard::handleIoctl(UMockdevIoctlBase * /*base*/, UMockdevIoctlClient *client, void *keyboard)
{
    if (_IOC_TYPE(umockdev_ioctl_client_get_request(client)) != 'E') {
        return FALSE;
    }
    static_cast<FakeKeyboard *>(keyboard)->answer(client);
    return TRUE;
}

int FakeKeyboard::handleRead(UMockdevIoctlBase * /*base*/, UMockdevIoctlClient *client, void *keyboard)
{
    const auto *self = static_cast<FakeKeyboard *>(keyboard);
    const std::lock_guard lock(self->m_mutex);
    if (self->m_hasVanished) {
        umockdev_ioctl_client_complete(client, -1, ENODEV);
    }
    return self->m_hasVanished ? TRUE : FALSE;
}

void FakeKeyboard::answer(UMockdevIoctlClient *client)
{
    const auto request = static_cast<unsigned>(umockdev_ioctl_client_get_request(client));
    const unsigned number = _IOC_NR(request);
    if (request == EVIOCGRAB) {
        const std::lock_guard lock(m_mutex);
        m_isGrabbed = true;
        umockdev_ioctl_client_complete(client, 0, 0);
    } else if (number == _IOC_NR(EVIOCGVERSION)) {
        completeWith(client, bytesOf(evdevProtocolVersion));
    } else if (number == _IOC_NR(EVIOCGID)) {
        completeWith(client, bytesOf(input_id{BUS_HOST, 1, 1, 1}));
    } else if (number == _IOC_NR(EVIOCGNAME(0))) {
        completeWith(client, bytesOf(deviceName));
    } else if (number == _IOC_NR(EVIOCGPHYS(0)) || number == _IOC_NR(EVIOCGUNIQ(0))) {
        umockdev_ioctl_client_complete(client, -1, ENOENT);
    } else if (number == _IOC_NR(EVIOCGKEY(0))) {
        completeWith(client, bytesOf(heldKeys()));
    } else if (isBitmapOf(number, 0)) {
        completeWith(client, {1U << EV_SYN | 1U << EV_KEY});
    } else if (isBitmapOf(number, EV_KEY)) {
        completeWith(client, Bytes(keyBytes, 0xff));
    } else if (_IOC_DIR(request) == _IOC_READ) {
        // Of every other kind of event, property and state the keyboard has none.
        completeWith(client, Bytes(_IOC_SIZE(request), 0));
    } else {
        umockdev_ioctl_client_complete(client, 0, 0);
    }
}

} // namespace test_support
