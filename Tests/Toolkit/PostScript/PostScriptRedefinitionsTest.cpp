#include "PostScriptCommands.h"

#include "ToolkitPostScript.h"

#include <gtest/gtest.h>

#include <array>
#include <fmt/format.h>
#include <ostream>

using Support::Rendering;

// Documents give the operators other meanings, under names and in dictionaries of their own, and
// each in its own order. All documents here print the same two pages, whatever they do on the way;
// so what a command makes of them is the same, too.

namespace {

// --- The commands --------------------------------------------------------------------------------

Watermark draft(bool above)
{
    return {.above = above,
            .font = "Helvetica",
            .angle = 30,
            .colour = {1, 0, 0},
            .position = {40, 60},
            .size = 60,
            .text = "Draft"};
}

const Booklet kBooklet = {"A5", 0, 0, Ordering::LeftToRight};
/// Printed ones: a blank one is on the paper of the setup, of which some of these documents have
/// none.
const CoverPages kCovers = {.back = {CoverStyle::Print1, "None", "Auto"},
                            .front = {CoverStyle::Print1, "None", "Auto"},
                            .source = "Auto",
                            .media = "None",
                            .duplex = "notumble"};

// --- The documents -------------------------------------------------------------------------------

/// An operator that a page makes use of, and what is drawn around that.
struct Operator {
    std::string name;
    std::string noEffect; ///< procedure that takes its operands and does nothing
    std::string before;   ///< on the page, ahead of it
    std::string operands;
    std::string behind;
    Command command; ///< one that gives it another meaning, too
};

void PrintTo(const Operator &op, std::ostream *out)
{
    *out << op.name;
}

std::string box(int page)
{
    return fmt::format("0 0 1 setrgbcolor 20 {} 160 80 rectfill ", page == 1 ? 20 : 180);
}

const std::string kJunk = "0 setgray 0 0 90 300 rectfill ";

/// BOX stands for the page's own mark.
const std::vector<Operator> kOperators = {
    {"showpage", "{ }", "BOX", "", "", draft(false)},
    {"copypage", "{ }", "BOX", "", "erasepage", draft(true)},
    {"erasepage", "{ }", kJunk, "", "BOX showpage", draft(false)},
    {"setpagedevice", "{ pop }", kJunk, "<< /PageSize [200 300] >> ", "BOX showpage", kCovers},
    {"initgraphics", "{ }", "9 9 scale 0 0 1 1 rectclip ", "", "BOX showpage", kBooklet},
    {"initmatrix", "{ }", "9 9 scale ", "", "BOX showpage", kBooklet},
};

/// How a document keeps the operator: a definition of "real". OP stands for its name.
struct Keeping {
    std::string name;
    std::string text;
    bool isAtOnce = true; ///< else the name is looked up when "real" is called
};

const std::vector<Keeping> kKeepings = {
    {"Bound", "/real { OP } bind def\n"},
    {"BoundByAnotherName", "/bdef { bind def } bind def /real { OP } bdef\n"},
    {"BoundInside", "/real { true { true { OP } if } if } bind def\n"},
    {"BoundPacked", "true setpacking /real { true { OP } if } bind def false setpacking\n"},
    {"BoundLoaded", "/op /OP load def /real { op } bind def\n"},
    {"BoundByTheOperatorItself", "/real { OP } systemdict /bind get exec def\n"},
    {"Loaded", "/real /OP load def\n"},
    {"LoadedIfItIsAnOperator", "/real { } /OP load dup type /operatortype eq\n"
                               "{ 1 array astore cvx exch } if pop def\n"},
    {"TakenAtOnce", "/real { //OP } def\n"},
    {"TheOperatorItself", "/real { systemdict /OP get exec } bind def\n"},
    {"ByName", "/real { OP } def\n", false},
};

/// What else the document has the operator's name mean: a definition.
struct Meaning {
    std::string name;
    std::string text;
    bool calls;             ///< does the same in the end
    bool ends = false;      ///< is over behind the definition
    bool needsKept = false; ///< takes the value of "real" at once
};

const std::vector<Meaning> kMeanings = {
    {"Nothing", "/OP NOEFFECT def\n", false},
    {"Itself", "/OP { real } def\n", true},
    {"ItselfBound", "/OP { real } bind def\n", true},
    {"ItselfLoaded", "/OP /real load def\n", true, false, true},
    {"UndefinedAgain", "/OP NOEFFECT def currentdict /OP undef\n", true, true},
};

/// Where it has that meaning: the definition stands between these.
struct Dictionary {
    std::string name;
    std::string begin;
    std::string end;
    std::string beginOfPage;
    std::string endOfPage;
    bool isLeftOpen = false;
    bool isGlobal = false; ///< holds nothing local, and no restore takes back what is in it

    bool isSeenByAll() const { return end.empty() || isGlobal; }
};

const std::vector<Dictionary> kDictionaries = {
    {"the user's dictionary", "", "", "", ""},
    {"its own dictionary", "/D 9 dict def D begin\n", "end\n", "D begin\n", "end\n"},
    {"an open dictionary", "9 dict begin\n", "", "", "", true},
    {"the global dictionary", "currentglobal true setglobal globaldict begin\n", "end setglobal\n",
     "", "", false, true},
};

enum class Place { Prolog, Setup, Page };
constexpr std::array<const char *, 3> kPlaceNames = {"prolog", "setup", "page"};

void replaceAll(std::string &text, std::string_view part, const std::string &by)
{
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + by.size()))
        text.replace(at, part.size(), by);
}

/// What one document does with the operator.
struct Combination {
    const Operator *op;
    const Keeping *keeping;
    const Meaning *meaning; ///< null for none
    const Dictionary *dictionary;
    Place placeOfKeeping;
    Place placeOfMeaning;
    bool isKeptFirst; ///< the operator, before it has the other meaning

    bool hasMeaning() const { return meaning != nullptr && !meaning->ends; }
    bool leavesPagesDictionaryOpen() const
    {
        return dictionary->isLeftOpen && placeOfMeaning == Place::Page;
    }
};

std::string nameOf(const Combination &c)
{
    const auto at = [](Place place) { return kPlaceNames.at(static_cast<std::size_t>(place)); };
    std::string kept = fmt::format("{} in the {}", c.keeping->name, at(c.placeOfKeeping));
    if (c.meaning == nullptr)
        return kept;
    std::string meant = fmt::format("{} in {} in the {}", c.meaning->name, c.dictionary->name,
                                    at(c.placeOfMeaning));
    return c.isKeptFirst ? kept + ", " + meant : meant + ", " + kept;
}

/// Whether the document prints its pages: the operator does not come to nothing, or call itself.
bool isSound(const Combination &c)
{
    if (c.meaning == nullptr)
        return c.isKeptFirst && c.placeOfMeaning == c.placeOfKeeping &&
               c.dictionary == kDictionaries.data();
    if (c.isKeptFirst ? c.placeOfKeeping > c.placeOfMeaning : c.placeOfKeeping != c.placeOfMeaning)
        return false;
    if (!c.isKeptFirst && c.meaning->needsKept)
        return false;
    if (c.dictionary->isGlobal && (c.meaning->needsKept || c.placeOfMeaning == Place::Page))
        return false;
    const bool isSeenByKeeping = !c.isKeptFirst && c.dictionary->isSeenByAll();
    return !c.hasMeaning() || (c.keeping->isAtOnce && !isSeenByKeeping);
}

/// The first page calls what the document has kept, the second one the operator's name, where that
/// comes to the same.
/// @param definitions  the page's own; empty for none
std::string pageOf(const Combination &c, const std::string &definitions, int number)
{
    const bool isCalledByName = number == 2 && (c.meaning == nullptr || c.meaning->calls);
    std::string page = c.op->before + c.op->operands + (isCalledByName ? c.op->name : "real") +
                       " " + c.op->behind + "\n";
    replaceAll(page, "BOX", box(number));
    if (c.meaning != nullptr)
        page = c.dictionary->beginOfPage + page + c.dictionary->endOfPage;
    if (definitions.empty())
        return page;
    return "save\n" + definitions + page + (c.leavesPagesDictionaryOpen() ? "end\n" : "") +
           "restore\n";
}

std::string textOf(const Combination &c)
{
    std::array<std::string, 3> definitions;
    const auto at = [&](Place place) -> std::string & {
        return definitions.at(static_cast<std::size_t>(place));
    };
    if (c.isKeptFirst)
        at(c.placeOfKeeping) += c.keeping->text;
    if (c.meaning != nullptr)
        at(c.placeOfMeaning) += c.dictionary->begin + c.meaning->text + c.dictionary->end;
    if (!c.isKeptFirst)
        at(c.placeOfKeeping) += c.keeping->text;
    for (auto &text : definitions) {
        replaceAll(text, "NOEFFECT", c.op->noEffect);
        replaceAll(text, "OP", c.op->name);
    }
    PostScriptSample sample;
    if (c.dictionary->isGlobal)
        sample.trailer =
            "globaldict /" + c.op->name + " undef\n"; // the next document is not to see it
    sample.prolog = at(Place::Prolog);
    sample.setup += at(Place::Setup);
    for (int page = 1; page <= 2; ++page)
        sample.pages.push_back(pageOf(c, at(Place::Page), page));
    return sample.text();
}

struct Document {
    std::string name;
    std::string text;
};

std::vector<const Meaning *> meanings()
{
    std::vector<const Meaning *> all = {nullptr};
    for (const Meaning &meaning : kMeanings)
        all.push_back(&meaning);
    return all;
}

/// All that documents do with an operator.
std::vector<Document> documentsWith(const Operator &op)
{
    std::vector<Document> documents;
    const auto add = [&documents](const Combination &c) {
        if (isSound(c))
            documents.push_back({nameOf(c), textOf(c)});
    };
    constexpr std::array kPlaces = {Place::Prolog, Place::Setup, Place::Page};
    for (const Keeping &keeping : kKeepings)
        for (const Meaning *meaning : meanings())
            for (const Dictionary &dictionary : kDictionaries)
                for (const Place kept : kPlaces)
                    for (const Place meant : kPlaces)
                        for (const bool isKeptFirst : {true, false})
                            add({&op, &keeping, meaning, &dictionary, kept, meant, isKeptFirst});
    return documents;
}

// --- What becomes of them ------------------------------------------------------------------------

/// Commands that are carried out one after the other.
struct Chain {
    const char *name;
    std::vector<Command> commands;
};

void PrintTo(const Chain &chain, std::ostream *out)
{
    *out << chain.name;
}

const std::vector<Chain> kChains = {
    {"None", {}},
    {"WatermarkAbove", {draft(true)}},
    {"WatermarkBelow", {draft(false)}},
    {"Booklet", {kBooklet}},
    {"Covers", {kCovers}},
    {"WatermarkAboveInABooklet", {draft(true), kBooklet}},
    {"WatermarkBelowInABookletWithCovers", {draft(false), kBooklet, kCovers}},
    {"WatermarkAboveABooklet", {kBooklet, draft(true)}},
    {"WatermarkAboveCovers", {kCovers, draft(true)}},
    {"TwoWatermarks", {draft(true), draft(false)}},
    {"BookletOfABooklet", {kBooklet, kBooklet}},
};

/// The same pages without any ado.
const std::string kPlain =
    PostScriptSample{.pages = {box(1) + "showpage\n", box(2) + "showpage\n"}}.text();

std::vector<Rendering> renderedBy(const std::vector<Command> &commands,
                                  const std::vector<Document> &documents)
{
    const auto processedByAll = [&commands](std::string text) {
        for (const Command &command : commands)
            text = processed(text, command);
        return text;
    };
    std::vector<std::string> texts = {processedByAll(kPlain)};
    for (const Document &document : documents)
        texts.push_back(processedByAll(document.text));
    return Support::renderEach(texts, {.resolution = 9});
}

void expectAllAreAsThePlainOne(const std::vector<Command> &commands,
                               const std::vector<Document> &documents)
{
    const std::vector<Rendering> results = renderedBy(commands, documents);
    const Rendering &wanted = results.front();
    ASSERT_GE(wanted.pages.size(), 2U);
    for (std::size_t index = 0; index < documents.size(); ++index) {
        const Rendering &result = results[index + 1];
        EXPECT_EQ("", result.log) << documents[index].name;
        EXPECT_TRUE(wanted.pages == result.pages) << documents[index].name;
    }
}

} // namespace

/// All documents, each by a command that gives the operator another meaning itself.
class PostScriptRedefinitionsTest : public testing::TestWithParam<Operator> {};

TEST_P(PostScriptRedefinitionsTest, ChangeNothing)
{
    const std::vector<Document> documents = documentsWith(GetParam());
    ASSERT_GT(documents.size(), 1000U);
    expectAllAreAsThePlainOne({GetParam().command}, documents);
}

INSTANTIATE_TEST_SUITE_P(Operators, PostScriptRedefinitionsTest, testing::ValuesIn(kOperators),
                         [](const auto &example) { return example.param.name; });

/// What the commands have in common has been seen to by then: one document of so many, with each
/// operator.
class PostScriptRedefinitionsChainTest : public testing::TestWithParam<Chain> {};

TEST_P(PostScriptRedefinitionsChainTest, ChangeNothing)
{
    constexpr std::size_t kStride = 97; // prime: no kind of documents is left out
    std::vector<Document> documents;
    for (const Operator &op : kOperators) {
        const std::vector<Document> all = documentsWith(op);
        for (std::size_t index = documents.size(); index < all.size(); index += kStride)
            documents.push_back(all[index]);
    }
    expectAllAreAsThePlainOne(GetParam().commands, documents);
}

INSTANTIATE_TEST_SUITE_P(Commands, PostScriptRedefinitionsChainTest, testing::ValuesIn(kChains),
                         [](const auto &example) { return example.param.name; });

// --- What the other meaning does -----------------------------------------------------------------

namespace {

const std::string kMore = "1 0 0 setrgbcolor 20 120 160 40 rectfill ";

/// Its pages are ended by a name that draws more first.
std::string textWithMoreOnPages(const std::string &name, const Dictionary &dictionary, Place place)
{
    const std::string meaning =
        dictionary.begin + "/" + name + " { " + kMore + "real } def\n" + dictionary.end;
    PostScriptSample sample;
    sample.prolog = "/real { " + name + " } bind def\n" + (place == Place::Prolog ? meaning : "");
    sample.setup += place == Place::Setup ? meaning : "";
    for (int page = 1; page <= 2; ++page)
        sample.pages.push_back(dictionary.beginOfPage + box(page) + name + " erasepage\n" +
                               dictionary.endOfPage);
    if (dictionary.isGlobal)
        sample.trailer = "globaldict /" + name + " undef\n";
    return sample.text();
}

/// The user's, where the global one has a meaning of the name, too: that one is not called.
Dictionary dictionaryAboveGlobal(const std::string &name)
{
    Dictionary dictionary = kDictionaries.front();
    dictionary.name += " above the global one";
    dictionary.begin = "currentglobal true setglobal globaldict /" + name + " { } put setglobal\n";
    dictionary.isGlobal = true;
    return dictionary;
}

} // namespace

class PostScriptMeaningsTest : public testing::TestWithParam<Chain> {};

TEST_P(PostScriptMeaningsTest, AreHeard)
{
    std::vector<Document> documents;
    const auto end = [](int page) { return box(page) + kMore + "showpage\n"; };
    documents.push_back({"plain", PostScriptSample{.pages = {end(1), end(2)}}.text()});
    for (const char *name : {"showpage", "copypage"}) {
        std::vector<Dictionary> dictionaries = kDictionaries;
        dictionaries.push_back(dictionaryAboveGlobal(name));
        for (const Dictionary &dictionary : dictionaries)
            for (const Place place : {Place::Prolog, Place::Setup})
                documents.push_back(
                    {dictionary.name + ", " + name, textWithMoreOnPages(name, dictionary, place)});
    }
    const std::vector<Rendering> results = renderedBy(GetParam().commands, documents);
    const Rendering &wanted = results[1];
    EXPECT_FALSE(wanted.pages == results[0].pages);
    for (std::size_t index = 1; index < documents.size(); ++index)
        EXPECT_TRUE(wanted.pages == results[index + 1].pages) << documents[index].name;
}

INSTANTIATE_TEST_SUITE_P(Commands, PostScriptMeaningsTest, testing::ValuesIn(kChains),
                         [](const auto &example) { return example.param.name; });
