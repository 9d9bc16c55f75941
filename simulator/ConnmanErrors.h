#pragma once

#include "Call.h"

/// ConnMan's errors, with its own texts.
namespace simulator::error {

/// EIO: a connection attempt came to nothing.
ErrorReply failed();
ErrorReply alreadyConnected();
ErrorReply alreadyDisabled();
ErrorReply alreadyEnabled();
ErrorReply alreadyExists();
ErrorReply inProgress();
ErrorReply invalidArguments();
ErrorReply invalidProperty();
ErrorReply invalidService();
ErrorReply noCarrier();
ErrorReply notConnected();
ErrorReply notRegistered();
ErrorReply notSupported();
ErrorReply operationAborted();
ErrorReply operationTimeout();
ErrorReply passphraseRequired();

/// What libdbus answers for a path that is not there.
ErrorReply unknownObject(const Call &call);
/// What it answers for a method that an object does not have.
ErrorReply unknownMethod(const Call &call);

} // namespace simulator::error
