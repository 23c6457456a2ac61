#include "handlePJL.h"

#include "BoundedMemory.h"
#include "FileURL.h"
#include "KLICCProfile.h"
#include "KLPrintOptions.h"
#include "headerMarkers.h"
#include "headerText.h"
#include "printMode.h"

#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace {

//
// Department code: "ACCESSCODE=" lines
//

void writeAccessCode(KLPJLHandler &handler, const KLPrintOptions &options)
{
    const auto code = options.valueForKey("com.kalmira.pde.print-mode-ovm.departmentCode");
    if (code)
        handler.replaceCurrentLineWithDSSCLineWithFormat("ACCESSCODE=%@", headerText(code));
    else
        handler.removeCurrentLine();
}

//
// Device colour: "COLLATE=" lines
//

/// Bytes that a profile may take, whose file the job names: enough for one of 8 MiB, more than two
/// thousand times the standard one.
constexpr std::size_t kMostProfileMemory = std::size_t{24} << 20;

/// Whether the URL, a text, names a profile file of the standard sRGB colour space.
bool namesStandardSRGBProfile(const KLValue &urlText)
{
    const auto *text = std::get_if<std::string>(&urlText);
    const auto url = text != nullptr ? Platform::FileURL::withString(*text) : std::nullopt;
    if (!url)
        return false;
    Platform::BoundedMemory memory(kMostProfileMemory);
    const std::unique_ptr<KLICCProfile, decltype(&KLICCProfileRelease)> profile(
        KLICCProfileCreateWithContentsOfURL(&memory, *url), KLICCProfileRelease);
    return profile && KLICCProfileCopyModel(profile.get()) == "sRGB" &&
           KLICCProfileCopyDescription(profile.get()) == "sRGB IEC61966-2.1";
}

int deviceColorFlag(const KLPrintOptions &options)
{
    if (options.valueForKeyIsEqualToString("AP_ColorMatchingMode", "AP_VendorColorMatching"))
        return 0;
    if (options.valueForKeyIsEqualToNumber("com.apple.print.PrintSettings.PMColorMatchingMode", 0))
        return 0;
    const auto profile = options.valueForKey("com.kalmira.pde.q5.color-profile");
    return profile && namesStandardSRGBProfile(*profile) ? 1 : 0;
}

void writeDeviceColor(KLPJLHandler &handler, const KLPrintOptions &options)
{
    handler.insertDSSCLineBeforeCurrentLineWithFormat("FORCE_DEVICECOLOR=%d",
                                                      deviceColorFlag(options));
}

//
// Advanced colour settings: "DOCUMENTTYPE=ADVANCED" lines
//

/// A DSSC line format and the option whose value fills it.
struct Setting {
    std::string_view format;
    std::string_view key;
};

constexpr Setting kStandardColorSettings[] = {
    {"RGB PROFILE=%@", "com.kalmira.pde.advancedcolorsettings.rgb-source"},
    {"CMYK PROFILE=%@", "com.kalmira.pde.advancedcolorsettings.cmyk-source"},
    {"OUTPUT PROFILE=%@", "com.kalmira.pde.advancedcolorsettings.cmyk-dest"},
    {"USE PROFILE=%@", "com.kalmira.pde.advancedcolorsettings.device-color-only"},
    {"RENDERING INTENT=%@", "com.kalmira.pde.advancedcolorsettings.rendering-intent"},
};

void writeStandardColor(KLPJLHandler &handler, const KLPrintOptions &options)
{
    for (const Setting &setting : kStandardColorSettings) {
        if (const auto value = options.valueForKey(setting.key))
            handler.addDSSCLineAfterCurrentLineWithFormat(setting.format, headerText(value));
    }
}

void writeCustomizedColor(KLPJLHandler &handler, const KLPrintOptions &options)
{
    const auto profile = options.valueForKeyWithDefault(
        "com.kalmira.pde.advancedcolorsettings.customized-rgb-profile", "DEFAULT");
    handler.addDSSCLineAfterCurrentLineWithFormat("EXTRADOCUMENTTYPE=%@", headerText(profile));
}

void writeAdvancedColor(KLPJLHandler &handler, const KLPrintOptions &options)
{
    // This way round on purpose: the single profiles belong to the mode "Standard", the customised
    // profile to every other mode and to none (OtherModeTakesTheCustomizedProfile).
    if (options.valueForKeyIsEqualToString("com.kalmira.pde.advancedcolorsettings.mode",
                                           "Standard"))
        writeStandardColor(handler, options);
    else
        writeCustomizedColor(handler, options);
}

//
// User, private print and document box: "PRINTMODE=" lines
//

void writeUser(KLPJLHandler &handler, const KLPrintOptions &options)
{
    handler.insertDSSCLineBeforeCurrentLineWithFormat(
        "USERLOGIN=%@", headerText(options.valueForKey("com.kalmira.username")));
    if (const auto domain = options.valueForKey("com.kalmira.domainname"))
        handler.insertDSSCLineBeforeCurrentLineWithFormat("DOMAINNAME=%@", headerText(domain));
}

void writePrivatePrint(KLPJLHandler &handler, const KLPrintOptions &options)
{
    if (const auto code = privatePrintCode(options))
        handler.addDSSCLineAfterCurrentLineWithFormat(kPrivatePrintSetting, headerText(code));
}

void insertBoxLine(KLPJLHandler &handler, std::string_view name,
                   const std::optional<KLValue> &value)
{
    handler.insertLineBeforeCurrentLine(
        Platform::objectFormat("@PJL COMMENT DSSC BOX %@=%@\r\n", name, headerText(value)));
}

/// The printer takes one password: the extended one only without the plain one.
void insertBoxPassword(KLPJLHandler &handler, const KLPrintOptions &options)
{
    if (const auto password = options.valueForKey("com.kalmira.pde.docstore.boxPassword"))
        insertBoxLine(handler, "BOXPASSWORD", password);
    else if (const auto extended = options.valueForKey("com.kalmira.pde.docstore.boxPasswordEx"))
        insertBoxLine(handler, "BOXPASSWORDEX", extended);
}

void writeDocumentBox(KLPJLHandler &handler, const KLPrintOptions &options)
{
    insertBoxLine(handler, "BOX", "1");
    insertBoxLine(handler, "BOXNO", options.valueForKey("com.kalmira.pde.docstore.boxNumber"));
    insertBoxLine(handler, "BOXNAME", options.valueForKey("com.kalmira.pde.docstore.boxName"));
    insertBoxLine(handler, "BOXFOLDER", options.valueForKey("com.kalmira.pde.docstore.boxFolder"));
    insertBoxPassword(handler, options);
}

void writePrintMode(KLPJLHandler &handler, const KLPrintOptions &options)
{
    writeUser(handler, options);
    switch (printMode(options)) {
    case PrintMode::Open:
        break;
    case PrintMode::Private:
        writePrivatePrint(handler, options); // and no box, whatever else is asked for
        break;
    case PrintMode::StoredAndPrinted:
        writeDocumentBox(handler, options);
        break;
    case PrintMode::StoredOnly:
        writeDocumentBox(handler, options);
        handler.replaceCurrentLineWithDSSCLineWithFormat(kStoredOnlySetting);
        break;
    }
}

//
// Copies: the "@PJL JOB NAME" line
//

void writeCopies(KLPJLHandler &handler, const KLPrintOptions &options)
{
    const auto copies = options.valueForKeyWithDefault("com.kalmira.copies", "1");
    handler.addLineAfterCurrentLine(
        Platform::objectFormat("@PJL SET COPIES = %@\r\n", headerText(copies)));
}

//
// Which line gets what
//

/// What the setting of a DSSC line begins with, and what is to be done at such a line.
struct Marker {
    std::string_view prefix;
    void (*write)(KLPJLHandler &handler, const KLPrintOptions &options);
};

constexpr Marker kMarkers[] = {
    {kAccessCodeMarker, writeAccessCode},
    {kCollateMarker, writeDeviceColor},
    {kAdvancedColorMarker, writeAdvancedColor},
    {kPrintModeMarker, writePrintMode},
};

void handleLine(KLPJLHandler &handler, std::string_view line, const KLPrintOptions &options)
{
    const auto command = handler.DSSCCommand();
    if (!command) {
        if (line.starts_with("@PJL JOB NAME"))
            writeCopies(handler, options);
        return;
    }
    for (const Marker &marker : kMarkers) {
        if (command->starts_with(marker.prefix)) {
            marker.write(handler, options);
            return;
        }
    }
}

} // namespace

KLPJLHandler::Action handlePJL(std::shared_ptr<const KLPrintJob> printJob)
{
    return [job = std::move(printJob)](KLPJLHandler &handler, const std::string &currentLine) {
        handleLine(handler, currentLine, *job->printOptions());
    };
}
