#include "PrivateWorld.h"

int main(int argc, char *argv[])
{
    return private_world::run(argc, argv);
}
