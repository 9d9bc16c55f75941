#pragma once

#include "Text.h"
#include <QDeadlineTimer>
#include <QRandomGenerator>
#include <QString>

namespace soak {

inline const QString connmanName = "net.connman"_s;
inline const QString cafe = "wifi_020000000200_43616665_managed_none"_s;
/// The network that comes and goes.
inline const QString flapper = "wifi_020000000200_466c6170_managed_psk"_s;
/// When a daemon that does not answer, or does not end, is given up.
constexpr int patienceMs = 10000;
/// The share of what is done after which the daemon has everything it will ever need.
constexpr int warmUpShare = 4;

/// One figure's measurement: how much to do, with which random numbers, and what came of it. Each finding is
/// one row of the table and printed at once.
class Run
{
public:
    /// `timeLimitMs`: when a figure that makes no headway gives up.
    Run(QString figure, int count, quint32 seed, qint64 timeLimitMs);

    int count() const { return m_count; }
    QRandomGenerator &random() { return m_random; }
    /// From 0 to below `end`.
    int below(int end) { return m_random.bounded(end); }
    bool isOutOfTime() const { return m_deadline.hasExpired(); }

    /// Whether every finding so far is within its limit.
    bool holds() const { return m_holds; }

    void check(const QString &what, const QString &measured, const QString &limit, bool holds);
    void checkEqual(const QString &what, qint64 measured, qint64 expected);
    /// Time and memory tell nothing about an instrumented build: there they are printed only.
    void checkTime(const QString &what, qint64 measuredMs, qint64 limitMs);
    void checkGrowth(const QString &what, qint64 measuredKiB, qint64 limitKiB);

private:
    void checkCost(const QString &what, qint64 measured, qint64 limit, const QString &unit);
    void print(const QString &what, const QString &measured, const QString &limit,
               const QString &holds) const;

    QString m_figure;
    int m_count;
    QRandomGenerator m_random;
    QDeadlineTimer m_deadline;
    bool m_holds = true;
};

/// The table's head.
void printHeader();

} // namespace soak
