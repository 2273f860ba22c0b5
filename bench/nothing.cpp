// A program in C++ that does nothing: what it costs that a program starts and ends.

#include <iostream> // for the standard library, which is then loaded and made ready

int main()
{
    return 0;
}
