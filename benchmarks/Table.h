#pragma once

#include <QString>
#include <QVector>

/// The middle one of the values, of which there has to be one.
double median(QVector<double> values);

/// A table's head, with what the floor is.
void printHeader(const QString &floor);
/// One row; `target` is what the ratio (or the daemon's value, where the target has a unit) should be.
void printRow(const QString &what, const QString &unit, double floor, double daemon,
              const QString &target = {});
