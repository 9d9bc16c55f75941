#include "FakeKeyboard.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/input.h>
#include <QDebug>
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

// umockdev asks the handler by a virtual method, not by a signal: a handler is a GObject class.
struct IoctlHandler
{
    UMockdevIoctlBase parent;
    bool (*callback)(void *context, UMockdevIoctlClient *client);
    void *context;
};

gboolean handleIoctl(UMockdevIoctlBase *base, UMockdevIoctlClient *client)
{
    const auto *handler = reinterpret_cast<IoctlHandler *>(base);
    return handler->callback(handler->context, client) ? TRUE : FALSE;
}

void initHandlerClass(void *handlerClass, void *)
{
    static_cast<UMockdevIoctlBaseClass *>(handlerClass)->handle_ioctl = handleIoctl;
}

GType handlerType()
{
    static const GType type = g_type_register_static_simple(
        umockdev_ioctl_base_get_type(), "FakeKeyboardIoctls", sizeof(UMockdevIoctlBaseClass),
        initHandlerClass, sizeof(IoctlHandler), nullptr, GTypeFlags(0));
    return type;
}
} // namespace

FakeKeyboard::FakeKeyboard(UMockdevTestbed *testbed, const QString &node)
    : m_testbed(testbed)
    , m_path(QByteArrayLiteral("/dev/input/") + node.toUtf8())
    , m_ioctls(static_cast<UMockdevIoctlBase *>(g_object_new(handlerType(), nullptr)))
{
    auto *handler = reinterpret_cast<IoctlHandler *>(m_ioctls);
    handler->context = this;
    handler->callback = [](void *keyboard, UMockdevIoctlClient *client) {
        return static_cast<FakeKeyboard *>(keyboard)->answer(client);
    };
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

void FakeKeyboard::report(int key, bool down)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto byte = static_cast<std::size_t>(key / 8);
        const auto bit = static_cast<unsigned char>(1U << (key % 8));
        m_held.at(byte) = static_cast<unsigned char>(down ? m_held.at(byte) | bit : m_held.at(byte) & ~bit);
    }
    write(EV_KEY, key, down ? 1 : 0);
    write(EV_SYN, SYN_REPORT, 0);
}

void FakeKeyboard::unplug()
{
    close(m_fd);
    m_fd = -1;
}

void FakeKeyboard::write(int type, int code, int value)
{
    input_event event{};
    event.type = static_cast<unsigned short>(type);
    event.code = static_cast<unsigned short>(code);
    event.value = value;
    if (::write(m_fd, &event, sizeof(event)) != sizeof(event)) {
        qCritical() << "Fake keyboard:" << m_path << std::strerror(errno);
    }
}

FakeKeyboard::KeyBits FakeKeyboard::heldKeys()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_held;
}

bool FakeKeyboard::answer(UMockdevIoctlClient *client)
{
    const auto request = static_cast<unsigned>(umockdev_ioctl_client_get_request(client));
    const unsigned number = _IOC_NR(request);
    if (_IOC_TYPE(request) != 'E') {
        return false;
    }
    if (number == _IOC_NR(EVIOCGVERSION)) {
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
    return true;
}

} // namespace test_support
