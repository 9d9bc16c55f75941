#include "Kernel.h"
#include "Scenarios.h"
#include "Text.h"

#include <QFile>
#include <QTest>

namespace {

const QString peap = "peap"_s;
const QString ttls = "ttls"_s;

} // namespace

void Scenarios::registerEnterpriseWithPeap()
{
    const QString identifier = network("Office"_s, "ieee8021x"_s);

    QVERIFY(does("registerWiFiWpa2Enterprise", Secret::officeUser, identifier, Secret::officePassword, peap,
                 "MSCHAPV2"_s));

    QTRY_COMPARE(client().heard(), QStringList{"networkRegistered(\"%1\")"_s.arg(identifier)});
    QVERIFY(isJoined(identifier));
    QCOMPARE(Kernel::joinedNetwork(), "Office"_s);
    QCOMPARE(World::preferredNetwork(), "Office"_s);
    QVERIFY(QFile::exists(provisioningFile(identifier)));
    QVERIFY(air().reaches(connman().ipv4(identifier, "Address"_s)));
}

void Scenarios::registerEnterpriseWithTtls()
{
    const QString identifier = network("Office"_s, "ieee8021x"_s);

    QVERIFY(does("registerWiFiWpa2Enterprise", Secret::officeUser, identifier, Secret::officePassword, ttls,
                 "PAP"_s));

    QVERIFY(isJoined(identifier));
    QCOMPARE(Kernel::joinedNetwork(), "Office"_s);
}

void Scenarios::registerEnterpriseWithWrongPasswordLeavesNoFile()
{
    const QString identifier = network("Office"_s, "ieee8021x"_s);

    QVERIFY(!does("registerWiFiWpa2Enterprise", Secret::officeUser, identifier, "five dots"_s, peap,
                  "MSCHAPV2"_s));

    QVERIFY(!QFile::exists(provisioningFile(identifier)));
    QTRY_COMPARE(speech().sentences(), QStringList{"5"_s});
    QCOMPARE(Kernel::joinedNetwork(), QString());
    QCOMPARE(World::preferredNetwork(), QString());
}

void Scenarios::registerEnterpriseAfterAWrongPasswordStillSucceeds()
{
    const QString identifier = network("Office"_s, "ieee8021x"_s);
    QVERIFY(!does("registerWiFiWpa2Enterprise", Secret::officeUser, identifier, "five dots"_s, peap,
                  "MSCHAPV2"_s));

    QVERIFY(does("registerWiFiWpa2Enterprise", Secret::officeUser, identifier, Secret::officePassword, peap,
                 "MSCHAPV2"_s));

    QVERIFY(isJoined(identifier));
    QCOMPARE(Kernel::joinedNetwork(), "Office"_s);
}

void Scenarios::forgetEnterpriseRemovesItsFile()
{
    const QString identifier = network("Office"_s, "ieee8021x"_s);
    QVERIFY(does("registerWiFiWpa2Enterprise", Secret::officeUser, identifier, Secret::officePassword, peap,
                 "MSCHAPV2"_s));
    QVERIFY(QFile::exists(provisioningFile(identifier)));

    does("forgetWifi", identifier);

    QVERIFY(!QFile::exists(provisioningFile(identifier)));
    QCOMPARE(World::preferredNetwork(), QString());
}
