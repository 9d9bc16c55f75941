#include "ConnmanAgent.h"

#include "ConnmanNames.h"
#include "Latin1.h"
#include "Utils.h"

#include <QDBusObjectPath>
#include <QLoggingCategory>

#include <algorithm>

Q_LOGGING_CATEGORY(logConnmanAgent, "ConnmanAgent", QtCriticalMsg)

namespace {

constexpr QLatin1String Type = latin1("Type");

constexpr QLatin1String Passphrase = latin1("Passphrase");
constexpr QLatin1String PassphraseOfPsk = latin1("psk");
constexpr QLatin1String PlainText = latin1("string");

constexpr QLatin1String WrongType = latin1("Invalid value of type key ");
/// Spelt so on purpose.
constexpr QLatin1String WrongTypeOfWps = latin1("Invalid value of type-key ");

/// The request without what must not be logged: after a failed attempt ConnMan shows the passphrase it tried.
QVariantMap withoutSecrets(const QVariantMap &fields)
{
    const QString value = QStringLiteral("Value");
    QVariantMap shown = fields;
    for (QVariant &field : shown) {
        if (field.type() != QVariant::Map) {
            continue;
        }
        QVariantMap attributes = field.toMap();
        if (attributes.contains(value)) {
            attributes.insert(value, QStringLiteral("***"));
            field = attributes;
        }
    }
    return shown;
}

QVariantMap logged(const QVariantMap &reply)
{
    qCDebug(logConnmanAgent) << "Reply:" << reply;
    return reply;
}

} // namespace

/// One field that ConnMan may ask for, the "Type" it must have, and the value that answers it.
struct ConnmanAgent::Field
{
    QLatin1String name;
    QLatin1String type;
    QString ConnmanAgent::*value = nullptr;
};

/// The fields of one kind of request. The first must be asked for; the second, where there is one, is checked
/// only when it is asked for and answered in any case.
struct ConnmanAgent::Request
{
    Field required;
    Field optional;
    /// How the complaint about a wrong "Type" begins.
    QLatin1String wrongTypeText;

    bool hasOptional() const { return optional.value != nullptr; }
};

const ConnmanAgent::Request ConnmanAgent::PskRequest{
    {Passphrase, PassphraseOfPsk, &ConnmanAgent::m_secondValue},
    {QLatin1String(), QLatin1String(), nullptr},
    WrongType,
};

const ConnmanAgent::Request ConnmanAgent::HiddenRequest{
    {QLatin1String("Name"), PlainText, &ConnmanAgent::m_firstValue},
    {Passphrase, PassphraseOfPsk, &ConnmanAgent::m_secondValue},
    WrongType,
};

const ConnmanAgent::Request ConnmanAgent::Wpa2EnterpriseRequest{
    {QLatin1String("Identity"), PlainText, &ConnmanAgent::m_firstValue},
    {Passphrase, QLatin1String("passphrase"), &ConnmanAgent::m_secondValue},
    WrongType,
};

const ConnmanAgent::Request ConnmanAgent::WpsRequest{
    {QLatin1String("WPS"), QLatin1String("wpspin"), &ConnmanAgent::m_secondValue},
    {QLatin1String(), QLatin1String(), nullptr},
    WrongTypeOfWps,
};

ConnmanAgent::ConnmanAgent(QObject *parent)
    : QObject(parent)
{
}

void ConnmanAgent::setRequest(const QString &networkIdentifier, const QString &secret, RequestType type,
                              const QString &extraName)
{
    m_networkIdentifier = networkIdentifier;
    m_secondValue = secret;
    m_requestType = type;
    m_firstValue = extraName;
    m_prepared = true;
}

void ConnmanAgent::release()
{
    if (calledFromDBus()) {
        qCDebug(logConnmanAgent) << "Release()";
    }
}

void ConnmanAgent::cancel()
{
    if (calledFromDBus()) {
        qCDebug(logConnmanAgent) << "Cancel()";
    }
}

void ConnmanAgent::reportError(const QDBusObjectPath &service, const QString &error)
{
    if (!calledFromDBus()) {
        return;
    }
    if (error == ConnmanNames::ConnectFailed) {
        emit connectFailed();
    }
    qCCritical(logConnmanAgent) << "Error:" << error << "on service" << service.path();
    m_lastError = error;
}

void ConnmanAgent::reportPeerError(const QDBusObjectPath &peer, const QString &error)
{
    if (calledFromDBus()) {
        qCCritical(logConnmanAgent) << "Service:" << peer.path() << "Error:" << error;
    }
}

void ConnmanAgent::requestBrowser(const QDBusObjectPath &service, const QString &url)
{
    if (!calledFromDBus()) {
        return;
    }
    qCCritical(logConnmanAgent) << "Service:" << service.path() << "Url:" << url;
    refuse(QStringLiteral("Unsupported browser-request."));
}

QVariantMap ConnmanAgent::requestPeerAuthorization(const QDBusObjectPath &peer, const QVariantMap &fields)
{
    if (!calledFromDBus()) {
        return {};
    }
    qCDebug(logConnmanAgent) << "Service:" << peer.path() << "Request:" << fields;
    qCCritical(logConnmanAgent) << "Unsupported peer-request type.";
    refuse(QStringLiteral("Unsupported peer-request type."));
    return {};
}

QVariantMap ConnmanAgent::requestInput(const QDBusObjectPath &service, const QVariantMap &fields)
{
    if (!calledFromDBus()) {
        return {};
    }
    QVariantMap unpacked = fields;
    for (QVariant &value : unpacked) {
        if (const auto attributes = Utils::rawDictionary(value)) {
            value = *attributes;
        }
    }
    qCDebug(logConnmanAgent) << "Service:" << service.path();
    qCDebug(logConnmanAgent) << "Request:" << unpacked;

    switch (m_requestType) {
    case RequestType::Psk:
        return logged(requestInputPsk(unpacked));
    case RequestType::Hidden:
        return logged(requestInputHidden(unpacked));
    case RequestType::Wpa2Enterprise:
        return logged(requestInputWpa2Enterprise(unpacked));
    case RequestType::Wps:
        return logged(requestInputWps(unpacked));
    case RequestType::None:
        qCWarning(logConnmanAgent) << "No request-type was setup before input was requested.";
        refuse(QStringLiteral("No request-type setup."), QDBusError::Failed);
        return {};
    }
    qCCritical(logConnmanAgent) << "Unsupported request-type." << static_cast<int>(m_requestType);
    refuse(QStringLiteral("Unsupported request-type."));
    return {};
}

QVariantMap ConnmanAgent::requestInputPsk(const QVariantMap &fields)
{
    return answer(PskRequest, fields);
}

QVariantMap ConnmanAgent::requestInputHidden(const QVariantMap &fields)
{
    return answer(HiddenRequest, fields);
}

QVariantMap ConnmanAgent::requestInputWpa2Enterprise(const QVariantMap &fields)
{
    return answer(Wpa2EnterpriseRequest, fields);
}

QVariantMap ConnmanAgent::requestInputWps(const QVariantMap &fields)
{
    return answer(WpsRequest, fields);
}

QVariantMap ConnmanAgent::answer(const Request &request, const QVariantMap &fields)
{
    if (!fields.contains(request.required.name)) {
        qCCritical(logConnmanAgent) << "Unexpected request-type receieved:" << withoutSecrets(fields);
        refuse(QStringLiteral("Unexpected request-type."));
        return {};
    }
    if (!checkField(request, request.required, fields.value(request.required.name))) {
        return {};
    }
    QVariantMap reply{{request.required.name, this->*request.required.value}};

    if (request.hasOptional()) {
        const auto asked = fields.constFind(request.optional.name);
        if (asked != fields.cend() && !checkField(request, request.optional, *asked)) {
            return {};
        }
        reply.insert(request.optional.name, this->*request.optional.value);
    }
    return reply;
}

bool ConnmanAgent::checkField(const Request &request, const Field &field, const QVariant &attributes)
{
    if (attributes.type() != QVariant::Map) {
        return refuse(QStringLiteral("Invalid type of key \"%1\" in request.").arg(field.name));
    }

    const QVariantMap attributeMap = attributes.toMap();
    const auto type = attributeMap.constFind(Type);
    if (type == attributeMap.cend()) {
        return refuse(QStringLiteral("Missing key \"%1\"in request.").arg(Type));
    }
    if (!type->canConvert<QString>()) {
        return refuse(QStringLiteral("Invalid type of key \"%1\" in request.").arg(Type));
    }

    const QString received = type->toString();
    if (received != field.type) {
        return refuse(request.wrongTypeText + QLatin1Char('"') + Type +
                      QLatin1String("\" in request, expected: \"") + field.type + QLatin1String("\" got \"") +
                      received + QLatin1String("\"."));
    }
    return true;
}

bool ConnmanAgent::refuse(const QString &message, QDBusError::ErrorType type)
{
    sendErrorReply(type, message);
    return false;
}
