#include "Keyboard.h"

#include "Bench.h"
#include "Text.h"

/// The fake that the sandbox has at the daemon's default path.
class Keyboard::Node
{
};

Keyboard::Keyboard() = default;
Keyboard::~Keyboard() = default;

bool Keyboard::plugIn()
{
    return true;
}

QString Keyboard::device() const
{
    return "/dev/input/event0"_s;
}

void Keyboard::press(int key)
{
    Bench::instance().daemon.sandbox().keyboard().press(key);
}

void Keyboard::release(int key)
{
    Bench::instance().daemon.sandbox().keyboard().release(key);
}
