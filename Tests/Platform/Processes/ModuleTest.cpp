#include "Module.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <new>
#include <stdexcept>

using Platform::ModuleError;
using Platform::symbolFromModule;

namespace {

/// What the module error says about the call, or the empty text when it succeeds.
std::string complaint(const std::string &fileName, const std::string &symbol)
{
    try {
        symbolFromModule(fileName, symbol);
    } catch (const ModuleError &error) {
        return error.what();
    }
    return {};
}

/// What a module reports of work that throws so.
template <class Exception>
std::string failureOf(const Exception &exception)
{
    std::string failure;
    Platform::withinModule(failure, [&] { throw exception; });
    return failure;
}

} // namespace

TEST(ModuleTest, FindsAnExportedFunctionThroughTheProgramsRunPath)
{
    EXPECT_NE(nullptr, symbolFromModule("KLTextMeasuringModule.so", "KLMeasureText"));
}

TEST(ModuleTest, GivesTheSameFunctionTwice)
{
    EXPECT_EQ(symbolFromModule("KLTextMeasuringModule.so", "KLMeasureText"),
              symbolFromModule("KLTextMeasuringModule.so", "KLMeasureText"));
}

TEST(ModuleTest, NamesTheModuleThatIsMissing)
{
    EXPECT_THAT(complaint("KLNoSuchModule.so", "KLAny"),
                testing::AllOf(testing::StartsWith("Unable to load module: "),
                               testing::HasSubstr("KLNoSuchModule.so")));
}

TEST(ModuleTest, NamesTheSymbolThatIsMissing)
{
    EXPECT_THAT(complaint("KLTextMeasuringModule.so", "KLNoSuchSymbol"),
                testing::AllOf(testing::StartsWith("Unable to use module: "),
                               testing::HasSubstr("KLTextMeasuringModule.so"),
                               testing::HasSubstr("KLNoSuchSymbol")));
}

TEST(ModuleTest, ExportsNothingButItsFunctions)
{
    EXPECT_NE("", complaint("KLTextMeasuringModule.so",
                            "_ZN8Platform11measureTextERKNSt7__cxx1112basic_stringIcSt11char_"
                            "traitsIcESaIcEEES7_d"));
}

TEST(ModuleTest, RefusesAPath)
{
    EXPECT_EQ("Unable to load module \"./KLTextMeasuringModule.so\": not a plain file name",
              complaint("./KLTextMeasuringModule.so", "KLMeasureText"));
}

TEST(ModuleTest, RefusesAnEmptyName)
{
    EXPECT_EQ("Unable to load module \"\": not a plain file name", complaint("", "main"));
}

TEST(ModuleTest, NoExceptionLeavesAModule)
{
    struct Silent : std::exception {
        const char *what() const noexcept override { return ""; }
    };
    EXPECT_EQ("no answer", failureOf(std::runtime_error("no answer")));
    EXPECT_EQ("Out of memory", failureOf(std::bad_alloc()));
    EXPECT_EQ("unknown reason", failureOf(Silent()));
}

TEST(ModuleTest, WorkThatSucceedsReportsNoFailure)
{
    std::string failure;
    bool done = false;
    Platform::withinModule(failure, [&] { done = true; });
    EXPECT_TRUE(done);
    EXPECT_EQ("", failure);
}
