#pragma once

#include "TestDevice.h"

#include <functional>
#include <optional>

namespace test_support {

/// A device on which something does not answer.
struct HangingDevice : TestDevice
{
    std::optional<Fault> silence;
};

/// Starts the daemon and brings it to a moment in which its thread is blocked; true when it is there.
using BlockingMoment = std::function<bool(HangingDevice &)>;

BlockingMoment commandHangsAtStart(const QString &command);
bool addressCommandHangs(HangingDevice &device);
bool regionCommandOfAClientHangs(HangingDevice &device);
bool connmanctlHangs(HangingDevice &device);
/// The configuration manager, or ConnMan's manager.
BlockingMoment peerIsSilentAtStart(const QString &interface, const QString &member);
/// ConnMan does not answer what the daemon calls because of a client's call about the network "Home".
BlockingMoment connmanIsSilent(const QString &interface, const QString &member,
                               const std::function<void(DaemonClient &client, const QString &home)> &call);

/// For a test's data: one row for each kind of moment, in the column "block".
void addAllMoments();

} // namespace test_support

Q_DECLARE_METATYPE(test_support::BlockingMoment)
