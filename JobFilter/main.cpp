#include "Cancellation.h"
#include "FilterProgram.h"
#include "runFilter.h"

#include <cstdlib>

int main(int argc, char *argv[])
{
    prepareFilterProcess();
    Platform::cleanUpWhenCancelled();

    const auto arguments = filterArguments(argc, argv);
    std::exit(arguments ? runFilter(*arguments) : EXIT_FAILURE);
}
