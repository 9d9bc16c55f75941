#pragma once

#include "Air.h"
#include "Connman.h"
#include "DaemonClient.h"
#include "Keyboard.h"
#include "Lan.h"
#include "Program.h"
#include "SpeechRecord.h"

#include <memory>

/// Everything a scenario acts on and looks at. Made anew for every scenario by `begin()`.
class World
{
public:
    /// Once per machine: the keyboard and the device's other programs.
    bool powerOn();

    /// The start every scenario may rely on: daemon and ConnMan running, Wi-Fi on and idle, no network known
    /// or preferred, all access points but "garden" on the air, the network cable not plugged, nothing said
    /// yet.
    bool begin();
    /// The start after the very first power-on: as `begin()`, but the daemon has never run before and Wi-Fi
    /// has never been on; nothing is started.
    bool beginUnused();
    /// Waits until the daemon, started or met by ConnMan anew, has set the region that many times, or tried
    /// to: a start-up without a stored region sets it twice, any other once; and until the power cycle that
    /// follows is over.
    bool waitUntilStarted(int regionCommands);
    /// Makes the next `begin()` start both programs anew: for scenarios that change what forgetting a network
    /// leaves.
    void spoil() { m_spoilt = true; }

    /// Stops and starts ConnMan under the running daemon and waits until it is back.
    bool restartConnman();
    /// Waits until the daemon has met a new ConnMan and Wi-Fi is on: a ConnMan that was still switching it on
    /// when the daemon took the card down, to give it its address, leaves it off until the daemon sees to
    /// that.
    bool waitUntilConnmanIsBack();
    /// Stops both and starts them as the second and every later boot does: ConnMan meets the card with the
    /// address that the daemon has given it, and names networks after that.
    bool restartBoth();

    /// Starts the daemon and waits until it owns its bus name.
    bool startDaemon();
    /// False when it took force.
    bool stopDaemon();

    Program &daemon() { return *m_daemon; }
    test_support::DaemonClient &client() { return *m_client; }
    Connman &connman() { return m_connman; }
    test_support::SpeechRecord &speech() { return m_speech; }
    Keyboard &keyboard() { return m_keyboard; }
    Air &air() { return m_air; }
    Lan &lan() { return m_lan; }

    /// The preferred network as the daemon's settings file has it; empty when there is none.
    static QString preferredNetwork();

private:
    bool startBoth();
    bool forgetNetworks();
    bool settle();
    /// What clients heard, what was spoken and what was logged so far is of no interest.
    void forgetTheStory();

    bool m_spoilt = true;
    test_support::SpeechRecord m_speech;
    std::unique_ptr<QObject> m_peers;
    Keyboard m_keyboard;
    Air m_air;
    Lan m_lan;
    Connman m_connman;
    std::unique_ptr<Program> m_daemon;
    std::unique_ptr<test_support::DaemonClient> m_client;
};
