#include "Keyboard.h"

#include "EvdevDevice.h"
#include <QLoggingCategory>
#include <QSocketNotifier>
#include <utility>

namespace libkeyboard {

namespace {

Q_LOGGING_CATEGORY(logKeyboard, "libkeyboard", QtCriticalMsg)

} // namespace

Keyboard::Keyboard(QString device, QObject *parent)
    : QObject(parent)
    , m_path(std::move(device))
{
    qRegisterMetaType<Key>();
}

Keyboard::~Keyboard() = default;

void Keyboard::setDevice(const QString &device)
{
    m_path = device;
}

bool Keyboard::open()
{
    if (isOpen()) {
        return true;
    }
    auto device = std::make_shared<EvdevDevice>();
    if (const int reason = device->open(m_path); reason != 0) {
        postError(m_path, reason);
        return false;
    }
    m_device = std::move(device);
    m_openPath = m_path;
    m_notifier = new QSocketNotifier(m_device->fileDescriptor(), QSocketNotifier::Read, this);
    QObject::connect(m_notifier, &QSocketNotifier::activated, this, &Keyboard::readKeys);
    return true;
}

bool Keyboard::isOpen() const
{
    return m_device != nullptr;
}

// The notifier may be in the middle of telling that there is something to read.
void Keyboard::close()
{
    if (!isOpen()) {
        return;
    }
    m_notifier->setEnabled(false);
    m_notifier->deleteLater();
    m_notifier = nullptr;
    m_device.reset();
}

// Whoever is told of a key may close the keyboard, or close it and open another device.
void Keyboard::readKeys()
{
    const std::shared_ptr<EvdevDevice> device = m_device;
    while (m_device == device) {
        const std::optional<EvdevDevice::KeyChange> change = device->nextKeyChange();
        if (!change) {
            break;
        }
        const Key key{change->code};
        if (change->isPressed) {
            emit keyDown(key);
        } else {
            emit keyUp(key);
        }
    }
    if (m_device == device && device->failure() != 0) {
        close();
        postError(m_openPath, device->failure());
    }
}

void Keyboard::postError(const QString &path, int reason)
{
    const QString message = path + QStringLiteral(": ") + qt_error_string(reason);
    qCCritical(logKeyboard) << "Keyboard error:" << message;
    QMetaObject::invokeMethod(
        this, [this, message] { emit error(message); }, Qt::QueuedConnection);
}

} // namespace libkeyboard
