#pragma once

#include "Command.h"
#include <QVector>

class Device;
class Feed;

/// The commands that change the world around the daemon: what is on the air and in the socket, who is on the
/// bus, which keys are pressed.
QVector<Command> deviceCommands(Device &device, Feed &feed);
