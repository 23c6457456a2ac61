#pragma once

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct ppd_file_s; // the PPD library's own record

/// Options of a job: name and value, any bytes but NUL. No name comes up twice, letter case aside.
using JobOptions = std::vector<std::pair<std::string, std::string>>;

/// The options of an option string, in the syntax of cupsParseOptions() and in its order, that of
/// the names: of a name that is repeated the last value counts, and a name without a value is
/// "true" or, begun with "no", "false". Empty for the empty text; nothing is refused.
JobOptions parsedOptions(const std::string &optionString);

/// A queue's PPD (format 4.3), opened: its options, their choices, and which of them are marked.
///
/// The one door to the library that reads PPDs (ppdLibrary.h): nothing else calls it. Names of
/// options, choices and attributes are compared without regard to letter case, as that library
/// does. What is returned is the caller's. Owns the PPD; can be moved, not copied, and only be
/// destroyed or assigned to once moved from. One thread.
class PPD {
public:
    /// Opens a PPD, all of it: where reading breaks off, the library by itself would take what came
    /// before for the whole.
    /// @param whyNot  says why there is none, else becomes empty; not null
    /// @return no choice is marked in it; nullopt when the path leads to no regular file of at most
    ///         16 MiB that can be read and is a PPD
    static std::optional<PPD> open(const std::string &path, std::string *whyNot);

    // Marking. An option or choice that the PPD does not have changes nothing.

    /// Marks the default choice of every option.
    void markDefaults();

    /// Marks a choice of an option, in place of another where the option takes only one.
    void mark(const std::string &option, const std::string &choice);

    /// Marks the choices that a job's options name. The standard ones ("media", "sides") mark the
    /// PPD's own; a value "Custom.TEXT" or "{NAME=TEXT}" sets the parameters of a custom choice, in
    /// whose texts each control character is a blank: the library would write it into the job's
    /// header.
    void mark(const JobOptions &options);

    /// Option keyword and choice name of every choice that is marked (see markedChoices.h); none
    /// before anything was marked.
    std::vector<std::pair<std::string, std::string>> markedChoices() const;

    // Looking up.

    /// The value of an attribute ("APDialogExtension"), the first of that name; nullopt when there
    /// is none or it has no value.
    std::optional<std::string> attribute(const std::string &name) const;

    /// A line "*NAME SPECIFIER: "VALUE"" of the PPD.
    struct Attribute {
        std::string specifier; ///< at most 40 bytes, the library cuts what is longer; often empty
        std::string value;
    };

    /// All attributes of that name, in the PPD's order; an empty text is the value of one without.
    std::vector<Attribute> attributes(const std::string &name) const;

    /// Whether the name of any attribute begins so; letter case counts here.
    bool hasAttributeThatBegins(std::string_view prefix) const;

    /// What the lines "cupsFilter" say ("application/vnd.cups-postscript 0 jobfilter"), in order.
    std::vector<std::string> filters() const;

    /// What the job-control header begins with (JCLBegin) and ends with (JCLToPSInterpreter),
    /// decoded; nullopt when the PPD does not say.
    std::optional<std::string> headerBegin() const;
    std::optional<std::string> headerEnd() const;

    /// Whether copies are made by repeating pages (cupsManualCopies).
    bool repeatsPagesForCopies() const;

    /// A choice and its code.
    struct Choice {
        std::string name;
        std::string code; ///< empty also when it has none
    };

    /// An option, as it stands in the PPD.
    struct Option {
        std::string keyword;
        std::string defaultChoice;
        bool jobControl; ///< whether its code goes into the header
        bool typed;      ///< whether it takes a value that is typed ("Custom")
        std::vector<Choice> choices;
    };

    /// All options, in the PPD's order.
    std::vector<Option> options() const;

    bool hasOption(const std::string &option) const;
    bool hasChoice(const std::string &option, const std::string &choice) const;

    /// How the PPD spells the keyword of that option; nullopt when it has none.
    std::optional<std::string> optionAsSpelt(const std::string &option) const;

    /// How the PPD spells a choice of that option, which is given in any letter case (ASCII's). One
    /// that is spelt exactly as given stands before the others.
    /// @return nullopt when no such option or no such choice is there, and for a custom value
    std::optional<std::string> choiceAsSpelt(const std::string &option,
                                             const std::string &choice) const;

    /// Whether a choice of that option goes into the job's header (JCLSetup). False when there is
    /// no such option.
    bool isJobControl(const std::string &option) const;

    /// The code of a choice as the library hands it over: in job-control codes hexadecimal digits
    /// in angle brackets stand for bytes already. Nothing is trimmed.
    /// @return nullopt when no such option, no such choice or no code is there
    std::optional<std::string> code(const std::string &option, const std::string &choice) const;

    /// The name of the option's first choice that is marked; nullopt when there is none.
    std::optional<std::string> markedChoice(const std::string &option) const;

    /// What was typed for the option's custom choice, when that is marked: the value of its first
    /// parameter, a number in its shortest form.
    /// @return nullopt when the option takes no typed values or another choice is marked
    std::optional<std::string> typedValue(const std::string &option) const;

    /// What may be typed: the limits of an option's first parameter (ParamCustom).
    struct TypedLimits {
        enum class Kind {
            Digits,     ///< a passcode
            Characters, ///< a text or password
            Number,     ///< a number or a length
        };
        Kind kind;
        double from; ///< how many digits or characters, or the number itself; both limits belong
        double to;
    };

    /// @return nullopt when the option takes no typed values, or any
    std::optional<TypedLimits> typedLimits(const std::string &option) const;

    /// The code of the option's first choice that is marked, likewise.
    /// @return nullopt when no such option, no marked choice or no code is there
    std::optional<std::string> codeOfMarkedChoice(const std::string &option) const;

    // What dialogs show.

    /// A choice in words.
    struct ShownChoice {
        std::string name;
        std::string words;
    };

    /// What may be typed for an option, beside its choices.
    struct ShownTyping {
        std::string words; ///< what its first parameter is called
        bool isHidden;     ///< a passcode or password
        bool isLength;     ///< a number that may have a unit behind it
        bool isAlone;      ///< there is no other parameter
    };

    /// An option in words.
    struct ShownOption {
        std::string keyword;
        std::string words;
        std::string group; ///< the name of the PPD's group that it is in
        std::string groupWords;
        bool isFlag;                      ///< of the PPD's type Boolean
        std::vector<ShownChoice> choices; ///< without the one that stands for typed values
        std::optional<ShownTyping> typing = {};
    };

    /// All options that people may set, in the PPD's order: without "PageRegion", which stands for
    /// "PageSize". All words are UTF-8, in the language where the PPD has it and its file is still
    /// there (PPDTranslation.h), else as they stand; what has none in the PPD has its name.
    /// @param language  "de", "de_DE"; empty for the PPD's own
    std::vector<ShownOption> shownOptions(const std::string &language) const;

    /// What of the choices that are marked, option and choice, the PPD does not let be together
    /// with one of an option (UIConstraints), of that option's own choices none. What is in
    /// conflict with the choice of that option that is marked now does not count: that cannot be
    /// kept from happening any more.
    /// @param choice  a custom value is one, too: "Custom.TEXT"
    /// @return empty when it can be chosen, and when no such option is there
    std::vector<std::pair<std::string, std::string>> conflictsOf(const std::string &option,
                                                                 const std::string &choice) const;

    /// A page's extent in points, as the PPD states it: before any rotation.
    struct PageSize {
        double width;
        double height;
    };

    /// @param name  where the PPD takes custom sizes, also "Custom.WIDTHxHEIGHT" with a unit;
    ///              "Custom" alone is 0 by 0
    /// @return nullopt when the PPD does not know the name
    std::optional<PageSize> pageSize(const std::string &name) const;

    /// The size of the page size that is marked; nullopt when none is.
    std::optional<PageSize> markedPageSize() const;

    // Writing.

    /// Writes the job-control header (PJL): the PPD's JCLBegin with a line that names the job and
    /// one that names the user, the code of the marked choices, JCLToPSInterpreter. Nothing when
    /// the PPD has none of its own. User and title go in as they are but for what does not fit.
    /// @param file  open for writing; what becomes of the writing shows there
    void emitJobControl(FILE *file, int jobId, const std::string &user,
                        const std::string &title) const;

    /// What the library itself holds, for those who know it; stays this object's.
    ppd_file_s *file() const { return _file.get(); }

private:
    /// Closes a PPD.
    struct Closer {
        void operator()(ppd_file_s *file) const;
    };

    explicit PPD(ppd_file_s *file) : _file(file) {}
    void blankControlsOfCustomTexts();
    static std::optional<PPD> read(int descriptor, long long size, std::string *whyNot);

    std::unique_ptr<ppd_file_s, Closer> _file;
    std::string _path;
};
