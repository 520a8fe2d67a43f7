// The printed table of a Matriu and its text and binary element files.
#include <cmath>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "fatal.h"
#include "linalg/matriu.h"

using vantrel::Matriu;

namespace {

Matriu Rows(std::initializer_list<std::initializer_list<double>> rows)
{
    Matriu m(static_cast<int>(rows.size()), static_cast<int>(rows.begin()->size()));
    int k = 0;
    for (auto const& r : rows)
        for (double v : r) m.data[k++] = v;
    return m;
}

std::string Printed(Matriu const& m)
{
    std::ostringstream os;
    os << m;
    return os.str();
}

// Everything written to f so far.
std::string Contents(FILE* f)
{
    std::fflush(f);
    long const n = std::ftell(f);
    std::rewind(f);
    std::string s(static_cast<size_t>(n), '\0');
    EXPECT_EQ(std::fread(&s[0], 1, s.size(), f), s.size());
    return s;
}

// A temporary file holding text, positioned at its start.
FILE* FileWith(char const* text)
{
    FILE* f = std::tmpfile();
    std::fputs(text, f);
    std::rewind(f);
    return f;
}

}  // namespace

TEST(MatriuPrint, LabelledTable)
{
    EXPECT_EQ(Printed(Rows({{1, 0}, {0, 1}})),
              "\n            1          2 "
              "\n 1          1          0 "
              "\n 2          0          1 \n");
    EXPECT_EQ(Printed(Rows({{0.5, -1.25e-07, 123456789}})),
              "\n            1          2          3 "
              "\n 1        0.5  -1.25e-07 1.23457e+08 \n");
    EXPECT_EQ(Printed(Matriu()), "\n\t(Zero size Matriu)\n");
    EXPECT_EQ(Printed(Matriu(0, 4)), "\n\t(Zero size Matriu)\n");
}

TEST(MatriuAsciiFile, WritesOneLinePerRow)
{
    FILE* f = std::tmpfile();
    ASSERT_NE(f, nullptr);
    Rows({{1.5, 2}}).WriteAscii(f);
    EXPECT_EQ(Contents(f), "1.500000  2.000000  \n");
    std::fclose(f);

    f = std::tmpfile();
    Rows({{-1, 0.1234567}, {1e6, 0}}).WriteAscii(f);
    EXPECT_EQ(Contents(f), "-1.000000  0.123457  \n1000000.000000  0.000000  \n");
    std::fclose(f);
}

TEST(MatriuAsciiFile, ReadsInStorageOrderWhateverTheLayout)
{
    FILE* f = FileWith("1 2 3 4");
    Matriu m(2, 2);
    m.ReadAscii(f);
    std::fclose(f);
    EXPECT_TRUE(m == Rows({{1, 2}, {3, 4}}));

    f = FileWith("\t-1.5\n\n2e3   7\n");
    Matriu r(1, 3);
    r.ReadAscii(f);
    std::fclose(f);
    EXPECT_TRUE(r == Rows({{-1.5, 2000, 7}}));

    // A round trip through the written form keeps six decimals.
    Matriu w = Rows({{0.25, -3}, {1e-7, 42}});
    f = std::tmpfile();
    w.WriteAscii(f);
    std::rewind(f);
    Matriu back(2, 2);
    back.ReadAscii(f);
    std::fclose(f);
    EXPECT_TRUE(back == Rows({{0.25, -3}, {0, 42}}));
}

TEST(MatriuAsciiFile, ShortOrBadInputLeavesTheRest)
{
    FILE* f = FileWith("9 8");
    Matriu m = Rows({{1, 1}, {1, 1}});
    m.ReadAscii(f);
    std::fclose(f);
    EXPECT_TRUE(m == Rows({{9, 8}, {1, 1}}));

    f = FileWith("5 x 6");
    Matriu n = Rows({{0, 0, 0}});
    n.ReadAscii(f);
    std::fclose(f);
    EXPECT_TRUE(n == Rows({{5, 0, 0}}));
}

TEST(MatriuBinaryFile, RawDoublesRoundTrip)
{
    Matriu const m = Rows({{1.0 / 3.0, -0.0, 1e-300}, {6.02e23, -7, 0x1.fffffffffffffp+1023}});
    FILE* f = std::tmpfile();
    ASSERT_NE(f, nullptr);
    Matriu(m).WriteBinary(f);
    std::string const bytes = Contents(f);
    std::fclose(f);
    ASSERT_EQ(bytes.size(), 48u);  // no header, no counts
    EXPECT_EQ(std::memcmp(bytes.data(), m.data, 48), 0);

    Matriu back(2, 3);
    std::memcpy(back.data, bytes.data(), 48);
    EXPECT_TRUE(back == m);
    EXPECT_TRUE(std::signbit(back(1, 2)));
}

TEST(MatriuIoDeathTest, ZeroSizeAndReadBinary)
{
    FILE* f = std::tmpfile();
    Matriu empty;
    EXPECT_FATAL(empty.WriteBinary(f), "error: can't write 0x0 Matriu\n");
    EXPECT_FATAL(empty.WriteAscii(f), "error: can't ascii write 0x0 Matriu\n");
    EXPECT_FATAL(empty.ReadAscii(f), "error: can't ascii read 0x0 Matriu\n");
    // Never reads, even into a matrix of the right shape.
    Matriu m = Rows({{1, 2}});
    m.WriteBinary(f);
    std::rewind(f);
    EXPECT_FATAL(m.ReadBinary(f), "error: Function 'ReadBinary' should not be used\n");
    std::fclose(f);
}
