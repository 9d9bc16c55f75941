#pragma once

#include "DaemonInterface.h"
#include "NetworkNames.h"
#include <QDBusServiceWatcher>
#include <QObject>

/// Tells on standard output, one line each and with the time, what the daemon tells everybody, and whether it
/// is there.
class SignalMonitor : public QObject
{
    Q_OBJECT
public:
    enum class Form { Text, Json };
    SignalMonitor(const QDBusConnection &connection, const NetworkNames &names, Form form,
                  QObject *parent = nullptr);

private:
    void tell(const QString &event, const QVariantList &arguments);

    DaemonSignals m_signals;
    QDBusServiceWatcher m_presence;
    const NetworkNames &m_names;
    const Form m_form;
};

/// What a signal says, for people: "connected: Kitchen".
QString signalText(const QString &name, const QVariantList &arguments, const NetworkNames &names);
