#pragma once

#include <array>

namespace soak {

class Run;

/// Something that must hold however long the daemon lives: how often it is tried in the long form and in the
/// short one, and the limit of the one cost it has (growth in KiB or time in ms; 0: it has none).
struct Figure
{
    const char *name;
    const char *what;
    int longCount;
    int shortCount;
    int limit;
    void (*measure)(Run &run, const Figure &figure);
};

constexpr int figureCount = 7;
const std::array<Figure, figureCount> &figures();

void hostileMessages(Run &run, const Figure &figure);
void returnsOfConnman(Run &run, const Figure &figure);
void flappingServices(Run &run, const Figure &figure);
void randomOperations(Run &run, const Figure &figure);
void ends(Run &run, const Figure &figure);
void kills(Run &run, const Figure &figure);
void manyClients(Run &run, const Figure &figure);

} // namespace soak
