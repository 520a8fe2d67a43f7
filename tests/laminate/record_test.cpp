// The material record: parsing, unit scaling, rejection of bad records, and
// the lifetime of a model and of its registry node.
#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "tests/laminate/lamina_build.h"

using lamtest::parse;
using lamtest::ply;

namespace {

std::string const kLayer = " 100 10 0.3 5 4 3 1 2 3 4 5 6 7 0.5 45 0.2 1.5 1";

TEST(LaminaRecord, FieldsAndTotalsInRecordOrder)
{
    lamina1 lam;
    ASSERT_EQ(parse(lam, "1" + kLayer), 0);
    double const want[] = {100, 10, 0.3, 5, 4, 3, 1, 2, 3, 4, 5, 6, 7, 0.5,
                           45, 0.2, 1.5};
    vantrel::ReaVecV const* got[] = {
        &lam.E1, &lam.E2, &lam.nu12, &lam.G12, &lam.G13, &lam.G23,
        &lam.strength1, &lam.strength2, &lam.strength3, &lam.strength4,
        &lam.strength5, &lam.strength6, &lam.strength7, &lam.strength8,
        &lam.angleDeg, &lam.layerThickness, &lam.layerSpecificWeight};
    for (int i = 0; i < 17; i++) {
        EXPECT_EQ((*got[i])[0], want[i]) << "field " << i + 1;
    }
    EXPECT_EQ(lam.layerFlag[0], 1);
    EXPECT_EQ(lam.GiveShellThickness(), 0.2);
    EXPECT_DOUBLE_EQ(lam.GiveSpecificWeight(), 1.5);

    // Tabs and newlines separate too; text after the last layer is ignored.
    // Thicknesses 1 and 3, weights 2 and 6: mean (2 + 18) / 4.
    lamina1 two;
    ASSERT_EQ(parse(two, "2\t100 10 0.3 5 4 3 1 2 3 4 5 6 7 0.5 0 1 2 0\n"
                         "100 10 0.3 5 4 3 1 2 3 4 5 6 7 0.5 90 3 6 1 trailing"),
              0);
    EXPECT_EQ(two.GiveShellThickness(), 4.0);
    EXPECT_DOUBLE_EQ(two.GiveSpecificWeight(), 5.0);

    // No layers: thickness 0 and a 0/0 weight.  No count keeps the fresh 0.
    lamina1 zero, blank;
    EXPECT_EQ(parse(zero, "0"), 0);
    EXPECT_TRUE(std::isnan(zero.GiveSpecificWeight()));
    EXPECT_EQ(parse(blank, " \t\n"), 0);
    EXPECT_EQ(blank.nlayers, 0);
}

TEST(LaminaRecord, UnitFactorsScaleStressesThicknessAndWeight)
{
    lamina1 lam;
    ASSERT_EQ(parse(lam, "1" + kLayer, 2.0, 10.0), 0);  // stress factor 0.02
    EXPECT_DOUBLE_EQ(lam.E1[0], 2.0);
    EXPECT_DOUBLE_EQ(lam.strength7[0], 0.14);
    EXPECT_EQ(lam.strength8[0], 0.5);
    EXPECT_EQ(lam.layerThickness[0], 0.2);
    EXPECT_DOUBLE_EQ(lam.GiveShellThickness(), 2.0);
    EXPECT_DOUBLE_EQ(lam.GiveSpecificWeight(), 1.5 * 0.002);
}

TEST(LaminaRecord, BadRecordsAreRefused)
{
    lamina1 word, point, shortLast, letters, tooMany, negative;
    EXPECT_EQ(parse(word, "one" + kLayer), -1);
    EXPECT_EQ(word.E1.length(), 0);  // nothing sized
    EXPECT_EQ(parse(point, ".5" + kLayer), -1);
    // Seventeen numbers in the last layer; the totals still take them in.
    EXPECT_EQ(parse(shortLast, "2" + kLayer + " 1 1 1 1 1 1 1 1 1 1 1 1 1 1 0 "
                                              "0.8 2"),
              -1);
    EXPECT_DOUBLE_EQ(shortLast.thickness, 1.0);
    EXPECT_DOUBLE_EQ(shortLast.specificWeight, 0.3 + 1.6);
    EXPECT_EQ(parse(letters, "1 100 10 0.3 5 four 3 1 2 3 4 5 6 7 0.5 0 1 1 1"),
              -1);
    EXPECT_EQ(parse(tooMany, "2000000000" + kLayer), -1);
    EXPECT_EQ(parse(negative, "-1" + kLayer), -1);
}

TEST(LaminaRecord, NodeCopiesItsNameAndOwnsTheRestOfTheList)
{
    char name[] = "carbon";
    lam_mat* head = new lam_mat(name);
    name[0] = 'X';
    EXPECT_STREQ(head->name, "carbon");
    EXPECT_EQ(head->lamina->Qbar, nullptr);
    // Destroying the head releases the chain and every layer's matrices (the
    // sanitizer build reports anything left).
    head->next = new lam_mat(name);
    lamtest::define(*head->next->lamina, {ply(0), ply(45), ply(90)});
    delete head;
}

}  // namespace
