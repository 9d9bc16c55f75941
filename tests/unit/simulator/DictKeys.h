#pragma once

#include "ConnmanWire.h"

#include <QStringList>

/// The keys in the order in which they are sent.
inline QStringList keys(const simulator::PropertyDict &dict)
{
    QStringList result;
    for (const auto &entry : dict.entries) {
        result.append(entry.first);
    }
    return result;
}
