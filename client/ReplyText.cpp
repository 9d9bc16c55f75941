#include "ReplyText.h"

#include "Values.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QString valueWords(const DaemonCall &call, const QVariant &value)
{
    if (value.type() != QVariant::Bool) {
        return isNothing(value) ? valueText(QStringList()) : valueText(value);
    }
    const bool isSo = value.toBool();
    if (call.asksForSwitch()) {
        return isSo ? QStringLiteral("on") : QStringLiteral("off");
    }
    return isSo ? QStringLiteral("yes") : QStringLiteral("no");
}

QString labelled(const QString &label, const QVariant &value, QString words)
{
    if (value.type() != QVariant::Map) {
        return QStringLiteral("%1: %2").arg(label, words);
    }
    words.replace(QLatin1Char('\n'), QStringLiteral("\n  "));
    return QStringLiteral("%1:\n  %2").arg(label, words);
}

} // namespace

QString replyText(const DaemonCall &call, const QVariantList &values)
{
    if (call.reply == DaemonCall::Reply::Success) {
        return QStringLiteral("Done.");
    }
    if (values.size() == 1) {
        return valueWords(call, values.first());
    }
    QStringList texts;
    for (int i = 0; i < values.size(); ++i) {
        texts << labelled(call.methods.at(i).label, values.at(i), valueWords(call, values.at(i)));
    }
    return texts.join(QLatin1Char('\n'));
}

QString replyJson(const DaemonCall &call, const QVariantList &values)
{
    QVariantMap byLabel;
    for (int i = 0; i < values.size(); ++i) {
        byLabel.insert(call.methods.at(i).label, values.at(i));
    }
    const QVariant value = values.size() == 1 ? values.first() : QVariant(byLabel);
    const bool isDocument = value.canConvert<QVariantList>() || value.type() == QVariant::Map;
    const QVariant document = isDocument ? value : QVariantMap{{QStringLiteral("value"), value}};
    const QJsonValue json = valueJson(document);
    return QString::fromUtf8(
               (json.isArray() ? QJsonDocument(json.toArray()) : QJsonDocument(json.toObject())).toJson())
        .trimmed();
}
