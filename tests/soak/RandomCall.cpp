#include "RandomCall.h"

#include <array>
#include <QByteArrayList>

namespace soak {

namespace {

/// A network that is not there costs a scan.
constexpr int strangerIsHowRare = 20;
/// So does a list of them.
constexpr int listIsHowRare = 4;
constexpr int switchingOffIsHowRare = 8;

const std::vector<QByteArray> &words()
{
    static const std::vector<QByteArray> all{"",
                                             "dhcp",
                                             "manual",
                                             "auto",
                                             "off",
                                             "10.0.0.7",
                                             "255.255.255.0",
                                             "10.0.0.1",
                                             "nonsense",
                                             "right passphrase",
                                             "wrong passphrase",
                                             "peap",
                                             "ttls",
                                             "MSCHAPV2",
                                             "12345670",
                                             "SE",
                                             "NO"};
    return all;
}

const QByteArray &oneOf(QRandomGenerator &random, const std::vector<QByteArray> &all)
{
    return all.at(static_cast<std::size_t>(random.bounded(static_cast<int>(all.size()))));
}

bool oneIn(QRandomGenerator &random, int chances)
{
    return random.bounded(chances) == 0;
}

bool isAboutNetworks(const QByteArray &method)
{
    static const QByteArrayList others{"getHwAddress", "setWifiRegion", "setHostName"};
    return !others.contains(method);
}

bool scans(const QByteArray &method)
{
    return method == "networks" || method == "wpsNetworks";
}

const DaemonMethod &randomMethod(QRandomGenerator &random)
{
    const auto count = static_cast<int>(daemonMethods().size());
    const DaemonMethod *method = nullptr;
    do {
        method = &daemonMethods().at(static_cast<std::size_t>(random.bounded(count)));
    } while (scans(method->name) && !oneIn(random, listIsHowRare));
    return *method;
}

GVariant *addresses(QRandomGenerator &random)
{
    constexpr std::array<const char *, 3> servers{"10.0.0.1", "2001:db8::1", "nonsense"};
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE_STRING_ARRAY);
    for (int count = random.bounded(3); count > 0; --count) {
        g_variant_builder_add(&builder, "s",
                              servers.at(static_cast<std::size_t>(random.bounded(int(servers.size())))));
    }
    return g_variant_builder_end(&builder);
}

} // namespace

RandomCall randomCall(QRandomGenerator &random, const std::vector<QByteArray> &identifiers)
{
    const DaemonMethod &method = randomMethod(random);
    GVariantBuilder arguments;
    g_variant_builder_init(&arguments, G_VARIANT_TYPE_TUPLE);
    bool isFirst = true;
    for (int at = 0; at < method.signature.size(); ++at) {
        if (method.signature.at(at) == 'a') {
            g_variant_builder_add_value(&arguments, addresses(random));
            ++at;
        } else if (method.signature.at(at) == 'b') {
            g_variant_builder_add(&arguments, "b", oneIn(random, switchingOffIsHowRare) ? FALSE : TRUE);
        } else {
            const bool isNetwork =
                isFirst && isAboutNetworks(method.name) && !oneIn(random, strangerIsHowRare);
            g_variant_builder_add(&arguments, "s",
                                  oneOf(random, isNetwork ? identifiers : words()).constData());
        }
        isFirst = false;
    }
    return {method.name, g_variant_builder_end(&arguments)};
}

} // namespace soak
