#include "Keyboard.h"

#include "Eventually.h"

#include <cstring>
#include <fcntl.h>
#include <linux/uinput.h>
#include <QDir>
#include <QFile>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

/// The keys a device of this kind has: enough for the chord and for keys that mean nothing to the daemon.
constexpr int lastKey = 64;
constexpr int wifiLed = LED_CAPSL;
constexpr int ethernetLed = LED_NUML;
const QString ledDirectory = QStringLiteral("/sys/class/leds/");

/// The directory below `parent` whose name matches, once it is there.
QString eventualEntry(const QString &parent, const QString &pattern)
{
    QString found;
    eventually([&] {
        const QStringList entries = QDir(parent).entryList({pattern}, QDir::Dirs);
        found = entries.value(0);
        return !found.isEmpty();
    });
    return found;
}

QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

} // namespace

/// A keyboard that exists as far as the kernel is concerned, with two real LEDs.
class Keyboard::Node
{
public:
    Node() = default;
    ~Node();
    Q_DISABLE_COPY_MOVE(Node)

    bool create();
    QString path() const { return m_path; }
    void send(int key, int value) const;

private:
    bool findNodes();

    int m_uinput = -1;
    QString m_path;
};

Keyboard::Keyboard()
    : m_node(std::make_unique<Node>())
{
}

Keyboard::~Keyboard() = default;

bool Keyboard::plugIn()
{
    return m_node->create();
}

QString Keyboard::device() const
{
    return m_node->path();
}

void Keyboard::press(int key)
{
    m_node->send(key, 1);
}

void Keyboard::release(int key)
{
    m_node->send(key, 0);
}

Keyboard::Node::~Node()
{
    if (m_uinput >= 0) {
        ioctl(m_uinput, UI_DEV_DESTROY);
        close(m_uinput);
    }
}

bool Keyboard::Node::create()
{
    m_uinput = open("/dev/uinput", O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (m_uinput < 0) {
        return false;
    }
    ioctl(m_uinput, UI_SET_EVBIT, EV_KEY);
    ioctl(m_uinput, UI_SET_EVBIT, EV_LED);
    ioctl(m_uinput, UI_SET_LEDBIT, wifiLed);
    ioctl(m_uinput, UI_SET_LEDBIT, ethernetLed);
    for (int key = 1; key <= lastKey; ++key) {
        ioctl(m_uinput, UI_SET_KEYBIT, key);
    }
    uinput_setup setup{};
    setup.id.bustype = BUS_VIRTUAL;
    std::strncpy(setup.name, "Braille keyboard", sizeof setup.name - 1);
    return ioctl(m_uinput, UI_DEV_SETUP, &setup) == 0 && ioctl(m_uinput, UI_DEV_CREATE) == 0 && findNodes();
}

bool Keyboard::Node::findNodes()
{
    char name[64] = {};
    if (ioctl(m_uinput, UI_GET_SYSNAME(sizeof name), name) < 0) {
        return false;
    }
    const QString directory = QStringLiteral("/sys/devices/virtual/input/%1/").arg(QString::fromLatin1(name));
    const QString event = eventualEntry(directory, QStringLiteral("event*"));
    const QString wifi = eventualEntry(directory, QStringLiteral("*::capslock"));
    const QString ethernet = eventualEntry(directory, QStringLiteral("*::numlock"));
    m_path = QStringLiteral("/dev/input/") + event;
    return !event.isEmpty() && !wifi.isEmpty() && !ethernet.isEmpty() &&
           QFile::link(directory + wifi, ledDirectory + QStringLiteral("led8")) &&
           QFile::link(directory + ethernet, ledDirectory + QStringLiteral("led10")) &&
           eventually([this] { return QFile::exists(m_path); });
}

void Keyboard::Node::send(int key, int value) const
{
    input_event events[2] = {};
    events[0].type = EV_KEY;
    events[0].code = static_cast<__u16>(key);
    events[0].value = value;
    events[1].type = EV_SYN;
    events[1].code = SYN_REPORT;
    if (write(m_uinput, events, sizeof events) != static_cast<ssize_t>(sizeof events)) {
        qWarning("the kernel took no key event");
    }
}

QString ledState(const QString &name)
{
    const QString led = ledDirectory + name + QLatin1Char('/');
    if (contentOf(led + QStringLiteral("trigger")).contains(QStringLiteral("[timer]"))) {
        const int period = contentOf(led + QStringLiteral("delay_on")).toInt() +
                           contentOf(led + QStringLiteral("delay_off")).toInt();
        return QStringLiteral("blink %1").arg(period);
    }
    return contentOf(led + QStringLiteral("brightness")).toInt() > 0 ? QStringLiteral("on")
                                                                     : QStringLiteral("off");
}
