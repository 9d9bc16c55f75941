#pragma once

#include <functional>

/// Turns the event loop until the condition holds; false when it did not within the time. For conditions that
/// no signal announces (kernel state, other programs' output): the condition is looked at every `intervalMs`.
bool eventually(const std::function<bool()> &condition, int timeoutMs = 120000, int intervalMs = 100);
