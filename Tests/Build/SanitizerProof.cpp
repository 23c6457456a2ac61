// Reads past an array's end and returns 0. Under the sanitizers the process must not get that far.

#include <vector>

int main(int argc, char *[])
{
    const std::vector<int> numbers(4);
    const volatile int *last = numbers.data() + 3;
    return last[argc] == 12345 ? 0 : 0; // argc is 1 or more: behind the last one
}
