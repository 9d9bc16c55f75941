// What ConnMan answers and tells of a Wi-Fi network, word for word and in its order: the simulated one is
// held to it. The daemon is its agent, and makes it act.

#include "ConnmanConversation.h"
#include "Scenarios.h"
#include "Text.h"

#include <algorithm>
#include <QDBusConnection>
#include <QTest>

using test_support::ConnmanConversation;
using test_support::propertyAndValue;

namespace {

using Lines = QStringList;

const QString wifi = "wifi"_s;

Lines says(const QString &name, const Lines &lines)
{
    Lines all;
    for (const QString &line : lines) {
        all << "%1 %2"_s.arg(name, line);
    }
    return all;
}

Lines isConnected()
{
    return {"wifi Connected true"_s, "manager State ready"_s};
}

Lines isCutOff(const QString &name)
{
    return says(name, {"State configuration"_s}) + Lines{"wifi Connected false"_s, "manager State idle"_s} +
           says(name, {"State disconnect"_s, "Proxy {}"_s, "State idle"_s});
}

Lines addressesGone(const QString &name)
{
    return says(name, {"IPv4 {}"_s, "IPv6 {}"_s});
}

Lines leaseOf(const QString &name, const QString &subnet)
{
    const QString lease = "Address: %1.50"_s.arg(subnet);
    const QString rest = "Method: dhcp, Netmask: 255.255.255.0"_s;
    return says(name, {"IPv4 {%1, %2}"_s.arg(lease, rest),
                       "IPv4 {%1, Gateway: %2.1, %3}"_s.arg(lease, subnet, rest)});
}

/// Left out is what comes whenever it does: the list's order, settled for 100 ms; the address that a router
/// advertises; an access point's offer of WPS; and the peer-to-peer technology that comes and goes with
/// Wi-Fi.
Lines heardBy(ConnmanConversation &conversation, int atLeast)
{
    const auto isLeftOut = [](const QString &line) {
        return line == "ServicesChanged"_s || line.startsWith("Technology"_s) ||
               line.contains(" IPv6 {Address"_s) || line.contains(" Security ["_s);
    };
    Lines lines = conversation.heard(atLeast);
    lines.erase(std::remove_if(lines.begin(), lines.end(), isLeftOut), lines.end());
    return lines;
}

} // namespace

void Scenarios::connmanTellsOfJoiningAndLeaving()
{
    const QString name = "Atelier"_s;
    const QString identifier = network(name);
    ConnmanConversation conversation(QDBusConnection::systemBus());

    QVERIFY(does("registerWifi", identifier, Secret::atelier));
    QCOMPARE(heardBy(conversation, 10), says(name, {"State association"_s, "State configuration"_s,
                                                    "State ready"_s, "Favorite true"_s, "Proxy {}"_s}) +
                                            isConnected() + leaseOf(name, "10.11.1"_s));
    QCOMPARE(conversation.askService(identifier, "Connect"),
             "net.connman.Error.AlreadyConnected: Already connected"_s);

    QCOMPARE(conversation.askService(identifier, "Disconnect"), QString());
    QCOMPARE(heardBy(conversation, 9), isCutOff(name) + addressesGone(name));
    QCOMPARE(conversation.askService(identifier, "Disconnect"),
             "net.connman.Error.NotConnected: Not connected"_s);

    QCOMPARE(conversation.askService(identifier, "Connect"), QString());
    QCOMPARE(heardBy(conversation, 9),
             says(name, {"State association"_s, "State configuration"_s, "State ready"_s, "Proxy {}"_s}) +
                 isConnected() + leaseOf(name, "10.11.1"_s));

    QCOMPARE(conversation.askService(identifier, "Disconnect"), QString());
    QCOMPARE(heardBy(conversation, 9), isCutOff(name) + addressesGone(name));
    QCOMPARE(conversation.askService(identifier, "Remove"), QString());
    QCOMPARE(heardBy(conversation, 1), says(name, {"Favorite false"_s}));
}

void Scenarios::connmanTellsOfAWrongPassphrase()
{
    const QString name = "Atelier"_s;
    const QString identifier = network(name);
    ConnmanConversation conversation(QDBusConnection::systemBus());

    QVERIFY(!does("registerWifi", identifier, "wrong horse"_s));

    QCOMPARE(heardBy(conversation, 4),
             says(name, {"State association"_s, "Error invalid-key"_s, "State failure"_s, "State idle"_s}));
}

/// What follows when it has gone differs: ConnMan tries it again, in vain, the simulated one lists it no
/// more.
void Scenarios::connmanTellsOfANetworkThatGoes()
{
    const QString name = "Atelier"_s;
    QVERIFY(!joinAtelier().isEmpty());
    ConnmanConversation conversation(QDBusConnection::systemBus());

    QVERIFY(air().switchOff("home"_s));

    const Lines told = isCutOff(name);
    QCOMPARE(heardBy(conversation, told.size()).mid(0, told.size()), told);
}

void Scenarios::connmanTellsOfWifiOffAndOn()
{
    const QString name = "Atelier"_s;
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    ConnmanConversation conversation(QDBusConnection::systemBus());
    const auto setPowered = [&conversation](bool on) {
        return conversation.askTechnology(wifi, "SetProperty", propertyAndValue("Powered", on));
    };

    QCOMPARE(conversation.askTechnology(wifi, "Scan"), QString());
    QCOMPARE(heardBy(conversation, 0), Lines());

    QCOMPARE(setPowered(false), QString());
    QCOMPARE(heardBy(conversation, 10), isCutOff(name) + addressesGone(name) + Lines("wifi Powered false"_s));
    QCOMPARE(setPowered(false), "net.connman.Error.AlreadyDisabled: Already disabled"_s);
    QCOMPARE(conversation.askTechnology(wifi, "Scan"), "net.connman.Error.NoCarrier: No carrier"_s);
    QVERIFY(conversation.askService(identifier, "Connect")
                .startsWith("org.freedesktop.DBus.Error.UnknownObject: "_s));

    QCOMPARE(setPowered(true), QString());
    QCOMPARE(heardBy(conversation, 9),
             Lines("wifi Powered true"_s) +
                 says(name, {"State configuration"_s, "State ready"_s, "Proxy {}"_s}) + isConnected() +
                 leaseOf(name, "10.11.1"_s));
}
