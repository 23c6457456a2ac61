#pragma once

#include <string>

/// What the name of a job's option says about its value.
struct OptionName {
    enum class Kind { Text, Integer, Boolean };

    std::string key; ///< what the value is stored under
    Kind kind;
};

/// "KEY..n." names an integer and "KEY..b." a boolean, each to be stored under KEY; every other
/// name is the key of a text. Letter case counts.
OptionName optionName(std::string name);
