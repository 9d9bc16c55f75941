#pragma once

#include "Text.h"

#include <QObject>
#include <QStringList>
#include <QVariantMap>

/// The device's other programs that the daemon calls: a speech service that remembers what it was told to
/// say, and a configuration manager that knows the serial number.
class DevicePeers : public QObject
{
    Q_OBJECT
public:
    static constexpr int serialNumber = 4711;
    /// What the daemon makes of it: 4711 + 200000 is 31fa7 in hexadecimal.
    static QString addressOfSerialNumber() { return "02:a7:c4:03:1f:a7"_s; }

    /// Puts both on the system bus.
    bool appear();

    /// The sentences since the last `forgetSentences()`, in order, as "number" or "number: argument
    /// argument".
    QStringList spoken() const { return m_spoken; }
    bool hasSpoken(const QString &sentence) const { return m_spoken.contains(sentence); }
    void forgetSentences() { m_spoken.clear(); }

    void remember(const QVariantMap &request);

private:
    QStringList m_spoken;
};
