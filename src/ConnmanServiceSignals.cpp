#include "ConnmanServiceSignals.h"

#include "ConnmanNames.h"
#include "ConnmanService.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QPointer>
#include <QVector>

std::shared_ptr<ConnmanServiceSignals> ConnmanServiceSignals::of(const QDBusConnection &connection)
{
    static QHash<QString, std::weak_ptr<ConnmanServiceSignals>> byConnection;
    std::weak_ptr<ConnmanServiceSignals> &known = byConnection[connection.name()];
    std::shared_ptr<ConnmanServiceSignals> signalsOfAll = known.lock();
    if (!signalsOfAll) {
        signalsOfAll.reset(new ConnmanServiceSignals(connection));
        known = signalsOfAll;
    }
    return signalsOfAll;
}

ConnmanServiceSignals::ConnmanServiceSignals(QDBusConnection connection)
{
    const QString anyPath;
    m_isSubscribed = connection.connect(ConnmanNames::Service, anyPath, ConnmanNames::ServiceInterface,
                                        ConnmanNames::PropertyChanged, ConnmanNames::PropertyChangedSignature,
                                        this, SLOT(propertyChanged(QString, QDBusVariant, QDBusMessage)));
}

bool ConnmanServiceSignals::add(ConnmanService *service)
{
    m_services.insert(service->path(), service);
    return m_isSubscribed;
}

void ConnmanServiceSignals::remove(ConnmanService *service)
{
    m_services.remove(service->path(), service);
}

void ConnmanServiceSignals::propertyChanged(const QString &name, const QDBusVariant &value,
                                            const QDBusMessage &signal)
{
    // What one is told may be the end of another.
    QVector<QPointer<ConnmanService>> concerned;
    const auto [first, last] = qAsConst(m_services).equal_range(signal.path());
    for (auto it = first; it != last; ++it) {
        concerned.append(*it);
    }
    for (const QPointer<ConnmanService> &service : qAsConst(concerned)) {
        if (service) {
            service->propertyChanged(name, value);
        }
    }
}
