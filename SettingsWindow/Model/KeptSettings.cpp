#include "KeptSettings.h"

namespace Model {

KeptSettings::KeptSettings() = default;

Words KeptSettings::whoCanRead() const
{
    return {};
}
std::vector<KeptSet> KeptSettings::setsOf(const std::string &, std::optional<Words> *) const
{
    return {};
}
std::optional<Words> KeptSettings::keep(const std::string &, const KeptSet &) const
{
    return {};
}
std::optional<Words> KeptSettings::remove(const std::string &, const std::string &) const
{
    return {};
}
std::optional<Words> KeptSettings::rename(const std::string &, const std::string &,
                                          const std::string &) const
{
    return {};
}
std::optional<Words> KeptSettings::objectionToName(const std::string &)
{
    return {};
}

} // namespace Model
