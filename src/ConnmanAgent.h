#pragma once

#include <QDBusContext>
#include <QDBusError>
#include <QObject>
#include <QVariantMap>

class QDBusObjectPath;

/// Answers ConnMan's credential requests (net.connman.Agent) from the one set of credentials that a
/// registering operation put here before it asked ConnMan to connect.
///
/// Every handler does nothing when it was not called over D-Bus. A request for anything but the prepared
/// fields is refused with a D-Bus error; ConnMan then fails the connection attempt.
class ConnmanAgent : public QObject, protected QDBusContext
{
    Q_OBJECT

public:
    /// What kind of credentials are prepared, and so what ConnMan may ask for.
    enum class RequestType : int {
        None = 0,
        Psk = 1,
        Hidden = 2,
        Wpa2Enterprise = 3,
        Wps = 4,
    };
    Q_ENUM(RequestType)

    explicit ConnmanAgent(QObject *parent);

    /// Prepares the answer to the next requests. `secret` is the passphrase or the WPS PIN, `extraName` the
    /// hidden network's name or the enterprise identity. Empty texts and RequestType::None clear it.
    void setRequest(const QString &networkIdentifier, const QString &secret, RequestType type,
                    const QString &extraName);
    /// ConnMan's word for what went wrong, from the last ReportError: "invalid-key", "connect-failed",
    /// "out-of-range", "pin-missing", "dhcp-failed", "login-failed", "auth-failed" and the like.
    QString lastError() const { return m_lastError; }

    void release();
    void cancel();
    void reportError(const QDBusObjectPath &service, const QString &error);
    void reportPeerError(const QDBusObjectPath &peer, const QString &error);
    void requestBrowser(const QDBusObjectPath &service, const QString &url);
    QVariantMap requestInput(const QDBusObjectPath &service, const QVariantMap &fields);
    QVariantMap requestPeerAuthorization(const QDBusObjectPath &peer, const QVariantMap &fields);

signals:
    /// ConnMan reported "connect-failed".
    void connectFailed();

private:
    struct Field;
    struct Request;
    static const Request PskRequest;
    static const Request HiddenRequest;
    static const Request Wpa2EnterpriseRequest;
    static const Request WpsRequest;

    QVariantMap requestInputPsk(const QVariantMap &fields);
    QVariantMap requestInputHidden(const QVariantMap &fields);
    QVariantMap requestInputWpa2Enterprise(const QVariantMap &fields);
    QVariantMap requestInputWps(const QVariantMap &fields);

    QVariantMap answer(const Request &request, const QVariantMap &fields);
    bool checkField(const Request &request, const Field &field, const QVariant &attributes);
    bool refuse(const QString &message, QDBusError::ErrorType type = QDBusError::InvalidArgs);

    RequestType m_requestType = RequestType::None;
    QString m_firstValue;
    QString m_secondValue;
    QString m_lastError;
    QString m_networkIdentifier;
    bool m_prepared = false;
};
