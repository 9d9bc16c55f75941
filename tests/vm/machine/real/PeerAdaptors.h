#pragma once

#include "DevicePeers.h"

#include <QDBusAbstractAdaptor>

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
