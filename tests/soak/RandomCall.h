#pragma once

#include "DaemonMethods.h"

#include <QRandomGenerator>

#include <glib.h>

namespace soak {

/// A call of the daemon that a client may well make, sensible or not.
struct RandomCall
{
    QByteArray method;
    /// Floating, as ever.
    GVariant *arguments;
};

/// `identifiers`: the networks there are.
RandomCall randomCall(QRandomGenerator &random, const std::vector<QByteArray> &identifiers);

} // namespace soak
