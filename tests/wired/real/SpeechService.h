#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

/// The device's speech service: tells what it is asked to say.
class SpeechService : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.tactora.Speech")
public:
    /// `connection` becomes the owner of the speech service's bus name.
    explicit SpeechService(QDBusConnection connection);

    /// Takes the bus name or gives it up.
    void setPresent(bool present);

signals:
    void spoke(const QVariantMap &request);

public slots:
    Q_SCRIPTABLE Q_NOREPLY void speakFromId(const QString &id, const QVariantMap &request);

private:
    QDBusConnection m_connection;
};
