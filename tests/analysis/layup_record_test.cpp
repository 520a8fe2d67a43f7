// The record of a layup, read back by the strict record reader: every field
// lands in its place with the material's exact double, thicknesses resolve
// as documented, and a layup that cannot be one record is refused.
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "laminate/analysis/layup_record.h"
#include "laminate/laminate/strict_record.h"

using laminate::analysis::LayupPly;
using laminate::analysis::LayupRecord;
using laminate::analysis::PlyMaterial;
using Pairs = std::vector<std::pair<std::string, std::string>>;

namespace {

// Field indexes of the record, as StrictRecord::kFieldNames orders them.
int fieldIndex(char const* name)
{
    for (int f = 0; f < StrictRecord::kFields; ++f) {
        if (std::string(StrictRecord::kFieldNames[f]) == name) return f;
    }
    ADD_FAILURE() << name;
    return 0;
}

struct Materials {
    std::map<std::string, PlyMaterial> byName;

    void add(std::string const& name, Pairs const& pairs)
    {
        ASSERT_TRUE(byName[name].read(pairs)) << byName[name].refusal().message();
    }
    LayupRecord::Lookup lookup() const
    {
        return [this](std::string const& name) -> PlyMaterial const* {
            auto it = byName.find(name);
            return it == byName.end() ? nullptr : &it->second;
        };
    }
};

LayupPly ply(std::string const& material, double angle, double t = 0)
{
    LayupPly p;
    p.material = material;
    p.angle = angle;
    p.thickness = t;
    return p;
}

TEST(LayupRecord, EveryFieldReadsBackAsTheMaterialsDouble)
{
    Materials m;
    // Values that need all 17 digits, and strengths that differ so that a
    // swapped field shows.
    m.add("a", {{"E1", "161000.00000000003"}, {"E2", "0.1"}, {"nu12", "0.33333333333333331"},
                {"G12", "5170"}, {"G13", "5171"}, {"G23", "3980"}, {"Xt", "2560"}, {"Xc", "1590"},
                {"Yt", "73"}, {"Yc", "185"}, {"S12", "90"}, {"S23", "57"}, {"S13", "91"},
                {"t", "0.125"}, {"sw", "1.5e-5"}, {"GIc", "0.3"}, {"GIIc", "0.8"}});
    m.add("b", {{"E1", "40000"}, {"E2", "10000"}, {"nu12", "0.25"}, {"G12", "4000"}, {"assess", "0"}});
    LayupRecord rec;
    ASSERT_TRUE(rec.build({ply("a", 0), ply("a", -22.5), ply("b", 1.0 / 3, 0.5)}, m.lookup(), 0))
        << rec.refusal().message();

    StrictRecord strict;
    ASSERT_TRUE(strict.read(rec.text())) << strict.refusal().message();
    ASSERT_EQ(strict.layers(), 3);
    PlyMaterial const& a = m.byName["a"];
    std::pair<char const*, PlyMaterial::Key> const same[] = {
        {"E1", PlyMaterial::E1},   {"E2", PlyMaterial::E2},   {"nu12", PlyMaterial::nu12},
        {"G12", PlyMaterial::G12}, {"G13", PlyMaterial::G13}, {"G23", PlyMaterial::G23},
        {"Xc", PlyMaterial::Xc},   {"Yc", PlyMaterial::Yc},   {"Xt", PlyMaterial::Xt},
        {"Yt", PlyMaterial::Yt},   {"S12", PlyMaterial::S12}, {"S23", PlyMaterial::S23},
        {"S13", PlyMaterial::S13}, {"t", PlyMaterial::t},     {"sw", PlyMaterial::sw}};
    for (auto const& s : same) {
        for (int k = 1; k <= 2; ++k)
            EXPECT_EQ(strict.field(k, fieldIndex(s.first)), a.number(s.second)) << s.first;
    }
    EXPECT_EQ(strict.field(2, fieldIndex("angle")), -22.5);
    EXPECT_EQ(strict.field(3, fieldIndex("angle")), 1.0 / 3);
    EXPECT_EQ(strict.field(1, fieldIndex("spare")), 0.0);
    EXPECT_EQ(strict.field(1, fieldIndex("flag")), 1.0);
    // Material b: derived G13 and G23, strengths not given (0), not assessed.
    EXPECT_EQ(strict.field(3, fieldIndex("G23")), 10000 / 2.8);
    EXPECT_EQ(strict.field(3, fieldIndex("Xt")), 0.0);
    EXPECT_EQ(strict.field(3, fieldIndex("flag")), 0.0);
    EXPECT_EQ(strict.field(3, fieldIndex("t")), 0.5);
    EXPECT_EQ(rec.unitSystem(), laminate::analysis::UnitSystem::NmmMPa);
}

TEST(LayupRecord, ThicknessOfThePlyThenTheLayupThenTheMaterial)
{
    Materials m;
    m.add("with", {{"E1", "1e5"}, {"E2", "1e4"}, {"nu12", "0.3"}, {"G12", "5e3"}, {"t", "0.2"}});
    m.add("without", {{"E1", "1e5"}, {"E2", "1e4"}, {"nu12", "0.3"}, {"G12", "5e3"}});
    LayupRecord rec;
    ASSERT_TRUE(rec.build({ply("with", 0, 0.3), ply("with", 0), ply("without", 0, 0.1)}, m.lookup(), 0));
    EXPECT_EQ(rec.plies()[0].thickness, 0.3);
    EXPECT_EQ(rec.plies()[1].thickness, 0.2);
    EXPECT_EQ(rec.plies()[2].thickness, 0.1);
    ASSERT_TRUE(rec.build({ply("with", 0, 0.3), ply("with", 0), ply("without", 0)}, m.lookup(), 0.4));
    EXPECT_EQ(rec.plies()[1].thickness, 0.4);
    EXPECT_EQ(rec.plies()[2].thickness, 0.4);
    EXPECT_FALSE(rec.build({ply("with", 0), ply("without", 90)}, m.lookup(), 0));
    EXPECT_EQ(rec.refusal().message(),
              "layer 2: no thickness: material 'without' gives no t; give -thickness or a thickness "
              "with the ply");
    EXPECT_TRUE(rec.text().empty());
}

TEST(LayupRecord, RefusesWhatCannotBeOneRecord)
{
    Materials m;
    Pairs const base = {{"E1", "1e5"}, {"E2", "1e4"}, {"nu12", "0.3"}, {"G12", "5e3"}, {"t", "0.2"}};
    m.add("mm", base);
    Pairs si = base;
    si.push_back({"units", "N-m-Pa"});
    m.add("si", si);
    LayupRecord rec;
    EXPECT_FALSE(rec.build({}, m.lookup(), 0));
    EXPECT_STREQ(rec.refusal().ruleWord(), "EMPTY");
    EXPECT_FALSE(rec.build(std::vector<LayupPly>(10001, ply("mm", 0)), m.lookup(), 0));
    EXPECT_EQ(rec.refusal().message(), "a layup has at most 10000 plies, got 10001");
    EXPECT_TRUE(rec.build(std::vector<LayupPly>(10000, ply("mm", 0)), m.lookup(), 0));
    EXPECT_FALSE(rec.build({ply("mm", 0), ply("nope", 0)}, m.lookup(), 0));
    EXPECT_EQ(rec.refusal().message(), "layer 2: ply material not found 'nope'");
    EXPECT_FALSE(rec.build({ply("mm", 0), ply("mm", 90), ply("si", 0)}, m.lookup(), 0));
    EXPECT_STREQ(rec.refusal().ruleWord(), "UNITS");
    EXPECT_EQ(rec.refusal().layer, 3);
    EXPECT_EQ(rec.refusal().message(),
              "layer 3: material 'si' is in N-m-Pa, layer 1's material 'mm' in N-mm-MPa: a layup "
              "takes one unit system");
}

TEST(LayupRecord, ThinPliesCarryTheToughnessesInFields12And13)
{
    Materials m;
    Pairs const si = {{"E1", "1.4e11"}, {"E2", "1e10"}, {"nu12", "0.3"}, {"G12", "5e9"}, {"units", "N-m-Pa"},
                      {"S23", "5e7"}, {"S13", "9e7"}};
    Pairs tough = si;
    tough.push_back({"GIc", "280"});
    tough.push_back({"GIIc", "790"});
    m.add("tough", tough);
    m.add("brittle", si);
    LayupRecord rec;
    // 0.0007 is thin (the limit is inclusive), 0.0008 thick.
    ASSERT_TRUE(rec.build({ply("tough", 0, 0.0007), ply("tough", 0, 0.0008)}, m.lookup(), 0));
    StrictRecord strict;
    ASSERT_TRUE(strict.read(rec.text()));
    EXPECT_EQ(strict.field(1, fieldIndex("S23")), 280.0);
    EXPECT_EQ(strict.field(1, fieldIndex("S13")), 790.0);
    EXPECT_EQ(strict.field(2, fieldIndex("S23")), 5e7);
    EXPECT_EQ(strict.field(2, fieldIndex("S13")), 9e7);
    EXPECT_FALSE(rec.build({ply("brittle", 0, 0.000125)}, m.lookup(), 0));
    EXPECT_STREQ(rec.refusal().ruleWord(), "TOUGHNESS");
    EXPECT_EQ(rec.refusal().message(),
              "layer 1: the ply is thin (thickness <= 0.0007), where LaRC04 reads fields 12 and 13 "
              "of the record as GIc and GIIc, but material 'brittle' gives no GIc");
}

}  // namespace
