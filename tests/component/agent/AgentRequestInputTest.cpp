#include "AgentFixture.h"
#include "Suite.h"
#include "Text.h"

#include <QDBusMetaType>
#include <QMap>
#include <QTest>

using RequestType = ConnmanAgent::RequestType;
using TextMap = QMap<QString, QString>;
Q_DECLARE_METATYPE(TextMap)
Q_DECLARE_METATYPE(RequestType)

namespace {

const QString firstValue = "the name"_s;
const QString secondValue = "the secret"_s;

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

QVariantMap ofType(const QVariant &type)
{
    return {{"Type"_s, type}};
}

QVariantMap ofType(const char *type)
{
    return ofType(QVariant(text(type)));
}

QVariantMap field(const char *name, const QVariant &attributes)
{
    return {{text(name), attributes}};
}

QVariantMap fields(const char *first, const QVariant &firstAttributes, const char *second,
                   const QVariant &secondAttributes)
{
    return {{text(first), firstAttributes}, {text(second), secondAttributes}};
}

} // namespace

/// Every answer to RequestInput, and every refusal.
class AgentRequestInputTest : public AgentFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { qDBusRegisterMetaType<TextMap>(); }

    void preparedFieldsAreAnswered_data();
    void preparedFieldsAreAnswered();
    void requestThatDoesNotFitIsRefused_data();
    void requestThatDoesNotFitIsRefused();
    void requestForOtherFieldsIsUnexpected_data();
    void requestForOtherFieldsIsUnexpected();

    void requestAndReplyAreLogged();
    void refusalLogsAnEmptyReply();
    void requestBeforeAnyPreparationFails();
    void requestAfterTheCredentialsWereClearedFails();
    void unknownRequestTypeIsRefused_data();
    void unknownRequestTypeIsRefused();

    void successiveRequestsGetTheSameAnswer();
    void requestAfterARefusalIsAnswered();
    void laterCredentialsReplaceTheEarlier();
    void emptyCredentialsAreAnswered();

private:
    void prepare(RequestType type) { agent().setRequest(text("wifi_0"), secondValue, type, firstValue); }
    void addRefusals(RequestType type, const char *field, const char *wireType, const char *wrongTypeText);
    void addOptionalRefusals(RequestType type, const QVariantMap &required, const char *wireType);
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
        << field("Passphrase", QVariantMap{{text("Type"), text("psk")},
                                           {text("Requirement"), text("mandatory")},
                                           {text("Alternates"), QStringList(text("WPS"))},
                                           {text("Value"), QVariantMap{{text("x"), 1}}}})
        << psk;
    QTest::newRow("passphrase, other fields not looked at")
        << RequestType::Psk
        << QVariantMap{{text("Passphrase"), ofType("psk")},
                       {text("PreviousPassphrase"), ofType("psk")},
                       {text("WPS"), ofType("wpspin")},
                       {text("Name"), text("no map")}}
        << psk;
    QTest::newRow("hidden") << RequestType::Hidden
                            << fields("Name", ofType("string"), "Passphrase", ofType("psk")) << hidden;
    QTest::newRow("hidden, passphrase not asked for")
        << RequestType::Hidden << field("Name", ofType("string")) << hidden;
    QTest::newRow("hidden, SSID as alternative") << RequestType::Hidden
                                                 << QVariantMap{{text("Name"), ofType("string")},
                                                                {text("SSID"), ofType("ssid")},
                                                                {text("Passphrase"), ofType("psk")}}
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
    prepare(requestType);

    QTEST(answer(requestInput(request)), "reply");
    QCOMPARE(log().takeCriticals(), QStringList());
}

void AgentRequestInputTest::addRefusals(RequestType type, const char *name, const char *wireType,
                                        const char *wrongTypeText)
{
    const QString keyMessage = text("Invalid type of key \"%1\" in request.").arg(text(name));
    const QString typeMessage = text("Invalid type of key \"Type\" in request.");
    const QString wrongMessage =
        text("%1\"Type\" in request, expected: \"%2\" got \"%3\".").arg(text(wrongTypeText), text(wireType));
    const auto add = [&](const char *title, const QVariant &attributes, const QString &message) {
        QTest::addRow("%s %s", name, title) << type << field(name, attributes) << message;
    };

    add("is a string", text("psk"), keyMessage);
    add("is a number", 7, keyMessage);
    add("is a list", QStringList(text("Type")), keyMessage);
    add("is a dictionary of strings", QVariant::fromValue(TextMap{{text("Type"), text(wireType)}}),
        keyMessage);
    add("has no attributes", QVariantMap(), text("Missing key \"Type\"in request."));
    add("has no type", QVariantMap{{text("type"), text(wireType)}}, text("Missing key \"Type\"in request."));
    add("has a dictionary as type", ofType(QVariant(QVariantMap())), typeMessage);
    add("has an object path as type", ofType(servicePath()), typeMessage);
    add("has another type", ofType("other"), wrongMessage.arg(text("other")));
    add("has its type in upper case", ofType(QVariant(text(wireType).toUpper())),
        wrongMessage.arg(text(wireType).toUpper()));
    add("has its type with a blank", ofType(QVariant(text(wireType) + QLatin1Char(' '))),
        wrongMessage.arg(text(wireType) + QLatin1Char(' ')));
    add("has an empty type", ofType(""), wrongMessage.arg(QString()));
    add("has a number as type", ofType(QVariant(5)), wrongMessage.arg(text("5")));
}

void AgentRequestInputTest::addOptionalRefusals(RequestType type, const QVariantMap &required,
                                                const char *wireType)
{
    const QString first = required.firstKey();
    const auto add = [&](const char *title, const QVariant &attributes, const QString &message) {
        QVariantMap request = required;
        request.insert(text("Passphrase"), attributes);
        QTest::addRow("%s, then passphrase %s", qPrintable(first), title) << type << request << message;
    };

    add("is a string", text("psk"), text("Invalid type of key \"Passphrase\" in request."));
    add("has no type", QVariantMap(), text("Missing key \"Type\"in request."));
    add("has a dictionary as type", ofType(QVariant(QVariantMap())),
        text("Invalid type of key \"Type\" in request."));
    add("has another type", ofType("other"),
        text("Invalid value of type key \"Type\" in request, expected: \"%1\" got \"other\".")
            .arg(text(wireType)));
}

void AgentRequestInputTest::requestThatDoesNotFitIsRefused_data()
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
        << text("Invalid value of type key \"Type\" in request, expected: \"psk\" got \"passphrase\".");
    QTest::newRow("enterprise network asked as psk")
        << RequestType::Wpa2Enterprise << fields("Identity", ofType("string"), "Passphrase", ofType("psk"))
        << text("Invalid value of type key \"Type\" in request, expected: \"passphrase\" got \"psk\".");
    QTest::newRow("the first field is checked first")
        << RequestType::Hidden << fields("Name", text("no map"), "Passphrase", text("no map"))
        << text("Invalid type of key \"Name\" in request.");
}

void AgentRequestInputTest::requestThatDoesNotFitIsRefused()
{
    QFETCH(RequestType, requestType);
    QFETCH(QVariantMap, request);
    QFETCH(QString, message);
    prepare(requestType);

    QCOMPARE(error(requestInput(request)), invalidArgs(message));
    QCOMPARE(log().takeCriticals(), QStringList());
}

void AgentRequestInputTest::requestForOtherFieldsIsUnexpected_data()
{
    QTest::addColumn<RequestType>("requestType");
    QTest::addColumn<QVariantMap>("request");
    QTest::addColumn<QString>("printed");

    const QVariantMap wps = field("WPS", ofType("wpspin"));
    const QString wpsPrinted =
        text("QMap((\"WPS\", QVariant(QVariantMap, QMap((\"Type\", QVariant(QString, \"wpspin\"))))))");
    const QVariantMap psk = field("Passphrase", ofType("psk"));
    const QString pskPrinted =
        text("QMap((\"Passphrase\", QVariant(QVariantMap, QMap((\"Type\", QVariant(QString, \"psk\"))))))");

    QTest::newRow("PSK asked for WPS") << RequestType::Psk << wps << wpsPrinted;
    QTest::newRow("WPS asked for a passphrase") << RequestType::Wps << psk << pskPrinted;
    QTest::newRow("hidden asked for a passphrase only") << RequestType::Hidden << psk << pskPrinted;
    QTest::newRow("enterprise asked for a passphrase only")
        << RequestType::Wpa2Enterprise << psk << pskPrinted;
    QTest::newRow("PSK asked for nothing") << RequestType::Psk << QVariantMap() << text("QMap()");
    QTest::newRow("the tried passphrase is no line's business")
        << RequestType::Wps
        << QVariantMap{{text("PreviousPassphrase"), QVariantMap{{text("Type"), text("psk")},
                                                                {text("Requirement"), text("informational")},
                                                                {text("Value"), text("the secret")}}}}
        << text(
               "QMap((\"PreviousPassphrase\", QVariant(QVariantMap, QMap((\"Requirement\", QVariant(QString, "
               "\"informational\"))(\"Type\", QVariant(QString, \"psk\"))(\"Value\", QVariant(QString, "
               "\"***\"))))))");
    QTest::newRow("names are case-sensitive")
        << RequestType::Psk << field("passphrase", 1) << text("QMap((\"passphrase\", QVariant(int, 1)))");
}

void AgentRequestInputTest::requestForOtherFieldsIsUnexpected()
{
    QFETCH(RequestType, requestType);
    QFETCH(QVariantMap, request);
    QFETCH(QString, printed);
    prepare(requestType);

    QCOMPARE(error(requestInput(request)), invalidArgs(text("Unexpected request-type.")));
    QCOMPARE(log().takeCriticals(), QStringList(text("Unexpected request-type receieved: ") + printed));
}

void AgentRequestInputTest::requestAndReplyAreLogged()
{
    prepare(RequestType::Psk);
    requestInput(field("Passphrase", ofType("psk")));

    QCOMPARE(agentLines(),
             QStringList({text("debug|Service: \"/net/connman/service/wifi_0_home_managed_psk\""),
                          text("debug|Request: QMap((\"Passphrase\", QVariant(QVariantMap, "
                               "QMap((\"Type\", QVariant(QString, \"psk\"))))))"),
                          text("debug|Reply: QMap((\"Passphrase\", QVariant(QString, \"the secret\")))")}));
}

void AgentRequestInputTest::refusalLogsAnEmptyReply()
{
    prepare(RequestType::Psk);
    requestInput(field("Passphrase", 1));

    QCOMPARE(agentLines(),
             QStringList({text("debug|Service: \"/net/connman/service/wifi_0_home_managed_psk\""),
                          text("debug|Request: QMap((\"Passphrase\", QVariant(int, 1)))"),
                          text("debug|Reply: QMap()")}));
}

void AgentRequestInputTest::requestBeforeAnyPreparationFails()
{
    QCOMPARE(error(requestInput({})), text("org.freedesktop.DBus.Error.Failed: No request-type setup."));
    QCOMPARE(agentLines(),
             QStringList({text("debug|Service: \"/net/connman/service/wifi_0_home_managed_psk\""),
                          text("debug|Request: QMap()"),
                          text("warning|No request-type was setup before input was requested.")}));
}

void AgentRequestInputTest::requestAfterTheCredentialsWereClearedFails()
{
    prepare(RequestType::Psk);
    agent().setRequest(QString(), QString(), RequestType::None, QString());

    QCOMPARE(error(requestInput(field("Passphrase", ofType("psk")))),
             text("org.freedesktop.DBus.Error.Failed: No request-type setup."));
    QVERIFY(agentLines().contains(text("warning|No request-type was setup before input was requested.")));
}

void AgentRequestInputTest::unknownRequestTypeIsRefused_data()
{
    QTest::addColumn<int>("number");
    for (const int number : {5, 6, 99, -1}) {
        QTest::addRow("%d", number) << number;
    }
}

void AgentRequestInputTest::unknownRequestTypeIsRefused()
{
    QFETCH(int, number);
    prepare(static_cast<RequestType>(number));

    QCOMPARE(error(requestInput(field("Passphrase", ofType("psk")))),
             invalidArgs(text("Unsupported request-type.")));
    QCOMPARE(log().takeCriticals(), QStringList(text("Unsupported request-type. %1").arg(number)));
}

void AgentRequestInputTest::successiveRequestsGetTheSameAnswer()
{
    prepare(RequestType::Hidden);
    const QVariantMap request = field("Name", ofType("string"));
    const QVariantMap reply = fields("Name", firstValue, "Passphrase", secondValue);

    QCOMPARE(answer(requestInput(request)), reply);
    QCOMPARE(answer(requestInput(request)), reply);
}

void AgentRequestInputTest::requestAfterARefusalIsAnswered()
{
    prepare(RequestType::Psk);
    QCOMPARE(requestInput({}).type(), QDBusMessage::ErrorMessage);
    QCOMPARE(answer(requestInput(field("Passphrase", ofType("psk")))), field("Passphrase", secondValue));
}

void AgentRequestInputTest::laterCredentialsReplaceTheEarlier()
{
    prepare(RequestType::Psk);
    agent().setRequest(text("wifi_1"), text("12345670"), RequestType::Wps, QString());
    QCOMPARE(answer(requestInput(field("WPS", ofType("wpspin")))), field("WPS", text("12345670")));
}

void AgentRequestInputTest::emptyCredentialsAreAnswered()
{
    agent().setRequest(QString(), QString(), RequestType::Hidden, QString());
    QCOMPARE(answer(requestInput(field("Name", ofType("string")))),
             fields("Name", text(""), "Passphrase", text("")));
}

static const Suite<AgentRequestInputTest> suite;
#include "AgentRequestInputTest.moc"
