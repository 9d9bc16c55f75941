#include "DaemonMethods.h"

namespace soak {

const std::vector<DaemonMethod> &daemonMethods()
{
    static const std::vector<DaemonMethod> methods{
        {"connect", "s"},
        {"disconnect", "s"},
        {"configure", "ss"},
        {"configure", "sssss"},
        {"configureIPv6", "ss"},
        {"getHwAddress", "s"},
        {"getAddress", "s"},
        {"getNetmask", "s"},
        {"getGateway", "s"},
        {"getIPv6Address", "s"},
        {"getPrefix", "s"},
        {"getConfiguration", "s"},
        {"getIPv6Configuration", "s"},
        {"getNameservers", "s"},
        {"setNameservers", "sas"},
        {"networks", ""},
        {"wpsNetworks", ""},
        {"activeNetworks", ""},
        {"setWifiPower", "b"},
        {"getWifiPower", ""},
        {"forgetWifi", "s"},
        {"registerWifi", "ss"},
        {"registerHiddenWifi", "sss"},
        {"registerWiFiWpa2Enterprise", "sssss"},
        {"registerWifiWps", "s"},
        {"registerWifiWps", "ss"},
        {"checkWifiTechnology", ""},
        {"checkBluetoothTechnology", ""},
        {"getWifiRegion", ""},
        {"setWifiRegion", "s"},
        {"getLockRegion", ""},
        {"setLockRegion", "b"},
        {"getHostName", ""},
        {"setHostName", "s"},
    };
    return methods;
}

} // namespace soak
