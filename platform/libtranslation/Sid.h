#pragma once

/// The sentences that the speech service has in its translation files, by program and number.
namespace libtranslation::Sid {

/// The network daemon's sentences. The numbers are those of the translation files and go over the bus.
enum class NetworkManager : int {
    EthernetIpv4Address = 0, ///< arguments: the parts of the address between its dots
    EthernetIpv6Address = 1, ///< argument: the address, with "::" in words
    WifiSwitchingOff = 2,
    WifiSwitchingOn = 3,
    WifiSwitchFailed = 4,
    ConnectionFailed = 5,
    Connected = 6,
    WifiReconnected = 7,
    EthernetNoAddress = 8,
};

} // namespace libtranslation::Sid
