#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>

#include "fatal.h"
#include "laminate/util/errorwriter.h"

namespace {

// Reads back what was written to a temporary file.
std::string contents(FILE* f)
{
    std::string s;
    rewind(f);
    int ch;
    while ((ch = fgetc(f)) != EOF) s += static_cast<char>(ch);
    return s;
}

const std::string kBanner = "\n-----------ERROR---------------\n";

}  // namespace

TEST(ErrorWriter, NoQuitPrintsBannerOnlyBeforeTheFirstReport)
{
    // One file as both outputs: the bare text comes before the screen copy.
    ErrorWriter w;
    FILE* f = tmpfile();
    w.screen = f;
    w.error_file = f;
    *w.error_stream << "first " << 42;
    w.WriteErrorNoQuit();
    *w.error_stream << "second";
    w.WriteErrorNoQuit();
    EXPECT_EQ(contents(f), "first 42" + kBanner + "first 42\n" + "second" + "second\n");
    EXPECT_EQ(w.first_error, 0);
    fclose(f);
}

TEST(ErrorWriter, WarningsAndInfoClearTheirStreams)
{
    ErrorWriter w;
    FILE* screen = tmpfile();
    w.screen = screen;
    w.warning_file = screen;
    *w.warning_stream << "careful";
    w.WriteWarning();
    *w.info_stream << "note";
    w.WriteInfo();
    char direct[] = "direct";
    w.WriteInfo(direct);
    *w.info_stream << "again";
    w.WriteInfo();
    EXPECT_EQ(contents(screen), "carefulcarefulnotedirectagain");
    fclose(screen);
}

TEST(ErrorWriter, StreamKeepsAtMost2048Characters)
{
    ErrorWriter w;
    std::string big(3000, 'x');
    *w.error_stream << big;
    EXPECT_TRUE(w.error_stream->bad());
    EXPECT_EQ(std::string(w.error_buffer, ErrorWriter::BufferSize), big.substr(0, 2048));
    FILE* f = tmpfile();
    w.screen = f;
    w.WriteErrorNoQuit();
    EXPECT_EQ(contents(f), kBanner + big.substr(0, 2048) + "\n");
    // After the write-out the stream works again from the start.
    *w.error_stream << "ok";
    EXPECT_STREQ(w.error_stream->str(), "ok");
    fclose(f);
}

TEST(Stprintf, FormatsAndCutsAt1023Characters)
{
    std::ostringstream os;
    stprintf(os, "%5.2f|%3i|%s", 3.14159, 7, "end");
    EXPECT_EQ(os.str(), " 3.14|  7|end");
    std::ostringstream longer;
    std::string big(1500, 'y');
    stprintf(longer, "%s", big.c_str());
    EXPECT_EQ(longer.str(), big.substr(0, 1023));
}

TEST(ErrorWriterDeathTest, FatalPaths)
{
    // Banner and text on screen, status 2, even after a non-fatal report.
    EXPECT_EXIT(
        {
            errorwriter.screen = stderr;
            *errorwriter.error_stream << "earlier";
            errorwriter.WriteErrorNoQuit();
            *errorwriter.error_stream << "the end " << 3;
            errorwriter.WriteErrorAndQuit();
        },
        ::testing::ExitedWithCode(2), "earlier\n\n-----------ERROR---------------\nthe end 3\n");
    // Nothing set: silent, still status 2.
    EXPECT_EXIT(
        {
            *errorwriter.error_stream << "unseen";
            errorwriter.WriteErrorAndQuit();
        },
        ::testing::ExitedWithCode(2), "^$");
    EXPECT_EXIT(QuitError(), ::testing::ExitedWithCode(2), "^$");
    EXPECT_EXIT(
        {
            char text[] = "to stderr";
            WarnWin(text);
            exit(0);
        },
        ::testing::ExitedWithCode(0), "^to stderr\n$");
}
