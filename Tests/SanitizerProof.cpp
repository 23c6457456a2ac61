// Reads past an array's end and returns 0. Under the sanitizers the process must not get that far.

#include <array>

int main(int argc, char *[])
{
    volatile std::array<int, 4> numbers = {};
    const volatile auto *past = numbers.data() + 3 + argc;
    return *past == 12345 ? 0 : 0;
}
