#include "SpeechRecord.h"

#include "EventWait.h"
#include "Text.h"
#include <algorithm>

int SpeechRecord::count(int sentenceId) const
{
    return static_cast<int>(
        std::count_if(m_requests.cbegin(), m_requests.cend(), [sentenceId](const QVariantMap &request) {
            return request.value("sentenceId"_s) == sentenceId;
        }));
}

bool SpeechRecord::waitFor(int sentenceId, int times) const
{
    return test_support::waitUntil([&] { return count(sentenceId) >= times; });
}
