// A client of the printer's networking daemon. The class NetworkManagerProxy is made by qdbusxml2cpp from
// com.tactora.NetworkManager.xml: one function for each method, one signal for each signal.

#include "networkmanagerproxy.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTextStream>

namespace {

enum ExitStatus { Done = 0, Refused = 1, Usage = 2, NoAnswer = 3 };

QTextStream out(stdout);
QTextStream err(stderr);

/// Waits with the event loop running, so that what `error` says has arrived when the answer has.
template <typename Value>
void wait(const QDBusPendingReply<Value> &reply)
{
    const QDBusPendingCallWatcher watcher(reply);
    QEventLoop loop;
    // In full: the proxy's own connect() is the one that connects networks.
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    loop.exec();
}

/// Tells why there was no answer.
ExitStatus noAnswer(const QDBusError &error)
{
    err << error.name() << ": " << error.message() << Qt::endl;
    return NoAnswer;
}

/// Carries out a call that answers whether it was done, and tells the reason where it was not.
ExitStatus carryOut(const NetworkManagerProxy &daemon, const QDBusPendingReply<bool> &reply)
{
    QString reason = QStringLiteral("no reason was told");
    const auto subscription = QObject::connect(&daemon, &NetworkManagerProxy::error,
                                               [&reason](const QString &message) { reason = message; });
    wait(reply);
    QObject::disconnect(subscription);
    if (reply.isError()) {
        return noAnswer(reply.error());
    }
    if (!reply.value()) {
        err << "failed: " << reason << Qt::endl;
        return Refused;
    }
    return Done;
}

/// The same for an attempt to connect, which is cancelled when the answer does not come in time.
ExitStatus carryOutAttempt(NetworkManagerProxy &daemon, const QString &identifier,
                           const QDBusPendingReply<bool> &reply)
{
    const ExitStatus status = carryOut(daemon, reply);
    if (reply.error().type() == QDBusError::NoReply) {
        daemon.disconnect(identifier).waitForFinished();
    }
    return status;
}

ExitStatus list(NetworkManagerProxy &daemon)
{
    const QDBusPendingReply<QVariantMap> reply = daemon.networks();
    wait(reply);
    if (reply.isError()) {
        return noAnswer(reply.error());
    }
    const QVariantMap networks = reply.value();
    for (auto network = networks.cbegin(); network != networks.cend(); ++network) {
        const auto properties = qdbus_cast<QVariantMap>(network.value());
        out << network.key() << '\t' << properties.value(QStringLiteral("State")).toString() << '\t'
            << properties.value(QStringLiteral("Name")).toString() << Qt::endl;
    }
    return Done;
}

/// Both forms of configure(): by DHCP, or with an address, a netmask and a gateway.
ExitStatus connectNetwork(NetworkManagerProxy &daemon, const QString &identifier,
                          const QStringList &addresses)
{
    const QDBusPendingReply<bool> configured =
        addresses.isEmpty() ? daemon.configure(identifier, QStringLiteral("dhcp"))
                            : daemon.configure(identifier, QStringLiteral("manual"), addresses.at(0),
                                               addresses.at(1), addresses.at(2));
    const ExitStatus status = carryOut(daemon, configured);
    return status == Done ? carryOutAttempt(daemon, identifier, daemon.connect(identifier)) : status;
}

/// The passphrase comes from standard input: what stands on a command line can be seen by everybody.
ExitStatus registerNetwork(NetworkManagerProxy &daemon, const QString &identifier)
{
    const QString passphrase = QTextStream(stdin).readLine();
    return carryOutAttempt(daemon, identifier, daemon.registerWifi(identifier, passphrase));
}

ExitStatus watch(NetworkManagerProxy &daemon)
{
    const auto tell = [](const char *signal) {
        return [signal](const QString &text) { out << signal << ' ' << text << Qt::endl; };
    };
    using Proxy = NetworkManagerProxy;
    QObject::connect(&daemon, &Proxy::error, tell("error"));
    QObject::connect(&daemon, &Proxy::networkRegistered, tell("networkRegistered"));
    QObject::connect(&daemon, &Proxy::networkForgot, tell("networkForgot"));
    QObject::connect(&daemon, &Proxy::networkConnected, tell("networkConnected"));
    QObject::connect(&daemon, &Proxy::networkDisconnected, tell("networkDisconnected"));
    QObject::connect(&daemon, &Proxy::powerChanged,
                     [](bool on) { out << "powerChanged " << (on ? "on" : "off") << Qt::endl; });
    QObject::connect(&daemon, &Proxy::regionChanged, [](const QString &region, bool locked) {
        out << "regionChanged " << region << (locked ? " locked" : "") << Qt::endl;
    });

    const QDBusPendingReply<QStringList> active = daemon.activeNetworks();
    wait(active);
    if (active.isError()) {
        return noAnswer(active.error());
    }
    out << "active " << active.value().join(QStringLiteral(", ")) << Qt::endl;
    return static_cast<ExitStatus>(QCoreApplication::exec());
}

ExitStatus usage()
{
    err << "Usage: example-networks [--timeout SECONDS] list | watch | register IDENTIFIER\n"
           "       | connect IDENTIFIER [ADDRESS NETMASK GATEWAY]"
        << Qt::endl;
    return Usage;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QStringList words = QCoreApplication::arguments().mid(1);

    NetworkManagerProxy daemon(QStringLiteral("com.tactora.NetworkManager"), QStringLiteral("/"),
                               QDBusConnection::systemBus());
    // ConnMan alone may take two minutes; Qt would wait for 25 s.
    int timeoutSeconds = 300;
    if (words.value(0) == QLatin1String("--timeout")) {
        timeoutSeconds = words.value(1).toInt();
        words = words.mid(2);
    }
    daemon.setTimeout(timeoutSeconds * 1000);

    const QString command = words.value(0);
    if (command == QLatin1String("list") && words.size() == 1) {
        return list(daemon);
    }
    if (command == QLatin1String("watch") && words.size() == 1) {
        return watch(daemon);
    }
    if (command == QLatin1String("register") && words.size() == 2) {
        return registerNetwork(daemon, words.at(1));
    }
    if (command == QLatin1String("connect") && (words.size() == 2 || words.size() == 5)) {
        return connectNetwork(daemon, words.at(1), words.mid(2));
    }
    return usage();
}
