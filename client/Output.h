#pragma once

#include <QString>

/// A line on standard output: what was asked for.
void printLine(const QString &line);

/// A line on standard error: problems, and what is waited for.
void complain(const QString &line);
