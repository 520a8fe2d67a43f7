// The strict record reader: every refusal rule with its message, and what an
// accepted record reads to.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "laminate/lamina_build.h"
#include "laminate/laminate/decimal.h"
#include "laminate/laminate/strict_record.h"

namespace {

using Rule = StrictRecord::Rule;

// A ply whose 18 fields are written as given: layer(f, "0") is the default
// ply with field f (0-based, record order) replaced by the text "0".
std::vector<std::string> layer(int f = -1, std::string const& text = "")
{
    std::vector<std::string> fields = {"100", "10", "0.3", "5",   "4",  "3",
                                       "1",   "2",  "3",   "4",   "5",  "6",
                                       "7",   "0.5", "45", "0.2", "1.5", "1"};
    if (f >= 0) fields[f] = text;
    return fields;
}

std::string record(std::vector<std::vector<std::string>> const& layers,
                   std::string const& count = "", std::string const& tail = "")
{
    std::string s = count.empty() ? std::to_string(layers.size()) : count;
    for (auto const& l : layers) {
        s += "\n";
        for (auto const& f : l) s += " " + f;
    }
    return s + tail;
}

struct Case {
    std::string text;
    Rule rule;
    int layer;
    std::string field;
    std::string message;
};

TEST(StrictRecord, EveryRuleRefusesWithItsMessage)
{
    std::string const ply = record({layer()}).substr(1);  // the fields of one layer
    std::string const longWord(60, 'x');
    Case const cases[] = {
        {"", Rule::MISSING, 0, "count", "layer count: missing"},
        {" \t\n", Rule::MISSING, 0, "count", "layer count: missing"},
        {"1.5" + ply, Rule::COUNT, 0, "count", "layer count: must be a positive decimal integer, got 1.5"},
        {"0x1" + ply, Rule::COUNT, 0, "count", "layer count: must be a positive decimal integer, got 0x1"},
        {"-1" + ply, Rule::COUNT, 0, "count", "layer count: must be a positive decimal integer, got -1"},
        {"0" + ply, Rule::RANGE, 0, "count", "layer count: must be from 1 to 10000, got 0"},
        {"10001" + ply, Rule::RANGE, 0, "count", "layer count: must be from 1 to 10000, got 10001"},
        {"99999999999999999999" + ply, Rule::RANGE, 0, "count",
         "layer count: must be from 1 to 10000, got 99999999999999999999"},
        {record({layer()}, "2"), Rule::MISSING, 2, "E1", "layer 2, E1: missing"},
        {record({layer()}).substr(0, record({layer()}).size() - 2), Rule::MISSING, 1, "flag",
         "layer 1, flag: missing"},
        {record({layer(), layer(), layer(4, "0")}), Rule::POSITIVE, 3, "G13",
         "layer 3, G13: must be > 0, got 0"},
        {record({layer(0, "-100")}), Rule::POSITIVE, 1, "E1", "layer 1, E1: must be > 0, got -100"},
        {record({layer(5, "-0")}), Rule::POSITIVE, 1, "G23", "layer 1, G23: must be > 0, got -0"},
        {record({layer(15, "0.0")}), Rule::POSITIVE, 1, "t", "layer 1, t: must be > 0, got 0.0"},
        {record({layer(), layer(8, "-5")}), Rule::NONNEGATIVE, 2, "Xt",
         "layer 2, Xt: must be >= 0, got -5"},
        {record({layer(16, "-1e-3")}), Rule::NONNEGATIVE, 1, "sw", "layer 1, sw: must be >= 0, got -1e-3"},
        {record({layer(17, "1.0")}), Rule::FLAG, 1, "flag", "layer 1, flag: must be 0 or 1, got 1.0"},
        {record({layer(17, "2")}), Rule::FLAG, 1, "flag", "layer 1, flag: must be 0 or 1, got 2"},
        {record({layer(1, "0x1")}), Rule::NUMBER, 1, "E2", "layer 1, E2: must be a decimal number, got 0x1"},
        {record({layer(14, "45deg")}), Rule::NUMBER, 1, "angle",
         "layer 1, angle: must be a decimal number, got 45deg"},
        {record({layer(6, "1e")}), Rule::NUMBER, 1, "Xc", "layer 1, Xc: must be a decimal number, got 1e"},
        {record({layer(13, longWord)}), Rule::NUMBER, 1, "spare",
         "layer 1, spare: must be a decimal number, got " + longWord.substr(0, 40) + "..."},
        {record({layer(2, "inf")}), Rule::FINITE, 1, "nu12", "layer 1, nu12: must be finite, got inf"},
        {record({layer(13, "-NaN")}), Rule::FINITE, 1, "spare", "layer 1, spare: must be finite, got -NaN"},
        {record({layer(0, "1e999")}), Rule::FINITE, 1, "E1", "layer 1, E1: must be finite, got 1e999"},
        // nu21 = 3.5 * 10 / 100, so 1 - nu12 nu21 = -0.225.
        {record({layer(2, "3.5")}), Rule::POISSON, 1, "nu12",
         "layer 1, nu12: must keep the ply stiffness positive definite (1 - nu12 nu21 > 0), got 3.5"},
        {record({layer()}, "", " x y"), Rule::TRAILING, 1, "end",
         "after layer 1: must be the end of the record, got x"},
    };
    for (Case const& c : cases) {
        StrictRecord r;
        EXPECT_FALSE(r.read(c.text)) << c.text;
        StrictRecord::Refusal const& why = r.refusal();
        EXPECT_EQ(why.rule, c.rule) << c.text;
        EXPECT_EQ(why.layer, c.layer) << c.text;
        EXPECT_EQ(why.field, c.field) << c.text;
        EXPECT_EQ(why.message(), c.message) << c.text;
    }
}

// Moduli every field of which passes on its own, but whose laminate
// stiffness overflows, underflows to an exactly singular matrix, or has an
// inverse too large for a double.
TEST(StrictRecord, StiffnessMustBeFiniteAndInvertible)
{
    auto moduli = [](std::string const& e, std::string const& t) {
        std::vector<std::string> l = layer();
        for (int f : {0, 1, 3, 4, 5}) l[f] = e;
        l[15] = t;
        return record({l});
    };
    Case const cases[] = {
        {moduli("1e300", "1e10"), Rule::FINITE, 0, "K", "stiffness K: must be finite, got inf at (1,1)"},
        {moduli("1e-300", "1e-10"), Rule::SINGULAR, 0, "K",
         "stiffness K: must be invertible with a finite inverse, got a singular matrix"},
        {moduli("1e-300", "1e-5"), Rule::SINGULAR, 0, "K",
         "stiffness K: must be invertible with a finite inverse, got an inverse entry nan"},
    };
    for (Case const& c : cases) {
        StrictRecord r;
        EXPECT_FALSE(r.read(c.text)) << c.text;
        EXPECT_EQ(r.refusal().rule, c.rule) << c.text;
        EXPECT_EQ(r.refusal().field, c.field) << c.text;
        EXPECT_EQ(r.refusal().message(), c.message) << c.text;
    }
    // The ruleWord of each rule is what error codes carry.
    StrictRecord r;
    r.read(cases[1].text);
    EXPECT_STREQ(r.refusal().ruleWord(), "SINGULAR");
}

// Unusual but decimal spellings, every kind of blank, leading zeros in the
// count and the bounds of each rule are accepted, and read to exactly what
// the model's own parser reads.
TEST(StrictRecord, AcceptedRecordReadsAsTheModelReadsIt)
{
    std::string const text =
        "0002\r\n"
        " 1e2 +10. .3 5 4E0 3 0 0 0 0 0 0 0 -7 -45 2e-1 0 0\v\f"
        "\t100 10 -0.99 5 4 3 1 2 3 4 5 6 7 0.5 1e5 0.2 1.5 1  \n";
    StrictRecord r;
    ASSERT_TRUE(r.read(text)) << r.refusal().message();
    ASSERT_EQ(r.layers(), 2);
    lamina1 lam;
    ASSERT_EQ(lamtest::parse(lam, text), 0);
    vantrel::ReaVecV* const fields[] = {
        &lam.E1,        &lam.E2,        &lam.nu12,      &lam.G12,       &lam.G13,
        &lam.G23,       &lam.strength1, &lam.strength2, &lam.strength3, &lam.strength4,
        &lam.strength5, &lam.strength6, &lam.strength7, &lam.strength8, &lam.angleDeg,
        &lam.layerThickness, &lam.layerSpecificWeight};
    for (int k = 1; k <= 2; k++) {
        for (int f = 0; f < 17; f++) EXPECT_EQ(r.field(k, f), (*fields[f])[k - 1]) << k << " " << f;
        EXPECT_EQ(r.field(k, 17), lam.layerFlag[k - 1]);
    }
    EXPECT_STREQ(r.text(), text.c_str());
    // The largest count passes the count rule (and then misses layer 2).
    EXPECT_FALSE(r.read(record({layer()}, "10000")));
    EXPECT_EQ(r.refusal().rule, Rule::MISSING);
}

// Magnitudes whose criterion constants would overflow or underflow are
// refused, last of all the rules: a stiffness that cannot be inverted is
// still named as such, and the first field out of span is the one named.
TEST(StrictRecord, ModuliStrengthsAndThicknessWithinTheirSpan)
{
    Case const cases[] = {
        {record({layer(6, "1e308")}), Rule::MAGNITUDE, 1, "Xc",
         "layer 1, Xc: must be from 1e-30 to 1e30 (a strength may also be 0), got 1e308"},
        {record({layer(), layer(12, "1e-31")}), Rule::MAGNITUDE, 2, "S13",
         "layer 2, S13: must be from 1e-30 to 1e30 (a strength may also be 0), got 1e-31"},
        {record({layer(15, "1e31"), layer(6, "1e308")}), Rule::MAGNITUDE, 1, "t",
         "layer 1, t: must be from 1e-30 to 1e30 (a strength may also be 0), got 1e31"},
        {record({layer(4, "1e31")}), Rule::MAGNITUDE, 1, "G13",
         "layer 1, G13: must be from 1e-30 to 1e30 (a strength may also be 0), got 1e31"},
        {record({layer(0, "1e31")}), Rule::SINGULAR, 0, "K",
         "stiffness K: must be invertible with a finite inverse, got a singular matrix"},
        {record({layer(6, "1e308"), layer(1, "nope")}), Rule::NUMBER, 2, "E2",
         "layer 2, E2: must be a decimal number, got nope"},
    };
    for (Case const& c : cases) {
        StrictRecord r;
        EXPECT_FALSE(r.read(c.text)) << c.text;
        EXPECT_EQ(r.refusal().rule, c.rule) << c.text;
        EXPECT_EQ(r.refusal().layer, c.layer) << c.text;
        EXPECT_EQ(r.refusal().field, c.field) << c.text;
        EXPECT_EQ(r.refusal().message(), c.message) << c.text;
    }
    StrictRecord r;
    r.read(cases[0].text);
    EXPECT_STREQ(r.refusal().ruleWord(), "MAGNITUDE");
    // The ends of the span, strengths of 0 and any specific weight pass.
    std::vector<std::string> edges = layer(6, "0");
    edges[8] = "1e30", edges[7] = "1e-30", edges[16] = "1e300";
    EXPECT_TRUE(r.read(record({edges}))) << r.refusal().message();
}

// The grammar shared by the record and the load cases of the analysis
// commands: decimal only, finite, no reading of leading zeros as octal.
TEST(Decimal, ReadsDecimalNumbersOnly)
{
    using laminate_model::DecimalRead;
    struct Word {
        char const* text;
        DecimalRead read;
        double value;
    };
    Word const words[] = {
        {"010", DecimalRead::Ok, 10.0},      {"-0.5e-3", DecimalRead::Ok, -0.5e-3},
        {"+.25", DecimalRead::Ok, 0.25},     {"7.", DecimalRead::Ok, 7.0},
        {"1e-400", DecimalRead::Ok, 0.0},    {"1E+2", DecimalRead::Ok, 100.0},
        {"0x10", DecimalRead::NotDecimal, 0}, {" 5", DecimalRead::NotDecimal, 0},
        {"5 ", DecimalRead::NotDecimal, 0},   {"", DecimalRead::NotDecimal, 0},
        {".", DecimalRead::NotDecimal, 0},    {"1e", DecimalRead::NotDecimal, 0},
        {"0d10", DecimalRead::NotDecimal, 0}, {"1_000", DecimalRead::NotDecimal, 0},
        {"1e999", DecimalRead::NotFinite, 0}, {"-Inf", DecimalRead::NotFinite, 0},
        {"nan(1)", DecimalRead::NotFinite, 0}, {"infinity", DecimalRead::NotFinite, 0},
    };
    for (Word const& w : words) {
        double v = -1.0;
        std::string const text = w.text;
        EXPECT_EQ(laminate_model::readDecimal(text.data(), text.size(), v), w.read) << w.text;
        EXPECT_EQ(v, w.read == DecimalRead::Ok ? w.value : -1.0) << w.text;
    }
    // Only the n bytes given are read; a long number is read in full.
    double v = 0.0;
    EXPECT_EQ(laminate_model::readDecimal("12x", 2, v), DecimalRead::Ok);
    EXPECT_EQ(v, 12.0);
    std::string const longNumber = "1." + std::string(100, '0') + "1";
    EXPECT_EQ(laminate_model::readDecimal(longNumber.data(), longNumber.size(), v), DecimalRead::Ok);
    EXPECT_EQ(v, 1.0);
}

}  // namespace
