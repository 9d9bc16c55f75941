#include "AgentFixture.h"
#include "RandomRequest.h"
#include "RequestScene.h"
#include "Suite.h"
#include "Text.h"

#include <QDBusMetaType>
#include <QMap>
#include <QTest>

namespace {

void addRefusals(RequestType type, const char *name, const char *wireType, const char *wrongTypeText)
{
    const QString keyMessage = "Invalid type of key \"%1\" in request."_s.arg(text(name));
    const QString typeMessage = "Invalid type of key \"Type\" in request."_s;
    const QString wrongMessage =
        "%1\"Type\" in request, expected: \"%2\" got \"%3\"."_s.arg(text(wrongTypeText), text(wireType));
    const auto add = [&](const char *title, const QVariant &attributes, const QString &message) {
        QTest::addRow("%s %s", name, title) << type << field(name, attributes) << message;
    };

    add("is a string", "psk"_s, keyMessage);
    add("is a number", 7, keyMessage);
    add("is a list", QStringList("Type"_s), keyMessage);
    add("is a dictionary of strings", QVariant::fromValue(TextMap{{"Type"_s, text(wireType)}}), keyMessage);
    add("has no attributes", QVariantMap(), "Missing key \"Type\"in request."_s);
    add("has no type", QVariantMap{{"type"_s, text(wireType)}}, "Missing key \"Type\"in request."_s);
    add("has a dictionary as type", ofType(QVariant(QVariantMap())), typeMessage);
    add("has an object path as type", ofType(QVariant::fromValue(QDBusObjectPath("/x"_s))), typeMessage);
    add("has another type", ofType("other"), wrongMessage.arg("other"_s));
    add("has its type in upper case", ofType(QVariant(text(wireType).toUpper())),
        wrongMessage.arg(text(wireType).toUpper()));
    add("has its type with a blank", ofType(QVariant(text(wireType) + QLatin1Char(' '))),
        wrongMessage.arg(text(wireType) + QLatin1Char(' ')));
    add("has an empty type", ofType(""), wrongMessage.arg(QString()));
    add("has a number as type", ofType(QVariant(5)), wrongMessage.arg("5"_s));
}

void addOptionalRefusals(RequestType type, const QVariantMap &required, const char *wireType)
{
    const QString first = required.firstKey();
    const auto add = [&](const char *title, const QVariant &attributes, const QString &message) {
        QVariantMap request = required;
        request.insert("Passphrase"_s, attributes);
        QTest::addRow("%s, then passphrase %s", qPrintable(first), title) << type << request << message;
    };

    add("is a string", "psk"_s, "Invalid type of key \"Passphrase\" in request."_s);
    add("has no type", QVariantMap(), "Missing key \"Type\"in request."_s);
    add("has a dictionary as type", ofType(QVariant(QVariantMap())),
        "Invalid type of key \"Type\" in request."_s);
    add("has another type", ofType("other"),
        "Invalid value of type key \"Type\" in request, expected: \"%1\" got \"other\"."_s.arg(
            text(wireType)));
}

} // namespace

/// Every refusal of RequestInput.
class AgentRefusalTest : public AgentFixture
{
    Q_OBJECT
private slots:
    void initTestCase() { qDBusRegisterMetaType<TextMap>(); }

    void requestThatDoesNotFitIsRefused_data();
    void requestThatDoesNotFitIsRefused();
    void requestForOtherFieldsIsUnexpected_data();
    void requestForOtherFieldsIsUnexpected();
    void refusalLogsAnEmptyReply();
    void requestBeforeAnyPreparationFails();
    void requestAfterTheCredentialsWereClearedFails();
    void unknownRequestTypeIsRefused_data();
    void unknownRequestTypeIsRefused();
    void requestAfterARefusalIsAnswered();
};

void AgentRefusalTest::requestThatDoesNotFitIsRefused_data()
{
    QTest::addColumn<RequestType>("requestType");
    QTest::addColumn<QVariantMap>("request");
    QTest::addColumn<QString>("message");

    addRefusals(RequestType::Psk, "Passphrase", "psk", "Invalid value of type key ");
    addRefusals(RequestType::Hidden, "Name", "string", "Invalid value of type key ");
    addRefusals(RequestType::Wpa2Enterprise, "Identity", "string", "Invalid value of type key ");
    addRefusals(RequestType::Wps, "WPS", "wpspin", "Invalid value of type-key ");
    addOptionalRefusals(RequestType::Hidden, field("Name", ofType("string")), "psk");
    addOptionalRefusals(RequestType::Wpa2Enterprise, field("Identity", ofType("string")), "passphrase");

    QTest::newRow("psk network asked as enterprise")
        << RequestType::Psk << field("Passphrase", ofType("passphrase"))
        << "Invalid value of type key \"Type\" in request, expected: \"psk\" got \"passphrase\"."_s;
    QTest::newRow("enterprise network asked as psk")
        << RequestType::Wpa2Enterprise << fields("Identity", ofType("string"), "Passphrase", ofType("psk"))
        << "Invalid value of type key \"Type\" in request, expected: \"passphrase\" got \"psk\"."_s;
    QTest::newRow("the first field is checked first")
        << RequestType::Hidden << fields("Name", "no map"_s, "Passphrase", "no map"_s)
        << "Invalid type of key \"Name\" in request."_s;
}

void AgentRefusalTest::requestThatDoesNotFitIsRefused()
{
    QFETCH(RequestType, requestType);
    QFETCH(QVariantMap, request);
    QFETCH(QString, message);
    prepare(agent(), requestType);

    QCOMPARE(error(requestInput(request)), invalidArgs(message));
    QCOMPARE(log().takeCriticals(), QStringList());
}

void AgentRefusalTest::requestForOtherFieldsIsUnexpected_data()
{
    QTest::addColumn<RequestType>("requestType");
    QTest::addColumn<QVariantMap>("request");
    QTest::addColumn<QString>("printed");

    const QVariantMap wps = field("WPS", ofType("wpspin"));
    const QString wpsPrinted =
        "QMap((\"WPS\", QVariant(QVariantMap, QMap((\"Type\", QVariant(QString, \"wpspin\"))))))"_s;
    const QVariantMap psk = field("Passphrase", ofType("psk"));
    const QString pskPrinted =
        "QMap((\"Passphrase\", QVariant(QVariantMap, QMap((\"Type\", QVariant(QString, \"psk\"))))))"_s;

    QTest::newRow("PSK asked for WPS") << RequestType::Psk << wps << wpsPrinted;
    QTest::newRow("WPS asked for a passphrase") << RequestType::Wps << psk << pskPrinted;
    QTest::newRow("hidden asked for a passphrase only") << RequestType::Hidden << psk << pskPrinted;
    QTest::newRow("enterprise asked for a passphrase only")
        << RequestType::Wpa2Enterprise << psk << pskPrinted;
    QTest::newRow("PSK asked for nothing") << RequestType::Psk << QVariantMap() << "QMap()"_s;
    QTest::newRow("the tried passphrase is no line's business")
        << RequestType::Wps
        << QVariantMap{{"PreviousPassphrase"_s, QVariantMap{{"Type"_s, "psk"_s},
                                                            {"Requirement"_s, "informational"_s},
                                                            {"Value"_s, "the secret"_s}}}}
        << "QMap((\"PreviousPassphrase\", QVariant(QVariantMap, QMap((\"Requirement\", QVariant(QString, "
           "\"informational\"))(\"Type\", QVariant(QString, \"psk\"))(\"Value\", QVariant(QString, "
           "\"***\"))))))"_s;
    QTest::newRow("names are case-sensitive")
        << RequestType::Psk << field("passphrase", 1) << "QMap((\"passphrase\", QVariant(int, 1)))"_s;
}

void AgentRefusalTest::requestForOtherFieldsIsUnexpected()
{
    QFETCH(RequestType, requestType);
    QFETCH(QVariantMap, request);
    QFETCH(QString, printed);
    prepare(agent(), requestType);

    QCOMPARE(error(requestInput(request)), invalidArgs("Unexpected request-type."_s));
    QCOMPARE(log().takeCriticals(), QStringList("Unexpected request-type receieved: "_s + printed));
}

void AgentRefusalTest::refusalLogsAnEmptyReply()
{
    prepare(agent(), RequestType::Psk);
    requestInput(field("Passphrase", 1));

    QCOMPARE(agentLines(),
             QStringList({"debug ConnmanAgent: Service: \"/net/connman/service/wifi_0_home_managed_psk\""_s,
                          "debug ConnmanAgent: Request: QMap((\"Passphrase\", QVariant(int, 1)))"_s,
                          "debug ConnmanAgent: Reply: QMap()"_s}));
}

void AgentRefusalTest::requestBeforeAnyPreparationFails()
{
    QCOMPARE(error(requestInput({})), "org.freedesktop.DBus.Error.Failed: No request-type setup."_s);
    QCOMPARE(agentLines(),
             QStringList({"debug ConnmanAgent: Service: \"/net/connman/service/wifi_0_home_managed_psk\""_s,
                          "debug ConnmanAgent: Request: QMap()"_s,
                          "warning ConnmanAgent: No request-type was setup before input was requested."_s}));
}

void AgentRefusalTest::requestAfterTheCredentialsWereClearedFails()
{
    prepare(agent(), RequestType::Psk);
    agent().setRequest(QString(), QString(), RequestType::None, QString());

    QCOMPARE(error(requestInput(field("Passphrase", ofType("psk")))),
             "org.freedesktop.DBus.Error.Failed: No request-type setup."_s);
    QVERIFY(agentLines().contains(
        "warning ConnmanAgent: No request-type was setup before input was requested."_s));
}

void AgentRefusalTest::unknownRequestTypeIsRefused_data()
{
    QTest::addColumn<int>("number");
    for (const int number : {5, 6, 99, -1}) {
        QTest::addRow("%d", number) << number;
    }
}

void AgentRefusalTest::unknownRequestTypeIsRefused()
{
    QFETCH(int, number);
    prepare(agent(), static_cast<RequestType>(number));

    QCOMPARE(error(requestInput(field("Passphrase", ofType("psk")))),
             invalidArgs("Unsupported request-type."_s));
    QCOMPARE(log().takeCriticals(), QStringList("Unsupported request-type. %1"_s.arg(number)));
}

void AgentRefusalTest::requestAfterARefusalIsAnswered()
{
    prepare(agent(), RequestType::Psk);
    QCOMPARE(requestInput({}).type(), QDBusMessage::ErrorMessage);
    QCOMPARE(answer(requestInput(field("Passphrase", ofType("psk")))), field("Passphrase", secondValue));
}

static const Suite<AgentRefusalTest> agentRefusalTest;
#include "AgentRefusalTest.moc"
