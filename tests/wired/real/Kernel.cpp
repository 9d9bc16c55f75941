#include "Kernel.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace kernel {

namespace {

QJsonArray ipJson(const QStringList &arguments)
{
    return QJsonDocument::fromJson(
               output(QStringLiteral("ip"), QStringList{QStringLiteral("-j")} + arguments))
        .array();
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
    QStringList arguments{QStringLiteral("link"), QStringLiteral("show"), QStringLiteral("dev"), interface};
    if (!networkNamespace.isEmpty()) {
        arguments = QStringList{QStringLiteral("-n"), networkNamespace} + arguments;
    }
    return ipJson(arguments).first().toObject().value(QStringLiteral("operstate")) == QLatin1String("UP");
}

QStringList ipv4Addresses(const QString &interface)
{
    const QJsonArray links = ipJson({QStringLiteral("-4"), QStringLiteral("address"), QStringLiteral("show"),
                                     QStringLiteral("dev"), interface});
    QStringList addresses;
    for (const QJsonValue &link : links) {
        const QJsonArray entries = link.toObject().value(QStringLiteral("addr_info")).toArray();
        for (const QJsonValue &entry : entries) {
            const QJsonObject address = entry.toObject();
            addresses << QStringLiteral("%1/%2")
                             .arg(address.value(QStringLiteral("local")).toString())
                             .arg(address.value(QStringLiteral("prefixlen")).toInt());
        }
    }
    return addresses;
}

QString defaultGateway(const QString &interface)
{
    const QJsonArray routes = ipJson({QStringLiteral("-4"), QStringLiteral("route"), QStringLiteral("show"),
                                      QStringLiteral("default"), QStringLiteral("dev"), interface});
    return routes.isEmpty() ? QString()
                            : routes.first().toObject().value(QStringLiteral("gateway")).toString();
}

QString hardwareAddress(const QString &interface)
{
    return firstLine(QStringLiteral("/sys/class/net/%1/address").arg(interface));
}

bool ipv6Enabled(const QString &interface)
{
    return firstLine(QStringLiteral("/proc/sys/net/ipv6/conf/%1/disable_ipv6").arg(interface)) ==
           QStringLiteral("0");
}

QStringList nameservers()
{
    QFile file(QStringLiteral("/etc/resolv.conf"));
    QStringList servers;
    if (file.open(QIODevice::ReadOnly)) {
        const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
        const QString keyword = QStringLiteral("nameserver ");
        for (const QString &line : lines) {
            if (line.startsWith(keyword)) {
                servers << line.mid(keyword.size()).trimmed();
            }
        }
    }
    return servers;
}

} // namespace kernel
