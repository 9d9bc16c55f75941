#include <umockdev.h>

#include "MockDevices.h"
#include "MockKeyboard.h"
#include <bitset>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/input.h>
#include <mutex>
#include <QByteArray>
#include <unistd.h>
#include <utility>

namespace {

using KeyBits = std::bitset<KEY_CNT>;

QByteArray keyBytes(const KeyBits &keys)
{
    QByteArray bytes(KEY_CNT / 8, '\0');
    for (int key = 0; key < KEY_CNT; ++key) {
        if (keys.test(static_cast<size_t>(key))) {
            bytes[key / 8] = static_cast<char>(bytes.at(key / 8) | (1 << (key % 8)));
        }
    }
    return bytes;
}

KeyBits ordinaryKeys()
{
    KeyBits keys;
    for (size_t key = KEY_ESC; key < BTN_MISC; ++key) {
        keys.set(key);
    }
    return keys;
}

} // namespace

/// The kernel's side of the device. umockdev asks it from a thread of its own.
class MockKeyboard::Kernel
{
public:
    Kernel(UMockdevTestbed *testbed, QByteArray device)
        : m_testbed(testbed)
        , m_device(std::move(device))
        , m_handler(umockdev_ioctl_base_new())
    {
        g_signal_connect(m_handler, "handle-ioctl", G_CALLBACK(&Kernel::handleIoctl), this);
        g_signal_connect(m_handler, "handle-read", G_CALLBACK(&Kernel::handleRead), this);
        if (umockdev_testbed_attach_ioctl(m_testbed, m_device.constData(), m_handler, nullptr) == 0) {
            qFatal("cannot serve %s", m_device.constData());
        }
    }
    ~Kernel()
    {
        umockdev_testbed_detach_ioctl(m_testbed, m_device.constData(), nullptr);
        g_object_unref(m_handler);
    }
    Kernel(const Kernel &) = delete;
    Kernel &operator=(const Kernel &) = delete;

    void setHeld(int key, bool isHeld)
    {
        const std::lock_guard lock(m_mutex);
        m_held.set(static_cast<size_t>(key), isHeld);
    }
    void vanish()
    {
        const std::lock_guard lock(m_mutex);
        m_hasVanished = true;
    }
    bool isGrabbed()
    {
        const std::lock_guard lock(m_mutex);
        return m_isGrabbed;
    }

private:
    static gboolean handleIoctl(UMockdevIoctlBase * /*base*/, UMockdevIoctlClient *client, gpointer kernel)
    {
        static_cast<Kernel *>(kernel)->answer(client);
        return TRUE;
    }

    static gboolean handleRead(UMockdevIoctlBase * /*base*/, UMockdevIoctlClient *client, gpointer data)
    {
        auto *kernel = static_cast<Kernel *>(data);
        const std::lock_guard lock(kernel->m_mutex);
        if (kernel->m_hasVanished) {
            umockdev_ioctl_client_complete(client, -1, ENODEV);
        }
        return kernel->m_hasVanished ? TRUE : FALSE;
    }

    void answer(UMockdevIoctlClient *client)
    {
        const std::lock_guard lock(m_mutex);
        const unsigned long request = umockdev_ioctl_client_get_request(client);
        if (request == EVIOCGRAB) {
            m_isGrabbed = true;
            umockdev_ioctl_client_complete(client, 0, 0);
        } else if (isAskedForText(request)) {
            umockdev_ioctl_client_complete(client, -1, ENOENT);
        } else {
            complete(client, request);
        }
    }

    // Keyboards without a name of their own have no such text; libevdev does without.
    static bool isAskedForText(unsigned long request)
    {
        return _IOC_NR(request) == _IOC_NR(EVIOCGPHYS(0)) || _IOC_NR(request) == _IOC_NR(EVIOCGUNIQ(0));
    }

    static QByteArray eventTypes()
    {
        constexpr char types = (1 << EV_SYN) | (1 << EV_KEY);
        return {1, types};
    }

    QByteArray content(unsigned long request) const
    {
        switch (_IOC_NR(request)) {
        case _IOC_NR(EVIOCGBIT(0, 0)):
            return eventTypes();
        case _IOC_NR(EVIOCGBIT(EV_KEY, 0)):
            return keyBytes(ordinaryKeys());
        case _IOC_NR(EVIOCGKEY(0)):
            return keyBytes(m_held);
        default:
            return {};
        }
    }

    void complete(UMockdevIoctlClient *client, unsigned long request) const
    {
        const size_t size = _IOC_SIZE(request);
        UMockdevIoctlData *buffer =
            umockdev_ioctl_data_resolve(umockdev_ioctl_client_get_arg(client), 0, size, nullptr);
        const QByteArray data = content(request);
        std::memset(buffer->data, 0, size);
        std::memcpy(buffer->data, data.constData(), std::min(size, static_cast<size_t>(data.size())));
        g_object_unref(buffer);
        umockdev_ioctl_client_complete(client, static_cast<glong>(size), 0);
    }

    UMockdevTestbed *m_testbed;
    const QByteArray m_device;
    UMockdevIoctlBase *m_handler;
    std::mutex m_mutex;
    KeyBits m_held;
    bool m_hasVanished = false;
    bool m_isGrabbed = false;
};

namespace {

void addToTestbed(UMockdevTestbed *testbed, const QByteArray &device)
{
    const QByteArray name = device.mid(static_cast<int>(std::strlen("/dev/input/")));
    const QByteArray description =
        "P: /devices/" + name + "\nN: input/" + name + "\nE: DEVNAME=" + device + "\nE: SUBSYSTEM=input\n";
    if (umockdev_testbed_add_from_string(testbed, description.constData(), nullptr) == 0) {
        qFatal("cannot add %s", device.constData());
    }
}

} // namespace

MockKeyboard::MockKeyboard(const MockDevices &devices, const QString &path)
{
    const QByteArray device = path.toLocal8Bit();
    addToTestbed(devices.testbed(), device);
    m_kernel = std::make_unique<Kernel>(devices.testbed(), device);
    m_events = umockdev_testbed_get_dev_fd(devices.testbed(), device.constData());
}

MockKeyboard::~MockKeyboard() = default;

void MockKeyboard::press(int key)
{
    m_kernel->setHeld(key, true);
    sendKey(key, 1);
}

void MockKeyboard::repeat(int key) const
{
    sendKey(key, 2);
}

void MockKeyboard::release(int key)
{
    m_kernel->setHeld(key, false);
    sendKey(key, 0);
}

void MockKeyboard::pressUnseen(int key)
{
    m_kernel->setHeld(key, true);
}

void MockKeyboard::releaseUnseen(int key)
{
    m_kernel->setHeld(key, false);
}

void MockKeyboard::overrun() const
{
    send(EV_SYN, SYN_DROPPED, 0);
    send(EV_SYN, SYN_REPORT, 0);
}

void MockKeyboard::vanish()
{
    m_kernel->vanish();
    send(EV_SYN, SYN_REPORT, 0); // makes the device readable, as the kernel does
}

// The descriptor stays taken, since the mocked /dev closes it in the end.
void MockKeyboard::hangUp() const
{
    const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(nowhere, m_events);
    close(nowhere);
}

bool MockKeyboard::isGrabbed() const
{
    return m_kernel->isGrabbed();
}

void MockKeyboard::sendKey(int key, int value) const
{
    send(EV_KEY, key, value);
    send(EV_SYN, SYN_REPORT, 0);
}

void MockKeyboard::send(int type, int code, int value) const
{
    input_event event = {};
    event.type = static_cast<__u16>(type);
    event.code = static_cast<__u16>(code);
    event.value = value;
    if (write(m_events, &event, sizeof event) != sizeof event) {
        qFatal("cannot send an event");
    }
}
