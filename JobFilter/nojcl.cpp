#include "FilterProgram.h"
#include "runCompanion.h"

#include <cstdlib>

int main(int argc, char *argv[])
{
    prepareFilterProcess();
    if (const auto status = answeredQuestion(
            argc, argv, "jobfilter-nojcl", "Takes job control out of page data, as a CUPS filter."))
        return *status;
    const auto arguments = filterArguments(argc, argv);
    if (!arguments)
        return EXIT_FAILURE;
    if (runCompanion(*arguments) != EXIT_SUCCESS)
        std::_Exit(
            EXIT_FAILURE); // not through exit(): what could not be written is not tried again
    return EXIT_SUCCESS;
}
