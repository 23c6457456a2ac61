#include "PostScriptCommands.h"

#include "CoverPlan.h"
#include "DSCDocument.h"
#include "DocumentWriter.h"
#include "PostScriptText.h"
#include "PrinterFeatures.h"
#include "ProcSets.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <map>
#include <set>
#include <string>
#include <utility>

namespace {

constexpr std::array<std::string_view, 1> kCountComment = {"%%Pages"};

// What a page's own requests must not say on a cover for which the option says it.
constexpr std::string_view kSourceKeys = "/MediaPosition /ManualFeed /TraySwitch ";
constexpr std::string_view kMediaKeys = "/MediaType /MediaColor /MediaWeight /MediaClass ";
constexpr std::string_view kDuplexKeys = "/Duplex /Tumble ";

const std::set<std::string> kPaintingOperators = {
    "fill",     "eofill",  "stroke", "rectfill",  "rectstroke", "ufill",
    "ueofill",  "ustroke", "shfill", "image",     "imagemask",  "colorimage",
    "execform", "show",    "ashow",  "widthshow", "awidthshow", "kshow",
    "xshow",    "yshow",   "xyshow", "glyphshow"};

/// What the procedures have to know of them (MarksAhead.ps).
std::string paintingRequest()
{
    std::string text = "/painting [";
    for (const std::string &name : kPaintingOperators)
        text += " /" + name;
    return text + " ] def\n";
}

/// The PPD's name of a paper source that the toolkit's command line names otherwise.
std::string sourceInPPD(const std::string &source, const PrinterFeatures &features)
{
    static const std::map<std::string, std::string> kNames = {
        {"AutoSelect", "Auto"},
        {"Bypass", "SheetFeedBypass"},
        {"ExternalLCF2", "AdditionalExternalLCF"},
    };
    const auto name = kNames.find(source);
    if (name == kNames.end() || !features.has("InputSlot", name->second))
        return source;
    return name->second;
}

/// The PPD's name of a duplex setting.
std::string duplexInPPD(const std::string &word)
{
    if (word == "none")
        return "None";
    if (word == "tumble")
        return "DuplexTumble";
    return word == "notumble" ? "DuplexNoTumble" : word;
}

/// What every PostScript printer understands.
std::string_view duplexRequest(const std::string &choice)
{
    if (choice == "None")
        return "<< /Duplex false /Tumble false >> setpagedevice";
    if (choice == "DuplexNoTumble")
        return "<< /Duplex true /Tumble false >> setpagedevice";
    return choice == "DuplexTumble" ? "<< /Duplex true /Tumble true >> setpagedevice" : "";
}

/// Writes one document with covers.
class CoverPagesWriter {
public:
    CoverPagesWriter(const CoverPages &request, const Job &job);

    void write();

private:
    void writeHeader();
    void writeProlog();
    void writeCover(const CoverSheet &sheet, const Cover &cover);
    void writeJob();
    enum class Sheet { Cover, Job };
    void scheduleSettings(Sheet sheet, const std::string &source, const std::string &media,
                          const std::string &duplex);
    std::string takeSettings();
    void writeAhead(const std::string &code);
    void writePages(const PageRange &pages);
    void writePage(const DSCPage &page);
    void writeBlankSide();
    std::int64_t sideCount() const;
    std::string codeOfDuplex(const std::string &choice) const;

    const CoverPages &_request;
    const DSCDocument _document;
    const PrinterFeatures _features;
    const CoverPlan _plan;
    DocumentWriter _writer;
    std::string _settings;   ///< to be made where the next side begins
    std::int64_t _sides = 0; ///< written so far
    bool _mayHaveMarksAhead; ///< drawn by the document ahead of its pages; never behind those
};

CoverPagesWriter::CoverPagesWriter(const CoverPages &request, const Job &job)
    : _request(request),
      _document(job.input),
      _features(job.ppdPath),
      _plan(coverPlan(static_cast<std::int64_t>(_document.pages().size()), request.front.style,
                      request.back.style, request.duplex == "none")),
      _writer(_document, job.output),
      _mayHaveMarksAhead(_plan.front && _document.runsAheadOfPages(kPaintingOperators))
{
}

void CoverPagesWriter::write()
{
    writeHeader();
    writeProlog();
    if (_plan.front)
        writeCover(*_plan.front, _request.front);
    if (_plan.blankSideBehindFront)
        writeBlankSide();
    writeJob();
    _mayHaveMarksAhead = false;
    if (_plan.back)
        writeCover(*_plan.back, _request.back);
    if (_plan.back || (_plan.front && _plan.job.isEmpty()))
        scheduleSettings(Sheet::Job, _request.source, _request.media, duplexInPPD(_request.duplex));
    writeAhead(takeSettings());
    _writer.copyWithout(_document.trailer(), kCountComment);
    _writer.finish();
}

void CoverPagesWriter::writeHeader()
{
    _writer.copy({0, _document.endOfFirstLine()});
    _writer.lines(fmt::format("%%Pages: {}\n", sideCount()));
    _writer.copyWithout({_document.endOfFirstLine(), _document.header().end}, kCountComment);
}

std::int64_t CoverPagesWriter::sideCount() const
{
    std::int64_t sides = _plan.job.size();
    sides += _plan.blankSideBehindFront ? 1 : 0;
    sides += _plan.blankSideBehindJob ? 1 : 0;
    for (const auto &cover : {_plan.front, _plan.back}) {
        if (cover)
            sides += cover->pages.isEmpty() ? 1 : cover->pages.size();
    }
    return sides;
}

void CoverPagesWriter::writeProlog()
{
    const std::uint64_t procedures = _document.beginOfProcedures();
    _writer.copy({_document.header().end, procedures});
    if (_mayHaveMarksAhead)
        _writer.procedures("KLToolkitCoverPages", paintingRequest(),
                           std::string(kCoverPagesProcSet).append(kMarksAheadProcSet));
    else
        _writer.procedures("KLToolkitCoverPages", "", kCoverPagesProcSet);
    _writer.proceduresForCutOffPage();
    _writer.copy({procedures, _document.pages().front().begin});
    _writer.callAheadOfPages();
    if (_plan.back && _plan.back->pages.isEmpty())
        _writer.call("KLToolkitCoverPagesPages");
}

void CoverPagesWriter::writeCover(const CoverSheet &sheet, const Cover &cover)
{
    scheduleSettings(Sheet::Cover, cover.source, cover.media,
                     sheet.oneSided ? "None" : duplexInPPD(_request.duplex));
    if (sheet.pages.isEmpty()) {
        if (_sides > 0)
            _settings += _writer.callOf("KLToolkitCoverPagesSize");
        writeBlankSide();
    }
    writePages(sheet.pages);
}

void CoverPagesWriter::writeJob()
{
    if (_plan.job.isEmpty())
        return;
    if (_plan.front)
        scheduleSettings(Sheet::Job, _request.source, _request.media, duplexInPPD(_request.duplex));
    writePages(_plan.job);
    if (_plan.blankSideBehindJob)
        writeBlankSide();
}

/// What sets nothing for a cover leaves that to its pages.
void CoverPagesWriter::scheduleSettings(Sheet sheet, const std::string &source,
                                        const std::string &media, const std::string &duplex)
{
    std::string code;
    std::string keys;
    const auto add = [&](const std::string &codeOfOption, std::string_view keysOfOption) {
        code += codeOfOption;
        if (sheet == Sheet::Cover && !codeOfOption.empty())
            keys += keysOfOption;
    };
    add(_features.code("InputSlot", sourceInPPD(source, _features)), kSourceKeys);
    if (media != "None")
        add(_features.code("MediaType", media), kMediaKeys);
    add(codeOfDuplex(duplex), kDuplexKeys);
    _settings = _writer.callOf("KLToolkitCoverPagesBegin", "{" + keys + "}") + code +
                _writer.callOf("KLToolkitCoverPagesEnd");
}

/// The PPD's code, and the request that every printer understands where the PPD has none for the
/// page data.
std::string CoverPagesWriter::codeOfDuplex(const std::string &choice) const
{
    std::string code = _features.code("Duplex", choice);
    const std::string_view request = duplexRequest(choice);
    if ((code.empty() || _features.isJobControl("Duplex")) && !request.empty())
        code += protectedFeature("Duplex", choice, request);
    return code;
}

std::string CoverPagesWriter::takeSettings()
{
    return std::exchange(_settings, {});
}

/// Writes what stands at the begin of a side, ahead of the document's own marks.
/// @param code  whole lines; may be empty
void CoverPagesWriter::writeAhead(const std::string &code)
{
    if (!_mayHaveMarksAhead || code.empty())
        return _writer.lines(code);
    _writer.lines("{\n" + code + "}\n");
    _writer.call("KLToolkitCoverPagesUnlessMarked");
}

void CoverPagesWriter::writeBlankSide()
{
    _writer.lines(fmt::format("%%Page: (blank) {}\n", ++_sides));
    writeAhead(takeSettings() + _writer.callOf("KLToolkitCoverPagesBlank"));
}

void CoverPagesWriter::writePages(const PageRange &pages)
{
    for (std::int64_t page = pages.first; page <= pages.last; ++page)
        writePage(_document.pages()[static_cast<std::size_t>(page - 1)]);
}

void CoverPagesWriter::writePage(const DSCPage &page)
{
    const DSCComment comment = _document.pageComment(page);
    _writer.lines(fmt::format("%%Page: {} {}\n", labelOfPage(comment), ++_sides));
    _writer.copy({comment.end, page.content});
    writeAhead(takeSettings());
    _writer.copyContent(page);
}

} // namespace

void applyToPostScript(const CoverPages &coverPages, const Job &job)
{
    CoverPagesWriter(coverPages, job).write();
}
