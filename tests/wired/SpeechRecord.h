#pragma once

#include <QVariantMap>
#include <QVector>

/// What the device's speech service has been asked to say, in order.
class SpeechRecord
{
public:
    void add(const QVariantMap &request) { m_requests << request; }
    QVector<QVariantMap> requests() const { return m_requests; }
    /// How often that sentence has been asked for so far.
    int count(int sentenceId) const;
    /// Runs the event loop until that sentence has been asked for `times` times.
    bool waitFor(int sentenceId, int times = 1) const;

private:
    QVector<QVariantMap> m_requests;
};
