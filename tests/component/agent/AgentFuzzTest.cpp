#include "AgentFixture.h"
#include "RandomRequest.h"
#include "Suite.h"
#include "Text.h"

#include <QTest>

using RequestType = ConnmanAgent::RequestType;

namespace {

constexpr char SeedVariable[] = "AGENT_FUZZ_SEED";
constexpr int requests = 1000;
constexpr int depth = 4;

struct Expected
{
    const char *required;
    const char *requiredType;
    const char *optional;
    const char *optionalType;
};

// By request type; nothing is prepared for the first.
constexpr Expected expectations[] = {
    {nullptr, nullptr, nullptr, nullptr},    {"Passphrase", "psk", nullptr, nullptr},
    {"Name", "string", "Passphrase", "psk"}, {"Identity", "string", "Passphrase", "passphrase"},
    {"WPS", "wpspin", nullptr, nullptr},
};

bool asksFor(const QVariantMap &request, const char *field, const char *type)
{
    const QVariant attributes = request.value(QLatin1String(field));
    if (attributes.userType() != QMetaType::QVariantMap) {
        return false;
    }
    const QVariant received = attributes.toMap().value("Type"_s);
    return received.userType() == QMetaType::QString && received.toString() == QLatin1String(type);
}

bool isAnswerable(RequestType type, const QVariantMap &request)
{
    const Expected &expected = expectations[static_cast<int>(type)];
    if (expected.required == nullptr || !asksFor(request, expected.required, expected.requiredType)) {
        return false;
    }
    return expected.optional == nullptr || !request.contains(QLatin1String(expected.optional)) ||
           asksFor(request, expected.optional, expected.optionalType);
}

} // namespace

class AgentFuzzTest : public AgentFixture
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyRequestIsAnsweredOrRefusedOnce_data();
    void everyRequestIsAnsweredOrRefusedOnce();
    void everyPeerAuthorizationIsRefused();
    void everyReportedErrorIsKept();

private:
    QVariantMap answerOf(RequestType type) const;

    quint32 m_seed = 1;
};

// The seed is fixed so that a run can be repeated; another one explores further.
void AgentFuzzTest::initTestCase()
{
    if (qEnvironmentVariableIsSet(SeedVariable)) {
        m_seed = qEnvironmentVariable(SeedVariable).toUInt();
    }
    qInfo("%s=%u", SeedVariable, m_seed);
}

QVariantMap AgentFuzzTest::answerOf(RequestType type) const
{
    const Expected &expected = expectations[static_cast<int>(type)];
    const QString first = "first"_s;
    const QString second = "second"_s;
    if (expected.optional == nullptr) {
        return {{QLatin1String(expected.required), second}};
    }
    return {{QLatin1String(expected.required), first}, {QLatin1String(expected.optional), second}};
}

void AgentFuzzTest::everyRequestIsAnsweredOrRefusedOnce_data()
{
    QTest::addColumn<int>("requestType");
    QTest::newRow("none") << 0;
    QTest::newRow("psk") << 1;
    QTest::newRow("hidden") << 2;
    QTest::newRow("enterprise") << 3;
    QTest::newRow("wps") << 4;
}

void AgentFuzzTest::everyRequestIsAnsweredOrRefusedOnce()
{
    QFETCH(int, requestType);
    const auto type = static_cast<RequestType>(requestType);
    RandomRequest random(m_seed);
    agent().setRequest("wifi_0"_s, "second"_s, type, "first"_s);

    int answers = 0;
    for (int i = 0; i < requests; ++i) {
        const QVariantMap request = random.dictionary(depth);
        const QDBusMessage reply = requestInput(request);
        if (isAnswerable(type, request)) {
            QCOMPARE(answer(reply), answerOf(type));
            ++answers;
        } else {
            QVERIFY2(error(reply).startsWith(type == RequestType::None
                                                 ? "org.freedesktop.DBus.Error.Failed: "_s
                                                 : invalidArgs(QString())),
                     qPrintable("request %1: %2"_s.arg(i).arg(error(reply))));
        }
        log().clear();
    }
    // Otherwise the requests are not worth sending.
    QCOMPARE(answers > 0, type != RequestType::None);
}

void AgentFuzzTest::everyPeerAuthorizationIsRefused()
{
    RandomRequest random(m_seed);
    for (int i = 0; i < requests / 5; ++i) {
        QCOMPARE(error(call("RequestPeerAuthorization"_s, {servicePath(), random.dictionary(depth)})),
                 invalidArgs("Unsupported peer-request type."_s));
    }
}

void AgentFuzzTest::everyReportedErrorIsKept()
{
    RandomRequest random(m_seed);
    for (int i = 0; i < requests / 5; ++i) {
        const QString reported = random.text();
        QCOMPARE(call("ReportError"_s, {servicePath(), reported}).type(), QDBusMessage::ReplyMessage);
        QCOMPARE(agent().lastError(), reported);
    }
}

static const Suite<AgentFuzzTest> agentFuzzTest;
#include "AgentFuzzTest.moc"
