#pragma once

#include <stdexcept>
#include <string>

namespace Platform {

// Optional parts of a program lie in modules of their own, so that a run that does not need them
// neither loads them nor the libraries behind them. A module stays loaded until the process ends.

/// A module could not be opened or lacks what was asked of it; what() names it and the reason.
class ModuleError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The address of a symbol that a module exports.
/// @see functionFromModule
void *symbolFromModule(const std::string &fileName, const std::string &symbol);

/// A function that a module exports with C linkage, typically the factory of what it offers.
///
/// @param fileName  a plain file name such as "KLDirectoryModule.so": the program's own run path
///                  says where it lies.
/// @param symbol    the function's name. `Function` must be its type: nothing can check that.
/// @throws ModuleError
template <class Function>
Function *functionFromModule(const std::string &fileName, const std::string &symbol)
{
    return reinterpret_cast<Function *>(symbolFromModule(fileName, symbol));
}

} // namespace Platform
