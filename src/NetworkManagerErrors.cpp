// How NetworkManager's operations find their network, and say why they fail.

#include "NetworkManager.h"

#include "NetworkManagerLog.h"

NetworkManager::Service NetworkManager::findOrReport(const QString &name)
{
    return reportIfMissing(m_lookup.byName(name, IfMissing::ScanOnce), name);
}

NetworkManager::Service NetworkManager::reportIfMissing(const Service &service, const QString &name)
{
    if (!service) {
        qCCritical(logNetworkManager) << "No such network available:" << name;
        emit error(QStringLiteral("Unknown network: '%1'").arg(name));
    }
    return service;
}

bool NetworkManager::refuse(const char *logText, const QString &errorText)
{
    qCCritical(logNetworkManager) << logText;
    emit error(errorText);
    return false;
}

bool NetworkManager::refuseValue(const char *logText, const QString &value, const QString &errorTemplate)
{
    qCCritical(logNetworkManager) << logText << value;
    emit error(errorTemplate.arg(value));
    return false;
}
