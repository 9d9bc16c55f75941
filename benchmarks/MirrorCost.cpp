// What it costs to mirror all of ConnMan's services: the daemon's ConnmanManager, or a bare Qt client that
// makes the same calls. Prints "<microseconds> <KiB resident>".

#include "ConnmanManager.h"
#include "ConnmanNames.h"
#include "ConnmanTypes.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QTextStream>

#include <functional>
#include <unistd.h>

namespace {

qint64 residentKiB()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const qint64 pages = statm.readAll().split(' ').value(1).toLongLong();
    return pages * sysconf(_SC_PAGESIZE) / 1024;
}

QDBusMessage call(const QString &path, const QString &interface, const QString &method)
{
    return QDBusConnection::systemBus().call(
        QDBusMessage::createMethodCall(ConnmanNames::Service, path, interface, method));
}

/// The properties of every service and a subscription to its changes, and nothing else.
class BareClient : public QObject
{
    Q_OBJECT

public:
    void mirror()
    {
        const QDBusReply<ConnmanServiceInfoList> reply = call(
            ConnmanNames::ManagerObject, ConnmanNames::ManagerInterface, QStringLiteral("GetServices"));
        const ConnmanServiceInfoList listed = reply.value();
        for (const ConnmanServiceInfo &info : listed) {
            mirrorService(info.path.path());
        }
    }

private slots:
    void propertyChanged() {}

private:
    void mirrorService(const QString &path)
    {
        QDBusConnection::systemBus().connect(ConnmanNames::Service, path, ConnmanNames::ServiceInterface,
                                             QStringLiteral("PropertyChanged"), this,
                                             SLOT(propertyChanged()));
        const QDBusReply<QVariantMap> properties =
            call(path, ConnmanNames::ServiceInterface, QStringLiteral("GetProperties"));
        m_services.insert(path, properties.value());
    }

    QHash<QString, QVariantMap> m_services;
};

void report(const std::function<void()> &mirror)
{
    const qint64 residentBefore = residentKiB();
    QElapsedTimer timer;
    timer.start();
    mirror();
    const qint64 elapsed = timer.nsecsElapsed() / 1000;
    QTextStream(stdout) << elapsed << ' ' << residentKiB() - residentBefore << '\n';
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    registerConnmanTypes();
    // As in the daemon: without one, every subscription would ask the bus for the name's owner.
    const QDBusServiceWatcher watcher(ConnmanNames::Service, QDBusConnection::systemBus());

    if (QCoreApplication::arguments().contains(QLatin1String("bare"))) {
        BareClient client;
        report([&client] { client.mirror(); });
    } else {
        ConnmanManager manager(QDBusConnection::systemBus(), nullptr);
        report([&manager] { manager.updateServices(); });
    }
    return EXIT_SUCCESS;
}

#include "MirrorCost.moc"
