// What ConnMan answers and tells of a Wi-Fi network, word for word and in its order: the simulated one is
// held to it. The daemon is its agent, and makes it act.

#include "ConnmanConversation.h"
#include "Scenarios.h"
#include "Text.h"

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

/// What tells of a network that goes: where IPv6 had got so far, ConnMan counts it as connected until it says
/// otherwise.
Lines cutOff(const QString &name, const Lines &told)
{
    const Lines disconnects = says(name, {"State disconnect"_s, "Proxy {}"_s});
    const Lines isDown{"wifi Connected false"_s, "manager State idle"_s};
    const Lines isIdle = says(name, {"State idle"_s});
    return told.startsWith(disconnects.constFirst())
               ? disconnects + isDown + isIdle
               : says(name, {"State configuration"_s}) + isDown + disconnects + isIdle;
}

Lines addressGone(const QString &name)
{
    return says(name, {"IPv4 {}"_s});
}

Lines leaseOf(const QString &name, const QString &subnet)
{
    const QString lease = "Address: %1.50"_s.arg(subnet);
    const QString rest = "Method: dhcp, Netmask: 255.255.255.0"_s;
    return says(name, {"IPv4 {%1, %2}"_s.arg(lease, rest),
                       "IPv4 {%1, Gateway: %2.1, %3}"_s.arg(lease, subnet, rest)});
}

/// No matter is what comes whenever it does: the list's order, settled for 100 ms; IPv6, as the router
/// pleases; an access point's offer of WPS; and the peer-to-peer technology that comes and goes with Wi-Fi.
bool hasItsPlace(const QString &line)
{
    return line != "ServicesChanged"_s && !line.startsWith("Technology"_s) && !line.contains(" IPv6 {"_s) &&
           !line.contains(" Security ["_s);
}

/// ConnMan as the machine's system bus has it.
class Conversation : public ConnmanConversation
{
public:
    Conversation()
        : ConnmanConversation(QDBusConnection::systemBus(), hasItsPlace)
    {
    }

    void compareHeard(const Lines &expected) { compare(heard(expected.size()), expected); }

    /// The network is told of as gone, and then what follows.
    void compareCutOff(const QString &name, const Lines &following)
    {
        const Lines told = heard(following.size() + 1);
        compare(told, cutOff(name, told) + following);
    }

private:
    static void compare(const Lines &lines, const Lines &expected)
    {
        const QChar newline = QLatin1Char('\n');
        QCOMPARE(lines.join(newline), expected.join(newline));
    }
};

} // namespace

void Scenarios::connmanTellsOfJoiningAndLeaving()
{
    const QString name = "Atelier"_s;
    const QString identifier = network(name);
    Conversation conversation;

    QVERIFY(does("registerWifi", identifier, Secret::atelier));
    conversation.compareHeard(says(name, {"State association"_s, "State configuration"_s, "State ready"_s,
                                          "Favorite true"_s, "Proxy {}"_s}) +
                              isConnected() + leaseOf(name, "10.11.1"_s));
    QCOMPARE(conversation.askService(identifier, "Connect"),
             "net.connman.Error.AlreadyConnected: Already connected"_s);

    QCOMPARE(conversation.askService(identifier, "Disconnect"), QString());
    conversation.compareCutOff(name, addressGone(name));
    QCOMPARE(conversation.askService(identifier, "Disconnect"),
             "net.connman.Error.NotConnected: Not connected"_s);

    QCOMPARE(conversation.askService(identifier, "Connect"), QString());
    conversation.compareHeard(
        says(name, {"State association"_s, "State configuration"_s, "State ready"_s, "Proxy {}"_s}) +
        isConnected() + leaseOf(name, "10.11.1"_s));

    QCOMPARE(conversation.askService(identifier, "Disconnect"), QString());
    conversation.compareCutOff(name, addressGone(name));
    QCOMPARE(conversation.askService(identifier, "Remove"), QString());
    conversation.compareHeard(says(name, {"Favorite false"_s}));
}

void Scenarios::connmanTellsOfAWrongPassphrase()
{
    const QString name = "Atelier"_s;
    const QString identifier = network(name);
    Conversation conversation;

    QVERIFY(!does("registerWifi", identifier, "wrong horse"_s));

    conversation.compareHeard(
        says(name, {"State association"_s, "Error invalid-key"_s, "State failure"_s, "State idle"_s}));
}

/// What comes of a PIN depends on what ConnMan has been through with WPS since its start, hence a new one,
/// and no wrong PIN.
void Scenarios::connmanTellsOfWps()
{
    QVERIFY(beginAfresh());
    const QString name = "Studio"_s;
    const QString identifier = network(name);
    Conversation conversation;

    QVERIFY(beginsWps(identifier, Secret::studioPin));
    QVERIFY(air().expectPin("studio"_s, Secret::studioPin));

    conversation.compareHeard(says(name, {"State association"_s, "State configuration"_s, "State ready"_s,
                                          "Favorite true"_s, "Proxy {}"_s}) +
                              isConnected() + leaseOf(name, "10.11.5"_s));
}

/// What follows when it has gone differs: ConnMan tries it again, in vain, the simulated one lists it no
/// more.
void Scenarios::connmanTellsOfANetworkThatGoes()
{
    const QString name = "Atelier"_s;
    QVERIFY(!joinAtelier().isEmpty());
    Conversation conversation;

    QVERIFY(air().switchOff("home"_s));

    const Lines told = conversation.heard(1);
    const Lines expected = cutOff(name, told);
    QCOMPARE(told.mid(0, expected.size()), expected);
}

void Scenarios::connmanTellsOfWifiOffAndOn()
{
    const QString name = "Atelier"_s;
    const QString identifier = joinAtelier();
    QVERIFY(!identifier.isEmpty());
    Conversation conversation;
    const auto setPowered = [&conversation](bool on) {
        return conversation.askTechnology(wifi, "SetProperty", propertyAndValue("Powered", on));
    };

    QCOMPARE(conversation.askTechnology(wifi, "Scan"), QString());
    conversation.compareHeard(Lines());

    QCOMPARE(setPowered(false), QString());
    conversation.compareCutOff(name, addressGone(name) + Lines("wifi Powered false"_s));
    QCOMPARE(setPowered(false), "net.connman.Error.AlreadyDisabled: Already disabled"_s);
    QCOMPARE(conversation.askTechnology(wifi, "Scan"), "net.connman.Error.NoCarrier: No carrier"_s);
    QVERIFY(conversation.askService(identifier, "Connect")
                .startsWith("org.freedesktop.DBus.Error.UnknownObject: "_s));

    QCOMPARE(setPowered(true), QString());
    conversation.compareHeard(Lines("wifi Powered true"_s) +
                              says(name, {"State configuration"_s, "State ready"_s, "Proxy {}"_s}) +
                              isConnected() + leaseOf(name, "10.11.1"_s));
}
