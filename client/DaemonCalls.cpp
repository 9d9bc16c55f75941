#include "DaemonCalls.h"

#include <algorithm>

namespace {

const QString network = QStringLiteral("NETWORK");
const QString onOff = QStringLiteral("on|off");

DaemonCall row(DaemonCall::Reply reply, const char *name, const char *form, const char *method,
               const char *help)
{
    const auto text = [](const char *latin1) { return QString::fromLatin1(latin1); };
    return {text(name), text(form), {{text(method), {}}}, reply, text(help)};
}

DaemonCall act(const char *name, const char *form, const char *method, const char *help)
{
    return row(DaemonCall::Reply::Success, name, form, method, help);
}

DaemonCall ask(const char *name, const char *form, const char *method, const char *help)
{
    return row(DaemonCall::Reply::Value, name, form, method, help);
}

DaemonCall need(const char *name, const char *form, const char *method, const char *help)
{
    return row(DaemonCall::Reply::Needed, name, form, method, help);
}

DaemonCall askAll(const char *name, const char *form, const QVector<DaemonMethod> &methods, const char *help)
{
    DaemonCall call = ask(name, form, "", help);
    call.methods = methods;
    return call;
}

} // namespace

int DaemonCall::networkPosition() const
{
    return formWords().indexOf(network);
}

QVariantList DaemonCall::arguments(const QStringList &words) const
{
    const QStringList expected = formWords();
    QVariantList arguments;
    for (int i = 0; i < expected.size(); ++i) {
        if (expected.at(i) == onOff) {
            arguments << (words.value(i) == QStringLiteral("on"));
        } else if (expected.at(i) == QStringLiteral("none")) {
            arguments << QVariant(QStringList());
        } else if (expected.at(i).endsWith(QStringLiteral("..."))) {
            arguments << QVariant(words.mid(i));
        } else {
            arguments << words.value(i);
        }
    }
    return arguments;
}

bool DaemonCall::asksForSwitch() const
{
    const QVector<DaemonCall> &calls = daemonCalls();
    return form.isEmpty() && std::any_of(calls.cbegin(), calls.cend(), [this](const DaemonCall &other) {
               return other.name == name && other.form == onOff;
           });
}

bool DaemonCall::connects() const
{
    const QString method = methods.first().name;
    return method == QStringLiteral("connect") || method.startsWith(QStringLiteral("register"));
}

QString DaemonCall::activity() const
{
    const QString method = methods.first().name;
    if (connects()) {
        return QStringLiteral("Connecting");
    }
    if (method == QStringLiteral("networks") || method == QStringLiteral("wpsNetworks")) {
        return QStringLiteral("Looking for networks");
    }
    return method == QStringLiteral("setWifiRegion") ? QStringLiteral("Setting the region")
                                                     : QStringLiteral("Waiting for the network daemon");
}

const QVector<DaemonCall> &daemonCalls()
{
    static const QVector<DaemonCall> calls = {
        ask("list", "", "networks", "the networks there are, after a scan"),
        ask("active", "", "activeNetworks", "those that are connecting or connected"),
        ask("wps", "", "wpsNetworks", "those that offer WPS, after a scan"),
        askAll("show", "NETWORK",
               {{QStringLiteral("getConfiguration"), QStringLiteral("IPv4")},
                {QStringLiteral("getIPv6Configuration"), QStringLiteral("IPv6")},
                {QStringLiteral("getNameservers"), QStringLiteral("Name servers")}},
               "its addresses and name servers"),
        act("connect", "NETWORK", "connect", "connect a network that is known, open or wired"),
        act("disconnect", "NETWORK", "disconnect", "disconnect it"),
        act("register", "NETWORK [PASSPHRASE]", "registerWifi", "connect a new one, with its passphrase"),
        act("register-hidden", "NAME NETWORK [PASSPHRASE]", "registerHiddenWifi",
            "connect a hidden one; NETWORK is the nameless one in the list"),
        act("register-enterprise", "IDENTITY NETWORK PASSWORD EAP PHASE2", "registerWiFiWpa2Enterprise",
            "connect a WPA2-Enterprise one; EAP is peap and PHASE2 is MSCHAPV2, say"),
        act("register-wps", "NETWORK", "registerWifiWps",
            "connect a new one after its WPS button was pressed"),
        act("register-pin", "NETWORK PIN", "registerWifiWps",
            "connect a new one with a WPS PIN, which is given to the access point afterwards"),
        act("forget", "NETWORK", "forgetWifi", "forget it and its passphrase"),
        ask("address", "NETWORK", "getConfiguration", "its IPv4 settings"),
        act("address", "NETWORK dhcp|off", "configure", "get them from the network, or have no IPv4"),
        act("address", "NETWORK manual ADDRESS NETMASK GATEWAY", "configure", "set them"),
        ask("ipv6", "NETWORK", "getIPv6Configuration", "its IPv6 settings"),
        act("ipv6", "NETWORK auto|off", "configureIPv6", "get them from the network, or have no IPv6"),
        ask("nameservers", "NETWORK", "getNameservers", "its name servers"),
        act("nameservers", "NETWORK none", "setNameservers", "use those that the network tells"),
        act("nameservers", "NETWORK SERVER...", "setNameservers", "use these"),
        ask("ipv4-address", "NETWORK", "getAddress", "its IPv4 address alone"),
        ask("ipv4-netmask", "NETWORK", "getNetmask", "its IPv4 netmask alone"),
        ask("ipv4-gateway", "NETWORK", "getGateway", "its IPv4 gateway alone"),
        ask("ipv6-address", "NETWORK", "getIPv6Address", "its IPv6 address alone"),
        ask("ipv6-prefix", "NETWORK", "getPrefix", "its IPv6 prefix length alone"),
        ask("power", "", "getWifiPower", "whether Wi-Fi is on"),
        act("power", "on|off", "setWifiPower", "switch Wi-Fi"),
        ask("region", "", "getWifiRegion", "the Wi-Fi region"),
        act("region", "CODE", "setWifiRegion", "set it; CODE is a country's two letters"),
        ask("lock", "", "getLockRegion", "whether the Wi-Fi region is locked"),
        act("lock", "on|off", "setLockRegion", "lock it, or unlock it"),
        need("hostname", "", "getHostName", "the host name"),
        act("hostname", "NAME", "setHostName", "set it, from the device's next start on"),
        need("hwaddress", "INTERFACE", "getHwAddress", "the hardware address of an interface (eth0, wlan0)"),
        askAll("technologies", "",
               {{QStringLiteral("checkWifiTechnology"), QStringLiteral("Wi-Fi")},
                {QStringLiteral("checkBluetoothTechnology"), QStringLiteral("Bluetooth")}},
               "whether the device has Wi-Fi and Bluetooth"),
    };
    return calls;
}
