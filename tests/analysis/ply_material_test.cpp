// Ply materials and material libraries: the defaults an engineer is told
// about, every rule refused with its key, a refusal that changes nothing, and
// library errors traced to their lines.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "laminate/analysis/material_library.h"
#include "laminate/analysis/ply_material.h"

using laminate::analysis::DecimalRead;
using laminate::analysis::Fibre;
using laminate::analysis::MaterialLibrary;
using laminate::analysis::PlyMaterial;
using laminate::analysis::UnitSystem;
using Pairs = std::vector<std::pair<std::string, std::string>>;

namespace {

Pairs const kBase = {{"E1", "140000"}, {"E2", "10000"}, {"nu12", "0.3"}, {"G12", "5000"}};

Pairs with(Pairs extra)
{
    Pairs all = kBase;
    all.insert(all.end(), extra.begin(), extra.end());
    return all;
}

TEST(PlyMaterial, FillsTheDocumentedDefaults)
{
    PlyMaterial m;
    ASSERT_TRUE(m.read(kBase)) << m.refusal().message();
    EXPECT_EQ(m.number(PlyMaterial::G13), 5000.0);
    EXPECT_EQ(m.number(PlyMaterial::nu23), 0.4);
    EXPECT_EQ(m.number(PlyMaterial::G23), 10000.0 / 2.8);
    EXPECT_EQ(m.number(PlyMaterial::alpha0), 53.0);
    EXPECT_EQ(m.number(PlyMaterial::assess), 1.0);
    EXPECT_EQ(m.unitSystem(), UnitSystem::NmmMPa);
    EXPECT_EQ(m.text(PlyMaterial::units), "N-mm-MPa");
    EXPECT_EQ(m.fibreKind(), Fibre::Unspecified);
    // Strengths, toughness, thickness and Puck's inclinations stay not given.
    for (PlyMaterial::Key k : {PlyMaterial::Xt, PlyMaterial::S23, PlyMaterial::S13, PlyMaterial::GIc,
                               PlyMaterial::t, PlyMaterial::p23c, PlyMaterial::alpha1})
        EXPECT_FALSE(m.has(k)) << PlyMaterial::kKeys[k].name;
    EXPECT_FALSE(m.given(PlyMaterial::G13));

    // A fibre kind brings Puck's inclinations, and with Yc and S12 the
    // transverse shear strengths follow.
    ASSERT_TRUE(m.read(with({{"fibre", "glass"}, {"Yc", "120"}, {"S12", "70"}, {"nu23", "0.25"}})));
    EXPECT_EQ(m.fibreKind(), Fibre::Glass);
    EXPECT_EQ(m.number(PlyMaterial::p12t), 0.30);
    EXPECT_EQ(m.number(PlyMaterial::p23c), 0.225);
    EXPECT_EQ(m.number(PlyMaterial::S23), 120 / (2 * 1.225));
    EXPECT_EQ(m.number(PlyMaterial::S13), 70.0);
    EXPECT_EQ(m.number(PlyMaterial::G23), 10000.0 / 2.5);

    // Given values win over every default.
    ASSERT_TRUE(m.read(with({{"fibre", "carbon"}, {"Yc", "200"}, {"S23", "50"}, {"p12t", "0.3"},
                             {"G23", "3000"}, {"units", "N-m-Pa"}})));
    EXPECT_EQ(m.number(PlyMaterial::S23), 50.0);
    EXPECT_EQ(m.number(PlyMaterial::p12t), 0.3);
    EXPECT_EQ(m.number(PlyMaterial::p12c), 0.30);
    EXPECT_EQ(m.number(PlyMaterial::G23), 3000.0);
    EXPECT_EQ(m.unitSystem(), UnitSystem::NmPa);
    EXPECT_TRUE(m.given(PlyMaterial::S23));
    EXPECT_FALSE(m.given(PlyMaterial::p12c));

    // Aramid has no recommended inclinations: no S23 from Yc.
    ASSERT_TRUE(m.read(with({{"fibre", "aramid"}, {"Yc", "200"}})));
    EXPECT_FALSE(m.has(PlyMaterial::p23c));
    EXPECT_FALSE(m.has(PlyMaterial::S23));
}

struct Bad {
    Pairs pairs;
    char const* rule;
    char const* key;
    char const* message;
};

TEST(PlyMaterial, RefusesEveryRuleNamingTheKey)
{
    Bad const cases[] = {
        {with({{"Xt", "2000"}, {"XT", "1"}}), "UNKNOWN", "XT", nullptr},
        {with({{"Xt", "2000"}, {"Xt", "1"}}), "DUPLICATE", "Xt", "Xt: given twice, got 1"},
        {{{"E1", "1"}, {"E2", "1"}, {"nu12", "0.3"}}, "MISSING", "G12",
         "G12: missing (E1, E2, nu12 and G12 are required)"},
        {with({{"G13", "0x10"}}), "NUMBER", "G13", "G13: must be a decimal number, got 0x10"},
        {with({{"Yc", "1,5"}}), "NUMBER", "Yc", nullptr},
        {with({{"t", "inf"}}), "FINITE", "t", "t: must be finite, got inf"},
        {with({{"alpha1", "1e999"}}), "FINITE", "alpha1", nullptr},
        {with({{"t", "0"}}), "POSITIVE", "t", "t: must be > 0, got 0"},
        {with({{"Xt", "-5"}}), "NONNEGATIVE", "Xt", "Xt: must be >= 0, got -5"},
        {with({{"nu23", "1"}}), "RANGE", "nu23", "nu23: must be > -1 and < 1, got 1"},
        {with({{"p12t", "-0.1"}}), "RANGE", "p12t", "p12t: must be >= 0 and < 1, got -0.1"},
        {with({{"alpha0", "90"}}), "RANGE", "alpha0", "alpha0: must be > 0 and < 90, got 90"},
        {{{"nu12", "3.5"}, {"E1", "10"}, {"E2", "10"}, {"G12", "5"}}, "POISSON", "nu12",
         "nu12: must keep the ply stiffness positive definite (1 - nu12 nu21 > 0), got 3.5"},
        {with({{"units", "mm"}}), "WORD", "units", "units: must be N-mm-MPa or N-m-Pa, got mm"},
        {with({{"fibre", "wood"}}), "WORD", "fibre", "fibre: must be carbon, glass or aramid, got wood"},
        {with({{"assess", "yes"}}), "WORD", "assess", "assess: must be 0 or 1, got yes"},
    };
    for (Bad const& c : cases) {
        PlyMaterial m;
        EXPECT_FALSE(m.read(c.pairs)) << c.key;
        EXPECT_STREQ(m.refusal().ruleWord(), c.rule) << c.key;
        EXPECT_EQ(m.refusal().key, c.key);
        if (c.message != nullptr) {
            EXPECT_EQ(m.refusal().message(), c.message);
        }
    }
    PlyMaterial m;
    m.read(with({{"XT", "1"}}));
    EXPECT_EQ(m.refusal().message().rfind("XT: unknown key, must be one of E1, E2, nu12, G12,", 0), 0u);
    EXPECT_NE(m.refusal().message().find("source, note"), std::string::npos);
    // The first bad pair in the order written is named, with its index.
    m.read(with({{"Xt", "-1"}, {"Xc", "x"}}));
    EXPECT_EQ(m.refusal().key, "Xt");
    EXPECT_EQ(m.refusal().pair, 4);
}

TEST(PlyMaterial, RefusalChangesNothing)
{
    PlyMaterial m;
    ASSERT_TRUE(m.read(with({{"Xt", "2000"}, {"source", "a test"}})));
    EXPECT_FALSE(m.read({{"E1", "1"}, {"E2", "2"}, {"nu12", "0.3"}, {"G12", "-1"}}));
    EXPECT_EQ(m.number(PlyMaterial::E1), 140000.0);
    EXPECT_EQ(m.number(PlyMaterial::Xt), 2000.0);
    EXPECT_EQ(m.text(PlyMaterial::source), "a test");
    EXPECT_STREQ(m.refusal().ruleWord(), "POSITIVE");
}

TEST(PlyMaterial, PoissonRuleIsTheRecordReadersArithmetic)
{
    // 1 - nu12^2 E2/E1 > 0: E2/E1 = 4 puts the limit at nu12 = 0.5 exactly.
    PlyMaterial m;
    EXPECT_FALSE(m.read({{"E1", "1"}, {"E2", "4"}, {"nu12", "0.5"}, {"G12", "1"}}));
    EXPECT_TRUE(m.read({{"E1", "1"}, {"E2", "4"}, {"nu12", "0.4999999"}, {"G12", "1"}}));
    EXPECT_TRUE(m.read({{"E1", "1"}, {"E2", "4"}, {"nu12", "-0.4999999"}, {"G12", "1"}}));
}

TEST(DecimalNumbers, ReadTheRecordsGrammarOnly)
{
    double v = 0;
    for (char const* ok : {"1", "-1.5", "+.5", "2.", "1e5", "1E-5", "0.000125"}) {
        EXPECT_EQ(laminate::analysis::readDecimal(ok, std::strlen(ok), v), DecimalRead::Ok) << ok;
        EXPECT_EQ(v, std::strtod(ok, nullptr)) << ok;
    }
    for (char const* bad : {"", ".", "e5", "1e", "0x1", "1.5.", " 1", "1 ", "--1", "1f"})
        EXPECT_EQ(laminate::analysis::readDecimal(bad, std::strlen(bad), v), DecimalRead::NotDecimal) << bad;
    for (char const* inf : {"inf", "-Infinity", "nan", "NaN(1)", "1e400"})
        EXPECT_EQ(laminate::analysis::readDecimal(inf, std::strlen(inf), v), DecimalRead::NotFinite) << inf;
}

// ---- libraries -------------------------------------------------------------

TEST(MaterialLibrary, ReadsMaterialsInFileOrder)
{
    MaterialLibrary lib;
    ASSERT_TRUE(lib.parse("# a library\n"
                          "\n"
                          "[ ud carbon ]   # header comment\n"
                          "E1 140000 # MPa\n"
                          "E2\t10000\r\n"
                          "nu12 0.3\n"
                          "G12 5000\n"
                          "source  Some Book, p. 12  \n"
                          "[glass]\n"
                          "E1 40000\nE2 10000\nnu12 0.25\nG12 4000\nunits N-m-Pa\n"))
        << lib.refusal().text;
    ASSERT_EQ(lib.entries().size(), 2u);
    EXPECT_EQ(lib.entries()[0].name, "ud carbon");
    EXPECT_EQ(lib.entries()[0].line, 3);
    EXPECT_EQ(lib.entries()[0].material.number(PlyMaterial::E2), 10000.0);
    EXPECT_EQ(lib.entries()[0].material.text(PlyMaterial::source), "Some Book, p. 12");
    EXPECT_EQ(lib.entries()[1].name, "glass");
    EXPECT_EQ(lib.entries()[1].material.unitSystem(), UnitSystem::NmPa);
    EXPECT_TRUE(lib.parse("# nothing but comments\n"));
    EXPECT_TRUE(lib.entries().empty());
}

TEST(MaterialLibrary, RefusesWithTheLineAndTheRule)
{
    std::string const good = "[m]\nE1 140000\nE2 10000\nnu12 0.3\nG12 5000\n";
    struct Case {
        std::string text;
        int line;
        char const* rule;
        char const* message;
    } const cases[] = {
        {"E1 1\n", 1, "SYNTAX", "expected [NAME] before the first property, got E1 1"},
        {"# c\n[m\n", 2, "SYNTAX", "expected [NAME], got [m"},
        {"[  ]\n", 1, "NAME", "a material needs a name, got []"},
        {good + "[m]\n", 6, "DUPLICATE", "material m is defined twice (first at line 1)"},
        {good + "Xt\n", 6, "SYNTAX", "expected KEY VALUE, got Xt"},
        {"[m]\nE1 140000\nE2 -1\nnu12 0.3\nG12 5000\n", 3, "POSITIVE", "material m, E2: must be > 0, got -1"},
        {"\n[m]\nE1 140000\nnu12 0.3\nG12 5000\n", 2, "MISSING",
         "material m, E2: missing (E1, E2, nu12 and G12 are required)"},
        {"[m]\nE1 1\nnu12 3\nE2 1\nG12 5000\n", 3, "POISSON", nullptr},
        {good + "Xt 1 # once\nXt 2\n", 7, "DUPLICATE", "material m, Xt: given twice, got 2"},
        {good + "[n]\nE1 1\nE2 1\nnu12 0.3\nG12 1\ncolour red\n", 11, "UNKNOWN", nullptr},
    };
    for (Case const& c : cases) {
        MaterialLibrary lib;
        EXPECT_FALSE(lib.parse(c.text)) << c.text;
        EXPECT_EQ(lib.refusal().line, c.line) << c.text;
        EXPECT_EQ(lib.refusal().rule, c.rule) << c.text;
        if (c.message != nullptr) {
            EXPECT_EQ(lib.refusal().text, c.message) << c.text;
        }
        EXPECT_TRUE(lib.entries().empty());
    }
}

TEST(MaterialLibrary, BundledLibraryHoldsPublishedCarbonAndGlassPlies)
{
    std::string const here = __FILE__;
    std::ifstream in(here.substr(0, here.rfind("/tests/")) + "/data/materials.lam");
    ASSERT_TRUE(in.good());
    std::stringstream text;
    text << in.rdbuf();
    MaterialLibrary lib;
    ASSERT_TRUE(lib.parse(text.str())) << lib.refusal().line << ": " << lib.refusal().text;
    int carbon = 0, glass = 0;
    std::vector<std::string> names;
    for (MaterialLibrary::Entry const& e : lib.entries()) {
        names.push_back(e.name);
        PlyMaterial const& m = e.material;
        carbon += m.fibreKind() == Fibre::Carbon;
        glass += m.fibreKind() == Fibre::Glass;
        EXPECT_FALSE(m.text(PlyMaterial::source).empty()) << e.name;
        // Every strength a criterion divides by is there, published or derived.
        for (PlyMaterial::Key k : {PlyMaterial::Xt, PlyMaterial::Xc, PlyMaterial::Yt, PlyMaterial::Yc,
                                   PlyMaterial::S12, PlyMaterial::S23, PlyMaterial::S13})
            EXPECT_GT(m.number(k), 0.0) << e.name << " " << PlyMaterial::kKeys[k].name;
    }
    EXPECT_GE(carbon, 3);
    EXPECT_GE(glass, 3);
    for (char const* wwfe : {"AS4/3501-6", "T300/914C", "E-glass/LY556", "E-glass/MY750"})
        EXPECT_NE(std::find(names.begin(), names.end(), wwfe), names.end()) << wwfe;
}

}  // namespace
