#include "SpeechRecorder.h"

#include "EventWait.h"
#include <algorithm>
#include <QDBusError>
#include <utility>

namespace {
const QString busName = QStringLiteral("com.tactora.Speech");
}

SpeechRecorder::SpeechRecorder(QDBusConnection connection)
    : m_connection(std::move(connection))
{
    m_connection.registerObject(QStringLiteral("/"), this, QDBusConnection::ExportScriptableSlots);
    setPresent(true);
}

void SpeechRecorder::setPresent(bool present)
{
    const bool done =
        present ? m_connection.registerService(busName) : m_connection.unregisterService(busName);
    if (!done) {
        qFatal("The speech service is out of hand: %s", qPrintable(m_connection.lastError().message()));
    }
}

int SpeechRecorder::count(int sentenceId) const
{
    return static_cast<int>(
        std::count_if(m_requests.cbegin(), m_requests.cend(), [sentenceId](const QVariantMap &request) {
            return request.value(QStringLiteral("sentenceId")) == sentenceId;
        }));
}

bool SpeechRecorder::waitFor(int sentenceId, int times) const
{
    return test_support::waitUntil([&] { return count(sentenceId) >= times; });
}

void SpeechRecorder::speakFromId(const QString &id, const QVariantMap &request)
{
    Q_UNUSED(id)
    m_requests << request;
    emit spoke(request);
}
