#include "FakeAgent.h"

#include "EventWait.h"
#include "GVariantText.h"
#include "Text.h"

#include <utility>

namespace simulator_test {

FakeAgent::FakeAgent(QDBusConnection connection)
    : m_connection(std::move(connection))
{
    m_connection.registerVirtualObject(QLatin1String(path), this);
}

FakeAgent::~FakeAgent()
{
    m_connection.unregisterObject(QLatin1String(path));
}

void FakeAgent::planInput(const QVariantMap &fields)
{
    m_inputs.append({false, {}, fields});
}

void FakeAgent::planInputError(const QString &name)
{
    m_inputs.append({false, name, {}});
}

void FakeAgent::planInputSilence()
{
    m_inputs.append({true, {}, {}});
}

void FakeAgent::planRetry()
{
    m_retries = true;
}

bool FakeAgent::waitForLine(const QString &part)
{
    return test_support::waitUntil([this, &part] { return !m_lines.filter(part).isEmpty(); });
}

QString FakeAgent::introspect(const QString & /*objectPath*/) const
{
    return {};
}

bool FakeAgent::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    m_lines.append("%1(%2)"_s.arg(message.member(), simulator::toGVariantText(message.arguments())));
    if (message.member() == QLatin1String("RequestInput") && !m_inputs.isEmpty()) {
        answer(message, connection, m_inputs.takeFirst());
    } else if (message.member() == QLatin1String("ReportError") && m_retries) {
        answer(message, connection, {false, "net.connman.Agent.Error.Retry"_s, {}});
    } else {
        connection.send(message.createReply());
    }
    return true;
}

void FakeAgent::answer(const QDBusMessage &message, const QDBusConnection &connection, const Plan &plan) const
{
    if (plan.isSilence) {
        return;
    }
    connection.send(plan.error.isEmpty() ? message.createReply(QVariant(plan.fields))
                                         : message.createErrorReply(plan.error, "no"_s));
}

} // namespace simulator_test
