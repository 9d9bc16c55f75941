#pragma once

#include "Program.h"

#include <QMap>
#include <QVariantMap>

/// ConnMan: its process, and the network as ConnMan itself tells it.
class Connman
{
public:
    /// Starts it and waits until it has found the Wi-Fi card.
    bool startAndWait();
    bool stopAndWait();
    bool isRunning() const { return m_program->isRunning(); }
    /// What it has written since the mark.
    QString log() const { return m_program->log(); }
    void markLog() { m_program->markLog(); }

    /// All services it lists, by identifier (the last element of the object path).
    QMap<QString, QVariantMap> services() const;
    /// One service's properties, asked for directly, so of a service that is no longer listed too.
    QVariantMap service(const QString &identifier) const;
    QString state(const QString &identifier) const;
    /// The IPv4 dictionary's entry, such as "Address" or "Method".
    QString ipv4(const QString &identifier, const QString &key) const;
    bool isFavorite(const QString &identifier) const;
    QStringList favorites() const;
    /// Waits until it lists a service of that name and security; the identifier, or an empty text.
    QString find(const QString &name, const QString &security) const;
    bool isListed(const QString &identifier) const;

    bool isWifiPowered() const;
    /// Switches the radio behind the daemon's back; waits until ConnMan says it is so.
    bool setWifiPowered(bool on) const;
    /// Sets a service's property behind the daemon's back.
    bool setProperty(const QString &identifier, const QString &name, const QVariant &value) const;

    /// Whether what it has stored about the network has the passphrase in it. Forgetting rewrites what is
    /// stored.
    static bool hasStored(const QString &identifier, const QString &passphrase);

private:
    std::unique_ptr<Program> m_program = makeConnman();
};
