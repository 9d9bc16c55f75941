// The floor: the least a Qt 5 program needs to own a name on the bus and to answer a call.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QObject>
#include <QStringList>

class FloorService : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.tactora.NetworkManager")

public slots:
    QStringList activeNetworks() { return {QStringLiteral("Wired")}; }
};

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    FloorService service;
    QDBusConnection bus = QDBusConnection::systemBus();
    const bool registered =
        bus.registerObject(QStringLiteral("/"), &service, QDBusConnection::ExportAllSlots) &&
        bus.registerService(QStringLiteral("com.tactora.Floor"));
    return registered ? QCoreApplication::exec() : EXIT_FAILURE;
}

#include "FloorService.moc"
