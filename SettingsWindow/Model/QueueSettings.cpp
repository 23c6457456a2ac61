#include "QueueSettings.h"

namespace Model {

class QueueSettings::Parts {
public:
    explicit Parts(PPD ppd) : _ppd(std::move(ppd)) {}

private:
    PPD _ppd;
};

QueueSettings::QueueSettings(PPD ppd, const std::string &, const JobOptions &)
    : _parts(std::make_unique<Parts>(std::move(ppd)))
{
}

QueueSettings::QueueSettings(QueueSettings &&) noexcept = default;
QueueSettings &QueueSettings::operator=(QueueSettings &&) noexcept = default;
QueueSettings::~QueueSettings() = default;

std::vector<Field> QueueSettings::fields(Page) const
{
    return {};
}
std::string QueueSettings::value(std::string_view) const
{
    return {};
}
std::optional<Words> QueueSettings::set(std::string_view, std::string_view)
{
    return {};
}
std::vector<Problem> QueueSettings::problems() const
{
    return {};
}
void QueueSettings::reset() {}
void QueueSettings::load(const JobOptions &) {}
JobOptions QueueSettings::options(Secrets) const
{
    return {};
}
JobOptions QueueSettings::optionsOver(const JobOptions &, Secrets) const
{
    return {};
}
bool QueueSettings::hasSecrets() const
{
    return false;
}
bool QueueSettings::isSecret(std::string_view) const
{
    return false;
}

} // namespace Model
