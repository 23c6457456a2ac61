// A PPD, for a job with a fixed option string.

#include "Fuzzing.h"
#include "KLPrintOptions.h"
#include "Queue.h"
#include "Streams.h"
#include "ppdLibrary.h"

#include <map>
#include <span>

namespace {

constexpr char kOptionString[] =
    "PageSize=A4 Duplex=DuplexTumble media=Letter sides=two-sided-long-edge output-bin=face-up "
    "MediaType=Thick InputSlot=Tray2 number..n.=7 switch..b.=true orientation-requested=4 "
    "print-quality=5 print-color-mode=monochrome Collate=true "
    "com.kalmira.pde.cover-pages.useFrontCover=true "
    "com.kalmira.pde.cover-pages.frontCoverSource=Tray2 "
    "com.kalmira.pde.cover-pages.frontCoverMediaType=Thick "
    "com.kalmira.pde.cover-pages.frontCoverPrintStyle=Print1 "
    "com.kalmira.pde.watermark.text=DRAFT";

const std::map<std::string, KLValue> kStored = {
    {"PageSize", "A4"},          {"Duplex", "DuplexTumble"}, {"MediaType", "Thick"},
    {"number", std::int64_t{7}}, {"switch", true},           {"Collate", "True"},
    {"InputSlot", "Tray2"},      {"media", "Letter"},
};

/// The choice of each option that is stored when the job says nothing: the last one marked.
std::map<std::string, std::string> markedChoices(const ppd_file_t &ppd)
{
    std::map<std::string, std::string> marked;
    for (int group = 0; group < ppd.num_groups; ++group) {
        for (int option = 0; option < ppd.groups[group].num_options; ++option) {
            const ppd_option_t &entry = ppd.groups[group].options[option];
            for (int choice = 0; choice < entry.num_choices; ++choice) {
                if (entry.choices[choice].marked)
                    marked[entry.keyword] = entry.choices[choice].choice;
            }
        }
    }
    return marked;
}

void tryStore(const KLPrintOptions &store)
{
    for (const auto &[key, value] : kStored)
        Fuzz::require(store.valueForKey(key) == value, "no PPD changes what the job says");
    for (const auto &[keyword, choice] : markedChoices(*store.ppd().file())) {
        if (!kStored.contains(keyword) &&
            std::string_view(kOptionString).find(keyword) == std::string_view::npos)
            Fuzz::require(store.valueForKey(keyword) == KLValue(choice),
                          "what the job leaves open is what the PPD marks");
    }
    Fuzz::askEverything(store);
    const Platform::Stream header = Platform::openTemporary();
    store.ppd().emitJobControl(header.get(), 7, "anna", "A title");
}

} // namespace

void Fuzz::tryInput(std::string_view input)
{
    static MemoryFile ppd;
    [[maybe_unused]] static const bool ready = setenv("PPD", ppd.path().c_str(), 1) == 0;
    ppd.assign(input);
    try {
        tryStore(KLPrintOptions(kOptionString));
    } catch (const KLNoPPDError &error) {
        const std::string_view reason = error.what();
        require(reason.find(ppd.path()) != std::string_view::npos, "the reason names the file");
        require(reason.find('\n') == std::string_view::npos, "the reason is one line");
    }
}
