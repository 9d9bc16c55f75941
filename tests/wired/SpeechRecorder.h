#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>
#include <QVector>

/// The device's speech service: records what it is asked to say.
class SpeechRecorder : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.tactora.Speech")
public:
    /// `connection` becomes the owner of the speech service's bus name.
    explicit SpeechRecorder(QDBusConnection connection);

    /// The requests so far, in order.
    QVector<QVariantMap> requests() const { return m_requests; }
    /// How often that sentence has been asked for so far.
    int count(int sentenceId) const;
    void clear() { m_requests.clear(); }
    /// Runs the event loop until that sentence has been asked for `times` times.
    bool waitFor(int sentenceId, int times = 1) const;
    /// Takes the bus name or gives it up.
    void setPresent(bool present);

signals:
    void spoke(const QVariantMap &request);

public slots:
    Q_SCRIPTABLE Q_NOREPLY void speakFromId(const QString &id, const QVariantMap &request);

private:
    QDBusConnection m_connection;
    QVector<QVariantMap> m_requests;
};
