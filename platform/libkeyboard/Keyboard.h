#pragma once

#include <memory>
#include <QObject>
#include <QString>

class QSocketNotifier;

namespace libkeyboard {

class EvdevDevice;

/// The keys of one evdev device. The device is not grabbed: others may read it too. Every signal is emitted
/// from the event loop.
class Keyboard : public QObject
{
    Q_OBJECT

public:
    /// A key by its evdev code (KEY_* of linux/input-event-codes.h, which is the list of the names).
    enum class Key : int {};
    Q_ENUM(Key)

    explicit Keyboard(QString device = {}, QObject *parent = nullptr);
    ~Keyboard() override;

    /// The path that the next open() opens; an open device stays as it is.
    void setDevice(const QString &device);

    /// True when the device is open, also when it was already. A failure is told by error() too.
    bool open();
    bool isOpen() const;
    void close();

signals:
    /// A key went down. While it is held it is not repeated.
    void keyDown(libkeyboard::Keyboard::Key key);
    void keyUp(libkeyboard::Keyboard::Key key);
    /// The device could not be opened, or it vanished while it was open and is now closed. The message is the
    /// device's path and the system's reason; it is a critical line of the category "libkeyboard" too.
    void error(const QString &message);

private:
    void readKeys();
    void postError(const QString &path, int reason);

    QString m_path;
    QString m_openPath;
    std::shared_ptr<EvdevDevice> m_device;
    QSocketNotifier *m_notifier = nullptr;
};

} // namespace libkeyboard
