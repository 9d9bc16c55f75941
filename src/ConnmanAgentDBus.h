#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QVariantMap>

class ConnmanAgent;

/// Exports the agent on the system bus as net.connman.Agent at "/agent". Where the bus or the object is
/// refused, one critical line says so and ConnMan cannot reach the agent.
class ConnmanAgentDBus : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "net.connman.Agent")

public:
    explicit ConnmanAgentDBus(ConnmanAgent *agent);

    QDBusObjectPath path() const { return m_path; }

public slots:
    void Release();
    void ReportError(const QDBusObjectPath &service, const QString &error);
    void ReportPeerError(const QDBusObjectPath &peer, const QString &error);
    void RequestBrowser(const QDBusObjectPath &service, const QString &url);
    QVariantMap RequestInput(const QDBusObjectPath &service, const QVariantMap &fields);
    QVariantMap RequestPeerAuthorization(const QDBusObjectPath &peer, const QVariantMap &fields);
    void Cancel();

private:
    ConnmanAgent *m_agent;
    QDBusObjectPath m_path;
};
