// What a list tells of the networks.
#include "NetworkList.h"
#include "Suite.h"
#include "Text.h"
#include <QTest>

class NetworkListTest : public QObject
{
    Q_OBJECT
private slots:
    void linesSayEverythingInWords();
    void tableHasColumnsBelowAHeading();
    void connectedKnownAndStrongOnesComeFirst();
    void unknownSecurityIsToldAsItIs();

private:
    static QVariantMap network(const QString &name, const QString &state, const QStringList &security,
                               int strength, bool known)
    {
        QVariantMap properties{
            {"Name"_s, name}, {"State"_s, state}, {"Security"_s, security}, {"Favorite"_s, known}};
        if (strength >= 0) {
            properties.insert("Strength"_s, QVariant::fromValue(static_cast<uchar>(strength)));
        }
        return properties;
    }
    const QVariantMap m_networks{
        {"ethernet_1_cable"_s, network("Wired"_s, "ready"_s, {}, -1, true)},
        {"wifi_1_a_managed_psk"_s, network("Kitchen"_s, "idle"_s, {"psk"_s, "wps"_s}, 60, true)},
        {"wifi_1_hidden_managed_psk"_s, network(QString(), "idle"_s, {"psk"_s}, 7, false)}};
};

void NetworkListTest::linesSayEverythingInWords()
{
    QCOMPARE(networkLines(networkEntries(m_networks)),
             (QStringList{"1. Wired, ready, known, ethernet_1_cable"_s,
                          "2. Kitchen, idle, signal 60, passphrase or WPS, known, wifi_1_a_managed_psk"_s,
                          "3. (no name), idle, signal 7, passphrase, new, wifi_1_hidden_managed_psk"_s}));
}

void NetworkListTest::tableHasColumnsBelowAHeading()
{
    QCOMPARE(networkTable(networkEntries(m_networks)).join(QLatin1Char('\n')),
             "NUMBER  NAME       STATE  SIGNAL     SECURITY           KNOWN  IDENTIFIER\n"
             "1       Wired      ready                                known  ethernet_1_cable\n"
             "2       Kitchen    idle   signal 60  passphrase or WPS  known  wifi_1_a_managed_psk\n"
             "3       (no name)  idle   signal 7   passphrase         new    wifi_1_hidden_managed_psk"_s);
}

void NetworkListTest::connectedKnownAndStrongOnesComeFirst()
{
    const QVariantMap networks{{"a"_s, network("weak"_s, "idle"_s, {}, 10, false)},
                               {"b"_s, network("strong"_s, "idle"_s, {}, 90, false)},
                               {"c"_s, network("known"_s, "idle"_s, {}, 5, true)},
                               {"d"_s, network("connected"_s, "online"_s, {}, 1, false)},
                               {"e"_s, network("also weak"_s, "idle"_s, {}, 10, false)}};
    QStringList names;
    for (const NetworkEntry &entry : networkEntries(networks)) {
        names << entry.name;
    }
    QCOMPARE(names, (QStringList{"connected"_s, "known"_s, "strong"_s, "also weak"_s, "weak"_s}));
}

void NetworkListTest::unknownSecurityIsToldAsItIs()
{
    const QVariantMap networks{{"a"_s, network("new"_s, "idle"_s, {"sae"_s}, 10, false)}};
    QCOMPARE(networkEntries(networks).constFirst().security, "sae"_s);
}

static const Suite<NetworkListTest> networkListTest;
#include "NetworkListTest.moc"
