#include "AllServicesSubscription.h"

#include "ConnmanNames.h"

#include <QDBusConnection>

AllServicesSubscription::AllServicesSubscription(QDBusConnection connection, QObject *parent)
    : QObject(parent)
{
    const QString anyPath;
    connection.connect(ConnmanNames::service(), anyPath, ConnmanNames::serviceInterface(),
                       QLatin1String(ConnmanNames::PropertyChanged), this, SLOT(ignore()));
}
