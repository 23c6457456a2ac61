#pragma once

#include "KeptSettings.h"
#include "QueueSettings.h"
#include "Queues.h"

#include <optional>
#include <string>
#include <vector>

/// What was found out about a printer.
struct Findings {
    Model::Queue queue;
    std::optional<Model::PPDCopy> ppd = {};
    Model::Words whyNoPPD = {};
    std::vector<Model::KeptSet> sets = {};
    std::optional<Model::Words> whyNoSets = {};
    JobOptions defaults = {};   ///< that print dialogs and lp(1) add
    JobOptions everybodys = {}; ///< those of them that the administrator has set
};

/// Asks a printer's server and looks at what is kept for it. May wait for a server: for a thread
/// that has the time.
Findings findingsOf(const Model::Queue &queue, const Model::KeptSettings &kept);

/// A printer, as it was when it was looked at last, and what is set for it. It stays, whatever
/// becomes of the printer. Can be moved.
class Session {
public:
    /// Begins with the printer's own settings.
    /// @param findings  has a PPD, which is taken out of it
    /// @param whyNot    says why there is none; not null
    static std::optional<Session> begin(Findings &findings, std::string *whyNot);

    /// Takes what was found out since. Where the PPD has changed, or what the queue says beside it,
    /// what was set is taken over, as far as there are the same options.
    /// @param findings  has a PPD, which is taken out of it where that is another one
    /// @param whyNot    says why nothing was taken, as the PPD cannot be read; not null
    /// @return whether the printer has changed
    bool goOn(Findings &findings, std::string *whyNot);

    const Model::Queue &queue() const { return _queue; }
    std::string ppdPath() const { return _ppd.path(); }
    Model::QueueSettings &settings() { return _settings; }
    const Model::QueueSettings &settings() const { return _settings; }

    /// The names of the sets that have one.
    std::vector<std::string> namesOfSets() const;
    /// Whether there are any of the user's own or of everybody's.
    bool hasDefaults() const { return !_defaults.empty(); }
    /// Whether such a set is the user's own; the name is empty for the defaults.
    bool hasSet(const std::string &name) const;

    /// The set that was begun with: nullopt for the printer's own settings, empty for the defaults.
    const std::optional<std::string> &set() const { return _set; }
    /// Says that what is set is what such a set has.
    void setSet(const std::optional<std::string> &name) { _set = name; }
    /// Puts everything back to what a set has, as lp(1) takes it.
    void beginWith(const std::optional<std::string> &set);

    /// What is set, as a set of that name is to have it; an empty name for the defaults. Print
    /// dialogs lay a named set over the defaults, and the user's over everybody's: it says what is
    /// otherwise there.
    Model::KeptSet toKeep(const std::string &name, Model::Secrets secrets) const;
    /// What is set, as options for lp(1), which adds the defaults.
    JobOptions optionsForCommand(Model::Secrets secrets) const;
    /// What is set and what the queue says by itself, as an option string.
    std::string optionStringOfJob() const;
    /// What a choice of the PPD's own options is called; nullopt when there is no such choice.
    std::optional<Model::Words> labelOf(const std::string &option, const std::string &choice) const;

private:
    Session(Findings &findings, PPD ppd);

    Model::Queue _queue;
    Model::PPDCopy _ppd;
    Model::QueueSettings _settings;
    std::vector<Model::KeptSet> _sets;
    JobOptions _defaults;
    JobOptions _everybodys;
    std::optional<std::string> _set = {};
};
