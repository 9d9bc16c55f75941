#include "RandomValues.h"

#include <QString>

#include <algorithm>
#include <array>

namespace soak {

namespace {

constexpr int serviceCount = 12;
/// Longer than any buffer somebody thought enough.
constexpr int longText = 20000;
constexpr int deepestNesting = 3;
/// The wire allows 64 containers within each other; what a service list has around the value takes eight.
constexpr int mostVariants = 56;

template <std::size_t Size>
using Words = std::array<const char *, Size>;

constexpr Words<30> types{"y",     "b",     "n",      "q",         "i",   "u",        "x",     "t",
                          "d",     "s",     "o",      "g",         "h",   "v",        "as",    "ai",
                          "ay",    "ao",    "av",     "ag",        "aas", "(si)",     "a(si)", "a{ss}",
                          "a{sv}", "a{iv}", "aa{sv}", "a(oa{sv})", "(v)", "a{sa{sv}}"};
constexpr Words<18> properties_{"State",    "Name",
                                "Type",     "Strength",
                                "Favorite", "AutoConnect",
                                "IPv4",     "IPv4.Configuration",
                                "IPv6",     "Nameservers",
                                "Security", "IPv6.Configuration",
                                "Ethernet", "Error",
                                "Powered",  "Nameservers.Configuration",
                                "",         "no such property"};
constexpr Words<8> states{"idle",  "failure", "association", "configuration",
                          "ready", "online",  "disconnect",  "no such state"};
constexpr Words<16> words{"",         "wifi",       "ethernet", "dhcp",     "manual",
                          "psk",      "string",     "wpspin",   "wlan0",    "eth0",
                          "%1 \" \\", "passphrase", "off",      "10.0.0.1", "../../etc/hostname",
                          "\n"};
constexpr Words<6> fields{"Passphrase", "Name", "Identity", "WPS", "SSID", "Type"};
constexpr Words<7> strangePaths{"/",
                                "/net/connman",
                                "/net/connman/technology/wifi",
                                "/net/connman/service",
                                "/net/connman/service/a/b",
                                "/somewhere/else",
                                "/agent"};

QByteArray numberedPath(int number)
{
    static const std::array<QByteArray, 4> kinds{"wifi_%_managed_psk", "wifi_%_managed_none",
                                                 "wifi_%_managed_ieee8021x", "ethernet_%_cable"};
    QByteArray identifier = kinds.at(static_cast<std::size_t>(number) % kinds.size());
    return "/net/connman/service/" + identifier.replace('%', QByteArray::number(number));
}

} // namespace

RandomValues::RandomValues(quint32 seed)
    : m_random(seed)
{
    std::generate(m_signatures.begin(), m_signatures.end(), [this] { return anySignature(); });
}

GVariant *RandomValues::arguments(const QByteArray &signature)
{
    const QByteArray tuple = '(' + signature + ')';
    GVariantType *type = g_variant_type_new(tuple.constData());
    GVariant *result = of(type);
    g_variant_type_free(type);
    return result;
}

GVariant *RandomValues::anyArguments()
{
    const int index = below(static_cast<int>(m_signatures.size()));
    return arguments(m_signatures.at(static_cast<std::size_t>(index)));
}

QByteArray RandomValues::anySignature()
{
    QByteArray signature;
    for (int count = below(5); count > 0; --count) {
        signature += types.at(static_cast<std::size_t>(below(types.size())));
    }
    return signature;
}

GVariant *RandomValues::any()
{
    const char *type = types.at(static_cast<std::size_t>(below(types.size())));
    return of(G_VARIANT_TYPE(type));
}

GVariant *RandomValues::nested(int variants)
{
    GVariant *value = g_variant_new_string("deep");
    for (int level = 0; level < variants; ++level) {
        value = g_variant_new_variant(value);
    }
    return value;
}

GVariant *RandomValues::dictionaryWith(GVariant *method)
{
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&builder, "{sv}", "Method", method);
    return g_variant_builder_end(&builder);
}

GVariant *RandomValues::of(const GVariantType *type)
{
    if (g_variant_type_is_basic(type) != FALSE) {
        return basic(type);
    }
    if (m_depth >= deepestNesting && g_variant_type_is_variant(type) != FALSE) {
        return g_variant_new_variant(g_variant_new_boolean(TRUE));
    }
    ++m_depth;
    GVariant *value =
        g_variant_type_is_variant(type) != FALSE ? g_variant_new_variant(any()) : container(type);
    --m_depth;
    return value;
}

GVariant *RandomValues::basic(const GVariantType *type)
{
    const char letter = *g_variant_type_peek_string(type);
    switch (letter) {
    case 's':
        return g_variant_new_string(text().constData());
    case 'o':
        return g_variant_new_object_path(path().constData());
    case 'g':
        return g_variant_new_signature(oneIn(2) ? "" : "a{sv}");
    default:
        return number(letter);
    }
}

GVariant *RandomValues::number(char type)
{
    const quint64 bits = m_random.generate64() >> below(64);
    switch (type) {
    case 'y':
        return g_variant_new_byte(static_cast<guint8>(bits));
    case 'b':
        return g_variant_new_boolean(oneIn(2) ? TRUE : FALSE);
    case 'n':
        return g_variant_new_int16(static_cast<gint16>(bits));
    case 'q':
        return g_variant_new_uint16(static_cast<guint16>(bits));
    case 'i':
        return g_variant_new_int32(static_cast<gint32>(bits));
    case 'u':
        return g_variant_new_uint32(static_cast<guint32>(bits));
    case 'x':
        return g_variant_new_int64(static_cast<gint64>(bits));
    case 't':
        return g_variant_new_uint64(bits);
    case 'h':
        return g_variant_new_handle(0);
    default:
        return g_variant_new_double(m_random.generateDouble());
    }
}

GVariant *RandomValues::container(const GVariantType *type)
{
    GVariantBuilder builder;
    g_variant_builder_init(&builder, type);
    if (g_variant_type_is_array(type) != FALSE) {
        const int count = m_depth > deepestNesting ? 0 : below(4);
        for (int element = 0; element < count; ++element) {
            g_variant_builder_add_value(&builder, of(g_variant_type_element(type)));
        }
    } else {
        for (const GVariantType *item = g_variant_type_first(type); item != nullptr;
             item = g_variant_type_next(item)) {
            g_variant_builder_add_value(&builder, of(item));
        }
    }
    return g_variant_builder_end(&builder);
}

QByteArray RandomValues::text()
{
    if (oneIn(200)) {
        return {longText, 'x'};
    }
    if (oneIn(4)) {
        return garbage();
    }
    if (oneIn(4)) {
        return servicePath().mid(static_cast<int>(qstrlen("/net/connman/service/")));
    }
    return words.at(static_cast<std::size_t>(below(words.size())));
}

QByteArray RandomValues::garbage()
{
    QString characters;
    for (int length = below(40); length > 0; --length) {
        characters.append(QChar(1 + below(0x7ff)));
    }
    return characters.toUtf8();
}

QByteArray RandomValues::servicePath()
{
    return numberedPath(below(serviceCount));
}

QByteArray RandomValues::path()
{
    return oneIn(3) ? QByteArray(strangePaths.at(static_cast<std::size_t>(below(strangePaths.size()))))
                    : servicePath();
}

QByteArray RandomValues::propertyName()
{
    return properties_.at(static_cast<std::size_t>(below(properties_.size())));
}

GVariant *RandomValues::propertyValue()
{
    if (oneIn(60)) {
        return dictionaryWith(nested(mostVariants));
    }
    if (oneIn(3)) {
        return any();
    }
    if (oneIn(3)) {
        return of(G_VARIANT_TYPE("a{sv}"));
    }
    return g_variant_new_string(states.at(static_cast<std::size_t>(below(states.size()))));
}

GVariant *RandomValues::properties()
{
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
    for (int count = below(14); count > 0; --count) {
        g_variant_builder_add(&builder, "{sv}", propertyName().constData(), propertyValue());
    }
    return g_variant_builder_end(&builder);
}

GVariant *RandomValues::serviceList()
{
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE("a(oa{sv})"));
    for (int count = below(5); count > 0; --count) {
        g_variant_builder_add(&builder, "(o@a{sv})", (oneIn(20) ? path() : servicePath()).constData(),
                              properties());
    }
    return g_variant_builder_end(&builder);
}

GVariant *RandomValues::servicesChanged()
{
    GVariantBuilder removed;
    g_variant_builder_init(&removed, G_VARIANT_TYPE("ao"));
    for (int count = below(3); count > 0; --count) {
        g_variant_builder_add(&removed, "o", servicePath().constData());
    }
    return g_variant_new("(@a(oa{sv})ao)", serviceList(), &removed);
}

GVariant *RandomValues::allServicesGone()
{
    GVariantBuilder removed;
    g_variant_builder_init(&removed, G_VARIANT_TYPE("ao"));
    for (int number = 0; number < serviceCount; ++number) {
        g_variant_builder_add(&removed, "o", numberedPath(number).constData());
    }
    for (const char *strange : strangePaths) {
        g_variant_builder_add(&removed, "o", strange);
    }
    return g_variant_new("(a(oa{sv})ao)", nullptr, &removed);
}

GVariant *RandomValues::requestedFields()
{
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
    for (int count = below(5); count > 0; --count) {
        g_variant_builder_add(&builder, "{sv}", fields.at(static_cast<std::size_t>(below(fields.size()))),
                              oneIn(3) ? any() : of(G_VARIANT_TYPE("a{sv}")));
    }
    return g_variant_builder_end(&builder);
}

} // namespace soak
