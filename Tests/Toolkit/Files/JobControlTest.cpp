#include "JobControl.h"

#include "Streams.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

const std::string kMarker = "\033%-12345X";
const std::string kHeader =
    kMarker + "@PJL JOB NAME = \"x\"\r\n@PJL SET COPIES=2\n@PJL ENTER LANGUAGE = POSTSCRIPT\r\n";
const std::string kEnd = kMarker + "@PJL EOJ\r\n" + kMarker;

/// What is left of a file.
std::string left(const std::string &text)
{
    const Support::TemporaryFolder folder;
    const Platform::Stream stream = Platform::openForReading(folder.write("in", text));
    const InputFile document = withoutJobControl(InputFile(stream.get()));
    return document.text(0, document.size());
}

} // namespace

TEST(JobControlTest, AllKindsOfItAreFoundInFront)
{
    for (const std::string &control :
         {std::string("\004"), std::string("\004\004\r\n"), kMarker, kHeader, "\033E" + kHeader,
          std::string(64, '\0') + kHeader + "\004", kMarker + "@pjl enter language=postscript\r",
          kMarker + "@PJL\n" + kMarker, "\004" + kEnd + kHeader + "\n"})
        EXPECT_EQ(control.size(), jobControlBefore(control + "%!PS")) << control;
}

TEST(JobControlTest, WithoutAnyNothingIsFoundInFront)
{
    for (const char *text : {"", "%!PS", "\n%!PS", "GIF89a", "\033", "\033%-1234", "@PJ", "x\004"})
        EXPECT_EQ(0U, jobControlBefore(text)) << text;
}

TEST(JobControlTest, ItIsFoundBehind)
{
    const std::string page = "showpage\n\033E is no end\n%%EOF\n";
    for (const std::string &control : {std::string("\004"), std::string("\004\n"), kMarker, kEnd,
                                       "\004" + kEnd, kEnd + "\r\n\004"})
        EXPECT_EQ(page.size(), jobControlBehind(page + control)) << control;
    EXPECT_EQ(page.size(), jobControlBehind(page));
}

TEST(JobControlTest, TheDocumentIsWhatStandsBetween)
{
    const std::string page = "%!PS-Adobe-3.0\n" + std::string(9000, '\n') + "%%EOF\n";
    EXPECT_EQ(page, left(kHeader + page + "\004" + kEnd));
    EXPECT_EQ(page, left("\004" + page));
    EXPECT_EQ("%!", left("\004%!"));
}

TEST(JobControlTest, AFileThatBeginsWithNoneIsTakenAsItIs)
{
    for (const std::string &text : {"%!PS\n%%EOF\n\004" + kEnd, kHeader, kHeader + "GIF89a\004",
                                    std::string("GIF89a"), std::string()})
        EXPECT_EQ(text, left(text));
}
