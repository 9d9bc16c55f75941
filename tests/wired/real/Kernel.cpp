#include "Kernel.h"
#include "Text.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace kernel {

namespace {

QJsonArray ipJson(const QStringList &arguments)
{
    return QJsonDocument::fromJson(output("ip"_s, QStringList{"-j"_s} + arguments)).array();
}

QString firstLine(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readLine()).trimmed() : QString();
}

} // namespace

QByteArray output(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    const bool ended = process.waitForFinished();
    if (!ended || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        qFatal("%s %s failed: %s", qPrintable(program), qPrintable(arguments.join(QLatin1Char(' '))),
               process.readAllStandardError().constData());
    }
    return process.readAllStandardOutput();
}

bool isUp(const QString &interface, const QString &networkNamespace)
{
    QStringList arguments{"link"_s, "show"_s, "dev"_s, interface};
    if (!networkNamespace.isEmpty()) {
        arguments = QStringList{"-n"_s, networkNamespace} + arguments;
    }
    return ipJson(arguments).first().toObject().value("operstate"_s) == QLatin1String("UP");
}

QStringList ipv4Addresses(const QString &interface)
{
    const QJsonArray links = ipJson({"-4"_s, "address"_s, "show"_s, "dev"_s, interface});
    QStringList addresses;
    for (const QJsonValue &link : links) {
        const QJsonArray entries = link.toObject().value("addr_info"_s).toArray();
        for (const QJsonValue &entry : entries) {
            const QJsonObject address = entry.toObject();
            addresses << "%1/%2"_s.arg(address.value("local"_s).toString())
                             .arg(address.value("prefixlen"_s).toInt());
        }
    }
    return addresses;
}

QString defaultGateway(const QString &interface)
{
    const QJsonArray routes = ipJson({"-4"_s, "route"_s, "show"_s, "default"_s, "dev"_s, interface});
    return routes.isEmpty() ? QString() : routes.first().toObject().value("gateway"_s).toString();
}

QString hardwareAddress(const QString &interface)
{
    return firstLine("/sys/class/net/%1/address"_s.arg(interface));
}

bool ipv6Enabled(const QString &interface)
{
    return firstLine("/proc/sys/net/ipv6/conf/%1/disable_ipv6"_s.arg(interface)) == "0"_s;
}

QStringList nameservers()
{
    QFile file("/etc/resolv.conf"_s);
    QStringList servers;
    if (file.open(QIODevice::ReadOnly)) {
        const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
        const QString keyword = "nameserver "_s;
        for (const QString &line : lines) {
            if (line.startsWith(keyword)) {
                servers << line.mid(keyword.size()).trimmed();
            }
        }
    }
    return servers;
}

} // namespace kernel
