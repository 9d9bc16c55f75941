#pragma once

#include <QStringList>
#include <QVector>

/// One step of the tour.
struct TourStep
{
    QString narration;
    /// Console commands, carried out one after the other.
    QStringList commands;
    /// The beginnings of the events that have to be seen, in whatever order; what stands behind "..." comes
    /// somewhere later in the event.
    QStringList expected;
};

const QVector<TourStep> &tourSteps();
