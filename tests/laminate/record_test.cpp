// The material record: unit scaling and rejection of bad records.
#include <string>

#include <gtest/gtest.h>

#include "laminate/lamina_build.h"

using lamtest::parse;

namespace {

std::string const kLayer = " 100 10 0.3 5 4 3 1 2 3 4 5 6 7 0.5 45 0.2 1.5 1";

TEST(LaminaRecord, UnitFactorsScaleStressesThicknessAndWeight)
{
    lamina1 lam;
    ASSERT_EQ(parse(lam, "1" + kLayer, 2.0, 10.0), 0);  // stress factor 0.02
    EXPECT_DOUBLE_EQ(lam.E1[0], 2.0);
    EXPECT_DOUBLE_EQ(lam.G23[0], 0.06);
    EXPECT_DOUBLE_EQ(lam.strength7[0], 0.14);
    EXPECT_EQ(lam.strength8[0], 0.5);
    EXPECT_EQ(lam.angleDeg[0], 45.0);
    EXPECT_EQ(lam.layerThickness[0], 0.2);
    EXPECT_EQ(lam.layerFlag[0], 1);
    EXPECT_DOUBLE_EQ(lam.GiveShellThickness(), 2.0);
    EXPECT_DOUBLE_EQ(lam.GiveSpecificWeight(), 1.5 * 0.002);
}

TEST(LaminaRecord, BadRecordsAreRefused)
{
    std::string const bad[] = {"one" + kLayer, ".5" + kLayer, "2000000000" + kLayer,
                               "-1" + kLayer,
                               "1 100 10 0.3 5 four 3 1 2 3 4 5 6 7 0.5 0 1 1 1"};
    for (std::string const& text : bad) {
        lamina1 lam;
        EXPECT_EQ(parse(lam, text), -1) << text;
    }
    lamina1 word;
    parse(word, "one" + kLayer);
    EXPECT_EQ(word.E1.length(), 0);  // nothing sized
    // Seventeen numbers in the last layer; the totals still take them in.
    lamina1 shortLast;
    EXPECT_EQ(parse(shortLast, "2" + kLayer + " 1 1 1 1 1 1 1 1 1 1 1 1 1 1 0 0.8 2"), -1);
    EXPECT_DOUBLE_EQ(shortLast.thickness, 1.0);
    EXPECT_DOUBLE_EQ(shortLast.specificWeight, 0.3 + 1.6);
}

}  // namespace
