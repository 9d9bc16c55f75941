#include "AccessPoints.h"

namespace {

QVariantMap subnet(int number)
{
    return {{QStringLiteral("address"), QStringLiteral("10.11.%1.50").arg(number)},
            {QStringLiteral("gateway"), QStringLiteral("10.11.%1.1").arg(number)},
            {QStringLiteral("ipv6"), QStringLiteral("fd00:11:%1::50").arg(number)}};
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
    static const QString ssid = QStringLiteral("ssid");
    static const QString security = QStringLiteral("security");
    static const QString passphrase = QStringLiteral("passphrase");
    static const QMap<QString, QVariantMap> all{
        {QStringLiteral("home"), joined(subnet(1), {{ssid, QStringLiteral("Atelier")},
                                                    {passphrase, QStringLiteral("correct horse")}})},
        {QStringLiteral("cafe"),
         joined(subnet(2), {{ssid, QStringLiteral("Cafe")}, {security, QStringLiteral("none")}})},
        {QStringLiteral("cellar"), joined(subnet(3), {{ssid, QStringLiteral("Cellar")},
                                                      {passphrase, QStringLiteral("potatoes and wine")},
                                                      {QStringLiteral("hidden"), true}})},
        {QStringLiteral("office"), joined(subnet(4), {{ssid, QStringLiteral("Office")},
                                                      {security, QStringLiteral("ieee8021x")},
                                                      {QStringLiteral("identity"), QStringLiteral("braille")},
                                                      {passphrase, QStringLiteral("six dots")}})},
        {QStringLiteral("studio"), joined(subnet(5), {{ssid, QStringLiteral("Studio")},
                                                      {security, QStringLiteral("wps")},
                                                      {passphrase, QStringLiteral("press the button")},
                                                      {QStringLiteral("pin"), QStringLiteral("none yet")}})}};
    return all;
}
