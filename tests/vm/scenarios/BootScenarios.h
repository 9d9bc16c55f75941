#pragma once

#include "World.h"

#include <QObject>

/// Of a file; empty when it cannot be read.
QString contentOf(const QString &path);

/// What takes a machine of its own, which is switched off and on: each function is called once in every boot
/// of it, with the boot's number, until it asks for no other.
class BootScenarios : public QObject
{
    Q_OBJECT
public:
    /// Boots are counted from 1. `cuts` is how often the power is cut.
    BootScenarios(int boot, int cuts);

private slots:
    void registeredNetworkIsJoinedAgainAfterAReboot();
    void lostBusBringsTheDaemonBack();
    void powerCutsLeaveEveryFileWhole();

private:
    bool prepareWorld();
    bool registerForLater();
    void writeUntilThePowerIsCut();

    int m_boot;
    int m_cuts;
    World m_world;
};
