#include "Scenarios.h"

#include <QFile>
#include <QTest>

namespace {

const QString peap = QStringLiteral("peap");
const QString ttls = QStringLiteral("ttls");

} // namespace

void Scenarios::registerEnterpriseWithPeap()
{
    const QString identifier = network(QStringLiteral("Office"), QStringLiteral("ieee8021x"));

    QVERIFY(does(QStringLiteral("registerWiFiWpa2Enterprise"),
                 {Secret::officeUser, identifier, Secret::officePassword, peap, QStringLiteral("MSCHAPV2")}));

    QTRY_COMPARE(daemon().received(), QStringList{QStringLiteral("networkRegistered(%1)").arg(identifier)});
    QVERIFY(isJoined(identifier));
    QCOMPARE(Kernel::joinedNetwork(), QStringLiteral("Office"));
    QCOMPARE(World::preferredNetwork(), QStringLiteral("Office"));
    QVERIFY(QFile::exists(provisioningFile(identifier)));
    QVERIFY(air().reaches(connman().ipv4(identifier, QStringLiteral("Address"))));
}

void Scenarios::registerEnterpriseWithTtls()
{
    const QString identifier = network(QStringLiteral("Office"), QStringLiteral("ieee8021x"));

    QVERIFY(does(QStringLiteral("registerWiFiWpa2Enterprise"),
                 {Secret::officeUser, identifier, Secret::officePassword, ttls, QStringLiteral("PAP")}));

    QVERIFY(isJoined(identifier));
    QCOMPARE(Kernel::joinedNetwork(), QStringLiteral("Office"));
}

void Scenarios::registerEnterpriseWithWrongPasswordLeavesNoFile()
{
    const QString identifier = network(QStringLiteral("Office"), QStringLiteral("ieee8021x"));

    QVERIFY(!does(
        QStringLiteral("registerWiFiWpa2Enterprise"),
        {Secret::officeUser, identifier, QStringLiteral("five dots"), peap, QStringLiteral("MSCHAPV2")}));

    QVERIFY(!QFile::exists(provisioningFile(identifier)));
    QTRY_COMPARE(peers().spoken(), QStringList{QStringLiteral("5")});
    QCOMPARE(Kernel::joinedNetwork(), QString());
    QCOMPARE(World::preferredNetwork(), QString());
}

void Scenarios::registerEnterpriseAfterAWrongPasswordStillSucceeds()
{
    const QString identifier = network(QStringLiteral("Office"), QStringLiteral("ieee8021x"));
    QVERIFY(!does(
        QStringLiteral("registerWiFiWpa2Enterprise"),
        {Secret::officeUser, identifier, QStringLiteral("five dots"), peap, QStringLiteral("MSCHAPV2")}));

    QVERIFY(does(QStringLiteral("registerWiFiWpa2Enterprise"),
                 {Secret::officeUser, identifier, Secret::officePassword, peap, QStringLiteral("MSCHAPV2")}));

    QVERIFY(isJoined(identifier));
    QCOMPARE(Kernel::joinedNetwork(), QStringLiteral("Office"));
}

void Scenarios::forgetEnterpriseRemovesItsFile()
{
    const QString identifier = network(QStringLiteral("Office"), QStringLiteral("ieee8021x"));
    QVERIFY(does(QStringLiteral("registerWiFiWpa2Enterprise"),
                 {Secret::officeUser, identifier, Secret::officePassword, peap, QStringLiteral("MSCHAPV2")}));
    QVERIFY(QFile::exists(provisioningFile(identifier)));

    does(QStringLiteral("forgetWifi"), {identifier});

    QVERIFY(!QFile::exists(provisioningFile(identifier)));
    QCOMPARE(World::preferredNetwork(), QString());
}
