#include "DaemonCommands.h"

#include "ConnmanServices.h"
#include "DaemonInterface.h"
#include "Feed.h"
#include "NetworkList.h"
#include "NetworkNames.h"
#include "Values.h"
#include <QDBusPendingCallWatcher>
#include <utility>

namespace {
const QString replySource = QStringLiteral("reply");
}

DaemonCommands::DaemonCommands(QDBusConnection connection, NetworkNames &names, Feed &feed, QObject *parent)
    : QObject(parent)
    , m_connection(std::move(connection))
    , m_names(names)
    , m_feed(feed)
{
}

QVector<Command> DaemonCommands::commands()
{
    QVector<Command> commands;
    for (const DaemonCall &call : daemonCalls()) {
        commands << Command{call.name, call.form, call.help,
                            [this, &call](const QStringList &words) { perform(call, words); }};
    }
    return commands;
}

void DaemonCommands::perform(const DaemonCall &call, QStringList words)
{
    const int network = call.networkPosition();
    if (network >= 0) {
        m_names.setNetworks(connmanServices(m_connection));
        const NetworkNames::Result found = m_names.find(words.at(network));
        if (!found.problem.isEmpty()) {
            m_feed.tell(found.problem);
            return;
        }
        words[network] = found.identifier;
    }
    for (const DaemonMethod &method : call.methods) {
        send(method.name, call.arguments(words));
    }
}

void DaemonCommands::send(const QString &method, const QVariantList &arguments)
{
    ++m_openCalls;
    auto *watcher = new QDBusPendingCallWatcher(callDaemon(m_connection, method, arguments), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, method, watcher] {
        watcher->deleteLater();
        const DaemonAnswer answer = daemonAnswer(watcher->reply());
        if (answer.problem.isEmpty()) {
            showReply(method, answer.value);
        } else {
            m_feed.happened(replySource, QStringLiteral("%1 failed: %2").arg(method, answer.problem));
        }
        if (--m_openCalls == 0) {
            emit idle();
        }
    });
}

void DaemonCommands::showReply(const QString &method, const QVariant &value)
{
    if (method == QStringLiteral("networks")) {
        showNetworks(value.toMap());
        return;
    }
    const QString separator = value.type() == QVariant::Map ? QStringLiteral("\n") : QStringLiteral(" ");
    m_feed.happened(replySource, method + separator + valueText(value, 2));
}

void DaemonCommands::showNetworks(const QVariantMap &networks)
{
    const QVector<NetworkEntry> entries = networkEntries(networks);
    QStringList identifiers;
    for (const NetworkEntry &entry : entries) {
        identifiers << entry.identifier;
    }
    m_names.setListed(identifiers);
    for (const QString &line : networkLines(entries)) {
        m_feed.happened(replySource, line);
    }
    m_feed.happened(replySource, entries.size() == 1 ? QStringLiteral("1 network")
                                                     : QStringLiteral("%1 networks").arg(entries.size()));
}
