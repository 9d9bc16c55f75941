#pragma once

#include <QDBusMessage>
#include <QString>
#include <QVariantList>

/// Calls a method on the system bus and turns the event loop until the answer is there (an error message when
/// it did not come in time): the callee may well call services that this very process offers.
QDBusMessage callOnBus(const QString &service, const QString &path, const QString &interface,
                       const QString &method, const QVariantList &arguments = {}, int timeoutMs = 30000);

bool isOnBus(const QString &name);
