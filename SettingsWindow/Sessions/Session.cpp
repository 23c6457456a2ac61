#include "Session.h"
#include "commandLine.h"
#include "inBackground.h"

#include <QLocale>

#include <algorithm>
#include <iterator>
#include <utility>

using Model::KeptSet;

namespace {

Model::QueueSettings settingsOf(PPD ppd, const Model::Queue &queue)
{
    return Model::QueueSettings(std::move(ppd), QLocale().name().toStdString(), queue.defaults);
}

} // namespace

Findings findingsOf(const Model::Queue &queue, const Model::KeptSettings &kept)
{
    Findings findings{queue};
    findings.ppd = ppdOf(queue, kServerPatience, &findings.whyNoPPD);
    findings.sets = kept.setsOf(queue.name, &findings.whyNoSets);
    findings.defaults = optionsAddedByClients(queue.name, kept);
    findings.everybodys = Model::KeptSettings::ofEverybody().defaultsOf(queue.name);
    return findings;
}

std::optional<Session> Session::begin(Findings &findings, std::string *whyNot)
{
    auto ppd = PPD::open(findings.ppd->path(), whyNot);
    return ppd ? std::optional(Session(findings, std::move(*ppd))) : std::nullopt;
}

Session::Session(Findings &findings, PPD ppd)
    : _queue(findings.queue),
      _ppd(std::move(*findings.ppd)),
      _settings(settingsOf(std::move(ppd), _queue)),
      _sets(findings.sets),
      _defaults(findings.defaults),
      _everybodys(findings.everybodys)
{
}

bool Session::goOn(Findings &findings, std::string *whyNot)
{
    const bool isAsBefore =
        _ppd.isSameAs(*findings.ppd) && _queue.defaults == findings.queue.defaults;
    auto ppd = isAsBefore ? std::nullopt : PPD::open(findings.ppd->path(), whyNot);
    if (!isAsBefore && !ppd)
        return false;
    _queue = findings.queue;
    _sets = findings.sets;
    _defaults = findings.defaults;
    _everybodys = findings.everybodys;
    if (isAsBefore)
        return false;
    const JobOptions options = _settings.options();
    _settings = settingsOf(std::move(*ppd), _queue);
    _settings.load(options);
    _ppd = std::move(*findings.ppd);
    return true;
}

std::vector<std::string> Session::namesOfSets() const
{
    std::vector<std::string> names;
    for (const KeptSet &set : _sets)
        if (!set.name.empty())
            names.push_back(set.name);
    return names;
}

bool Session::hasSet(const std::string &name) const
{
    return std::ranges::find(_sets, name, &KeptSet::name) != _sets.end();
}

void Session::beginWith(const std::optional<std::string> &set)
{
    _set = set;
    if (!set) {
        _settings.reset();
        return;
    }
    const auto found = std::ranges::find(_sets, *set, &KeptSet::name);
    _settings.load(set->empty() || found == _sets.end()
                       ? _defaults
                       : Model::laidOver(_defaults, found->options));
}

KeptSet Session::toKeep(const std::string &name, Model::Secrets secrets) const
{
    return {name, _settings.optionsOver(name.empty() ? _everybodys : _defaults, secrets)};
}

JobOptions Session::optionsForCommand(Model::Secrets secrets) const
{
    return _settings.optionsOver(_defaults, secrets);
}

std::string Session::optionStringOfJob() const
{
    JobOptions options = _queue.defaults;
    std::ranges::copy(_settings.options(), std::back_inserter(options));
    return Model::optionString(options);
}

std::optional<Model::Words> Session::labelOf(const std::string &option,
                                             const std::string &choice) const
{
    for (const Model::Field &field : _settings.fields(Model::Page::Printer))
        if (field.id == option)
            for (const Model::Choice &each : field.choices)
                if (each.name == choice)
                    return each.label;
    return std::nullopt;
}
