#include "HostState.h"

#include "Kernel.h"
#include "Text.h"
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("(not there)");
}

// The remaining life of an address that the machine has by lease counts down by itself.
void forgetLifetimes(QJsonObject &address)
{
    address.remove("valid_life_time"_s);
    address.remove("preferred_life_time"_s);
}

QByteArray addresses()
{
    const QString entriesKey = "addr_info"_s;
    QJsonArray links = QJsonDocument::fromJson(kernel::output("ip"_s, {"-j"_s, "addr"_s})).array();
    for (QJsonValueRef link : links) {
        QJsonObject interface = link.toObject();
        QJsonArray entries = interface.value(entriesKey).toArray();
        for (QJsonValueRef entry : entries) {
            QJsonObject address = entry.toObject();
            forgetLifetimes(address);
            entry = address;
        }
        interface.insert(entriesKey, entries);
        link = interface;
    }
    return QJsonDocument(links).toJson();
}

} // namespace

HostState hostState()
{
    HostState state;
    const QString memory = "/var/lib/connman"_s;
    for (const QString &path : {"/etc/resolv.conf"_s, "/etc/hostname"_s, "/proc/sys/kernel/hostname"_s}) {
        state.insert(path, content(path));
    }
    QDirIterator files(memory, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        state.insert(path, content(path));
    }
    state.insert(memory, QFile::exists(memory) ? "there" : "not there");
    state.insert("addresses"_s, addresses());
    return state;
}
