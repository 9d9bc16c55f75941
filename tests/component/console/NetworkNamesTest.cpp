// How the console finds out which network is meant.
#include "NetworkNames.h"
#include "PrivateBus.h"
#include "SimulatorClient.h"
#include <QtTest>

using test_support::PrivateBus;
using test_support::SimulatorClient;

class NetworkNamesTest : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void findsByName();
    void findsByIdentifier();
    void findsByAPartThatOnlyOneIdentifierHas();
    void namesAllThatHaveThatPart();
    void findsByNumberInTheLastList();
    void numberOutsideTheLastListIsNoNetwork();
    void identifierWinsOverLongerOnes();
    void passesOnWhatFollowsAnEqualsSign();
    void saysThatThereIsNoSuchNetwork();

private:
    static QString named(const char *name) { return QString::fromLatin1(name); }

    PrivateBus m_bus;
    QDBusConnection m_connection{QDBusConnection::connectToBus(m_bus.address(), named("names"))};
    SimulatorClient m_simulator{m_bus.address()};
};

void NetworkNamesTest::init()
{
    QVERIFY(m_simulator.isReady());
    const QStringList present = m_simulator.services();
    for (const QString &identifier : present) {
        m_simulator.removeService(identifier);
    }
    m_simulator.addService(named("wifi_1_a_managed_psk"), {{named("Name"), named("Kitchen")}});
    m_simulator.addService(named("wifi_1_b_managed_none"), {{named("Name"), named("Library")}});
    m_simulator.addService(named("ethernet_2_cable"), {{named("Name"), named("Wired")}});
}

void NetworkNamesTest::findsByName()
{
    QCOMPARE(NetworkNames(m_connection).find(named("Library")).identifier, named("wifi_1_b_managed_none"));
}

void NetworkNamesTest::findsByIdentifier()
{
    QCOMPARE(NetworkNames(m_connection).find(named("ethernet_2_cable")).identifier,
             named("ethernet_2_cable"));
}

void NetworkNamesTest::findsByAPartThatOnlyOneIdentifierHas()
{
    QCOMPARE(NetworkNames(m_connection).find(named("1_a")).identifier, named("wifi_1_a_managed_psk"));
}

void NetworkNamesTest::namesAllThatHaveThatPart()
{
    const NetworkNames::Result result = NetworkNames(m_connection).find(named("_managed_"));
    QCOMPARE(result.identifier, QString());
    QVERIFY(result.problem.contains(named("wifi_1_a_managed_psk")));
    QVERIFY(result.problem.contains(named("wifi_1_b_managed_none")));
    QVERIFY(!result.problem.contains(named("ethernet_2_cable")));
}

void NetworkNamesTest::findsByNumberInTheLastList()
{
    NetworkNames names(m_connection);
    names.setListed({named("wifi_1_b_managed_none"), named("ethernet_2_cable")});
    QCOMPARE(names.find(named("2")).identifier, named("ethernet_2_cable"));
}

void NetworkNamesTest::numberOutsideTheLastListIsNoNetwork()
{
    NetworkNames names(m_connection);
    names.setListed({named("ethernet_2_cable")});
    QCOMPARE(names.find(named("0")).identifier, QString());
    QCOMPARE(names.find(named("2")).identifier, QString());
}

void NetworkNamesTest::identifierWinsOverLongerOnes()
{
    m_simulator.addService(named("ethernet_2_cable_2"), {{named("Name"), named("Other")}});
    QCOMPARE(NetworkNames(m_connection).find(named("ethernet_2_cable")).identifier,
             named("ethernet_2_cable"));
}

void NetworkNamesTest::passesOnWhatFollowsAnEqualsSign()
{
    const NetworkNames::Result result = NetworkNames(m_connection).find(named("=nowhere"));
    QCOMPARE(result.identifier, named("nowhere"));
    QCOMPARE(result.problem, QString());
}

void NetworkNamesTest::saysThatThereIsNoSuchNetwork()
{
    const NetworkNames::Result result = NetworkNames(m_connection).find(named("Cellar"));
    QCOMPARE(result.identifier, QString());
    QVERIFY(result.problem.contains(named("\"Cellar\"")));
}

QTEST_GUILESS_MAIN(NetworkNamesTest)
#include "NetworkNamesTest.moc"
