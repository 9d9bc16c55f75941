#pragma once

#include "Scenarios.h"

/// All scenarios, and those that only a real kernel, real access points, the bus's policy and the unit can
/// decide.
class MachineScenarios : public Scenarios
{
    Q_OBJECT
private slots:
    // OnTheAir.cpp
    void wlanUsesTheAddressOfTheSerialNumberOnTheAir();
    void secondAccessPointOfTheSameNameTakesOver();

    // Policy.cpp
    void memberOfTheGroupMayCallEverything();
    void strangerMayCallNothing();
    void strangerHearsTheSignals();
    void nobodyButRootOwnsTheNameOrReachesTheAgent();

    // Life.cpp
    void stopInsideAConnectEndsInTime();
    void killedDaemonComesBackAndRejoins_data();
    void killedDaemonComesBackAndRejoins();
    void manyCrashesInARowDoNotSilenceIt();
    void killedConnmanComesBackAndIsRejoined();
    void restartOfBothAtOnceRejoins();

    // Sandbox.cpp
    void hostNameIsWrittenAfterOthersReplacedItsFile();
    void nothingButItsFilesIsWritable();
    void exposureStaysLow();
    void journalHasThePriorities();
    void cleaningTheUnitTakesNothing();

    // Upgrade.cpp
    void upgradeWhileJoinedKeepsEverything();
};
