// Writes its argument to the system's log, for SystemLogTest.

#include "SystemLog.h"

int main(int argc, char *argv[])
{
    if (argc != 2)
        return 2;
    Platform::writeSystemLog(argv[1]);
    return 0;
}
