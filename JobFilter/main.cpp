#include "Cancellation.h"
#include "FilterProgram.h"
#include "runFilter.h"

#include <cstdlib>

int main(int argc, char *argv[])
{
    prepareFilterProcess();
    Platform::cleanUpWhenCancelled();
    if (const auto status =
            answeredQuestion(argc, argv, "jobfilter",
                             "Gives a print job its printer's job header, as a CUPS filter."))
        return *status;

    const auto arguments = filterArguments(argc, argv);
    std::exit(arguments ? runFilter(*arguments) : EXIT_FAILURE);
}
