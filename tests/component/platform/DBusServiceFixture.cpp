#include "DBusServiceFixture.h"
#include "Text.h"

#include <QSignalSpy>
#include <QTest>

using libtactora::DBusService;
using test_support::PrivateBus;

void DBusServiceFixture::init()
{
    m_bus = std::make_unique<PrivateBus>();
    QVERIFY(m_bus->isRunning());
    m_watching = std::make_unique<BusName>(m_bus->address(), "watching"_s);
    m_connman = std::make_unique<BusName>(m_bus->address(), "connman"_s);
}

void DBusServiceFixture::cleanup()
{
    m_connman.reset();
    m_watching.reset();
    m_bus.reset();
}

std::unique_ptr<DBusService> DBusServiceFixture::watch()
{
    return std::make_unique<DBusService>(m_watching->connection(), watchedName());
}

// One more name comes; as the bus keeps the order, all that came before has been told by then.
void DBusServiceFixture::waitUntilAllIsTold()
{
    DBusService last(m_watching->connection(), "test.last"_s);
    const QSignalSpy lastConnected(&last, &DBusService::connected);
    QVERIFY(m_connman->take("test.last"_s));
    QTRY_COMPARE(lastConnected.size(), 1);
    QVERIFY(m_connman->release("test.last"_s));
}

// An answer from the bus, without the event loop: what was sent before has been handled there.
void DBusServiceFixture::waitUntilWatching()
{
    QVERIFY(m_watching->connection().interface()->isServiceRegistered("org.freedesktop.DBus"_s));
}
