#pragma once

#include "TourSteps.h"
#include <QObject>
#include <QTimer>

class Console;
class Feed;

/// The demonstration: tells what is about to happen, does it, and goes on as soon as everything that should
/// follow has been seen. It ends early when something has not been seen in time.
class Tour : public QObject
{
    Q_OBJECT
public:
    Tour(QVector<TourStep> steps, Console &console, Feed &feed, QObject *parent = nullptr);

    void start();
    /// Whether it has come to its end and everything was seen.
    bool succeeded() const { return m_succeeded; }

signals:
    void finished();

private:
    void begin(int step);
    void check();
    void giveUp(const QString &reason);
    QStringList unseen() const;

    const QVector<TourStep> m_steps;
    Console &m_console;
    Feed &m_feed;
    QTimer m_patience;
    int m_step = 0;
    bool m_succeeded = false;
};
