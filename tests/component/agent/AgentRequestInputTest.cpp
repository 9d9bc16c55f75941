#include "AgentFixture.h"
#include "RequestScene.h"
#include "Suite.h"
#include "Text.h"

#include <QTest>

/// Every answer to RequestInput.
class AgentRequestInputTest : public AgentFixture
{
    Q_OBJECT

private slots:
    void preparedFieldsAreAnswered_data();
    void preparedFieldsAreAnswered();

    void requestAndReplyAreLogged();

    void successiveRequestsGetTheSameAnswer();
    void laterCredentialsReplaceTheEarlier();
    void emptyCredentialsAreAnswered();
};

void AgentRequestInputTest::preparedFieldsAreAnswered_data()
{
    QTest::addColumn<RequestType>("requestType");
    QTest::addColumn<QVariantMap>("request");
    QTest::addColumn<QVariantMap>("reply");

    const QVariantMap psk = field("Passphrase", secondValue);
    const QVariantMap hidden = fields("Name", firstValue, "Passphrase", secondValue);
    const QVariantMap enterprise = fields("Identity", firstValue, "Passphrase", secondValue);
    const QVariantMap wps = field("WPS", secondValue);

    QTest::newRow("passphrase") << RequestType::Psk << field("Passphrase", ofType("psk")) << psk;
    QTest::newRow("passphrase, other attributes not looked at")
        << RequestType::Psk
        << field("Passphrase", QVariantMap{{"Type"_s, "psk"_s},
                                           {"Requirement"_s, "mandatory"_s},
                                           {"Alternates"_s, QStringList("WPS"_s)},
                                           {"Value"_s, QVariantMap{{"x"_s, 1}}}})
        << psk;
    QTest::newRow("passphrase, other fields not looked at")
        << RequestType::Psk
        << QVariantMap{{"Passphrase"_s, ofType("psk")},
                       {"PreviousPassphrase"_s, ofType("psk")},
                       {"WPS"_s, ofType("wpspin")},
                       {"Name"_s, "no map"_s}}
        << psk;
    QTest::newRow("hidden") << RequestType::Hidden
                            << fields("Name", ofType("string"), "Passphrase", ofType("psk")) << hidden;
    QTest::newRow("hidden, passphrase not asked for")
        << RequestType::Hidden << field("Name", ofType("string")) << hidden;
    QTest::newRow("hidden, SSID as alternative") << RequestType::Hidden
                                                 << QVariantMap{{"Name"_s, ofType("string")},
                                                                {"SSID"_s, ofType("ssid")},
                                                                {"Passphrase"_s, ofType("psk")}}
                                                 << hidden;
    QTest::newRow("enterprise") << RequestType::Wpa2Enterprise
                                << fields("Identity", ofType("string"), "Passphrase", ofType("passphrase"))
                                << enterprise;
    QTest::newRow("enterprise, passphrase not asked for")
        << RequestType::Wpa2Enterprise << field("Identity", ofType("string")) << enterprise;
    QTest::newRow("WPS") << RequestType::Wps << field("WPS", ofType("wpspin")) << wps;
    QTest::newRow("WPS as alternative of a passphrase")
        << RequestType::Wps << fields("Passphrase", ofType("psk"), "WPS", ofType("wpspin")) << wps;
}

void AgentRequestInputTest::preparedFieldsAreAnswered()
{
    QFETCH(RequestType, requestType);
    QFETCH(QVariantMap, request);
    prepare(agent(), requestType);

    QTEST(answer(requestInput(request)), "reply");
    QCOMPARE(log().takeCriticals(), QStringList());
}

void AgentRequestInputTest::requestAndReplyAreLogged()
{
    prepare(agent(), RequestType::Psk);
    requestInput(field("Passphrase", ofType("psk")));

    QCOMPARE(agentLines(),
             QStringList(
                 {"debug ConnmanAgent: Service: \"/net/connman/service/wifi_0_home_managed_psk\""_s,
                  "debug ConnmanAgent: Request: QMap((\"Passphrase\", QVariant(QVariantMap, "
                  "QMap((\"Type\", QVariant(QString, \"psk\"))))))"_s,
                  "debug ConnmanAgent: Reply: QMap((\"Passphrase\", QVariant(QString, \"the secret\")))"_s}));
}

void AgentRequestInputTest::successiveRequestsGetTheSameAnswer()
{
    prepare(agent(), RequestType::Hidden);
    const QVariantMap request = field("Name", ofType("string"));
    const QVariantMap reply = fields("Name", firstValue, "Passphrase", secondValue);

    QCOMPARE(answer(requestInput(request)), reply);
    QCOMPARE(answer(requestInput(request)), reply);
}

void AgentRequestInputTest::laterCredentialsReplaceTheEarlier()
{
    prepare(agent(), RequestType::Psk);
    agent().setRequest("wifi_1"_s, "12345670"_s, RequestType::Wps, QString());
    QCOMPARE(answer(requestInput(field("WPS", ofType("wpspin")))), field("WPS", "12345670"_s));
}

void AgentRequestInputTest::emptyCredentialsAreAnswered()
{
    agent().setRequest(QString(), QString(), RequestType::Hidden, QString());
    QCOMPARE(answer(requestInput(field("Name", ofType("string")))), fields("Name", ""_s, "Passphrase", ""_s));
}

static const Suite<AgentRequestInputTest> agentRequestInputTest;
#include "AgentRequestInputTest.moc"
