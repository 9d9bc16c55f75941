#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <QVector>

namespace test_support {

/// What the device's speech service has been asked to say, in order.
class SpeechRecord : public QObject
{
    Q_OBJECT
public:
    void add(const QVariantMap &request);
    QVector<QVariantMap> requests() const { return m_requests; }
    /// The sentences of the network manager, as "number" or "number: argument argument".
    QStringList sentences() const;
    /// How often that sentence has been asked for so far.
    int count(int sentenceId) const;
    /// Runs the event loop until that sentence has been asked for `times` times.
    bool waitFor(int sentenceId, int times = 1) const;
    void clear() { m_requests.clear(); }

signals:
    void added(const QVariantMap &request);

private:
    QVector<QVariantMap> m_requests;
};

} // namespace test_support
