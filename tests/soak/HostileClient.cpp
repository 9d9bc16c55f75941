#include "HostileClient.h"

#include "DaemonMethods.h"

#include <array>

namespace soak {

namespace {

struct StandardCall
{
    const char *interface;
    const char *member;
    const char *signature;
};

constexpr std::array<StandardCall, 6> standardCalls{{
    {"org.freedesktop.DBus.Introspectable", "Introspect", ""},
    {"org.freedesktop.DBus.Peer", "Ping", ""},
    {"org.freedesktop.DBus.Peer", "GetMachineId", ""},
    {"org.freedesktop.DBus.Properties", "Get", "ss"},
    {"org.freedesktop.DBus.Properties", "GetAll", "s"},
    {"org.freedesktop.DBus.Properties", "Set", "ssv"},
}};

constexpr std::array<const char *, 5> agentMembers{"RequestInput", "ReportError", "RequestBrowser", "Release",
                                                   "RequestPeerAuthorization"};

/// As deep as the bus lets through.
GVariant *deepArguments()
{
    constexpr int mostVariants = 64;
    GVariant *value = RandomValues::nested(mostVariants);
    return g_variant_new_tuple(&value, 1);
}

} // namespace

HostileClient::HostileClient(const QString &busAddress, quint32 seed)
    : m_peer(busAddress)
    , m_values(seed)
{
}

void HostileClient::sendOne()
{
    constexpr std::array<void (HostileClient::*)(), 7> kinds{&HostileClient::callAsItShould,
                                                             &HostileClient::callWithOddArguments,
                                                             &HostileClient::callWithOddArguments,
                                                             &HostileClient::callSomethingUnknown,
                                                             &HostileClient::callStandardInterface,
                                                             &HostileClient::callAgent,
                                                             &HostileClient::forgeSignal};
    (this->*kinds.at(static_cast<std::size_t>(m_values.below(kinds.size()))))();
}

void HostileClient::send(const Member &member, GVariant *arguments)
{
    constexpr int descriptorsAreRare = 50;
    m_peer.call(daemonName, member, arguments, m_values.oneIn(descriptorsAreRare));
}

void HostileClient::callAsItShould()
{
    const DaemonMethod &method = daemonMethods().at(
        static_cast<std::size_t>(m_values.below(static_cast<int>(daemonMethods().size()))));
    send({"/", daemonName, method.name}, m_values.arguments(method.signature));
}

void HostileClient::callWithOddArguments()
{
    const DaemonMethod &method = daemonMethods().at(
        static_cast<std::size_t>(m_values.below(static_cast<int>(daemonMethods().size()))));
    constexpr int deepIsRare = 50;
    send({"/", daemonName, method.name},
         m_values.oneIn(deepIsRare) ? deepArguments() : m_values.anyArguments());
}

void HostileClient::callSomethingUnknown()
{
    const std::array<Member, 5> members{{{"/", daemonName, "noSuchMethod"},
                                         {"/", "no.such.Interface", "connect"},
                                         {"/nowhere", daemonName, "connect"},
                                         {"/", {}, "connect"},
                                         {"/agent/further", "net.connman.Agent", "Release"}}};
    send(members.at(static_cast<std::size_t>(m_values.below(members.size()))), m_values.anyArguments());
}

void HostileClient::callStandardInterface()
{
    const StandardCall &call =
        standardCalls.at(static_cast<std::size_t>(m_values.below(standardCalls.size())));
    send({m_values.oneIn(2) ? "/" : "/agent", call.interface, call.member},
         m_values.oneIn(2) ? m_values.arguments(call.signature) : m_values.anyArguments());
}

void HostileClient::callAgent()
{
    const char *member = agentMembers.at(static_cast<std::size_t>(m_values.below(agentMembers.size())));
    send({"/agent", "net.connman.Agent", member},
         m_values.oneIn(2) ? m_values.arguments("oa{sv}") : m_values.anyArguments());
}

void HostileClient::forgeSignal()
{
    const std::array<Member, 4> members{
        {{"/", "net.connman.Manager", "ServicesChanged"},
         {m_values.servicePath(), "net.connman.Service", "PropertyChanged"},
         {"/net/connman/technology/wifi", "net.connman.Technology", "PropertyChanged"},
         {"/org/freedesktop/DBus", "org.freedesktop.DBus", "NameOwnerChanged"}}};
    const Member &member = members.at(static_cast<std::size_t>(m_values.below(members.size())));
    GVariant *arguments = m_values.anyArguments();
    if (member.name == "ServicesChanged" && m_values.oneIn(2)) {
        g_variant_unref(g_variant_ref_sink(arguments));
        arguments = m_values.servicesChanged();
    }
    m_peer.emitSignal(member, arguments, m_values.oneIn(2) ? daemonName : QByteArray());
}

} // namespace soak
