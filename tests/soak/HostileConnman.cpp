#include "HostileConnman.h"

#include "DaemonMethods.h"

#include <array>

namespace soak {

namespace {

constexpr int oddIsHowRare = 8;
/// The deepest that the wire lets a "PropertyChanged" carry inside a dictionary.
constexpr int mostVariants = 60;

const Member servicesChangedSignal{"/", "net.connman.Manager", "ServicesChanged"};

} // namespace

HostileConnman::HostileConnman(const QString &busAddress, quint32 seed)
    : m_values(seed)
    , m_answers(seed + 1)
    , m_peer(busAddress, [this](const QByteArray &member) { return answer(member); })
{
}

GVariant *HostileConnman::answer(const QByteArray &member)
{
    if (member == "Scan" || m_answers.oneIn(oddIsHowRare)) {
        return nullptr;
    }
    if (m_answers.oneIn(oddIsHowRare)) {
        return m_answers.anyArguments();
    }
    if (member == "GetProperties") {
        GVariant *properties = m_answers.properties();
        return g_variant_new_tuple(&properties, 1);
    }
    if (member == "GetServices" || member == "GetTechnologies") {
        GVariant *list = m_answers.serviceList();
        return g_variant_new_tuple(&list, 1);
    }
    return g_variant_new_tuple(nullptr, 0);
}

void HostileConnman::sendOne()
{
    switch (m_values.below(4)) {
    case 0:
        changeServices();
        break;
    case 1:
        askAgent();
        break;
    default:
        changeProperty();
    }
}

void HostileConnman::changeProperty()
{
    constexpr std::array<const char *, 3> interfaces{"net.connman.Service", "net.connman.Technology",
                                                     "net.connman.Manager"};
    const QByteArray interface = interfaces.at(static_cast<std::size_t>(m_values.below(interfaces.size())));
    const Member signal{m_values.path(), interface, "PropertyChanged"};
    if (m_values.oneIn(oddIsHowRare)) {
        m_peer.emitSignal(signal, m_values.anyArguments());
        return;
    }
    GVariant *value = m_values.oneIn(oddIsHowRare)
                          ? RandomValues::dictionaryWith(RandomValues::nested(mostVariants))
                          : m_values.propertyValue();
    m_peer.emitSignal(signal, g_variant_new("(sv)", m_values.propertyName().constData(), value));
}

void HostileConnman::changeServices()
{
    m_peer.emitSignal(servicesChangedSignal,
                      m_values.oneIn(oddIsHowRare) ? m_values.anyArguments() : m_values.servicesChanged());
}

void HostileConnman::removeAllServices()
{
    m_peer.emitSignal(servicesChangedSignal, RandomValues::allServicesGone());
}

void HostileConnman::askAgent()
{
    const Member question{"/agent", "net.connman.Agent", "RequestInput"};
    GVariant *arguments =
        m_values.oneIn(oddIsHowRare)
            ? m_values.anyArguments()
            : g_variant_new("(o@a{sv})", m_values.path().constData(), m_values.requestedFields());
    m_peer.call(daemonName, question, arguments);
}

} // namespace soak
