#pragma once

#include <functional>
#include <QStringList>

/// Makes readline complete words as splitWords() divides them: `candidates` tells what may be typed behind
/// the words before the one that is being completed.
void completeLinesWith(std::function<QStringList(const QStringList &words)> candidates);
