#include "GVariantText.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusSignature>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QStringList>

namespace simulator {

namespace {
// GVariant annotates the first element of an array only; the others have the same type.
enum class Annotation { Given, Omitted };

QString text(const QVariant &value, Annotation annotation);

QString annotated(const char *type, const QString &value, Annotation annotation)
{
    return annotation == Annotation::Given ? QLatin1String(type) + QLatin1Char(' ') + value : value;
}

QString escaped(QChar character)
{
    switch (character.unicode()) {
    case '"':
        return QStringLiteral("\\\"");
    case '\\':
        return QStringLiteral("\\\\");
    case '\n':
        return QStringLiteral("\\n");
    case '\r':
        return QStringLiteral("\\r");
    case '\t':
        return QStringLiteral("\\t");
    default:
        return character.isPrint() || character.isSurrogate()
                   ? QString(character)
                   : QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
    }
}

QString quoted(const QString &string)
{
    QString result(QLatin1Char('"'));
    for (const QChar character : string) {
        result += escaped(character);
    }
    return result + QLatin1Char('"');
}

QString number(double value)
{
    const QString result = QString::number(value, 'g', 17);
    const bool looksWhole = !result.contains(QLatin1Char('.')) && !result.contains(QLatin1Char('e'));
    return looksWhole ? result + QStringLiteral(".0") : result;
}

QString hexadecimal(uchar byte)
{
    return QStringLiteral("0x%1").arg(byte, 2, 16, QLatin1Char('0'));
}

/// Collects the elements of a container, the first of them annotated.
class Elements
{
public:
    Annotation next() const { return m_texts.isEmpty() ? m_annotation : Annotation::Omitted; }
    void add(const QString &element) { m_texts.append(element); }
    QString enclosed(char open, char close, const QString &signature) const
    {
        const QString body = QLatin1Char(open) + m_texts.join(QStringLiteral(", ")) + QLatin1Char(close);
        const bool typeUnknown = m_texts.isEmpty() && m_annotation == Annotation::Given;
        return typeUnknown ? QLatin1Char('@') + signature + QLatin1Char(' ') + body : body;
    }
    explicit Elements(Annotation annotation)
        : m_annotation(annotation)
    {
    }

private:
    QStringList m_texts;
    Annotation m_annotation;
};

QString variantText(const QVariant &content)
{
    return QLatin1Char('<') + text(content, Annotation::Given) + QLatin1Char('>');
}

QString arrayText(const QDBusArgument &argument, Annotation annotation)
{
    const QString signature = argument.currentSignature();
    Elements elements(annotation);
    argument.beginArray();
    while (!argument.atEnd()) {
        elements.add(text(argument.asVariant(), elements.next()));
    }
    argument.endArray();
    return elements.enclosed('[', ']', signature);
}

QString mapText(const QDBusArgument &argument, Annotation annotation)
{
    const QString signature = argument.currentSignature();
    Elements elements(annotation);
    argument.beginMap();
    while (!argument.atEnd()) {
        argument.beginMapEntry();
        const QString key = text(argument.asVariant(), elements.next());
        elements.add(key + QStringLiteral(": ") + text(argument.asVariant(), elements.next()));
        argument.endMapEntry();
    }
    argument.endMap();
    return elements.enclosed('{', '}', signature);
}

QString structureText(const QDBusArgument &argument, Annotation annotation)
{
    QStringList members;
    argument.beginStructure();
    while (!argument.atEnd()) {
        members.append(text(argument.asVariant(), annotation));
    }
    argument.endStructure();
    const QString trailing = members.size() == 1 ? QStringLiteral(",)") : QStringLiteral(")");
    return QLatin1Char('(') + members.join(QStringLiteral(", ")) + trailing;
}

QString argumentText(const QDBusArgument &argument, Annotation annotation)
{
    switch (argument.currentType()) {
    case QDBusArgument::BasicType:
    case QDBusArgument::VariantType:
        return text(argument.asVariant(), annotation);
    case QDBusArgument::ArrayType:
        return arrayText(argument, annotation);
    case QDBusArgument::MapType:
        return mapText(argument, annotation);
    case QDBusArgument::StructureType:
        return structureText(argument, annotation);
    case QDBusArgument::MapEntryType:
    case QDBusArgument::UnknownType:
        break;
    }
    return QStringLiteral("?");
}

QString stringListText(const QStringList &strings, Annotation annotation)
{
    Elements elements(annotation);
    for (const QString &string : strings) {
        elements.add(quoted(string));
    }
    return elements.enclosed('[', ']', QStringLiteral("as"));
}

QString bytesText(const QByteArray &bytes, Annotation annotation)
{
    Elements elements(annotation);
    for (const char byte : bytes) {
        elements.add(annotated("byte", hexadecimal(static_cast<uchar>(byte)), elements.next()));
    }
    return elements.enclosed('[', ']', QStringLiteral("ay"));
}

QString dictionaryText(const QVariantMap &map, Annotation annotation)
{
    Elements elements(annotation);
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
        elements.add(quoted(entry.key()) + QStringLiteral(": ") + variantText(entry.value()));
    }
    return elements.enclosed('{', '}', QStringLiteral("a{sv}"));
}

QString dbusTypeText(const QVariant &value, Annotation annotation)
{
    if (value.userType() == qMetaTypeId<QDBusArgument>()) {
        return argumentText(value.value<QDBusArgument>(), annotation);
    }
    if (value.userType() == qMetaTypeId<QDBusVariant>()) {
        return variantText(value.value<QDBusVariant>().variant());
    }
    if (value.userType() == qMetaTypeId<QDBusObjectPath>()) {
        return annotated("objectpath", quoted(value.value<QDBusObjectPath>().path()), annotation);
    }
    if (value.userType() == qMetaTypeId<QDBusSignature>()) {
        return annotated("signature", quoted(value.value<QDBusSignature>().signature()), annotation);
    }
    if (value.userType() == qMetaTypeId<QDBusUnixFileDescriptor>()) {
        return annotated("handle", QStringLiteral("0"), annotation);
    }
    return QStringLiteral("?");
}

QString text(const QVariant &value, Annotation annotation)
{
    switch (static_cast<QMetaType::Type>(value.userType())) {
    case QMetaType::QString:
        return quoted(value.toString());
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QMetaType::Int:
        return QString::number(value.toInt());
    case QMetaType::UInt:
        return annotated("uint32", value.toString(), annotation);
    case QMetaType::Short:
        return annotated("int16", value.toString(), annotation);
    case QMetaType::UShort:
        return annotated("uint16", value.toString(), annotation);
    case QMetaType::LongLong:
        return annotated("int64", value.toString(), annotation);
    case QMetaType::ULongLong:
        return annotated("uint64", value.toString(), annotation);
    case QMetaType::UChar:
        return annotated("byte", hexadecimal(value.value<uchar>()), annotation);
    case QMetaType::Double:
        return number(value.toDouble());
    case QMetaType::QStringList:
        return stringListText(value.toStringList(), annotation);
    case QMetaType::QByteArray:
        return bytesText(value.toByteArray(), annotation);
    case QMetaType::QVariantMap:
        return dictionaryText(value.toMap(), annotation);
    default: // the bus' own types, which have no fixed number
        return dbusTypeText(value, annotation);
    }
}
} // namespace

QString toGVariantText(const QVariant &value)
{
    return text(value, Annotation::Given);
}

QString toGVariantText(const QVariantList &arguments)
{
    QStringList texts;
    for (const QVariant &argument : arguments) {
        texts.append(toGVariantText(argument));
    }
    return texts.join(QStringLiteral(", "));
}

} // namespace simulator
