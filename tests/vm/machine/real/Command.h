#pragma once

#include <QString>
#include <QStringList>

/// Runs a program to its end while the event loop turns; standard output, or an empty text when it failed.
QString outputOf(const QString &program, const QStringList &arguments);

/// Runs a program to its end while the event loop turns; true when its exit status was 0.
bool run(const QString &program, const QStringList &arguments);
