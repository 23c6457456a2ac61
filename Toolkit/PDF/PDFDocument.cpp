#include "PDFDocument.h"

#include "PDFInput.h"
#include "ToolkitError.h"

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFLogger.hh>
#include <qpdf/QPDFWriter.hh>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace {

/// The deepest page tree that is walked: far more than balanced trees have, far less than what the
/// stack takes.
constexpr int kMostLevels = 500;

/// Bytes.
constexpr std::size_t kLargeStream = std::size_t{128} * 1024;

/// What of the catalogue does not refer to pages, and matters to how others look.
constexpr std::array<std::string_view, 8> kKeptInCatalogue = {
    "/Extensions",    "/Lang", "/Metadata", "/OCProperties",
    "/OutputIntents", "/Type", "/Version",  "/ViewerPreferences"};

ToolkitError damaged(const std::string &how)
{
    return ToolkitError("The PDF document is damaged: " + how +
                        "; open it and print it to a new PDF.");
}

constexpr char kLacksTable[] = "the table of its objects, at its end, is missing or wrong";
constexpr char kUnreadable[] = "not all of its objects can be read";

/// @param how  what is wrong with a document that can be opened but for that
[[noreturn]] void refuse(const QPDFExc &problem, const char *how = kUnreadable)
{
    if (problem.getErrorCode() == qpdf_e_password)
        throw ToolkitError("The PDF document is encrypted and needs a password.");
    if (problem.getErrorCode() == qpdf_e_unsupported)
        throw ToolkitError("The PDF document is encrypted in a way that is not supported.");
    throw damaged(how);
}

constexpr char kLostPages[] = "not all of its pages are there";

/// The library walks the page tree by recursion, so a tree without end must not get there. From 12
/// on it leaves out the pages that are not there, without a warning in a document that it need not
/// put together.
void refuseDeepOrTornPageTree(QPDFObjectHandle root)
{
    std::vector<std::pair<QPDFObjectHandle, int>> pending = {{std::move(root), 0}};
    std::set<QPDFObjGen> seen;
    while (!pending.empty()) {
        auto [node, level] = pending.back();
        pending.pop_back();
        if (level > kMostLevels)
            throw damaged("its pages are nested too deeply");
        if (level > 0 && !node.isDictionary())
            throw damaged(kLostPages);
        if (!node.isDictionary() || !node.hasKey("/Kids"))
            continue;
        // The library refuses it as well, but only when it gets there.
        if (node.isIndirect() && !seen.insert(node.getObjGen()).second)
            throw damaged("its pages lead into themselves");
        QPDFObjectHandle kids = node.getKey("/Kids");
        for (int i = 0; i < kids.getArrayNItems(); ++i)
            pending.emplace_back(kids.getArrayItem(i), level + 1);
    }
}

/// Whether something is referred to that is not there.
bool isLost(QPDFObjectHandle object)
{
    return object.isIndirect() && object.isNull();
}

/// Whether a page that should have contents has none, or only a part.
bool lacksContents(QPDFObjectHandle page)
{
    if (!page.isDictionary())
        return true;
    const auto entries = page.getDictAsMap();
    const auto contents = entries.find("/Contents");
    if (contents == entries.end())
        return false;
    // Not deeper: parts are streams, and an array may lead into itself.
    QPDFObjectHandle value = contents->second;
    return value.isArray() ? std::ranges::any_of(value.getArrayAsVector(), isLost) : isLost(value);
}

/// Whether the library has put a document together and left pages out of its tree that are not
/// there, as it does from 12 on. All that is left of them then is a warning.
bool hasLeftPagesOut(QPDF &document)
{
    const std::vector<QPDFExc> warnings = document.getWarnings();
    for (const QPDFExc &warning : warnings) {
        // Taken out by having been asked for. Of pages without resources, which need none, the
        // library warns from 12.3 on: no damage.
        if (warning.getMessageDetail().find("Resources is missing") == std::string::npos)
            document.warn(warning);
    }
    return std::ranges::any_of(warnings, [](const QPDFExc &warning) {
        return warning.getMessageDetail().starts_with("Pages tree includes non-dictionary object");
    });
}

/// A damaged document would lose in silence what is not found. In a sound one a contents reference
/// may lead nowhere, and the page is blank.
void refuseLosses(QPDF &document, const std::vector<QPDFObjectHandle> &pages)
{
    QPDFObjectHandle count = document.getRoot().getKey("/Pages").getKey("/Count");
    const bool lacksPages =
        count.isInteger() && count.getIntValue() > static_cast<long long>(pages.size());
    // The library notices damage only while it looks for the contents.
    const bool isIncomplete = std::ranges::any_of(pages, lacksContents) || lacksPages;
    if (hasLeftPagesOut(document) || (isIncomplete && document.anyWarnings()))
        throw damaged(kLostPages);
}

/// What a page draws with: its contents, its resources wherever they are inherited from, and the
/// looks of its annotations.
std::vector<QPDFObjectHandle> partsOf(QPDFObjectHandle page)
{
    std::vector<QPDFObjectHandle> parts;
    const auto add = [&](QPDFObjectHandle object, const char *key) {
        const auto entries = object.getDictAsMap();
        if (const auto entry = entries.find(key); entry != entries.end())
            parts.push_back(entry->second);
    };
    add(page, "/Contents");
    QPDFObjectHandle annotations = page.getKey("/Annots");
    for (int i = 0; annotations.isArray() && i < annotations.getArrayNItems(); ++i) {
        if (QPDFObjectHandle annotation = annotations.getArrayItem(i); annotation.isDictionary())
            add(annotation, "/AP");
    }
    for (int level = 0; page.isDictionary() && level <= kMostLevels; ++level) {
        add(page, "/Resources");
        page = page.getKey("/Parent");
    }
    return parts;
}

/// Whether something is not there that the parts refer to.
bool lacksObjects(std::vector<QPDFObjectHandle> pending, std::set<QPDFObjGen> &seen)
{
    while (!pending.empty()) {
        QPDFObjectHandle object = pending.back();
        pending.pop_back();
        if (object.isIndirect() && !seen.insert(object.getObjGen()).second)
            continue;
        if (isLost(object))
            return true;
        if (object.isStream())
            object = object.getDict();
        if (object.isArray()) {
            const auto items = object.getArrayAsVector();
            pending.insert(pending.end(), items.begin(), items.end());
        } else if (object.isDictionary()) {
            for (const auto &[key, value] : object.getDictAsMap())
                pending.push_back(value);
        }
    }
    return false;
}

std::vector<QPDFObjectHandle> pagesOf(QPDF &document)
{
    refuseDeepOrTornPageTree(document.getRoot().getKey("/Pages"));
    std::vector<QPDFObjectHandle> pages = document.getAllPages();
    refuseLosses(document, pages);
    // Whatever it said: others believe it.
    document.getRoot().getKey("/Pages").replaceKey(
        "/Count", QPDFObjectHandle::newInteger(static_cast<long long>(pages.size())));
    if (pages.empty())
        throw ToolkitError("The PDF document has no pages.");
    return pages;
}

/// The bytes of a stream as they lie in the file, in one piece. Those that the library reads by
/// itself come in blocks of 10 kB, and to gather them it takes half as much memory again.
class BytesOfFile : public QPDFObjectHandle::StreamDataProvider {
public:
    BytesOfFile(std::shared_ptr<InputSource> file, qpdf_offset_t position, std::size_t size)
        : _file(std::move(file)), _position(position), _size(size)
    {
    }

    void provideStreamData(const QPDFObjGen & /*stream*/, Pipeline *output) override
    {
        const auto bytes = std::make_unique_for_overwrite<char[]>(_size);
        _file->seek(_position, SEEK_SET);
        if (_file->read(bytes.get(), _size) != _size)
            throw std::runtime_error("a stream's bytes cannot be read");
        output->write(reinterpret_cast<unsigned char *>(bytes.get()), _size);
        output->finish();
    }

private:
    std::shared_ptr<InputSource> _file;
    qpdf_offset_t _position;
    std::size_t _size;
};

/// Streams that have a filter go through as they are, whatever it unpacks to; what has none is
/// compressed. The library by itself would unpack those with several filters, and metadata.
void keepPackedStreams(QPDF &document)
{
    for (QPDFObjectHandle &object : document.getAllObjects()) {
        if (object.isStream() && object.getDict().hasKey("/Filter") && !object.isDataModified())
            object.setFilterOnWrite(false);
    }
}

/// Whether the file begins with a header: the library counts positions from the first that it
/// finds.
bool beginsWithHeader(InputSource &file)
{
    std::array<char, 8> start = {}; // "%PDF-1.7"
    file.seek(0, SEEK_SET);
    const auto isDigit = [&](std::size_t i) { return start[i] >= '0' && start[i] <= '9'; };
    return file.read(start.data(), start.size()) == start.size() &&
           std::string_view(start.data(), start.size()).starts_with(kPDFHeader) && isDigit(5) &&
           start[6] == '.' && isDigit(7);
}

/// To be called when the library has read all objects: if it had nothing to mend, what they say
/// about their streams is true.
void readLargeStreamsInOnePiece(QPDF &document, const std::shared_ptr<InputSource> &file)
{
    if (document.anyWarnings() || document.isEncrypted() || !beginsWithHeader(*file))
        return;
    for (QPDFObjectHandle &object : document.getAllObjects()) {
        if (!object.isStream() || object.getParsedOffset() <= 0) // it was made by us
            continue;
        const auto size = object.getDict().getKey("/Length").getUIntValue();
        if (size >= kLargeStream)
            object.replaceStreamData(
                std::make_shared<BytesOfFile>(file, object.getParsedOffset(), size),
                QPDFObjectHandle(), QPDFObjectHandle());
    }
}

/// Bytes. The library hands over a stream as a whole, and written in one piece 5 MB may cost the
/// system three times what they cost in blocks.
constexpr std::size_t kBlockSize = std::size_t{128} * 1024;

/// The end of the library's way out, for writing to a file in blocks.
class BlockwiseOutput : public Pipeline {
public:
    explicit BlockwiseOutput(std::FILE *file) : Pipeline("output", nullptr), _file(file) {}

    void write(const unsigned char *data, std::size_t size) override
    {
        for (std::span<const unsigned char> left(data, size); !left.empty();) {
            const auto block = left.first(std::min(left.size(), kBlockSize));
            if (std::fwrite(block.data(), 1, block.size(), _file) != block.size())
                throw unwritableOutput(errno);
            left = left.subspan(block.size());
        }
    }
    /// Whoever closes the file learns whether all of it got there.
    void finish() override {}

private:
    std::FILE *_file;
};

/// Lets the output's identifier, and what else the library makes up, depend on the document alone.
/// The first half of the identifier stays the input's if it has one.
void leaveOutTheClock(QPDFWriter &writer, bool isEncrypted)
{
    if (!isEncrypted)
        return writer.setDeterministicID(true);
    // Its identifier must be known before a byte is written. As to the initialization vectors:
    // whoever has the document opens it as it was opened here, without a password.
    writer.setStaticID(true);
    writer.setStaticAesIV(true);
}

} // namespace

void PDFDocument::Deleter::operator()(QPDF *document) const
{
    if (!leavesMemory)
        delete document;
}

PDFDocument::PDFDocument(const Job &job)
    : _file(pdfInput(job.input)), _owned(new QPDF, Deleter{job.endsProcess})
{
    // What the library warns about, it has mended; from 12 on it does so past the document, too.
    _qpdf.setSuppressWarnings(true);
    QPDFLogger::defaultLogger()->setError(QPDFLogger::defaultLogger()->discard());
    const char *whatIfDamaged = kLacksTable;
    try {
        _qpdf.processInputSource(_file);
        whatIfDamaged = kUnreadable;
        _pages = _pagesAsRead = pagesOf(_qpdf);
    } catch (const QPDFExc &problem) {
        refuse(problem, whatIfDamaged);
    } catch (const ToolkitError &) {
        throw;
    } catch (const std::runtime_error &) {
        // A number, say, that no computer takes.
        throw damaged(kUnreadable);
    }
}

void PDFDocument::insertPage(QPDFObjectHandle page, std::size_t before)
{
    page = _qpdf.makeIndirectObject(page);
    try {
        if (before < _pages.size())
            _qpdf.addPageAt(page, true, _pages[before]);
        else
            _qpdf.addPage(page, false);
    } catch (const QPDFExc &problem) {
        refuse(problem);
    }
    _pages.insert(_pages.begin() + static_cast<std::ptrdiff_t>(before), page);

    _qpdf.getRoot().removeKey("/PageLabels");
    QPDFObjectHandle preferences = _qpdf.getRoot().getKey("/ViewerPreferences");
    if (preferences.isDictionary())
        preferences.removeKey("/PrintPageRange");
}

void PDFDocument::replacePages(std::vector<QPDFObjectHandle> pages)
{
    QPDFObjectHandle tree = _qpdf.makeIndirectObject(QPDFObjectHandle::newDictionary());
    for (QPDFObjectHandle &page : pages) {
        page = _qpdf.makeIndirectObject(page);
        page.replaceKey("/Parent", tree);
    }
    tree.replaceKey("/Type", QPDFObjectHandle::newName("/Pages"));
    tree.replaceKey("/Kids", QPDFObjectHandle::newArray(pages));
    tree.replaceKey("/Count", QPDFObjectHandle::newInteger(static_cast<long long>(pages.size())));

    QPDFObjectHandle root = _qpdf.getRoot();
    for (const std::string &key : root.getKeys()) {
        if (std::ranges::find(kKeptInCatalogue, key) == kKeptInCatalogue.end())
            root.removeKey(key);
    }
    root.replaceKey("/Pages", tree);
    _qpdf.updateAllPagesCache();
    _pages = std::move(pages);
}

void PDFDocument::write(std::FILE *output)
{
    try {
        keepPackedStreams(_qpdf);
        readLargeStreamsInOnePiece(_qpdf, _file);
        BlockwiseOutput blocks(output);
        QPDFWriter writer(_qpdf);
        writer.setOutputPipeline(&blocks);
        leaveOutTheClock(writer, _qpdf.isEncrypted());
        writer.setMinimumPDFVersion(_leastVersion);
        writer.write();
    } catch (const ToolkitError &) {
        throw;
    } catch (const QPDFExc &problem) {
        refuse(problem);
    } catch (const std::runtime_error &) {
        // Contents were asked for that cannot be had (PDFPage.cpp); the library words it anew.
        throw ToolkitError(
            "The PDF document has a page that is damaged or too large; open it and print "
            "it to a new PDF.");
    }
    refuseLostParts();
}

/// Only now has all been looked for, and the library knows whether it is damaged.
void PDFDocument::refuseLostParts()
{
    if (!_qpdf.anyWarnings())
        return;
    std::set<QPDFObjGen> seen;
    for (const QPDFObjectHandle &page : _pagesAsRead) {
        if (lacksObjects(partsOf(page), seen))
            throw damaged("not all parts of its pages are there");
    }
}
