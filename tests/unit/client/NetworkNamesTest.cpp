// How it is found out which network is meant.
#include "NetworkNames.h"
#include "Suite.h"
#include "Text.h"
#include <QTest>

class NetworkNamesTest : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void findsByName();
    void findsByIdentifier();
    void findsByAPartThatOnlyOneIdentifierHas();
    void namesAllThatHaveThatPart();
    void namesAllThatHaveThatName();
    void findsByNumberInTheLastList();
    void numberOutsideTheLastListIsNoNetwork();
    void numberCanBeAName();
    void identifierWinsOverLongerOnes();
    void wholeIdentifierNeedsNoList_data();
    void wholeIdentifierNeedsNoList();
    void passesOnWhatFollowsAnEqualsSign();
    void saysThatThereIsNoSuchNetwork();
    void networksAreCalledByTheirNamesWhereTheseAreUnique();
    void identifierStandsForAnUnknownName();

private:
    void add(const QString &identifier, const QString &name)
    {
        m_networks.insert(identifier, QVariantMap{{"Name"_s, name}});
        m_names.setNetworks(m_networks);
    }

    QVariantMap m_networks;
    NetworkNames m_names;
};

void NetworkNamesTest::init()
{
    m_networks.clear();
    m_names = NetworkNames();
    add("wifi_1_a_managed_psk"_s, "Kitchen"_s);
    add("wifi_1_b_managed_none"_s, "Library"_s);
    add("ethernet_2_cable"_s, "Wired"_s);
}

void NetworkNamesTest::findsByName()
{
    QCOMPARE(m_names.find("Library"_s).identifier, "wifi_1_b_managed_none"_s);
}

void NetworkNamesTest::findsByIdentifier()
{
    add("odd one"_s, "Odd"_s);
    QCOMPARE(m_names.find("odd one"_s).identifier, "odd one"_s);
}

void NetworkNamesTest::findsByAPartThatOnlyOneIdentifierHas()
{
    QCOMPARE(m_names.find("1_a"_s).identifier, "wifi_1_a_managed_psk"_s);
}

void NetworkNamesTest::namesAllThatHaveThatPart()
{
    const NetworkNames::Result result = m_names.find("_managed_"_s);
    QCOMPARE(result.identifier, QString());
    QCOMPARE(result.problem, "\"_managed_\" may be one of several; give the identifier:\n"
                             "  Kitchen, wifi_1_a_managed_psk\n"
                             "  Library, wifi_1_b_managed_none"_s);
}

void NetworkNamesTest::namesAllThatHaveThatName()
{
    add("wifi_1_c_managed_none"_s, "Kitchen"_s);
    const NetworkNames::Result result = m_names.find("Kitchen"_s);
    QCOMPARE(result.identifier, QString());
    QCOMPARE(result.problem, "\"Kitchen\" may be one of several; give the identifier:\n"
                             "  Kitchen, wifi_1_a_managed_psk\n"
                             "  Kitchen, wifi_1_c_managed_none"_s);
}

void NetworkNamesTest::findsByNumberInTheLastList()
{
    m_names.setListed({"wifi_1_b_managed_none"_s, "ethernet_2_cable"_s});
    QCOMPARE(m_names.find("2"_s).identifier, "ethernet_2_cable"_s);
}

void NetworkNamesTest::numberOutsideTheLastListIsNoNetwork()
{
    m_names.setListed({"ethernet_2_cable"_s});
    QCOMPARE(m_names.find("0"_s).identifier, QString());
    QCOMPARE(m_names.find("2"_s).identifier, QString());
}

void NetworkNamesTest::numberCanBeAName()
{
    add("wifi_1_d_managed_none"_s, "2"_s);
    QCOMPARE(m_names.find("2"_s).identifier, "wifi_1_d_managed_none"_s);
}

void NetworkNamesTest::identifierWinsOverLongerOnes()
{
    add("ethernet_2_cable_2"_s, "Other"_s);
    QCOMPARE(m_names.find("ethernet_2_cable"_s).identifier, "ethernet_2_cable"_s);
}

void NetworkNamesTest::wholeIdentifierNeedsNoList_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("tells");
    const auto row = [](const char *text, bool tells) {
        QTest::newRow(text) << QString::fromLatin1(text) << tells;
    };
    row("wifi_020000000200_4b_managed_psk", true);
    row("wifi_020000000200_hidden_managed_psk", true);
    row("ethernet_020000000100_cable", true);
    row("=anything", true);
    row("=", true);
    row("wifi_020000000200_4b_managed", false);
    row("wifi", false);
    row("Kitchen", false);
    row("1", false);
    row("", false);
}

void NetworkNamesTest::wholeIdentifierNeedsNoList()
{
    QFETCH(const QString, text);
    QTEST(NetworkNames().tells(text), "tells");
}

void NetworkNamesTest::passesOnWhatFollowsAnEqualsSign()
{
    const NetworkNames::Result result = m_names.find("=nowhere"_s);
    QCOMPARE(result.identifier, "nowhere"_s);
    QCOMPARE(result.problem, QString());
    QCOMPARE(m_names.find("="_s).problem, QString());
}

void NetworkNamesTest::saysThatThereIsNoSuchNetwork()
{
    const NetworkNames::Result result = m_names.find("Cellar"_s);
    QCOMPARE(result.identifier, QString());
    QCOMPARE(result.problem, "There is no network \"Cellar\"; \"list\" tells which there are."_s);
}

void NetworkNamesTest::networksAreCalledByTheirNamesWhereTheseAreUnique()
{
    add("wifi_1_c_managed_none"_s, "Kitchen"_s);
    add("wifi_1_hidden_managed_psk"_s, QString());
    QCOMPARE(m_names.names(), (QStringList{"Wired"_s, "wifi_1_a_managed_psk"_s, "Library"_s,
                                           "wifi_1_c_managed_none"_s, "wifi_1_hidden_managed_psk"_s}));
}

void NetworkNamesTest::identifierStandsForAnUnknownName()
{
    QCOMPARE(m_names.nameOf("wifi_1_a_managed_psk"_s), "Kitchen"_s);
    QCOMPARE(m_names.nameOf("nowhere"_s), "nowhere"_s);
}

static const Suite<NetworkNamesTest> networkNamesTest;
#include "NetworkNamesTest.moc"
