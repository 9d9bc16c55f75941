#pragma once

#include "DaemonCalls.h"

/// What the daemon has answered to a call, one value of each of its methods, for people: "on", "Done.".
QString replyText(const DaemonCall &call, const QVariantList &values);

/// The same for programs: the value itself, in an object "value" where it is neither an object nor a list; of
/// several methods an object by their labels.
QString replyJson(const DaemonCall &call, const QVariantList &values);
