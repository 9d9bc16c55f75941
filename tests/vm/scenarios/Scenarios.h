#pragma once

#include "Text.h"
#include "World.h"

#include <QElapsedTimer>
#include <QObject>

/// What a user of the device or a client of the daemon sees, one scenario a function, each beginning with the
/// world as `World::begin()` leaves it. The files beside this one hold them by subject.
class Scenarios : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    // Device.cpp
    void firstStartSetsRegionAndHardwareAddress();
    void regionReachesTheKernelAndSurvivesARestart();
    void lockedRegionCannotBeChanged();
    void hostNameIsWrittenToItsFile();
    void technologiesAreReported();

    // Queries.cpp
    void networksAreListedWithConnmansProperties();
    void onlyNetworksWithWpsAreListedAsSuch();
    void activeNetworksAreTheJoinedOnes();
    void gettersTellWhatTheKernelHas();

    // Registering.cpp
    void registerWithPassphraseJoinsAndIsRemembered();
    void registerWithWrongPassphraseReportsInvalidKey();
    void registerAfterAWrongPassphraseStillSucceeds();
    void registerOpenNetworkNeedsNoPassphrase();
    void registerHiddenNetworkByItsName();
    void registerHiddenNetworkWithWrongPassphraseFails();
    void registerSecondNetworkMakesItThePreferredOne();
    void registerUnknownNetworkIsRefused();
    void registerWithoutPassphraseIsRefused();

    // Enterprise.cpp
    void registerEnterpriseWithPeap();
    void registerEnterpriseWithTtls();
    void registerEnterpriseWithWrongPasswordLeavesNoFile();
    void registerEnterpriseAfterAWrongPasswordStillSucceeds();
    void forgetEnterpriseRemovesItsFile();

    // Wps.cpp
    void registerWithWpsPin();
    void registerWithWrongWpsPinFails();
    void registerWithTheButtonAtTheAccessPoint();
    void registerWithWpsToAnyNetworkIsRefused();

    // Connecting.cpp
    void connectKnownNetworkAsksForNothing();
    void connectUnknownNetworkIsRefused();
    void connectNetworkThatNeedsAPassphraseFails();
    void disconnectLeavesTheNetworkAndThePreference();
    void disconnectUnknownNetworkIsRefused();
    void forgetDropsTheStoredCredentials();
    void emptyNamesAreRefused();

    // Rejoining.cpp
    void wifiOffAndOnOverTheBusRejoins();
    void keyChordSwitchesWifiOffAndOnAndRejoins();
    void keysWithoutTheModifierDoNothing();
    void connmanRestartRejoins();
    void connmanRestartAfterPowerOnNeedsTheCredentialsAgain();
    void daemonRestartRejoins();
    void accessPointOffAndOnRejoins();
    void preferredNetworkWinsOverAnotherKnownOne();

    // Conversation.cpp
    void connmanTellsOfJoiningAndLeaving();
    void connmanTellsOfAWrongPassphrase();
    void connmanTellsOfWps();
    void connmanTellsOfANetworkThatGoes();
    void connmanTellsOfWifiOffAndOn();

    // Addresses.cpp
    void staticAddressIsUsedOnTheAir();
    void automaticAddressComesBack();
    void addressIsRemovedWhenIpv4IsOff();
    void nameServersReachConnman();
    void ipv6CanBeSwitchedOffAndOn();
    void invalidAddressesAreRefused();

    // Leds.cpp
    void wifiLedFollowsJoiningAndLeaving();
    void wifiLedBlinksAfterAFailure();

    // Ethernet.cpp
    void leaseIsAnnounced();
    void configuredIpv6AddressIsAnnouncedWhenThereIsNoOther();
    void automaticIpv6AddressAloneIsNotAnnounced();
    void missingAddressIsAnnouncedAfterSixteenLooks();
    void pluggingInAgainAnnouncesAgain();
    void pluggingIntoAnotherNetworkAnnouncesItsAddress();

protected:
    /// Waits until ConnMan lists the network; its identifier, or an empty text.
    QString network(const QString &name, const QString &security = "psk"_s);
    /// Calls a daemon's method that answers with a truth value.
    template <typename... Arguments>
    bool does(const char *method, const Arguments &...arguments)
    {
        return client().call(method, arguments...).toBool();
    }
    /// Registers "Atelier" and checks that it worked; its identifier, or an empty text.
    QString joinAtelier();
    /// The same with a ConnMan that knows the network under a name that stays when ConnMan is started again:
    /// the first one after power-on met the card before the daemon had given it its address.
    QString joinAtelierToStay();
    /// Begins the scenario once more, with a ConnMan and a daemon just started.
    bool beginAfresh();
    /// Begins to register the network with a PIN, and waits until ConnMan has one to try.
    bool beginsWps(const QString &identifier, const QString &pinOfThisDevice);
    /// Waits until a method called without waiting has answered so.
    bool answers(const QString &entry);
    bool isJoined(const QString &identifier);
    /// Waits until the daemon has told that "Atelier" is joined again, and it is.
    bool isRejoined(const QString &identifier);
    /// The file that makes ConnMan know an enterprise network.
    static QString provisioningFile(const QString &identifier);

    Program &daemon() { return m_world.daemon(); }
    test_support::DaemonClient &client() { return m_world.client(); }
    Connman &connman() { return m_world.connman(); }
    test_support::SpeechRecord &speech() { return m_world.speech(); }
    Air &air() { return m_world.air(); }
    Lan &lan() { return m_world.lan(); }

    World m_world;

private:
    QElapsedTimer m_elapsed;
};

namespace Secret {

const QString atelier = "correct horse"_s;
const QString cellar = "potatoes and wine"_s;
const QString studioPin = "12345670"_s; // the last digit is the checksum of the others
const QString wrongPin = "76543210"_s;
const QString officeUser = "braille"_s;
const QString officePassword = "six dots"_s;

} // namespace Secret

/// A program of scenarios. Qt Test ends one whose function takes five minutes, with all that would follow;
/// these may wait for longer, and fail alone.
int runScenarios(QObject &scenarios, const QStringList &arguments);
