#pragma once

#include "DSCDocument.h"
#include "DocumentWriter.h"
#include "Job.h"
#include "PageSizes.h"
#include "watermarkText.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// The texts of pages that do not share one (WatermarkPages.ps). Each shape that they are made of
/// is in the document once.
class PageTexts {
public:
    /// @param text  stays the caller's, who keeps it at least as long
    explicit PageTexts(WatermarkText &text) : _text(text) {}

    void add(std::uint64_t page);

    /// The procedures for the shapes of all texts that were added.
    std::string glyphs() const { return "/glyphs [\n" + _glyphs + "] def\n"; }
    /// The operands that tell of the text of a page that was added.
    const std::string &operandsFor(std::uint64_t page) const { return _operands.at(page); }

private:
    std::size_t numberOf(const Platform::ShapedGlyph &glyph, const Platform::ShapedText &text);

    WatermarkText &_text;
    std::map<std::uint64_t, std::size_t> _numbers; ///< of the shapes in the document
    std::string _glyphs;
    std::map<std::uint64_t, std::string> _operands;
};

/// One watermark, as the pages of a document get it.
class PostScriptStamp {
public:
    /// It suits what is known of the document now, from its first page on.
    /// @param watermark  stays the caller's, as the document does, who keeps both at least as long
    /// @throws ToolkitError when the text cannot be drawn, and for an unreadable PPD
    PostScriptStamp(const Watermark &watermark, const DSCDocument &document, const Job &job);
    PostScriptStamp(const PostScriptStamp &) = delete;
    PostScriptStamp &operator=(const PostScriptStamp &) = delete;

    /// What the procedures have to know of the watermark (Watermark.ps and what goes along).
    std::string request() const;
    std::string procedures() const;

    /// Whether the procedures do for a page too that was not known when the stamp was made, or of
    /// which more is known by now.
    /// @param page  from 1
    bool suits(std::uint64_t page) const;

    /// Writes what stands at the begin of a page.
    /// @param page  from 1; one that the stamp suits
    void callFor(std::uint64_t page, DocumentWriter &writer) const;

    /// Whether the page is turned, by what is known of it now.
    /// @param page  from 1
    bool isLandscape(std::uint64_t page) const;

private:
    Point middle() const;

    const Watermark &_watermark;
    const DSCDocument &_document;
    PageSize _usualSize = {};
    WatermarkText _text;
    Platform::ShapedText _firstText;
    PageTexts _texts;
    bool _turns = false;       ///< along with landscape pages
    bool _isOnAllPages = true; ///< that there are
};
