#pragma once

#include <QDBusAbstractAdaptor>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

/// The device's other programs that the daemon calls: a speech service that remembers what it was told to
/// say, and a configuration manager that knows the serial number.
class DevicePeers : public QObject
{
    Q_OBJECT
public:
    static constexpr int serialNumber = 4711;

    DevicePeers();
    /// Takes both names on the system bus.
    bool appear();

    /// The sentences since the last `forgetSentences()`, in order, as "number" or "number: argument
    /// argument".
    QStringList spoken() const { return m_spoken; }
    bool hasSpoken(const QString &sentence) const { return m_spoken.contains(sentence); }
    void forgetSentences() { m_spoken.clear(); }

    void remember(const QVariantMap &request);

private:
    QStringList m_spoken;
};

class SpeechAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.tactora.Speech")
public:
    explicit SpeechAdaptor(DevicePeers *peers)
        : QDBusAbstractAdaptor(peers)
        , m_peers(peers)
    {
    }
public slots:
    void speakFromId(const QString &id, const QVariantMap &request);

private:
    DevicePeers *m_peers;
};

class ConfigurationAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.tactora.ConfigurationManager")
public:
    explicit ConfigurationAdaptor(QObject *parent)
        : QDBusAbstractAdaptor(parent)
    {
    }
public slots:
    QVariantMap process(const QVariantMap &request);
};
