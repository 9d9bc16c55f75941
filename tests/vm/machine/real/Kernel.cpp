#include "Kernel.h"

#include "Command.h"
#include "EventWait.h"
#include "OnTheAir.h"
#include "Text.h"

#include <QNetworkInterface>
#include <QRegularExpression>

using test_support::eventually;

namespace {

QString fieldOf(const QString &text, const QString &pattern)
{
    return QRegularExpression(pattern, QRegularExpression::MultilineOption).match(text).captured(1);
}

QString linkOfWlan()
{
    return outputOf("iw"_s, {"dev"_s, "wlan0"_s, "link"_s});
}

} // namespace

QString Kernel::joinedNetwork()
{
    return fieldOf(linkOfWlan(), "^\\s*SSID: (.*)$"_s);
}

QStringList Kernel::addresses(const QString &interface)
{
    QStringList addresses;
    const auto entries = QNetworkInterface::interfaceFromName(interface).addressEntries();
    for (const QNetworkAddressEntry &entry : entries) {
        QHostAddress address = entry.ip();
        if (!address.isLinkLocal()) {
            address.setScopeId({});
            addresses.append(address.toString());
        }
    }
    return addresses;
}

QString Kernel::hardwareAddress(const QString &interface)
{
    return QNetworkInterface::interfaceFromName(interface).hardwareAddress().toLower();
}

QString Kernel::region()
{
    return fieldOf(outputOf("iw"_s, {"reg"_s, "get"_s}), "^country ([A-Z0-9]{2})"_s);
}

bool Kernel::setRegion(const QString &country)
{
    return run("iw"_s, {"reg"_s, "set"_s, country}) && eventually([&] { return region() == country; });
}

QString OnTheAir::joinedAccessPoint()
{
    return fieldOf(linkOfWlan(), "^Connected to ([0-9a-f:]{17})"_s);
}
