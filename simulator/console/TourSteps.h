#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// One step of the tour.
struct TourStep
{
    QString narration;
    /// Console commands, carried out one after the other.
    QStringList commands;
    /// What isExpected() finds in the events, in whatever order.
    QStringList expected;
};

/// The steps of the tour, as tour.txt tells them.
QVector<TourStep> tourSteps();

/// The steps of any such text; tour.txt explains its form.
QVector<TourStep> readTourSteps(const QString &text);

/// Whether an event begins with `expected`, which may have gaps ("..."). How blanks and line breaks divide
/// the words of the event makes no difference.
bool isExpected(const QString &event, const QString &expected);
