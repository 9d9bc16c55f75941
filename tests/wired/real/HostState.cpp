#include "HostState.h"

#include "Kernel.h"
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
    address.remove(QStringLiteral("valid_life_time"));
    address.remove(QStringLiteral("preferred_life_time"));
}

QByteArray addresses()
{
    const QString entriesKey = QStringLiteral("addr_info");
    QJsonArray links = QJsonDocument::fromJson(kernel::output(QStringLiteral("ip"),
                                                              {QStringLiteral("-j"), QStringLiteral("addr")}))
                           .array();
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
    const QString memory = QStringLiteral("/var/lib/connman");
    for (const QString &path : {QStringLiteral("/etc/resolv.conf"), QStringLiteral("/etc/hostname"),
                                QStringLiteral("/proc/sys/kernel/hostname")}) {
        state.insert(path, content(path));
    }
    QDirIterator files(memory, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        state.insert(path, content(path));
    }
    state.insert(memory, QFile::exists(memory) ? "there" : "not there");
    state.insert(QStringLiteral("addresses"), addresses());
    return state;
}
