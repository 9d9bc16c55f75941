#include "ConnmanService.h"
#include "NetworkSettings.h"
#include "PrivateBus.h"
#include "SettingsFixture.h"
#include "Suite.h"
#include "Text.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusVariant>

using test_support::PrivateBus;

namespace {

const QString servicePath = "/net/connman/service/wifi_0_home_managed_psk"_s;
const QString home = "HomeNet"_s;
const QString wifi = "wifi"_s;

} // namespace

class PreferedWifiTest : public SettingsFixture
{
    Q_OBJECT

private slots:
    void nothingIsPreferedAtFirst();
    void storedPreferenceIsRead();
    void preferenceThatIsNoTextIsEmpty();
    void wifiServiceIsStoredByItsNameAlone();
    void nameOutsideAsciiSurvives();
    void laterServiceReplacesTheEarlier();
    void serviceOfAnotherTypeIsNotPrefered();
    void serviceWithoutNameIsNotPrefered();
    void serviceWithoutTypeIsNotPrefered();
    void otherKeysOfTheStoreStay();

    void removingThePreferedClearsTheStore();
    void removingAnotherNetworkLeavesThePreference();
    void removingTellsNamesApartByCase();
    void removingAServiceOfAnotherTypeDoesNothing();
    void removingAServiceWithoutNameLeavesThePreference();

    void unwritableStoreIsOneLineNamingTheFile();
    void unwritableStoreStillKnowsThePreference();
    void storeThatBecameWritableIsWrittenWithoutComplaint();

private:
    std::shared_ptr<ConnmanService> service(const QVariantMap &properties);
    std::shared_ptr<ConnmanService> wifiService(const QString &name);

    // The services need a bus to live on; what is known of them is told to them here.
    PrivateBus m_bus;
};

std::shared_ptr<ConnmanService> PreferedWifiTest::service(const QVariantMap &properties)
{
    auto result =
        std::make_shared<ConnmanService>(QDBusConnection::systemBus(), QDBusObjectPath(servicePath), nullptr);
    for (auto property = properties.cbegin(); property != properties.cend(); ++property) {
        result->propertyChanged(property.key(), QDBusVariant(property.value()));
    }
    return result;
}

std::shared_ptr<ConnmanService> PreferedWifiTest::wifiService(const QString &name)
{
    return service({{"Type"_s, wifi}, {"Name"_s, name}});
}

void PreferedWifiTest::nothingIsPreferedAtFirst()
{
    const NetworkSettings settings;
    QCOMPARE(settings.getPreferedWifi(), QString());
}

void PreferedWifiTest::storedPreferenceIsRead()
{
    setStore("main"_s, "[wifi]\nprefered=HomeNet\n");
    const NetworkSettings settings;
    QCOMPARE(settings.getPreferedWifi(), home);
}

void PreferedWifiTest::preferenceThatIsNoTextIsEmpty()
{
    setStore("main"_s, "[wifi]\nprefered=one, two\n");
    const NetworkSettings settings;
    QCOMPARE(settings.getPreferedWifi(), QString());
}

void PreferedWifiTest::wifiServiceIsStoredByItsNameAlone()
{
    NetworkSettings settings;
    settings.setPreferedWifi(wifiService(home));

    QCOMPARE(store("main"_s), QByteArray("[wifi]\nprefered=HomeNet\n"));
    QCOMPARE(settings.getPreferedWifi(), home);
    QCOMPARE(complaints(), QStringList());
}

void PreferedWifiTest::nameOutsideAsciiSurvives()
{
    const QString name = "K\u00f6k, \"2\" = \u2615"_s;
    NetworkSettings settings;
    settings.setPreferedWifi(wifiService(name));

    QCOMPARE(store("main"_s), QByteArray("[wifi]\nprefered=\"K\\xf6k, \\\"2\\\" = \\x2615\"\n"));
    QCOMPARE(NetworkSettings().getPreferedWifi(), name);
}

void PreferedWifiTest::laterServiceReplacesTheEarlier()
{
    NetworkSettings settings;
    settings.setPreferedWifi(wifiService(home));
    settings.setPreferedWifi(wifiService("Office"_s));

    QCOMPARE(store("main"_s), QByteArray("[wifi]\nprefered=Office\n"));
}

void PreferedWifiTest::serviceOfAnotherTypeIsNotPrefered()
{
    setStore("main"_s, "[wifi]\nprefered=HomeNet\n");
    NetworkSettings settings;
    settings.setPreferedWifi(service({{"Type"_s, "ethernet"_s}, {"Name"_s, "Wired"_s}}));

    QCOMPARE(store("main"_s), QByteArray("[wifi]\nprefered=HomeNet\n"));
    QCOMPARE(complaints(), QStringList());
}

void PreferedWifiTest::serviceWithoutNameIsNotPrefered()
{
    setStore("main"_s, "[wifi]\nprefered=HomeNet\n");
    NetworkSettings settings;
    settings.setPreferedWifi(service({{"Type"_s, wifi}}));

    QCOMPARE(store("main"_s), QByteArray("[wifi]\nprefered=HomeNet\n"));
    QCOMPARE(complaints(),
             QStringList(networkSettingsLine("Unable to obtain name for service \"%1\""_s.arg(servicePath))));
}

void PreferedWifiTest::serviceWithoutTypeIsNotPrefered()
{
    NetworkSettings settings;
    settings.setPreferedWifi(service({{"Name"_s, home}}));

    QCOMPARE(store("main"_s), QByteArray());
    QCOMPARE(
        complaints(),
        QStringList("critical ConnmanService.properties: Missing property \"Type\" of service \"%1\""_s.arg(
            servicePath)));
}

void PreferedWifiTest::otherKeysOfTheStoreStay()
{
    setStore("main"_s, "[speech]\nvolume=7\n");
    NetworkSettings settings;
    settings.setPreferedWifi(wifiService(home));

    QCOMPARE(store("main"_s), QByteArray("[speech]\nvolume=7\n\n[wifi]\nprefered=HomeNet\n"));
}

void PreferedWifiTest::removingThePreferedClearsTheStore()
{
    setStore("main"_s, "[wifi]\nprefered=HomeNet\n");
    NetworkSettings settings;
    settings.removePreferedWifi(wifiService(home));

    QCOMPARE(settings.getPreferedWifi(), QString());
    QVERIFY(!store("main"_s).contains("prefered"));
    QCOMPARE(complaints(), QStringList());
}

void PreferedWifiTest::removingAnotherNetworkLeavesThePreference()
{
    setStore("main"_s, "[wifi]\nprefered=HomeNet\n");
    NetworkSettings settings;
    settings.removePreferedWifi(wifiService("Office"_s));

    QCOMPARE(store("main"_s), QByteArray("[wifi]\nprefered=HomeNet\n"));
    QCOMPARE(complaints(), QStringList());
}

void PreferedWifiTest::removingTellsNamesApartByCase()
{
    setStore("main"_s, "[wifi]\nprefered=HomeNet\n");
    NetworkSettings settings;
    settings.removePreferedWifi(wifiService("homenet"_s));

    QCOMPARE(settings.getPreferedWifi(), home);
}

void PreferedWifiTest::removingAServiceOfAnotherTypeDoesNothing()
{
    setStore("main"_s, "[wifi]\nprefered=HomeNet\n");
    NetworkSettings settings;
    settings.removePreferedWifi(service({{"Type"_s, "ethernet"_s}, {"Name"_s, home}}));

    QCOMPARE(store("main"_s), QByteArray("[wifi]\nprefered=HomeNet\n"));
    QCOMPARE(complaints(), QStringList());
}

void PreferedWifiTest::removingAServiceWithoutNameLeavesThePreference()
{
    setStore("main"_s, "[wifi]\nprefered=HomeNet\n");
    NetworkSettings settings;
    settings.removePreferedWifi(service({{"Type"_s, wifi}}));

    QCOMPARE(store("main"_s), QByteArray("[wifi]\nprefered=HomeNet\n"));
    QCOMPARE(complaints(),
             QStringList(networkSettingsLine("Unable to obtain name for service \"%1\""_s.arg(servicePath))));
}

void PreferedWifiTest::unwritableStoreIsOneLineNamingTheFile()
{
    NetworkSettings settings;
    setStoresWritable(false);
    settings.setPreferedWifi(wifiService(home));

    QCOMPARE(complaints(), QStringList(networkSettingsLine(
                               "Unable to write settings file \"/etc/xdg/Tactora AB/main.conf\""_s)));
    QCOMPARE(store("main"_s), QByteArray());
}

void PreferedWifiTest::unwritableStoreStillKnowsThePreference()
{
    NetworkSettings settings;
    setStoresWritable(false);
    settings.setPreferedWifi(wifiService(home));

    QCOMPARE(settings.getPreferedWifi(), home);
}

void PreferedWifiTest::storeThatBecameWritableIsWrittenWithoutComplaint()
{
    NetworkSettings settings;
    setStoresWritable(false);
    settings.setPreferedWifi(wifiService(home));
    QCOMPARE(log().takeCriticals().size(), 1);

    setStoresWritable(true);
    settings.setPreferedWifi(wifiService("Office"_s));
    QCOMPARE(complaints(), QStringList());
    QCOMPARE(store("main"_s), QByteArray("[wifi]\nprefered=Office\n"));
}

static const Suite<PreferedWifiTest> preferedWifiTest;
#include "PreferedWifiTest.moc"
