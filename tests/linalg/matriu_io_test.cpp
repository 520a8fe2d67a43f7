// The printed table of a Matriu and its text and binary element files.
#include <cstdio>
#include <cstring>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "fatal.h"
#include "laminate/linalg/matriu.h"
#include "linalg/matriu_rows.h"

using vantrel::Matriu;

namespace {

// A temporary file holding text, positioned at its start.
FILE* FileWith(std::string const& text)
{
    FILE* f = std::tmpfile();
    std::fwrite(text.data(), 1, text.size(), f);
    std::rewind(f);
    return f;
}

// Everything in f, which is then closed.
std::string Drain(FILE* f)
{
    std::rewind(f);
    std::string s;
    for (int c; (c = std::fgetc(f)) != EOF;) s += static_cast<char>(c);
    std::fclose(f);
    return s;
}

}  // namespace

TEST(MatriuIo, PrintedTable)
{
    auto Printed = [](Matriu const& m) { std::ostringstream os; os << m; return os.str(); };
    EXPECT_EQ(Printed(Rows({{1, 0}, {0, 1}})),
              "\n            1          2 \n 1          1          0 \n 2          0          1 \n");
    EXPECT_EQ(Printed(Rows({{0.5, -1.25e-07, 123456789}})),
              "\n            1          2          3 \n 1        0.5  -1.25e-07 1.23457e+08 \n");
    EXPECT_EQ(Printed(Matriu(0, 4)), "\n\t(Zero size Matriu)\n");
}

TEST(MatriuIo, AsciiLinesAndReading)
{
    FILE* f = std::tmpfile();
    Rows({{1.5, 2}}).WriteAscii(f);
    Rows({{-1, 0.1234567}, {1e6, 0}}).WriteAscii(f);
    EXPECT_EQ(Drain(f), "1.500000  2.000000  \n-1.000000  0.123457  \n1000000.000000  0.000000  \n");

    // Storage order whatever the line layout; missing or bad input leaves the
    // remaining elements as they were.
    struct { char const* text; Matriu expected; } const cases[] = {
        {"1 2 3 4", Rows({{1, 2}, {3, 4}})},
        {"\t-1.5\n\n2e3   7\n", Rows({{-1.5, 2000}, {7, 9}})},
        {"5 x 6", Rows({{5, 9}, {9, 9}})},
    };
    for (auto const& c : cases) {
        Matriu m = Rows({{9, 9}, {9, 9}});
        f = FileWith(c.text);
        m.ReadAscii(f);
        std::fclose(f);
        EXPECT_TRUE(m == c.expected) << c.text;
    }
}

TEST(MatriuIo, BinaryRoundTrip)
{
    Matriu m = Rows({{1.0 / 3.0, -0.0, 1e-300}, {6.02e23, -7, 0x1.fffffffffffffp+1023}});
    FILE* f = std::tmpfile();
    m.WriteBinary(f);
    std::string const bytes = Drain(f);
    ASSERT_EQ(bytes.size(), 48u);  // no header, no counts
    EXPECT_EQ(std::memcmp(bytes.data(), m.data, 48), 0);  // -0.0 included
}

TEST(MatriuIoDeathTest, ZeroSizeAndReadBinary)
{
    FILE* f = FileWith("1 2");
    Matriu empty, m = Rows({{1, 2}});
    EXPECT_FATAL(empty.WriteBinary(f), "error: can't write 0x0 Matriu\n");
    EXPECT_FATAL(empty.WriteAscii(f), "error: can't ascii write 0x0 Matriu\n");
    EXPECT_FATAL(m.ReadBinary(f), "error: Function 'ReadBinary' should not be used\n");
    std::fclose(f);
}
