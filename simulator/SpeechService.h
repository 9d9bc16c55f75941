#pragma once

#include "BusService.h"
#include <QStringList>
#include <QVariantMap>

namespace simulator {

/// The device's speech service: com.tactora.Speech, speakFromId(s id, a{sv} request).
class SpeechService : public BusService
{
    Q_OBJECT
public:
    SpeechService(const QString &address, Instruments instruments, QObject *parent = nullptr);

    /// The requests so far: speakFromId("<uuid>", {"sentenceId": <7>, ...})
    QStringList lines() const { return m_lines; }

    QString introspect(const QString &path) const override;

signals:
    void spoke(const QString &id, const QVariantMap &request);

protected:
    void handleCall(const Call &call) override;
    void recordCall(const Call &call) override;

private:
    QStringList m_lines;
};

} // namespace simulator
