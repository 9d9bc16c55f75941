// What is around the device: how ConnMan calls it, whom it lets in.

#include "Neighbourhood.h"
#include "Service.h"
#include "Suite.h"
#include "Text.h"
#include <QTest>

using namespace simulator;

namespace {
AccessPoint accessPoint(const QVariantMap &options)
{
    return AccessPoint::fromOptions(options, 0);
}
} // namespace

class NeighbourhoodTest : public QObject
{
    Q_OBJECT

private slots:
    void identifierTellsNameAndSecurity_data();
    void identifierTellsNameAndSecurity();
    void networkJudgesCredentials_data();
    void networkJudgesCredentials();
};

void NeighbourhoodTest::identifierTellsNameAndSecurity_data()
{
    QTest::addColumn<QVariantMap>("options");
    QTest::addColumn<QString>("identifier");
    const QVariantMap home{{"ssid"_s, "Home"_s}};
    QTest::newRow("psk") << home << "wifi_020000000200_486f6d65_managed_psk"_s;
    QVariantMap options = home;
    options["security"_s] = "wps"_s;
    QTest::newRow("wps") << options << "wifi_020000000200_486f6d65_managed_psk"_s;
    options["security"_s] = "ieee8021x"_s;
    QTest::newRow("enterprise") << options << "wifi_020000000200_486f6d65_managed_ieee8021x"_s;
    options["hidden"_s] = true;
    QTest::newRow("hidden") << options << "wifi_020000000200_hidden_managed_ieee8021x"_s;
    QTest::newRow("beyond ASCII") << QVariantMap{{"ssid"_s, QString::fromUtf8("é")}}
                                  << "wifi_020000000200_c3a9_managed_psk"_s;
}

void NeighbourhoodTest::identifierTellsNameAndSecurity()
{
    QFETCH(QVariantMap, options);
    QFETCH(QString, identifier);
    QCOMPARE(accessPoint(options).scannedIdentifier("02:00:00:00:02:00"_s), identifier);
}

void NeighbourhoodTest::networkJudgesCredentials_data()
{
    QTest::addColumn<QString>("ssid");
    QTest::addColumn<QString>("passphrase");
    QTest::addColumn<QString>("pin");
    QTest::addColumn<int>("verdict");
    const QString right = "right"_s;
    const QString none;
    QTest::newRow("right") << "Home"_s << right << none << static_cast<int>(Verdict::Accepted);
    QTest::newRow("wrong") << "Home"_s
                           << "wrong"_s << none << static_cast<int>(Verdict::WrongPassphrase);
    QTest::newRow("right PIN") << "Home"_s << none << "1"_s << static_cast<int>(Verdict::Accepted);
    QTest::newRow("wrong PIN") << "Home"_s << none << "2"_s << static_cast<int>(Verdict::Refused);
    QTest::newRow("no access point") << "Elsewhere"_s
                                     << "any"_s << none << static_cast<int>(Verdict::Accepted);
}

void NeighbourhoodTest::networkJudgesCredentials()
{
    QFETCH(QString, ssid);
    QFETCH(QString, passphrase);
    QFETCH(QString, pin);
    QFETCH(int, verdict);
    Neighbourhood neighbourhood;
    neighbourhood.add(accessPoint(
        {{"ssid"_s, "Home"_s}, {"security"_s, "wps"_s}, {"passphrase"_s, "right"_s}, {"pin"_s, "1"_s}}));
    Service subject("wifi_x"_s);
    subject.ssid = ssid;
    subject.passphrase = passphrase;
    subject.pin = pin;
    subject.useWps = !pin.isEmpty();
    QCOMPARE(static_cast<int>(neighbourhood.verdict(subject)), verdict);
}

static const Suite<NeighbourhoodTest> neighbourhoodTest;
#include "NeighbourhoodTest.moc"
