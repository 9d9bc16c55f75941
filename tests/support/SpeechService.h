#pragma once

#include "SpeechRecord.h"
#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

namespace test_support {

/// The device's speech service: puts what it is asked to say on record.
class SpeechService : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.tactora.Speech")
public:
    /// `connection` becomes the owner of the speech service's bus name; `record` outlives the service.
    SpeechService(QDBusConnection connection, SpeechRecord &record);

    /// Takes the bus name or gives it up.
    void setPresent(bool present);

public slots:
    Q_SCRIPTABLE Q_NOREPLY void speakFromId(const QString &id, const QVariantMap &request);

private:
    QDBusConnection m_connection;
    SpeechRecord &m_record;
};

} // namespace test_support
