#include "ConnmanAgentDBus.h"

#include "ConnmanAgent.h"

#include <QDBusConnection>
#include <QDebug>

ConnmanAgentDBus::ConnmanAgentDBus(ConnmanAgent *agent)
    : QDBusAbstractAdaptor(agent)
    , m_agent(agent)
    , m_path(QStringLiteral("/agent"))
{
    setAutoRelaySignals(true);

    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) {
        qCritical() << "Unable to connect to system-bus.";
        return;
    }
    if (!bus.registerObject(m_path.path(), agent, QDBusConnection::ExportAdaptors)) {
        qCritical() << "Unable to register object on system-bus.";
    }
}

void ConnmanAgentDBus::Release()
{
    m_agent->release();
}

void ConnmanAgentDBus::ReportError(const QDBusObjectPath &service, const QString &error)
{
    m_agent->reportError(service, error);
}

void ConnmanAgentDBus::ReportPeerError(const QDBusObjectPath &peer, const QString &error)
{
    m_agent->reportPeerError(peer, error);
}

void ConnmanAgentDBus::RequestBrowser(const QDBusObjectPath &service, const QString &url)
{
    m_agent->requestBrowser(service, url);
}

QVariantMap ConnmanAgentDBus::RequestInput(const QDBusObjectPath &service, const QVariantMap &fields)
{
    return m_agent->requestInput(service, fields);
}

QVariantMap ConnmanAgentDBus::RequestPeerAuthorization(const QDBusObjectPath &peer, const QVariantMap &fields)
{
    return m_agent->requestPeerAuthorization(peer, fields);
}

void ConnmanAgentDBus::Cancel()
{
    m_agent->cancel();
}
