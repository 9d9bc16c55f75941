#include "DevicePeers.h"
#include "Text.h"

namespace {

constexpr int networkManagerSentences = 4;

} // namespace

void DevicePeers::remember(const QVariantMap &request)
{
    if (request.value("serviceId"_s).toInt() != networkManagerSentences) {
        m_spoken.append("not a sentence of the network manager"_s);
        return;
    }
    QString sentence = request.value("sentenceId"_s).toString();
    if (request.contains("arguments"_s)) {
        sentence += ": "_s + request.value("arguments"_s).toStringList().join(QLatin1Char(' '));
    }
    m_spoken.append(sentence);
}
