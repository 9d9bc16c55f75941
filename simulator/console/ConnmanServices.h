#pragma once

#include <QDBusConnection>
#include <QVariantMap>

/// The services that ConnMan has on this bus, without a scan: identifier to properties. None without ConnMan.
QVariantMap connmanServices(const QDBusConnection &bus);
