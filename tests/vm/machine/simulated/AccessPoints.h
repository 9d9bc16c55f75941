#pragma once

#include <QMap>
#include <QVariantMap>

/// The access points of guest/air as the simulated device knows them: the name there, and the options of the
/// script's "addNetwork". All but "garden": of one network the simulated air has one access point.
const QMap<QString, QVariantMap> &accessPoints();
