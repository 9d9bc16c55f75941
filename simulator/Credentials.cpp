#include "Credentials.h"

#include "ConnmanErrors.h"
#include <algorithm>
#include <QDBusVariant>
#include <QStringList>

namespace simulator {

namespace {
const QString psk = QStringLiteral("psk");
const QString wep = QStringLiteral("wep");
const QString enterprise = QStringLiteral("ieee8021x");
const QString wps = QStringLiteral("wps");
const QString canceled = QStringLiteral("net.connman.Agent.Error.Canceled");

bool isOpen(const Service &service)
{
    return service.hasSecurity(QStringLiteral("none"));
}

QString passphraseType(const Service &service)
{
    if (service.hasSecurity(wep)) {
        return wep;
    }
    if (service.hasSecurity(psk)) {
        return psk;
    }
    return service.hasSecurity(enterprise) ? QStringLiteral("passphrase") : QStringLiteral("string");
}

class Field
{
public:
    Field(const QString &type, const QString &requirement)
    {
        m_dict.entries.append({QStringLiteral("Type"), type});
        m_dict.entries.append({QStringLiteral("Requirement"), requirement});
    }
    Field &with(const QString &key, const QVariant &value)
    {
        m_dict.entries.append({key, value});
        return *this;
    }
    QVariant value() const { return QVariant::fromValue(m_dict); }

private:
    PropertyDict m_dict;
};

Field mandatory(const QString &type)
{
    return {type, QStringLiteral("mandatory")};
}

Field alternate(const QString &type)
{
    return {type, QStringLiteral("alternate")};
}

void addHiddenFields(PropertyDict &fields)
{
    fields.entries.append(
        {QStringLiteral("Name"), mandatory(QStringLiteral("string"))
                                     .with(QStringLiteral("Alternates"), QStringList{QStringLiteral("SSID")})
                                     .value()});
    fields.entries.append({QStringLiteral("SSID"), alternate(QStringLiteral("ssid")).value()});
}

void addPassphraseFields(PropertyDict &fields, const Service &service)
{
    Field passphrase = mandatory(passphraseType(service));
    if (service.hasSecurity(wps)) {
        passphrase.with(QStringLiteral("Alternates"), QStringList{QStringLiteral("WPS")});
    }
    fields.entries.append({QStringLiteral("Passphrase"), passphrase.value()});

    const bool triedPin = service.useWps && !service.pin.isEmpty();
    const QString previous = triedPin ? service.pin : service.passphrase;
    if (!previous.isEmpty()) {
        const Field field(triedPin ? QStringLiteral("wpspin") : passphraseType(service),
                          QStringLiteral("informational"));
        fields.entries.append({QStringLiteral("PreviousPassphrase"),
                               Field(field).with(QStringLiteral("Value"), previous).value()});
    }
}

std::optional<QString> stringField(const QVariantMap &answer, const char *key, Credentials &credentials)
{
    const auto found = answer.constFind(QLatin1String(key));
    if (found == answer.cend()) {
        return std::nullopt;
    }
    if (found->userType() != QMetaType::QString) {
        credentials.refusal = error::operationTimeout;
        return std::nullopt;
    }
    return found->toString();
}

bool isHexadecimal(const QString &text)
{
    return std::all_of(text.cbegin(), text.cend(), [](QChar character) {
        return character.isDigit() ||
               (character.toLower() >= QLatin1Char('a') && character.toLower() <= QLatin1Char('f'));
    });
}

Credentials refused(const ErrorReply &error)
{
    Credentials credentials;
    credentials.refusal = error;
    return credentials;
}
} // namespace

PropertyDict requestedFields(const Service &service)
{
    PropertyDict fields;
    if (service.isHidden()) {
        addHiddenFields(fields);
    }
    if (service.hasSecurity(enterprise)) {
        fields.entries.append({QStringLiteral("Identity"), mandatory(QStringLiteral("string")).value()});
    }
    if (!isOpen(service)) {
        addPassphraseFields(fields, service);
    }
    if (service.hasSecurity(wps)) {
        fields.entries.append({QStringLiteral("WPS"), alternate(QStringLiteral("wpspin")).value()});
    }
    return fields;
}

// Whatever an agent's error is, to ConnMan it is a time-out, except that the user said no.
Credentials readAnswer(const AgentReply &reply)
{
    if (reply.isError()) {
        return refused(reply.error.name == canceled ? error::operationAborted : error::operationTimeout);
    }
    if (reply.signature != QLatin1String("a{sv}")) {
        return refused(error::invalidArguments);
    }
    const auto answer = qdbus_cast<QVariantMap>(reply.arguments.first());
    Credentials credentials;
    credentials.identity = stringField(answer, "Identity", credentials);
    credentials.passphrase = stringField(answer, "Passphrase", credentials);
    credentials.wpsPin = stringField(answer, "WPS", credentials);
    credentials.name = stringField(answer, "Name", credentials);
    const QVariant ssid = answer.value(QStringLiteral("SSID"));
    if (ssid.userType() == QMetaType::QByteArray) {
        credentials.name = QString::fromUtf8(ssid.toByteArray());
    }
    return credentials;
}

bool needsCredentials(const Service &service)
{
    if (service.isHidden()) {
        return true;
    }
    if (isOpen(service) || !service.isWifi()) {
        return false;
    }
    if (service.error() == connman::invalidKey) {
        return true;
    }
    // A favourite was connected before, with credentials that ConnMan keeps; not so one that a file has made
    // known.
    if (service.isFavorite() && !service.isImmutable()) {
        return false;
    }
    if (service.hasSecurity(enterprise)) {
        return service.identity.isEmpty() || service.passphrase.isEmpty();
    }
    return service.passphrase.isEmpty() && !service.useWps;
}

bool isUsablePassphrase(const Service &service, const QString &passphrase)
{
    constexpr int rawKeyLength = 64;
    constexpr int shortest = 8;
    if (!service.hasSecurity(psk)) {
        return true;
    }
    const int length = passphrase.toUtf8().size();
    return length == rawKeyLength ? isHexadecimal(passphrase) : length >= shortest && length < rawKeyLength;
}

bool isUsablePin(const QString &pin)
{
    constexpr int pinLength = 8;
    const bool isNumber = std::all_of(pin.cbegin(), pin.cend(), [](QChar digit) {
        return digit >= QLatin1Char('0') && digit <= QLatin1Char('9');
    });
    return pin.isEmpty() || (pin.size() == pinLength && isNumber);
}

} // namespace simulator
