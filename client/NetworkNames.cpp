#include "NetworkNames.h"

#include <QRegularExpression>

namespace {

QString nameIn(const QVariant &properties)
{
    return properties.toMap().value(QStringLiteral("Name")).toString();
}

bool isWholeIdentifier(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("^(wifi_[0-9a-f]+_[0-9a-z]+_managed_[0-9a-z]+|ethernet_[0-9a-f]+_cable)$"));
    return form.match(text).hasMatch();
}

} // namespace

QString networkHelp()
{
    return QStringLiteral(
        "A NETWORK is told by its name, by its number in the last list, by its identifier or a part "
        "of that, or by \"=\" and what the daemon is to be given. Put quotes around words with blanks.");
}

NetworkNames::Result NetworkNames::find(const QString &text) const
{
    const QString identifier = told(text);
    if (!identifier.isNull()) {
        return {identifier, {}};
    }
    QStringList candidates = named(text);
    bool isNumber = false;
    text.toInt(&isNumber);
    if (candidates.isEmpty() && !isNumber) { // every identifier has some number in it
        candidates = identified(text);
    }
    if (candidates.isEmpty()) {
        return {{}, QStringLiteral("There is no network \"%1\"; \"list\" tells which there are.").arg(text)};
    }
    if (candidates.size() > 1) {
        QString problem = QStringLiteral("\"%1\" may be one of several; give the identifier:").arg(text);
        for (const QString &candidate : qAsConst(candidates)) {
            problem += QStringLiteral("\n  ") + described(candidate);
        }
        return {{}, problem};
    }
    return {candidates.first(), {}};
}

bool NetworkNames::tells(const QString &text) const
{
    return !told(text).isNull();
}

QStringList NetworkNames::names() const
{
    QStringList names;
    for (auto network = m_networks.cbegin(); network != m_networks.cend(); ++network) {
        const QString name = nameIn(network.value());
        names << (named(name).size() == 1 && !name.isEmpty() ? name : network.key());
    }
    return names;
}

QString NetworkNames::nameOf(const QString &identifier) const
{
    const QString name = nameIn(m_networks.value(identifier));
    return name.isEmpty() ? identifier : name;
}

QString NetworkNames::told(const QString &text) const
{
    if (text.startsWith(QLatin1Char('='))) {
        return text.size() > 1 ? text.mid(1) : QString(QLatin1String("")); // empty, but told
    }
    if (isWholeIdentifier(text)) {
        return text;
    }
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber && number >= 1 ? m_listed.value(number - 1) : QString();
}

QStringList NetworkNames::named(const QString &name) const
{
    QStringList matches;
    for (auto network = m_networks.cbegin(); network != m_networks.cend(); ++network) {
        if (nameIn(network.value()) == name) {
            matches << network.key();
        }
    }
    return matches;
}

QStringList NetworkNames::identified(const QString &text) const
{
    return m_networks.contains(text) ? QStringList{text} : m_networks.keys().filter(text);
}

QString NetworkNames::described(const QString &identifier) const
{
    const QString name = nameIn(m_networks.value(identifier));
    return name.isEmpty() ? identifier : QStringLiteral("%1, %2").arg(name, identifier);
}
