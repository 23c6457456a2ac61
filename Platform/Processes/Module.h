#pragma once

#include <exception>
#include <new>
#include <stdexcept>
#include <string>

namespace Platform {

// Optional parts of a program lie in modules of their own, so that a run that does not need them
// neither loads them nor the libraries behind them. A module stays loaded until the process ends.
//
// The program may have a C++ runtime of its own linked in, which knows nothing of exceptions that a
// module throws. So none leaves a module: an exported function has a last parameter that says why
// it failed, and callModule() throws on this side.

/// A module could not be opened, lacks what was asked of it, or failed at it; what() says which.
class ModuleError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The address of a symbol that a module exports, good until the process ends.
/// @throws ModuleError when `fileName` is no plain file name, or the module or the symbol is not
///         there
/// @see callModule
void *symbolFromModule(const std::string &fileName, const std::string &symbol);

/// Calls a function that a module exports with C linkage:
/// `void function(Parameters..., std::string &failure)`.
///
/// @param fileName  a plain file name such as "KLDirectoryModule.so": the program's own run path
///                  says where it lies.
/// @param symbol    the function's name. `Parameters` must be its own: nothing can check that.
/// @throws ModuleError, with the function's own words when it has failed
template <class... Parameters>
void callModule(const std::string &fileName, const std::string &symbol, Parameters... arguments)
{
    using Function = void(Parameters..., std::string &);
    std::string failure;
    reinterpret_cast<Function *>(symbolFromModule(fileName, symbol))(arguments..., failure);
    if (!failure.empty())
        throw ModuleError(failure);
}

/// What the exported functions of a module are made of: does the work, and lets no std::exception
/// out. The work throws nothing else.
/// @param failure  empty, and stays so when the work succeeds; gets what() of the exception that
///                 ended it, never the empty text.
template <class Work>
void withinModule(std::string &failure, const Work &work)
{
    try {
        work();
    } catch (const std::bad_alloc &) {
        failure = "Out of memory"; // short enough to need none
    } catch (const std::exception &error) {
        failure = *error.what() != '\0' ? error.what() : "unknown reason";
    }
}

} // namespace Platform

/// Stands before a function that a module exports.
#define KL_MODULE_EXPORT extern "C" __attribute__((visibility("default")))
