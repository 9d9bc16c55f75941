#include "Keyboard.h"

void Keyboard::chord(int modifier, int key)
{
    press(modifier);
    press(key);
    release(key);
    release(modifier);
}
