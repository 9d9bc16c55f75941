#include "MountNamespace.h"

int main(int argc, char *argv[])
{
    return mount_namespace::run(argc, argv);
}
