#include "NetworkList.h"

#include <algorithm>
#include <tuple>

namespace {

struct Word
{
    QString connmans;
    QString plain;
};
const QVector<Word> securityWords = {{QStringLiteral("none"), QStringLiteral("open")},
                                     {QStringLiteral("psk"), QStringLiteral("passphrase")},
                                     {QStringLiteral("wep"), QStringLiteral("WEP")},
                                     {QStringLiteral("ieee8021x"), QStringLiteral("enterprise")},
                                     {QStringLiteral("wps"), QStringLiteral("WPS")}};

const QStringList connectedStates = {QStringLiteral("online"), QStringLiteral("ready")};

QString securityText(const QStringList &words)
{
    QStringList texts;
    for (const QString &word : words) {
        const auto known = std::find_if(securityWords.cbegin(), securityWords.cend(),
                                        [&word](const Word &each) { return each.connmans == word; });
        texts << (known == securityWords.cend() ? word : known->plain);
    }
    return texts.join(QStringLiteral(" or "));
}

NetworkEntry entry(const QString &identifier, const QVariantMap &properties)
{
    const auto value = [&properties](const char *key) { return properties.value(QString::fromLatin1(key)); };
    NetworkEntry entry;
    entry.identifier = identifier;
    entry.name = value("Name").toString();
    if (entry.name.isEmpty()) {
        entry.name = QStringLiteral("(no name)");
    }
    entry.state = value("State").toString();
    if (value("Strength").isValid()) {
        entry.signal = QStringLiteral("signal %1").arg(value("Strength").toUInt());
    }
    entry.security = securityText(value("Security").toStringList());
    entry.known = value("Favorite").toBool() ? QStringLiteral("known") : QStringLiteral("new");
    return entry;
}

} // namespace

QVector<NetworkEntry> networkEntries(const QVariantMap &networks)
{
    const auto rank = [&networks](const NetworkEntry &entry) {
        const QVariantMap properties = networks.value(entry.identifier).toMap();
        return std::make_tuple(
            !connectedStates.contains(entry.state), !properties.value(QStringLiteral("Favorite")).toBool(),
            -properties.value(QStringLiteral("Strength")).toInt(), entry.name, entry.identifier);
    };
    QVector<NetworkEntry> entries;
    for (auto network = networks.cbegin(); network != networks.cend(); ++network) {
        entries << entry(network.key(), network.value().toMap());
    }
    std::sort(entries.begin(), entries.end(), [&rank](const NetworkEntry &left, const NetworkEntry &right) {
        return rank(left) < rank(right);
    });
    return entries;
}

QStringList networkLines(const QVector<NetworkEntry> &entries)
{
    QStringList lines;
    for (const NetworkEntry &entry : entries) {
        QStringList texts = entry.texts();
        texts.removeAll(QString());
        lines << QStringLiteral("%1. %2").arg(lines.size() + 1).arg(texts.join(QStringLiteral(", ")));
    }
    return lines;
}

QStringList networkTable(const QVector<NetworkEntry> &entries)
{
    QVector<QStringList> rows = {{QStringLiteral("NUMBER"), QStringLiteral("NAME"), QStringLiteral("STATE"),
                                  QStringLiteral("SIGNAL"), QStringLiteral("SECURITY"),
                                  QStringLiteral("KNOWN"), QStringLiteral("IDENTIFIER")}};
    for (const NetworkEntry &entry : entries) {
        rows << QStringList{QString::number(rows.size())} + entry.texts();
    }
    QVector<int> widths(rows.first().size());
    for (const QStringList &row : qAsConst(rows)) {
        for (int column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths.at(column), row.at(column).size());
        }
    }
    QStringList lines;
    for (const QStringList &row : qAsConst(rows)) {
        QString line;
        for (int column = 0; column + 1 < row.size(); ++column) {
            line += row.at(column).leftJustified(widths.at(column) + 2);
        }
        lines << line + row.last();
    }
    return lines;
}
