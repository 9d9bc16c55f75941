#pragma once

#include <QStringList>
#include <QVariantMap>
#include <QVector>

/// What a list tells of a network. Each text says by itself what it means.
struct NetworkEntry
{
    QString identifier;
    QString name;
    QString state;
    QString signal;   ///< "signal 60"; empty on a cable
    QString security; ///< empty on a cable
    QString known;    ///< "known" or "new"

    /// In a list's order.
    QStringList texts() const { return {name, state, signal, security, known, identifier}; }
};

/// The networks of the daemon's reply: connected ones first, then known ones, then by signal and name.
QVector<NetworkEntry> networkEntries(const QVariantMap &networks);

/// One line each: "1. Kitchen, online, signal 60, passphrase, known, wifi_...".
QStringList networkLines(const QVector<NetworkEntry> &entries);

/// The same in columns below a heading.
QStringList networkTable(const QVector<NetworkEntry> &entries);
