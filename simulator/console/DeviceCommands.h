#pragma once

#include "Command.h"
#include <QVector>

class Device;
class Feed;

/// The commands that change the printer itself: whether its daemon runs, which keys are pressed.
QVector<Command> deviceCommands(Device &device, Feed &feed);
