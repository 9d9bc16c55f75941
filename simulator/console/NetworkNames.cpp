#include "NetworkNames.h"

#include "SimulatorClient.h"

NetworkNames::NetworkNames(test_support::SimulatorClient &simulator)
    : m_simulator(simulator)
{
}

NetworkNames::Result NetworkNames::find(const QString &text) const
{
    if (text.startsWith(QLatin1Char('='))) {
        return {text.mid(1), {}};
    }
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (isNumber && number >= 1 && number <= m_listed.size()) {
        return {m_listed.at(number - 1), {}};
    }
    QStringList candidates = named(text);
    if (candidates.isEmpty()) {
        candidates = startingWith(text);
    }
    if (candidates.isEmpty()) {
        return {{}, QStringLiteral("There is no network \"%1\"; \"list\" tells which there are.").arg(text)};
    }
    if (candidates.size() > 1) {
        const QString all = candidates.join(QStringLiteral("\n  "));
        return {{}, QStringLiteral("\"%1\" may be one of several:\n  %2").arg(text, all)};
    }
    return {candidates.first(), {}};
}

QStringList NetworkNames::startingWith(const QString &text) const
{
    const QStringList all = m_simulator.services();
    if (all.contains(text)) {
        return {text};
    }
    QStringList matches;
    for (const QString &identifier : all) {
        if (identifier.startsWith(text)) {
            matches << identifier;
        }
    }
    return matches;
}

QStringList NetworkNames::named(const QString &name) const
{
    QStringList matches;
    const QStringList all = m_simulator.services();
    for (const QString &identifier : all) {
        if (m_simulator.serviceProperties(identifier).value(QStringLiteral("Name")).toString() == name) {
            matches << identifier;
        }
    }
    return matches;
}
