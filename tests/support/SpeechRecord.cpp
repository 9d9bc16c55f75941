#include "SpeechRecord.h"

#include "EventWait.h"
#include "Text.h"
#include <algorithm>

namespace test_support {

namespace {

constexpr int networkManagerSentences = 4;

QString sentence(const QVariantMap &request)
{
    if (request.value("serviceId"_s) != networkManagerSentences) {
        return "not a sentence of the network manager"_s;
    }
    const QString number = request.value("sentenceId"_s).toString();
    const QStringList arguments = request.value("arguments"_s).toStringList();
    return arguments.isEmpty() ? number : number + ": "_s + arguments.join(QLatin1Char(' '));
}

} // namespace

void SpeechRecord::add(const QVariantMap &request)
{
    m_requests << request;
    emit added(request);
}

QStringList SpeechRecord::sentences() const
{
    QStringList sentences;
    for (const QVariantMap &request : m_requests) {
        sentences << sentence(request);
    }
    return sentences;
}

int SpeechRecord::count(int sentenceId) const
{
    return static_cast<int>(
        std::count_if(m_requests.cbegin(), m_requests.cend(), [sentenceId](const QVariantMap &request) {
            return request.value("sentenceId"_s) == sentenceId;
        }));
}

bool SpeechRecord::waitFor(int sentenceId, int times) const
{
    return waitUntil([&] { return count(sentenceId) >= times; });
}

} // namespace test_support
