#pragma once

#include <QObject>
#include <QUuid>
#include <QVariantMap>

namespace libspeech::detail {

/// Client of the speech service (com.tactora.Speech on the system bus). It never waits for that service. Use
/// the one instance of libtactora::Singleton<libspeech::detail::Speech>.
class Speech : public QObject
{
    Q_OBJECT

public:
    explicit Speech(QObject *parent = nullptr);

    /// Sends a request (keys: SpeechKeys.h) and returns the id it goes by on the bus; a null id, and nothing
    /// is sent, when nobody owns the service's name. A request that the service refuses or does not answer is
    /// a critical line of the category "libspeech" later on.
    QUuid speakFromId(const QVariantMap &request);

private:
    void send(const QString &id, const QVariantMap &request);
};

} // namespace libspeech::detail
