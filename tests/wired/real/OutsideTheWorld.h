#pragma once

#include "HostState.h"
#include <QObject>
#include <QStringList>

/// Whether this process runs inside the private world, so that it may start a ConnMan.
bool isInsideTheWorld();

/// What a wired test program does when it is started on the machine itself: it runs itself inside a private
/// world and looks whether the machine is the same afterwards.
class OutsideTheWorld : public QObject
{
    Q_OBJECT
public:
    explicit OutsideTheWorld(QStringList commandLine);

private slots:
    void initTestCase();
    void allPassInsideTheWorld();
    void theMachineIsAsItWas();

private:
    const QStringList m_commandLine;
    HostState m_before;
};
