#pragma once

/// The far end of the device's network cable.
class Lan
{
public:
    /// Dhcp serves 10.20.0.0/24, OtherDhcp 10.21.0.0/24, Ipv6Router advertises fd00:20::/64.
    enum class Server { Nobody, Dhcp, OtherDhcp, Ipv6Router };

    bool plugIn(Server server);
    bool unplug();

private:
    bool m_plugged = false;
};
