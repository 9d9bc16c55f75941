#include "RandomRequest.h"
#include "Text.h"

#include <array>
#include <limits>
#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusSignature>
#include <QDBusVariant>
#include <QStringList>

namespace {

struct Pair
{
    QString first;
    int second = 0;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Pair &pair)
{
    argument.beginStructure();
    argument << pair.first << pair.second;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Pair &pair)
{
    argument.beginStructure();
    argument >> pair.first >> pair.second;
    argument.endStructure();
    return argument;
}

using NumberedMap = QMap<int, QDBusVariant>;
using Maps = QList<QVariantMap>;
using Pairs = QList<Pair>;

const std::array<const char *, 7> keys = {"Passphrase", "Name", "Identity",   "WPS",
                                          "SSID",       "Type", "Requirement"};
const std::array<const char *, 7> words = {"psk",  "string",    "passphrase", "wpspin",
                                           "ssid", "mandatory", "%1 \" \\"};

} // namespace

Q_DECLARE_METATYPE(Pair)
Q_DECLARE_METATYPE(Pairs)
Q_DECLARE_METATYPE(NumberedMap)
Q_DECLARE_METATYPE(Maps)

RandomRequest::RandomRequest(quint32 seed)
    : m_random(seed)
{
    qDBusRegisterMetaType<Pair>();
    qDBusRegisterMetaType<Pairs>();
    qDBusRegisterMetaType<TextMap>();
    qDBusRegisterMetaType<NumberedMap>();
    qDBusRegisterMetaType<Maps>();
}

QVariantMap RandomRequest::dictionary(int depth)
{
    QVariantMap result;
    for (int entries = number(6); entries > 0; --entries) {
        result.insert(key(), value(depth));
    }
    return result;
}

QString RandomRequest::key()
{
    return number(4) == 0 ? text() : QLatin1String(keys.at(static_cast<std::size_t>(number(keys.size()))));
}

QString RandomRequest::text()
{
    if (number(3) != 0) {
        return QLatin1String(words.at(static_cast<std::size_t>(number(words.size()))));
    }
    QString result;
    for (int length = number(40); length > 0; --length) {
        result.append(QChar(1 + number(0x7ff)));
    }
    return result;
}

QVariant RandomRequest::value(int depth)
{
    if (depth > 0 && number(3) == 0) {
        return QVariantMap{{"Type"_s, text()}};
    }
    if (depth > 0 && number(2) == 0) {
        return dictionary(depth - 1);
    }
    return number(3) == 0 ? rawValue(depth) : plainValue();
}

QVariant RandomRequest::plainValue()
{
    switch (number(14)) {
    case 0:
        return number(2) == 0;
    case 1:
        return number(std::numeric_limits<int>::max());
    case 2:
        return QVariant::fromValue(static_cast<uchar>(number(256)));
    case 3:
        return m_random.generate();
    case 4:
        return m_random.generate64();
    case 5:
        return QVariant::fromValue(static_cast<short>(number(1000)));
    case 6:
        return m_random.generateDouble();
    case 7:
        return QByteArray(number(5), 'x');
    default:
        return text();
    }
}

QVariant RandomRequest::rawValue(int depth)
{
    switch (number(12)) {
    case 0:
        return QStringList({text(), text()});
    case 1:
        return QVariant::fromValue(QList<int>({number(9), number(9)}));
    case 2:
        return QVariant::fromValue(Pair{text(), number(9)});
    case 3:
        return QVariant::fromValue(QList<QDBusObjectPath>({QDBusObjectPath("/a"_s)}));
    case 4:
        return QVariant::fromValue(TextMap{{key(), text()}});
    case 5:
        return QVariant::fromValue(NumberedMap{{number(9), QDBusVariant(text())}});
    case 6:
        return QVariant::fromValue(Maps{dictionary(0), dictionary(0)});
    case 7:
        return QVariant::fromValue(Pairs{Pair{text(), 1}});
    case 8:
        return QVariant::fromValue(QDBusVariant(depth > 0 ? value(depth - 1) : plainValue()));
    case 9:
        return QVariant::fromValue(QDBusObjectPath("/net/connman"_s));
    case 10:
        return QVariant::fromValue(QDBusSignature("a{sv}"_s));
    default:
        return QVariantList({text(), number(9)});
    }
}
