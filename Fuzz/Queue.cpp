#include "Queue.h"

#include "Fuzzing.h"
#include "KLPrintOptions.h"
#include "MinimalPPD.h"
#include "ObjectFormat.h"

#include <algorithm>

namespace Fuzz {
namespace {

constexpr char kHeaderOptions[] = R"(*JCLOpenUI *Department/Department: PickOne
*OrderDependency: 10 JCLSetup *Department
*DefaultDepartment: On
*Department On/On: "@PJL COMMENT DSSC PRINT ACCESSCODE=0<0D0A>"
*JCLCloseUI: *Department
*JCLOpenUI *Collate/Collate: PickOne
*OrderDependency: 20 JCLSetup *Collate
*DefaultCollate: False
*Collate False/Off: "@PJL COMMENT DSSC PRINT COLLATE=OFF<0D0A>"
*Collate True/On: "@PJL COMMENT DSSC PRINT COLLATE=ON<0D0A>"
*JCLCloseUI: *Collate
*JCLOpenUI *DocumentType/Document: PickOne
*OrderDependency: 30 JCLSetup *DocumentType
*DefaultDocumentType: Advanced
*DocumentType Text/Text: "@PJL COMMENT DSSC PRINT DOCUMENTTYPE=TEXT<0D0A>"
*DocumentType Advanced/Advanced: "@PJL COMMENT DSSC PRINT DOCUMENTTYPE=ADVANCED<0D0A>"
*JCLCloseUI: *DocumentType
*JCLOpenUI *PrintMode/Mode: PickOne
*OrderDependency: 40 JCLSetup *PrintMode
*DefaultPrintMode: Normal
*PrintMode Normal/Normal: "@PJL COMMENT DSSC PRINT PRINTMODE=NORMAL<0D0A>"
*PrintMode Private/Private: "@PJL COMMENT DSSC PRINT PRINTMODE=PRIVATE<0D0A>"
*JCLCloseUI: *PrintMode
*JCLOpenUI *MediaType/Media: PickOne
*OrderDependency: 50 JCLSetup *MediaType
*DefaultMediaType: Plain
*MediaType Plain/Plain: "@PJL COMMENT DSSC PRINT MEDIATYPE=PLAIN<0D0A>"
*MediaType Thick/Thick: "@PJL COMMENT DSSC PRINT MEDIATYPE=THICK<0D0A>"
*JCLCloseUI: *MediaType
*CustomJCLNote True: "@PJL COMMENT NOTE=\1
"
*End
*ParamCustomJCLNote Text/Text: 1 string 0 999
*JCLOpenUI *JCLNote/Note: PickOne
*OrderDependency: 60 JCLSetup *JCLNote
*DefaultJCLNote: None
*JCLNote None/None: ""
*JCLCloseUI: *JCLNote
*OpenUI *InputSlot/Tray: PickOne
*OrderDependency: 30 AnySetup *InputSlot
*DefaultInputSlot: Tray1
*InputSlot Tray1/First: "<</MediaPosition 0>>setpagedevice"
*InputSlot Tray2/Second: "<</MediaPosition 1>>setpagedevice"
*CloseUI: *InputSlot
)";

/// All keywords that something is asked for by, and one that no PPD has.
constexpr const char *kKeywords[] = {"PageSize",  "Duplex",  "MediaType",    "InputSlot",
                                     "PrintMode", "Collate", "DocumentType", "No such option"};

bool hasNoEndlessText(const KLPrintOptions &options)
{
    const auto text = options.valueForKey("com.kalmira.pde.watermark.text");
    return !text || Platform::description(*text).find_first_of("\\()") == std::string::npos;
}

void askForCodes(const KLPrintOptions &options, const char *keyword)
{
    const auto marked = options.codeForMarkedChoiceForPPDOption(keyword);
    const auto value = options.valueForKey(keyword);
    const std::string choice = value ? Platform::description(*value) : std::string();
    const auto code = options.codeForPPDOptionWithChoice(keyword, choice);
    if (marked || code)
        require(options.ppd().hasOption(keyword), "a code belongs to an option");
    const auto converted =
        options.convertPJLCodeToPostscriptForPPDOptionWithChoice(keyword, choice);
    require(!converted || code, "only a code is converted");
    require(!value ||
                converted == options.convertPJLCodeToPostscriptForMarkedChoiceForPPDOption(keyword),
            "the stored choice is the one that is converted");
}

void askForCovers(const KLPrintOptions &options)
{
    for (const char *position : {"front", "Back"}) {
        std::int64_t page = -7;
        const auto cover = options.generateCoverPageCodeForPositionRestorationPage(position, page);
        require(page == -7 || (cover && page >= 1 && page <= 3),
                "only a front cover says where the job's settings come back");
    }
    for (const std::int64_t pages : {0, 1, 2, 9}) {
        const auto back = options.calculateBackCoverPageFromTotalPages(pages);
        require(back == -1 || (back >= 1 && back <= pages + 1),
                "the back cover begins at a page of the job or right behind it");
    }
}

} // namespace

std::string queuePPD(const std::string &extraLines)
{
    return Support::minimalPPD(kHeaderOptions + extraLines);
}

void askEverything(const KLPrintOptions &options)
{
    for (const char *keyword : kKeywords)
        askForCodes(options, keyword);
    askForCovers(options);
    options.pageSize();
    const auto duplex = options.postscriptCodeForDefaultDuplexSetting();
    require(!duplex || duplex->ends_with('\n'), "the duplex code is a line");
    if (hasNoEndlessText(options))
        require(!options.generageWatermarkCode().empty(), "every watermark has its code");
}

} // namespace Fuzz
