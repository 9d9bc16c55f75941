#pragma once

#include <QMap>
#include <QMetaType>
#include <QRandomGenerator>
#include <QVariantMap>

/// A dictionary that is none of ours: its values are no variants.
using TextMap = QMap<QString, QString>;
Q_DECLARE_METATYPE(TextMap)

/// Dictionaries as any peer could send them: nested, with every D-Bus type, and often enough with the names
/// and types that the agent looks for.
class RandomRequest
{
public:
    explicit RandomRequest(quint32 seed);

    QVariantMap dictionary(int depth);
    QString text();
    /// From 0 to below `end`.
    int number(int end) { return m_random.bounded(end); }

private:
    QString key();
    QVariant value(int depth);
    QVariant plainValue();
    QVariant rawValue(int depth);

    QRandomGenerator m_random;
};
