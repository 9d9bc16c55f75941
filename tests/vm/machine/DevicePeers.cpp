#include "DevicePeers.h"

namespace {

constexpr int networkManagerSentences = 4;

} // namespace

void DevicePeers::remember(const QVariantMap &request)
{
    if (request.value(QStringLiteral("serviceId")).toInt() != networkManagerSentences) {
        m_spoken.append(QStringLiteral("not a sentence of the network manager"));
        return;
    }
    QString sentence = request.value(QStringLiteral("sentenceId")).toString();
    if (request.contains(QStringLiteral("arguments"))) {
        sentence += QStringLiteral(": ") +
                    request.value(QStringLiteral("arguments")).toStringList().join(QLatin1Char(' '));
    }
    m_spoken.append(sentence);
}
