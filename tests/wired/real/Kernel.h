#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// What is really set on this machine (that is, inside the world), asked of the kernel and the resolver's
/// file.
namespace kernel {

/// Runs a program to its end and returns its standard output; ends the test program when it fails, because
/// then the world itself is broken.
QByteArray output(const QString &program, const QStringList &arguments);

/// Whether the interface, of another network namespace if one is named, is up and can send.
bool isUp(const QString &interface, const QString &networkNamespace = {});
/// "address/prefix length" of every IPv4 address of the interface.
QStringList ipv4Addresses(const QString &interface);
/// The gateway of the default route through the interface; empty without one.
QString defaultGateway(const QString &interface);
/// The hardware address in lower case with colons.
QString hardwareAddress(const QString &interface);
/// Whether the interface takes part in IPv6 at all.
bool ipv6Enabled(const QString &interface);
/// The name servers in /etc/resolv.conf, in order.
QStringList nameservers();

} // namespace kernel
