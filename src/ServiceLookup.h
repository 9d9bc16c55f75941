#pragma once

#include <QList>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class ConnmanManager;
class ConnmanService;
class ConnmanTechnology;
class QDeadlineTimer;

/// Finds ConnMan's services, by a scan where that is wanted. Before ConnMan has been seen there are none, and
/// nothing is scanned.
class ServiceLookup
{
public:
    using Service = std::shared_ptr<ConnmanService>;

    /// What a look-up does when the service is not there.
    enum class IfMissing {
        GiveUp,
        ScanOnce, ///< blocks for the scan, seconds, and up to 200 ms more for its announcement
    };

    /// From now on ConnMan is asked; both must outlive this.
    void attach(ConnmanManager *manager, ConnmanTechnology *wifi);

    QList<Service> services() const;
    /// The service with that identifier; empty when there is none.
    Service byName(const QString &identifier, IfMissing ifMissing);
    /// The same, of Wi-Fi services only.
    Service wifiByName(const QString &identifier, IfMissing ifMissing);
    /// The first service that is bound to a network interface such as "eth0".
    Service byInterface(const QString &interface, IfMissing ifMissing);

    /// Scans for networks, for somebody who wants to list what is there: blocks for seconds.
    void scan();
    /// Scans and lets ConnMan's dust settle for `pause` before somebody connects; blocks for both.
    void scanAndSettle(std::chrono::milliseconds pause);

private:
    using Condition = std::function<bool(const ConnmanService &)>;

    Service find(const Condition &matches) const;
    Service find(const Condition &matches, IfMissing ifMissing);
    std::optional<QDeadlineTimer> scanUntilAnswered();

    ConnmanManager *m_manager = nullptr;
    ConnmanTechnology *m_wifi = nullptr;
};
