#pragma once

#include "Scene.h"

#include <functional>
#include <optional>

/// Moments in which the daemon's thread is blocked.
namespace hanging {

/// A device on which something does not answer.
struct HangingDevice : test_support::TestDevice
{
    std::optional<test_support::Fault> silence;
};

/// Starts the daemon and brings it to such a moment; true when it is there.
using Moment = std::function<bool(HangingDevice &)>;

Moment commandHangsAtStart(const QString &command);
bool addressCommandHangs(HangingDevice &device);
bool regionCommandOfAClientHangs(HangingDevice &device);
bool connmanctlHangs(HangingDevice &device);

/// One row for each kind, in the column "block".
void addAllMoments();

} // namespace hanging

Q_DECLARE_METATYPE(hanging::Moment)
