#pragma once

#include "Text.h"
#include <QDBusMessage>
#include <QString>
#include <QVariantList>

/// The daemon's name on the bus, which is its interface's too.
inline const QString daemonName = "com.tactora.NetworkManager"_s;

/// Calls a method on the system bus and turns the event loop until the answer is there (an error message when
/// it did not come in time): the callee may well call services that this very process offers.
QDBusMessage callOnBus(const QString &service, const QString &path, const QString &interface,
                       const QString &method, const QVariantList &arguments = {}, int timeoutMs = 30000);

bool isOnBus(const QString &name);
