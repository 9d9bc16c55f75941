#include "Values.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

namespace {

QString mapText(const QVariantMap &map, int indentation)
{
    QStringList lines;
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        const bool nested = it.value().type() == QVariant::Map && !it.value().toMap().isEmpty();
        lines << QString(indentation, QLatin1Char(' ')) + it.key() +
                     (nested ? QStringLiteral(":\n") : QStringLiteral(": ")) +
                     valueText(it.value(), indentation + 2);
    }
    return lines.join(QLatin1Char('\n'));
}

QString listText(const QVariantList &list)
{
    QStringList texts;
    for (const QVariant &entry : list) {
        texts << valueText(entry);
    }
    return texts.isEmpty() ? QStringLiteral("(none)") : texts.join(QStringLiteral(", "));
}

} // namespace

QString valueText(const QVariant &value, int indentation)
{
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::QVariantMap:
        return value.toMap().isEmpty() ? QStringLiteral("(none)") : mapText(value.toMap(), indentation);
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return listText(value.toList());
    case QMetaType::UChar:
        return QString::number(value.toUInt()); // a byte is a number on the bus, for QString a letter
    default:
        return value.toString().isEmpty() ? QStringLiteral("(empty)") : value.toString();
    }
}

bool isNothing(const QVariant &value)
{
    return value.type() == QVariant::String && value.toString().isEmpty();
}

QJsonValue valueJson(const QVariant &value)
{
    switch (static_cast<QMetaType::Type>(value.type())) {
    case QMetaType::QVariantMap: {
        QJsonObject object;
        const QVariantMap map = value.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it) {
            object.insert(it.key(), valueJson(it.value()));
        }
        return object;
    }
    case QMetaType::QVariantList:
    case QMetaType::QStringList: {
        QJsonArray array;
        for (const QVariant &entry : value.toList()) {
            array << valueJson(entry);
        }
        return array;
    }
    case QMetaType::UChar:
    case QMetaType::UShort:
    case QMetaType::Short:
        return value.toInt(); // which Qt would write as texts
    default:
        return QJsonValue::fromVariant(value);
    }
}
