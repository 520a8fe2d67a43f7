// Stacking-sequence notation: every form expands to the plies a textbook
// means, layer 1 first, and every mistake is refused at its column.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "laminate/analysis/layup_notation.h"

using laminate::analysis::LayupNotation;

namespace {

std::vector<double> angles(std::string const& text)
{
    LayupNotation n;
    EXPECT_TRUE(n.parse(text)) << text << ": " << n.refusal().message();
    return n.angles();
}

using V = std::vector<double>;

TEST(LayupNotation, ExpandsEveryForm)
{
    EXPECT_EQ(angles("[0/90/45]T"), (V{0, 90, 45}));
    EXPECT_EQ(angles("[0/90/45]"), (V{0, 90, 45}));
    EXPECT_EQ(angles("[0/±45/90]s"), (V{0, 45, -45, 90, 90, -45, 45, 0}));
    EXPECT_EQ(angles("[0/+-45/90]S"), (V{0, 45, -45, 90, 90, -45, 45, 0}));
    EXPECT_EQ(angles("[∓30/-+60]"), (V{-30, 30, -60, 60}));
    EXPECT_EQ(angles("[0_2/90]s"), (V{0, 0, 90, 90, 0, 0}));
    EXPECT_EQ(angles("[(±45)2/0]s"), (V{45, -45, 45, -45, 0, 0, -45, 45, -45, 45}));
    EXPECT_EQ(angles("[(0/90)_2]"), (V{0, 90, 0, 90}));
    EXPECT_EQ(angles("[((0/90)2/45)2]"), (V{0, 90, 0, 90, 45, 0, 90, 0, 90, 45}));
    EXPECT_EQ(angles("[0/90]3"), (V{0, 90, 0, 90, 0, 90}));
    EXPECT_EQ(angles("[0/90]_3T"), (V{0, 90, 0, 90, 0, 90}));
    EXPECT_EQ(angles("[0/90]2s"), (V{0, 90, 0, 90, 90, 0, 90, 0}));
    EXPECT_EQ(angles("[0/45/90_m]s"), (V{0, 45, 90, 45, 0}));
    EXPECT_EQ(angles("[90_m]s"), (V{90}));
    EXPECT_EQ(angles("[-22.5/.5/+15/0./±7.25]"), (V{-22.5, 0.5, 15, 0, 7.25, -7.25}));
    EXPECT_EQ(angles("  [ 0 / ± 45 /(90) 2 ] 2 s  "),
              (V{0, 45, -45, 90, 90, 0, 45, -45, 90, 90, 90, 90, -45, 45, 0, 90, 90, -45, 45, 0}));
}

TEST(LayupNotation, KeepsWithinTheLargestLayerCount)
{
    EXPECT_EQ(angles("[(0)5000]s").size(), 10000u);
    EXPECT_EQ(angles("[0_10000]").size(), 10000u);
}

struct BadCase {
    char const* text;
    int column;
    char const* message;
};

TEST(LayupNotation, RefusesAtTheColumnWithWhatWasExpected)
{
    BadCase const cases[] = {
        {"", 1, "column 1: expected \"[\", got the end"},
        {"0/90", 1, "column 1: expected \"[\", got \"0\""},
        {"[0/x]", 4, "column 4: expected an angle or \"(\", got \"x\""},
        // Columns count characters: "±" is one, although two bytes.
        {"[±45/×]", 6, "column 6: expected an angle or \"(\", got \"×\""},
        {"[0/90", 6, "column 6: expected \"/\" or \"]\", got the end"},
        {"[1e5]", 3, "column 3: expected \"/\" or \"]\", got \"e\""},
        {"[0/-]", 5, "column 5: expected a number, got \"]\""},
        {"[∓]", 3, "column 3: expected a number, got \"]\""},
        {"[(0/90]", 7, "column 7: expected \"/\" or \")\", got \"]\""},
        {"[0/±45_2]", 7,
         "column 7: expected \"/\" or \"]\", got \"_\" (a count after a pair is ambiguous: write "
         "(±45)2 or +45_2/-45_2)"},
        {"[0_]", 4, "column 4: expected a count, got \"]\""},
        {"[0_0]", 4, "column 4: expected a count from 1 to 10000, got \"0\""},
        {"[0/90]0", 7, "column 7: expected a count from 1 to 10000, got \"0\""},
        {"[0/90]x", 7, "column 7: expected a count, \"s\", \"T\" or the end of the layup, got \"x\""},
        {"[0/90]2x", 8, "column 8: expected \"s\", \"T\" or the end of the layup, got \"x\""},
        {"[0/90]s2", 8, "column 8: expected the end of the layup, got \"2\""},
        {"[0/90_m/45]s", 8,
         "column 8: expected \"]\", got \"/\" (the mid-plane ply _m is the last ply written)"},
        {"[(0/90_m)]s", 8,
         "column 8: expected a ply count, got \"m\" (the mid-plane ply _m stands outside groups)"},
        {"[0/90_m]", 9,
         "column 9: expected \"s\", got the end (a layup with a mid-plane ply _m is symmetric, "
         "without a count)"},
        {"[0/90_m]2s", 9,
         "column 9: expected \"s\", got \"2\" (a layup with a mid-plane ply _m is symmetric, "
         "without a count)"},
        {"[(0)10000/0]", 11, "column 11: expected a layup of at most 10000 plies, got \"0\""},
        {"[0/90]5001", 7,
         "column 7: expected a count that keeps the layup within 10000 plies, got \"5\""},
        {"[(0)5000/0]s", 12, "column 12: expected a layup of at most 10000 plies, got \"s\""},
    };
    for (BadCase const& c : cases) {
        LayupNotation n;
        EXPECT_FALSE(n.parse(c.text)) << c.text;
        EXPECT_EQ(n.refusal().column, c.column) << c.text;
        EXPECT_EQ(n.refusal().message(), c.message) << c.text;
        EXPECT_TRUE(n.angles().empty()) << c.text;
    }
    // Groups nest at most kMaxDepth deep: the 101st "(" is refused.
    LayupNotation deep;
    EXPECT_TRUE(deep.parse("[" + std::string(100, '(') + "0" + std::string(100, ')') + "]"));
    EXPECT_FALSE(deep.parse("[" + std::string(100000, '(')));
    EXPECT_EQ(deep.refusal().message(),
              "column 102: expected an angle, got \"(\" (groups nest at most 100 deep)");
    // An angle too large for a double is not finite.
    LayupNotation n;
    EXPECT_FALSE(n.parse("[0/1" + std::string(400, '0') + "]"));
    EXPECT_EQ(n.refusal().message(), "column 4: expected a finite angle, got \"1\"");
}

TEST(LayupNotation, TellsNotationFromAPlyList)
{
    EXPECT_TRUE(LayupNotation::looksLikeNotation(" \t[0]", 5));
    EXPECT_FALSE(LayupNotation::looksLikeNotation("{cfrp 0}", 8));
    EXPECT_FALSE(LayupNotation::looksLikeNotation("  ", 2));
}

}  // namespace
