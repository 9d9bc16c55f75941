#include "DaemonCommands.h"

#include "Feed.h"
#include "NetworkNames.h"
#include "Values.h"
#include <libtactora/DBusArgument.h>
#include <limits>
#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <utility>

namespace {

const QString daemonName = QStringLiteral("com.tactora.NetworkManager");
const QString replySource = QStringLiteral("reply");

// Connecting takes as long as ConnMan takes.
constexpr int noTimeout = std::numeric_limits<int>::max();

QString networkLine(int number, const QString &identifier, const QVariantMap &properties)
{
    const auto text = [&properties](const char *key) {
        return valueText(properties.value(QString::fromLatin1(key)));
    };
    QString line = QStringLiteral("%1. %2, %3, %4")
                       .arg(QString::number(number), text("Name"), text("Type"), text("State"));
    if (properties.contains(QStringLiteral("Strength"))) {
        line += QStringLiteral(", %1, strength %2").arg(text("Security"), text("Strength"));
    }
    if (properties.value(QStringLiteral("Favorite")).toBool()) {
        line += QStringLiteral(", known");
    }
    return line + QStringLiteral(", ") + identifier;
}

} // namespace

/// The form's words are the method's arguments in order. NETWORK is told as NetworkNames understands it,
/// "on|off" is a boolean, "SERVER..." a list of the rest and "none" an empty one; all others are strings,
/// empty where left out.
struct DaemonCommands::Call
{
    QString name;
    QString form;
    QString method;
    QString help;
};

const QVector<DaemonCommands::Call> &DaemonCommands::table()
{
    const auto row = [](const char *name, const char *form, const char *method, const char *help) {
        return Call{QString::fromLatin1(name), QString::fromLatin1(form), QString::fromLatin1(method),
                    QString::fromLatin1(help)};
    };
    static const QVector<Call> calls = {
        row("list", "", "networks", "the networks there are, numbered"),
        row("active", "", "activeNetworks", "the connected ones"),
        row("wps", "", "wpsNetworks", "the ones that offer WPS"),
        row("connect", "NETWORK", "connect", "connect one"),
        row("disconnect", "NETWORK", "disconnect", "disconnect it"),
        row("forget", "NETWORK", "forgetWifi", "forget what is known of it"),
        row("register", "NETWORK [PASSPHRASE]", "registerWifi", "connect a new one"),
        row("register-hidden", "NAME NETWORK [PASSPHRASE]", "registerHiddenWifi",
            "connect a hidden one (NETWORK is the nameless one, \"hidden\")"),
        row("register-enterprise", "IDENTITY NETWORK PASSWORD EAP PHASE2", "registerWiFiWpa2Enterprise",
            "connect a WPA2-Enterprise one (EAP is peap and PHASE2 is MSCHAPV2, say)"),
        row("register-wps", "NETWORK", "registerWifiWps", "connect by WPS push button"),
        row("register-wps", "NETWORK PIN", "registerWifiWps", "connect by WPS PIN"),
        row("ip", "NETWORK", "getConfiguration", "show the IPv4 settings"),
        row("ip", "NETWORK METHOD", "configure", "have them from DHCP (METHOD is dhcp), or none (off)"),
        row("ip", "NETWORK METHOD ADDRESS NETMASK GATEWAY", "configure", "set them (METHOD is manual)"),
        row("ipv6", "NETWORK", "getIPv6Configuration", "show the IPv6 settings"),
        row("ipv6", "NETWORK METHOD", "configureIPv6", "set them (METHOD is auto or off)"),
        row("dns", "NETWORK", "getNameservers", "show the name servers"),
        row("dns", "NETWORK none", "setNameservers", "go back to those that DHCP tells"),
        row("dns", "NETWORK SERVER...", "setNameservers", "set them"),
        row("address", "NETWORK", "getAddress", "its IPv4 address alone"),
        row("netmask", "NETWORK", "getNetmask", "its IPv4 netmask alone"),
        row("gateway", "NETWORK", "getGateway", "its IPv4 gateway alone"),
        row("ipv6-address", "NETWORK", "getIPv6Address", "its IPv6 address alone"),
        row("ipv6-prefix", "NETWORK", "getPrefix", "its IPv6 prefix length alone"),
        row("hwaddress", "INTERFACE", "getHwAddress", "the hardware address of eth0, say"),
        row("has-wifi", "", "checkWifiTechnology", "whether the printer has Wi-Fi"),
        row("has-bluetooth", "", "checkBluetoothTechnology", "whether it has Bluetooth"),
        row("power", "", "getWifiPower", "whether Wi-Fi is switched on"),
        row("power", "on|off", "setWifiPower", "switch it"),
        row("region", "", "getWifiRegion", "the Wi-Fi region"),
        row("region", "CODE", "setWifiRegion", "set it"),
        row("lock", "", "getLockRegion", "whether the region is locked"),
        row("lock", "on|off", "setLockRegion", "lock it"),
        row("hostname", "", "getHostName", "the printer's host name"),
        row("hostname", "NAME", "setHostName", "set it"),
    };
    return calls;
}

DaemonCommands::DaemonCommands(QDBusConnection connection, NetworkNames &names, Feed &feed, QObject *parent)
    : QObject(parent)
    , m_connection(std::move(connection))
    , m_names(names)
    , m_feed(feed)
{
}

QVector<Command> DaemonCommands::commands()
{
    QVector<Command> commands;
    for (const Call &call : table()) {
        commands << Command{call.name, call.form, call.help,
                            [this, &call](const QStringList &words) { perform(call, words); }};
    }
    return commands;
}

void DaemonCommands::perform(const Call &call, const QStringList &words)
{
    QVariantList arguments;
    if (convert(call, words, arguments)) {
        send(call, arguments);
    }
}

bool DaemonCommands::convert(const Call &call, const QStringList &words, QVariantList &arguments)
{
    const QStringList form = call.form.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (int i = 0; i < form.size(); ++i) {
        const QString word = words.value(i);
        if (form.at(i) == QStringLiteral("NETWORK")) {
            const NetworkNames::Result network = m_names.find(word);
            if (!network.problem.isEmpty()) {
                m_feed.tell(network.problem);
                return false;
            }
            arguments << network.identifier;
        } else if (form.at(i) == QStringLiteral("on|off")) {
            arguments << (word == QStringLiteral("on"));
        } else if (form.at(i) == QStringLiteral("none")) {
            arguments << QVariant(QStringList());
        } else if (form.at(i).endsWith(QStringLiteral("..."))) {
            arguments << QVariant(words.mid(i));
        } else {
            arguments << word;
        }
    }
    return true;
}

void DaemonCommands::send(const Call &call, const QVariantList &arguments)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(daemonName, QStringLiteral("/"), daemonName, call.method);
    message.setArguments(arguments);
    auto *watcher = new QDBusPendingCallWatcher(m_connection.asyncCall(message, noTimeout), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, call, watcher] {
        watcher->deleteLater();
        showReply(call, watcher->reply());
    });
}

void DaemonCommands::showReply(const Call &call, const QDBusMessage &reply)
{
    if (reply.type() == QDBusMessage::ErrorMessage) {
        const QDBusError error(reply);
        const QString problem = error.type() == QDBusError::UnknownMethod
                                    ? QStringLiteral("this daemon does not offer it yet")
                                : error.type() == QDBusError::ServiceUnknown
                                    ? QStringLiteral("the daemon is not on the bus")
                                    : QStringLiteral("%1: %2").arg(error.name(), error.message());
        m_feed.happened(replySource, QStringLiteral("%1 failed: %2").arg(call.method, problem));
        return;
    }
    const QVariant value = libtactora::dbusArgumentUnpack(reply.arguments().value(0));
    if (call.method == QStringLiteral("networks")) {
        showNetworks(value.toMap());
        return;
    }
    const QString separator = value.type() == QVariant::Map ? QStringLiteral("\n") : QStringLiteral(" ");
    m_feed.happened(replySource, call.method + separator + valueText(value, 2));
}

void DaemonCommands::showNetworks(const QVariantMap &networks)
{
    m_names.setListed(networks.keys());
    int number = 0;
    for (auto it = networks.cbegin(); it != networks.cend(); ++it) {
        m_feed.happened(replySource, networkLine(++number, it.key(), it.value().toMap()));
    }
    m_feed.happened(replySource, QStringLiteral("%1 networks").arg(networks.size()));
}
