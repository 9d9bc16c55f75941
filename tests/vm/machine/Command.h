#pragma once

#include <functional>
#include <QString>
#include <QStringList>

/// Runs a program to its end while the event loop turns; standard output, or an empty text when it failed.
QString outputOf(const QString &program, const QStringList &arguments);

/// Runs a program to its end while the event loop turns; true when its exit status was 0.
bool run(const QString &program, const QStringList &arguments);

/// Turns the event loop until the condition holds; false when it did not within the time. For conditions that
/// no signal announces (kernel state, other programs' output): the condition is looked at every `intervalMs`.
bool eventually(const std::function<bool()> &condition, int timeoutMs = 120000, int intervalMs = 100);
