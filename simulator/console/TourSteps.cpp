#include "TourSteps.h"

namespace {

QStringList texts(std::initializer_list<const char *> words)
{
    QStringList list;
    for (const char *word : words) {
        list << QString::fromLatin1(word);
    }
    return list;
}

TourStep step(const char *narration, std::initializer_list<const char *> commands,
              std::initializer_list<const char *> expected)
{
    return {QString::fromLatin1(narration), texts(commands), texts(expected)};
}

} // namespace

const QVector<TourStep> &tourSteps()
{
    static const QVector<TourStep> steps = {
        step("The printer is switched on. ConnMan is not there yet; the daemon offers its services all the "
             "same.",
             {"connman stop", "daemon start"},
             {"bus: net.connman is gone", "bus: com.tactora.NetworkManager is there",
              "LED: Ethernet (led10) off", "LED: Wi-Fi (led8) off"}),
        step("A program asks whether Wi-Fi is on, and for the networks. Without ConnMan it is off, and there "
             "are "
             "none.",
             {"power", "list"}, {"reply: getWifiPower false", "reply: 0 networks"}),
        step("ConnMan starts, with two networks in reach. The daemon gives the Wi-Fi interface its address, "
             "sets "
             "the region and switches Wi-Fi off and on, so that the region takes effect.",
             {"add Library", "add Kitchen \"sweet potato\"", "connman start"},
             {"bus: net.connman is there", "program: iw list",
              "program: ip link set dev wlan0 address 02:a7:c4:", "program: iw reg set US",
              "signal: powerChanged false", "signal: powerChanged true"}),
        step("A program asks for the networks again.", {"list"},
             {"reply: 1. Kitchen, wifi, idle, psk", "reply: 2. Library, wifi, idle, none",
              "reply: 2 networks"}),
        step("The Ethernet cable is plugged in. The LED blinks while the address is asked for, then shines; "
             "the "
             "address is spoken.",
             {"cable in"},
             {"LED: Ethernet (led10) blinks every 1000 ms", "LED: Ethernet (led10) on",
              "speech: sentence 0, Ethernet has the address: 192 168 "}),
        step("Somebody switches an access point on.", {"add Guests", "list"}, {"reply: 4 networks"}),
        step("And off again.", {"remove Guests", "list"}, {"reply: 3 networks"}),
        step("The user joins the network Kitchen, with a passphrase that is wrong.",
             {"register Kitchen raw-potato"},
             {"LED: Wi-Fi (led8) blinks every 500 ms", "signal: error ", "speech: sentence 5",
              "reply: registerWifi false", "LED: Wi-Fi (led8) off"}),
        step("With the right one.", {"register Kitchen \"sweet potato\""},
             {"LED: Wi-Fi (led8) blinks every 1000 ms", "LED: Wi-Fi (led8) on", "speech: sentence 6",
              "signal: networkRegistered wifi_", "reply: registerWifi true"}),
        step("Both networks are in use now; this is the address on Wi-Fi.", {"active", "ip Kitchen"},
             {"reply: activeNetworks ...Wired", "reply: activeNetworks ...Kitchen",
              "reply: getConfiguration\n  Address: 192.168."}),
        step("The user holds one key and presses another: Wi-Fi goes off.", {"chord off"},
             {"speech: sentence 2", "signal: powerChanged false", "LED: Wi-Fi (led8) off"}),
        step("And on with a third one. The preferred network is joined by itself.", {"chord on"},
             {"speech: sentence 3", "signal: powerChanged true", "LED: Wi-Fi (led8) on", "speech: sentence 7",
              "signal: networkConnected Kitchen"}),
        step("ConnMan is restarted. The daemon registers its agent anew and joins the preferred network "
             "again.",
             {"connman restart"},
             {"bus: net.connman is gone", "bus: net.connman is there", "program: iw list",
              "signal: powerChanged true", "speech: sentence 7", "LED: Wi-Fi (led8) on"}),
        step("A program asks for a network that does not exist.", {"connect =nowhere"},
             {"signal: error Unknown network: 'nowhere'", "reply: connect false"}),
        step("The user wants the network forgotten.", {"forget Kitchen"},
             {"signal: networkForgot wifi_", "reply: forgetWifi true", "LED: Wi-Fi (led8) off"}),
        step("The cable is pulled out.", {"cable out"}, {"LED: Ethernet (led10) off"}),
        step("The printer is switched off.", {"daemon stop"},
             {"bus: com.tactora.NetworkManager is gone", "daemon: ended with status 0"}),
    };
    return steps;
}
