#include "Figure.h"

namespace soak {

const std::array<Figure, figureCount> &figures()
{
    static const std::array<Figure, figureCount> all{{
        {"hostile", "odd messages from clients and ConnMan", 100000, 4000, 2048, hostileMessages},
        {"returns", "ConnMan leaves the bus and comes back", 1000, 60, 2048, returnsOfConnman},
        {"flapping", "services and the cable come and go", 1000, 60, 2048, flappingServices},
        {"operations", "random calls while ConnMan fails", 20000, 400, 4096, randomOperations},
        {"ends", "SIGTERM at each kind of moment", 10, 1, 4000, ends},
        {"kills", "SIGKILL while files are written", 400, 24, 10000, kills},
        {"clients", "calls of each of 50 clients at once", 200, 6, 0, manyClients},
    }};
    return all;
}

} // namespace soak
