#pragma once

#include <QDBusConnection>
#include <QObject>

/// Ends the event loop with exit status 1 when the connection to the bus is lost, so that the init system
/// starts the daemon anew: nothing of it works without the bus, and Qt does not reconnect.
class BusLossWatch : public QObject
{
    Q_OBJECT

public:
    explicit BusLossWatch(QDBusConnection bus, QObject *parent = nullptr);

private slots:
    void busLost();
};
