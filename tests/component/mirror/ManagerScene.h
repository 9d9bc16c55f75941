#pragma once

#include "ConnmanFixture.h"
#include "ConnmanManager.h"
#include "MirrorNames.h"

#include <QObject>
#include <QStringList>

/// What a ConnmanManager announces from now on, one line a signal, in order:
/// "added <identifier>", "state <identifier> <number>", "interface <name> <number>".
class ManagerAnnouncements : public QObject
{
    Q_OBJECT

public:
    explicit ManagerAnnouncements(ConnmanManager &manager);

    QStringList lines() const { return m_lines; }
    /// Those of one kind, the first word.
    QStringList lines(const QString &kind) const;
    void clear() { m_lines.clear(); }

private:
    QStringList m_lines;
};

/// A manager whose announcements are recorded from its construction on, its first fill being over.
struct ManagerScene
{
    explicit ManagerScene(test_support::ConnmanFixture &fixture);

    /// Forgets what was announced, called and logged so far.
    void forget();
    QStringList interfaceLines() const;

    test_support::ConnmanFixture &fixture;
    ConnmanManager manager;
    ManagerAnnouncements announcements;
};

/// A manager that has filled its registry, with nothing recorded yet of what comes next.
struct FilledManagerScene : ManagerScene
{
    explicit FilledManagerScene(test_support::ConnmanFixture &fixture);
};

QString added(const QString &identifier);
QString stateOf(const QString &identifier, ConnmanService::State state);
QString interfaceIs(const QString &name, ConnmanService::State state);

/// The properties of a service on a network interface.
QVariantMap ethernet(const QString &interfaceName);
QVariantMap onInterface(const QString &interfaceName, const QString &stateWord);

/// Those of a service that has no more than a state.
QVariantMap idle();
/// The line about a service that is not there to be removed.
QString nonExistent(const QString &servicePath);

/// The object paths in the manager's registry, sorted.
QStringList registeredPaths(const ConnmanManager &manager);
