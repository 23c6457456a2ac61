#include "DeviceLog.h"

#include <sstream>

namespace Support {
namespace {

constexpr char kInstruments[] =
    "userdict begin\n"
    "/realsetpagedevice /setpagedevice load def\n"
    "/realshowpage /showpage load def\n"
    "/say { dup type /stringtype eq { print } { 99 string cvs print } ifelse ( ) print } def\n"
    "/sayvalue { dup type /nulltype eq { pop (null) say } { dup type dup /arraytype eq exch\n"
    "/packedarraytype eq or { { say } forall } { say } ifelse } ifelse } def\n"
    "/setpagedevice { (SET ) print\n"
    "[/PageSize /ImagingBBox /Duplex /Tumble /MediaColor /MediaPosition /MediaType]\n"
    "{ 2 copy known { dup say 1 index exch get sayvalue } { pop } ifelse } forall\n"
    "(\n) print realsetpagedevice } bind def\n"
    "/showpage { (SHOW\n) print realshowpage } bind def\n"
    "/KMRsetpagedevice { /KMRPrivate get (SET PRIVATE ) print print (\n) print } def end\n";

/// "SET PRIVATE DSSC PRINT MEDIATYPE=PLAIN", or "SET Duplex true Tumble true ".
void takeIn(const std::string &line, DeviceState &state)
{
    const auto equals = line.find('=');
    if (line.starts_with("SET PRIVATE ") && equals != std::string::npos) {
        const auto name = line.rfind(' ', equals) + 1;
        state[line.substr(name, equals - name)] = line.substr(equals + 1);
        return;
    }
    std::istringstream words(line.substr(4));
    std::string key;
    for (std::string word; words >> word;) {
        // Keys are capitalised, the values of those that matter are not.
        if (word[0] >= 'A' && word[0] <= 'Z')
            state[key = word].clear();
        else
            state[key] += state[key].empty() ? word : " " + word;
    }
}

} // namespace

std::vector<std::string> deviceLogArguments()
{
    return {"-c", kInstruments, "-f"};
}

std::vector<DeviceState> statesOfSides(std::string_view log)
{
    std::vector<DeviceState> sides;
    DeviceState state;
    std::istringstream lines{std::string(log)};
    for (std::string line; std::getline(lines, line);) {
        if (line == "SHOW")
            sides.push_back(state);
        else if (line.starts_with("SET "))
            takeIn(line, state);
    }
    sides.push_back(state);
    return sides;
}

} // namespace Support
