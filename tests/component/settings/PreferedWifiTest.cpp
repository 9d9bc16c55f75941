#include "ConnmanService.h"
#include "NetworkSettings.h"
#include "PrivateBus.h"
#include "SettingsFixture.h"
#include "Suite.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusVariant>

using test_support::PrivateBus;

namespace {

const QString servicePath = QStringLiteral("/net/connman/service/wifi_0_home_managed_psk");
const QString home = QStringLiteral("HomeNet");
const QString wifi = QStringLiteral("wifi");

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
    return service({{QStringLiteral("Type"), wifi}, {QStringLiteral("Name"), name}});
}

void PreferedWifiTest::nothingIsPreferedAtFirst()
{
    const NetworkSettings settings;
    QCOMPARE(settings.getPreferedWifi(), QString());
}

void PreferedWifiTest::storedPreferenceIsRead()
{
    setStore(QStringLiteral("main"), "[wifi]\nprefered=HomeNet\n");
    const NetworkSettings settings;
    QCOMPARE(settings.getPreferedWifi(), home);
}

void PreferedWifiTest::preferenceThatIsNoTextIsEmpty()
{
    setStore(QStringLiteral("main"), "[wifi]\nprefered=one, two\n");
    const NetworkSettings settings;
    QCOMPARE(settings.getPreferedWifi(), QString());
}

void PreferedWifiTest::wifiServiceIsStoredByItsNameAlone()
{
    NetworkSettings settings;
    settings.setPreferedWifi(wifiService(home));

    QCOMPARE(store(QStringLiteral("main")), QByteArray("[wifi]\nprefered=HomeNet\n"));
    QCOMPARE(settings.getPreferedWifi(), home);
    QCOMPARE(criticalLines(), QStringList());
}

void PreferedWifiTest::nameOutsideAsciiSurvives()
{
    const QString name = QStringLiteral("K\u00f6k, \"2\" = \u2615");
    NetworkSettings settings;
    settings.setPreferedWifi(wifiService(name));

    QCOMPARE(store(QStringLiteral("main")),
             QByteArray("[wifi]\nprefered=\"K\\xf6k, \\\"2\\\" = \\x2615\"\n"));
    QCOMPARE(NetworkSettings().getPreferedWifi(), name);
}

void PreferedWifiTest::laterServiceReplacesTheEarlier()
{
    NetworkSettings settings;
    settings.setPreferedWifi(wifiService(home));
    settings.setPreferedWifi(wifiService(QStringLiteral("Office")));

    QCOMPARE(store(QStringLiteral("main")), QByteArray("[wifi]\nprefered=Office\n"));
}

void PreferedWifiTest::serviceOfAnotherTypeIsNotPrefered()
{
    setStore(QStringLiteral("main"), "[wifi]\nprefered=HomeNet\n");
    NetworkSettings settings;
    settings.setPreferedWifi(service({{QStringLiteral("Type"), QStringLiteral("ethernet")},
                                      {QStringLiteral("Name"), QStringLiteral("Wired")}}));

    QCOMPARE(store(QStringLiteral("main")), QByteArray("[wifi]\nprefered=HomeNet\n"));
    QCOMPARE(criticalLines(), QStringList());
}

void PreferedWifiTest::serviceWithoutNameIsNotPrefered()
{
    setStore(QStringLiteral("main"), "[wifi]\nprefered=HomeNet\n");
    NetworkSettings settings;
    settings.setPreferedWifi(service({{QStringLiteral("Type"), wifi}}));

    QCOMPARE(store(QStringLiteral("main")), QByteArray("[wifi]\nprefered=HomeNet\n"));
    QCOMPARE(criticalLines(),
             QStringList(networkSettingsLine(
                 QStringLiteral("Unable to obtain name for service \"%1\"").arg(servicePath))));
}

void PreferedWifiTest::serviceWithoutTypeIsNotPrefered()
{
    NetworkSettings settings;
    settings.setPreferedWifi(service({{QStringLiteral("Name"), home}}));

    QCOMPARE(store(QStringLiteral("main")), QByteArray());
    QCOMPARE(
        criticalLines(),
        QStringList(QStringLiteral("ConnmanService.properties: Missing property \"Type\" of service \"%1\"")
                        .arg(servicePath)));
}

void PreferedWifiTest::otherKeysOfTheStoreStay()
{
    setStore(QStringLiteral("main"), "[speech]\nvolume=7\n");
    NetworkSettings settings;
    settings.setPreferedWifi(wifiService(home));

    QCOMPARE(store(QStringLiteral("main")), QByteArray("[speech]\nvolume=7\n\n[wifi]\nprefered=HomeNet\n"));
}

void PreferedWifiTest::removingThePreferedClearsTheStore()
{
    setStore(QStringLiteral("main"), "[wifi]\nprefered=HomeNet\n");
    NetworkSettings settings;
    settings.removePreferedWifi(wifiService(home));

    QCOMPARE(settings.getPreferedWifi(), QString());
    QVERIFY(!store(QStringLiteral("main")).contains("prefered"));
    QCOMPARE(criticalLines(), QStringList());
}

void PreferedWifiTest::removingAnotherNetworkLeavesThePreference()
{
    setStore(QStringLiteral("main"), "[wifi]\nprefered=HomeNet\n");
    NetworkSettings settings;
    settings.removePreferedWifi(wifiService(QStringLiteral("Office")));

    QCOMPARE(store(QStringLiteral("main")), QByteArray("[wifi]\nprefered=HomeNet\n"));
    QCOMPARE(criticalLines(), QStringList());
}

void PreferedWifiTest::removingTellsNamesApartByCase()
{
    setStore(QStringLiteral("main"), "[wifi]\nprefered=HomeNet\n");
    NetworkSettings settings;
    settings.removePreferedWifi(wifiService(QStringLiteral("homenet")));

    QCOMPARE(settings.getPreferedWifi(), home);
}

void PreferedWifiTest::removingAServiceOfAnotherTypeDoesNothing()
{
    setStore(QStringLiteral("main"), "[wifi]\nprefered=HomeNet\n");
    NetworkSettings settings;
    settings.removePreferedWifi(
        service({{QStringLiteral("Type"), QStringLiteral("ethernet")}, {QStringLiteral("Name"), home}}));

    QCOMPARE(store(QStringLiteral("main")), QByteArray("[wifi]\nprefered=HomeNet\n"));
    QCOMPARE(criticalLines(), QStringList());
}

void PreferedWifiTest::removingAServiceWithoutNameLeavesThePreference()
{
    setStore(QStringLiteral("main"), "[wifi]\nprefered=HomeNet\n");
    NetworkSettings settings;
    settings.removePreferedWifi(service({{QStringLiteral("Type"), wifi}}));

    QCOMPARE(store(QStringLiteral("main")), QByteArray("[wifi]\nprefered=HomeNet\n"));
    QCOMPARE(criticalLines(),
             QStringList(networkSettingsLine(
                 QStringLiteral("Unable to obtain name for service \"%1\"").arg(servicePath))));
}

void PreferedWifiTest::unwritableStoreIsOneLineNamingTheFile()
{
    NetworkSettings settings;
    setStoresWritable(false);
    settings.setPreferedWifi(wifiService(home));

    QCOMPARE(criticalLines(), QStringList(networkSettingsLine(QStringLiteral(
                                  "Unable to write settings file \"/etc/xdg/Tactora AB/main.conf\""))));
    QCOMPARE(store(QStringLiteral("main")), QByteArray());
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
    settings.setPreferedWifi(wifiService(QStringLiteral("Office")));
    QCOMPARE(criticalLines(), QStringList());
    QCOMPARE(store(QStringLiteral("main")), QByteArray("[wifi]\nprefered=Office\n"));
}

static const Suite<PreferedWifiTest> suite;
#include "PreferedWifiTest.moc"
