// A job header, walked and filled in with a job's settings, against a model of both.
//
// The first line says which settings the job has: each letter that is found there switches one on
// (see kSettings). What follows is the header.

#include "KLPJLHandler.h"
#include "KLPrintJob.h"
#include "KLPrintOptions.h"
#include "handlePJL.h"

#include "FileURL.h"
#include "Fuzzing.h"
#include "ICCProfile.h"
#include "MemoryStreams.h"
#include "Queue.h"
#include "StreamModel.h"
#include "Text.h"

#include <set>
#include <vector>

using namespace std::string_literals;

namespace {

/// A setting that a letter switches on, and how its value stands in the header.
struct Setting {
    char letter;
    const char *key;
    KLValue value;
    std::string text;
};

/// Values that would speak to the printer if they were let through.
const std::vector<Setting> kSettings = {
    {'a', "com.kalmira.pde.print-mode-ovm.departmentCode", "4\r\n7", "4  7"},
    {'m', "com.kalmira.pde.advancedcolorsettings.mode", "Standard", "Standard"},
    {'r', "com.kalmira.pde.advancedcolorsettings.rgb-source", "%@\x1b%-12345X", "%@ %-12345X"},
    {'i', "com.kalmira.pde.advancedcolorsettings.rendering-intent", std::int64_t{-3}, "-3"},
    {'z', "com.kalmira.pde.advancedcolorsettings.customized-rgb-profile", "a\tb", "a b"},
    {'u', "com.kalmira.username", "J\xc3\xbcrgen\n", "J\xc3\xbcrgen "},
    {'d', "com.kalmira.domainname", "\x7f"s, " "},
    {'p', "PrintMode", "Private", "Private"},
    {'w', "com.kalmira.pde.print-mode-ovm.privatePassword", std::int64_t{99}, "99"},
    {'s', "StoreToDocStore", "TRUE", "TRUE"},
    {'n', "com.kalmira.pde.docstore.boxNumber", std::int64_t{12}, "12"},
    {'b', "com.kalmira.pde.docstore.boxPassword", "%s", "%s"},
    {'x', "com.kalmira.pde.docstore.boxPasswordEx", true, "1"},
    {'l', "PrintAsWell", "False", "False"},
    {'c', "com.kalmira.copies", "3\0"s, "3 "},
    {'v', "AP_ColorMatchingMode", "AP_VendorColorMatching", ""},
    {'0', "com.apple.print.PrintSettings.PMColorMatchingMode", std::int64_t{0}, "0"},
};

/// Switches on a profile that is the standard one.
constexpr char kProfileLetter = 'q';
constexpr char kProfileKey[] = "com.kalmira.pde.q5.color-profile";

/// The job's settings by their letters.
class Job {
public:
    explicit Job(std::string_view letters) : _letters(letters.begin(), letters.end()) {}

    bool has(char letter) const { return _letters.contains(letter); }

    /// How the setting stands in the header; nullopt when the job has none.
    std::optional<std::string> text(char letter) const
    {
        if (!has(letter))
            return std::nullopt;
        for (const Setting &setting : kSettings) {
            if (setting.letter == letter)
                return setting.text;
        }
        return std::nullopt;
    }

    void store(KLPrintOptions &options, const std::string &profileURL) const
    {
        for (const Setting &setting : kSettings)
            options.setValueForKey(
                has(setting.letter) ? std::optional(setting.value) : std::nullopt, setting.key);
        options.setValueForKey(
            has(kProfileLetter) ? std::optional<KLValue>(profileURL) : std::nullopt, kProfileKey);
    }

private:
    std::set<char> _letters;
};

std::string dssc(const std::string &setting)
{
    return "@PJL COMMENT DSSC PRINT " + setting + "\r\n";
}

std::string box(const std::string &setting)
{
    return "@PJL COMMENT DSSC BOX " + setting + "\r\n";
}

/// The line, if the job has that setting.
std::string dsscIf(const std::optional<std::string> &text, const std::string &name)
{
    return text ? dssc(name + *text) : "";
}

std::string advancedColor(const Job &job)
{
    if (!job.has('m'))
        return dssc("EXTRADOCUMENTTYPE=" + job.text('z').value_or("DEFAULT"));
    return dsscIf(job.text('r'), "RGB PROFILE=") + dsscIf(job.text('i'), "RENDERING INTENT=");
}

std::string boxLines(const Job &job)
{
    std::string lines = box("BOX=1") + box("BOXNO=" + job.text('n').value_or("")) +
                        box("BOXNAME=") + box("BOXFOLDER=");
    if (job.has('b'))
        lines += box("BOXPASSWORD=%s");
    else if (job.has('x'))
        lines += box("BOXPASSWORDEX=1");
    return lines;
}

std::string printMode(const Job &job, const std::string &line)
{
    const std::string user =
        dssc("USERLOGIN=" + job.text('u').value_or("")) + dsscIf(job.text('d'), "DOMAINNAME=");
    if (job.has('p'))
        return user + line + dsscIf(job.text('w'), "PRIVPRINT=");
    if (!job.has('s'))
        return user + line;
    return user + boxLines(job) + (job.has('l') ? dssc("PRINTMODE=BOX") : line);
}

/// What becomes of a line.
std::string modelOfLine(const Job &job, const std::string &line)
{
    if (line.starts_with("@PJL COMMENT DSSC PRINT ACCESSCODE="))
        return dsscIf(job.text('a'), "ACCESSCODE=");
    if (line.starts_with("@PJL COMMENT DSSC PRINT COLLATE=")) {
        const bool force = job.has(kProfileLetter) && !job.has('v') && !job.has('0');
        return dssc(force ? "FORCE_DEVICECOLOR=1" : "FORCE_DEVICECOLOR=0") + line;
    }
    if (line.starts_with("@PJL COMMENT DSSC PRINT DOCUMENTTYPE=ADVANCED"))
        return line + advancedColor(job);
    if (line.starts_with("@PJL COMMENT DSSC PRINT PRINTMODE="))
        return printMode(job, line);
    if (line.starts_with("@PJL JOB NAME"))
        return line + "@PJL SET COPIES = " + job.text('c').value_or("1") + "\r\n";
    return line;
}

/// What is written of the header, and what is left of it to read.
std::pair<std::string, std::string> modelOfWalk(const Job &job, const std::string &header)
{
    const auto start = Support::modelOfPassingMarker(header, "\x1b%-12345X");
    std::string output = start.output;
    std::string_view rest = start.rest;
    while (!rest.empty()) {
        std::string line(Fuzz::takeLine(rest));
        if (start.rest.size() - rest.size() > 0 &&
            start.rest[start.rest.size() - rest.size() - 1] == '\n')
            line += '\n';
        if (!Platform::isValidUTF8(line))
            break;
        output += modelOfLine(job, line);
        if (line.starts_with("@PJL ENTER LANGUAGE"))
            break;
    }
    return {output, std::string(rest)};
}

/// A store whose PPD and whose profile last as long as the process.
std::shared_ptr<KLPrintOptions> makeStore(std::string &profileURL)
{
    static Fuzz::MemoryFile ppd;
    static Fuzz::MemoryFile profile;
    ppd.assign(Fuzz::queuePPD());
    profile.assign(Support::standardSRGBProfile());
    profileURL = "file://" + profile.path();
    setenv("PPD", ppd.path().c_str(), 1);
    return std::make_shared<KLPrintOptions>("");
}

} // namespace

void Fuzz::tryInput(std::string_view input)
{
    static std::string profileURL;
    static const std::shared_ptr<KLPrintOptions> options = makeStore(profileURL);
    const Job settings(takeLine(input));
    settings.store(*options, profileURL);
    const std::string header(input);

    const Support::MemoryOutput output;
    const auto job =
        std::make_shared<KLPrintJob>(Support::openInput(header), true, output.stream(), false);
    job->setPrintOptions(options);
    KLPJLHandler::enumeratePJLFromPrintJobUsingBlock(job, handlePJL(job));
    std::fflush(output.stream());

    const auto [expected, expectedRest] = modelOfWalk(settings, header);
    requireEqual(expected, output.bytes(), "the header gets the job's settings and nothing else");
    std::string rest;
    while (const auto line = job->readLine())
        rest += *line;
    requireEqual(expectedRest, rest, "what follows the header stays unread");
}
