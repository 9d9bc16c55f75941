#include "AccessPoints.h"
#include "Text.h"

namespace {

QVariantMap subnet(int number)
{
    return {{"address"_s, "10.11.%1.50"_s.arg(number)},
            {"gateway"_s, "10.11.%1.1"_s.arg(number)},
            {"ipv6"_s, "fd00:11:%1::50"_s.arg(number)}};
}

QVariantMap joined(QVariantMap options, const QVariantMap &more)
{
    for (auto option = more.begin(); option != more.end(); ++option) {
        options.insert(option.key(), option.value());
    }
    return options;
}

} // namespace

const QMap<QString, QVariantMap> &accessPoints()
{
    static const QString ssid = "ssid"_s;
    static const QString security = "security"_s;
    static const QString passphrase = "passphrase"_s;
    static const QMap<QString, QVariantMap> all{
        {"home"_s, joined(subnet(1), {{ssid, "Atelier"_s}, {passphrase, "correct horse"_s}})},
        {"cafe"_s, joined(subnet(2), {{ssid, "Cafe"_s}, {security, "none"_s}})},
        {"cellar"_s,
         joined(subnet(3), {{ssid, "Cellar"_s}, {passphrase, "potatoes and wine"_s}, {"hidden"_s, true}})},
        {"office"_s, joined(subnet(4), {{ssid, "Office"_s},
                                        {security, "ieee8021x"_s},
                                        {"identity"_s, "braille"_s},
                                        {passphrase, "six dots"_s}})},
        {"studio"_s, joined(subnet(5), {{ssid, "Studio"_s},
                                        {security, "wps"_s},
                                        {passphrase, "press the button"_s},
                                        {"pin"_s, "12345670"_s}})}};
    return all;
}
