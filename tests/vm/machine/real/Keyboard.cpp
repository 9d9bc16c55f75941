#include "Keyboard.h"
#include "Text.h"

#include <fcntl.h>
#include <linux/input.h>
#include <QFile>
#include <unistd.h>

namespace {

/// A link that a rule of the machine makes.
const QString keyboardPath = "/dev/input/keyboard"_s;

} // namespace

/// The machine's own keyboard: what is written to its node, the kernel takes for what its keys do.
class Keyboard::Node
{
public:
    Node() = default;
    ~Node();
    Q_DISABLE_COPY_MOVE(Node)

    bool open();
    void send(int key, int value) const;

private:
    int m_node = -1;
};

Keyboard::Keyboard()
    : m_node(std::make_unique<Node>())
{
}

Keyboard::~Keyboard() = default;

bool Keyboard::plugIn()
{
    return m_node->open();
}

QString Keyboard::device() const
{
    return keyboardPath;
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
    if (m_node >= 0) {
        close(m_node);
    }
}

bool Keyboard::Node::open()
{
    m_node = ::open(QFile::encodeName(keyboardPath).constData(), O_WRONLY | O_CLOEXEC);
    return m_node >= 0;
}

void Keyboard::Node::send(int key, int value) const
{
    input_event events[2] = {};
    events[0].type = EV_KEY;
    events[0].code = static_cast<__u16>(key);
    events[0].value = value;
    events[1].type = EV_SYN;
    events[1].code = SYN_REPORT;
    if (write(m_node, events, sizeof events) != static_cast<ssize_t>(sizeof events)) {
        qWarning("the kernel took no key event");
    }
}
