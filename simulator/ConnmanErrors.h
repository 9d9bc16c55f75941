#pragma once

#include "Call.h"

/// ConnMan's errors, with its own texts.
namespace simulator::error {

ErrorReply ofConnman(const char *name, const char *text);

/// EIO: a connection attempt came to nothing.
inline const ErrorReply failed = ofConnman("Failed", "Input/output error");
inline const ErrorReply alreadyConnected = ofConnman("AlreadyConnected", "Already connected");
inline const ErrorReply alreadyDisabled = ofConnman("AlreadyDisabled", "Already disabled");
inline const ErrorReply alreadyEnabled = ofConnman("AlreadyEnabled", "Already enabled");
inline const ErrorReply alreadyExists = ofConnman("AlreadyExists", "Already exists");
inline const ErrorReply inProgress = ofConnman("InProgress", "In progress");
inline const ErrorReply invalidArguments = ofConnman("InvalidArguments", "Invalid arguments");
inline const ErrorReply invalidProperty = ofConnman("InvalidProperty", "Invalid property");
inline const ErrorReply invalidService = ofConnman("InvalidService", "Invalid service");
inline const ErrorReply noCarrier = ofConnman("NoCarrier", "No carrier");
inline const ErrorReply notConnected = ofConnman("NotConnected", "Not connected");
inline const ErrorReply notRegistered = ofConnman("NotRegistered", "Not registered");
inline const ErrorReply notSupported = ofConnman("NotSupported", "Not supported");
inline const ErrorReply operationAborted = ofConnman("OperationAborted", "Operation aborted");
inline const ErrorReply operationTimeout = ofConnman("OperationTimeout", "Operation timeout");
inline const ErrorReply passphraseRequired = ofConnman("PassphraseRequired", "Passphrase required");

/// What libdbus answers for a path that is not there.
ErrorReply unknownObject(const Call &call);
/// What it answers for a method that an object does not have.
ErrorReply unknownMethod(const Call &call);

} // namespace simulator::error
