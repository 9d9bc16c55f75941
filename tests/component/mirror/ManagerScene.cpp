#include "ManagerScene.h"
#include "Text.h"

#include <QCoreApplication>

ManagerAnnouncements::ManagerAnnouncements(ConnmanManager &manager)
{
    connect(
        &manager, &ConnmanManager::serviceChanged, this,
        [this](const std::shared_ptr<ConnmanService> &service) { m_lines << added(service->identifier()); });
    connect(&manager, &ConnmanManager::serviceStateChanged, this,
            [this](const std::shared_ptr<ConnmanService> &service) {
                m_lines << stateOf(service->identifier(), service->state());
            });
    connect(
        &manager, &ConnmanManager::interfaceStateChanged, this,
        [this](const QString &name, ConnmanService::State state) { m_lines << interfaceIs(name, state); });
}

QStringList ManagerAnnouncements::lines(const QString &kind) const
{
    QStringList result;
    for (const QString &line : m_lines) {
        if (line.startsWith(kind + QLatin1Char(' '))) {
            result << line;
        }
    }
    return result;
}

ManagerScene::ManagerScene(test_support::ConnmanFixture &connmanFixture)
    : fixture(connmanFixture)
    , manager(test_support::ConnmanFixture::connection(), nullptr)
    , announcements(manager)
{
    // The first fill is due on the next pass of the event loop.
    QCoreApplication::processEvents();
}

void ManagerScene::forget()
{
    fixture.forget();
    announcements.clear();
}

QStringList ManagerScene::interfaceLines() const
{
    return announcements.lines("interface"_s);
}

FilledManagerScene::FilledManagerScene(test_support::ConnmanFixture &connmanFixture)
    : ManagerScene(connmanFixture)
{
    forget();
}

QString added(const QString &identifier)
{
    return "added %1"_s.arg(identifier);
}

QString stateOf(const QString &identifier, ConnmanService::State state)
{
    return "state %1 %2"_s.arg(identifier).arg(static_cast<int>(state));
}

QString interfaceIs(const QString &name, ConnmanService::State state)
{
    return "interface %1 %2"_s.arg(name).arg(static_cast<int>(state));
}

QVariantMap ethernet(const QString &interfaceName)
{
    return {{"Interface"_s, interfaceName}};
}

QVariantMap onInterface(const QString &interfaceName, const QString &stateWord)
{
    return {{"Ethernet"_s, ethernet(interfaceName)}, {"State"_s, stateWord}};
}

QVariantMap idle()
{
    return {{StateKey, "idle"_s}};
}

QString nonExistent(const QString &servicePath)
{
    return test_support::warning(ServicesLog,
                                 "Trying to remove non-existant service \"%1\""_s.arg(servicePath));
}

QStringList registeredPaths(const ConnmanManager &manager)
{
    QStringList paths;
    const auto services = manager.services();
    for (const auto &service : services) {
        paths << service->path();
    }
    paths.sort();
    return paths;
}
