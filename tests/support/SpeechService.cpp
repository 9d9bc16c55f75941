#include "SpeechService.h"
#include "Text.h"

#include <QDBusError>
#include <utility>

namespace test_support {

namespace {
const QString busName = "com.tactora.Speech"_s;
}

SpeechService::SpeechService(QDBusConnection connection, SpeechRecord &record)
    : m_connection(std::move(connection))
    , m_record(record)
{
    m_connection.registerObject("/"_s, this, QDBusConnection::ExportScriptableSlots);
    setPresent(true);
}

void SpeechService::setPresent(bool present)
{
    const bool done =
        present ? m_connection.registerService(busName) : m_connection.unregisterService(busName);
    if (!done) {
        qFatal("The speech service is out of hand: %s", qPrintable(m_connection.lastError().message()));
    }
}

void SpeechService::speakFromId(const QString & /*id*/, const QVariantMap &request)
{
    m_record.add(request);
}

} // namespace test_support
