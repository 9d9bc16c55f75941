#include "BusLossWatch.h"

#include <QCoreApplication>
#include <QDebug>

BusLossWatch::BusLossWatch(QDBusConnection bus, QObject *parent)
    : QObject(parent)
{
    // libdbus itself makes this signal, on the receiving side only.
    bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                SLOT(busLost()));
}

void BusLossWatch::busLost()
{
    qCritical() << "Connection to system-bus lost.";
    QCoreApplication::exit(EXIT_FAILURE);
}
