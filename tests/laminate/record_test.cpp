// The material record: parsing, unit scaling, rejection of bad records, and
// the lifetime of a model and of its registry node.
#include <cmath>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "laminate/lamina1.h"
#include "tests/laminate/lamina_build.h"

using lamtest::parse;

namespace {

char const kOneLayer[] =
    "1 100 10 0.3 5 4 3 1 2 3 4 5 6 7 0.5 45 0.2 1.5 1";

TEST(LaminaRecord, OneLayerFillsEveryFieldInRecordOrder)
{
    lamina1 lam;
    ASSERT_EQ(parse(lam, kOneLayer), 0);
    EXPECT_EQ(lam.nlayers, 1);
    EXPECT_EQ(lam.nlayersRead, 1);
    EXPECT_EQ(lam.E1[0], 100.0);
    EXPECT_EQ(lam.E2[0], 10.0);
    EXPECT_EQ(lam.nu12[0], 0.3);
    EXPECT_EQ(lam.G12[0], 5.0);
    EXPECT_EQ(lam.G13[0], 4.0);   // field 5
    EXPECT_EQ(lam.G23[0], 3.0);   // field 6
    vantrel::ReaVecV const* strengths[] = {
        &lam.strength1, &lam.strength2, &lam.strength3, &lam.strength4,
        &lam.strength5, &lam.strength6, &lam.strength7};
    for (int i = 0; i < 7; i++) {
        EXPECT_EQ((*strengths[i])[0], i + 1.0) << "strength" << i + 1;
    }
    EXPECT_EQ(lam.strength8[0], 0.5);
    EXPECT_EQ(lam.angleDeg[0], 45.0);
    EXPECT_EQ(lam.layerThickness[0], 0.2);
    EXPECT_EQ(lam.layerSpecificWeight[0], 1.5);
    EXPECT_EQ(lam.layerFlag[0], 1);
    EXPECT_EQ(lam.nu21.length(), 1);
    EXPECT_EQ(lam.GiveShellThickness(), 0.2);
    EXPECT_DOUBLE_EQ(lam.GiveSpecificWeight(), 1.5);
    EXPECT_EQ(lam.GiveSpecificWeightPerthicknessMT(), 1.0);
}

TEST(LaminaRecord, AnyWhiteSpaceSeparatesAndTrailingTextIsIgnored)
{
    lamina1 lam;
    ASSERT_EQ(parse(lam, "2\n\t100 10 0.3 5 4 3 1 2 3 4 5 6 7 0.5 0 1 2 0\n"
                         "200\t20 0.25 6 4 3 1 2 3 4 5 6 7 0.5 90 3 6 1"
                         "  and then some words"),
              0);
    EXPECT_EQ(lam.nlayers, 2);
    EXPECT_EQ(lam.E1[1], 200.0);
    EXPECT_EQ(lam.angleDeg[1], 90.0);
    EXPECT_EQ(lam.layerFlag[0], 0);
    EXPECT_EQ(lam.layerFlag[1], 1);
    // Thickness-weighted mean: (2*1 + 6*3) / (1 + 3).
    EXPECT_EQ(lam.GiveShellThickness(), 4.0);
    EXPECT_DOUBLE_EQ(lam.GiveSpecificWeight(), 5.0);
}

TEST(LaminaRecord, UnitFactorsScaleStressesThicknessAndWeight)
{
    lamina1 lam;
    // Force factor 2, length factor 10: stresses scale by 2/10/10 = 0.02.
    ASSERT_EQ(parse(lam, kOneLayer, 2.0, 10.0), 0);
    double const f = 0.02;
    EXPECT_DOUBLE_EQ(lam.E1[0], 100.0 * f);
    EXPECT_DOUBLE_EQ(lam.E2[0], 10.0 * f);
    EXPECT_DOUBLE_EQ(lam.G12[0], 5.0 * f);
    EXPECT_DOUBLE_EQ(lam.G13[0], 4.0 * f);
    EXPECT_DOUBLE_EQ(lam.G23[0], 3.0 * f);
    EXPECT_DOUBLE_EQ(lam.strength1[0], 1.0 * f);
    EXPECT_DOUBLE_EQ(lam.strength7[0], 7.0 * f);
    // Not stresses: left as read.
    EXPECT_EQ(lam.strength8[0], 0.5);
    EXPECT_EQ(lam.nu12[0], 0.3);
    EXPECT_EQ(lam.angleDeg[0], 45.0);
    EXPECT_EQ(lam.layerThickness[0], 0.2);
    EXPECT_EQ(lam.layerSpecificWeight[0], 1.5);
    // Laminate totals: thickness by the length, weight by force / length^3.
    EXPECT_DOUBLE_EQ(lam.GiveShellThickness(), 2.0);
    EXPECT_DOUBLE_EQ(lam.GiveSpecificWeight(), 1.5 * 0.002);
}

TEST(LaminaRecord, NoLayersIsAValidMaterial)
{
    lamina1 zero;
    EXPECT_EQ(parse(zero, "0"), 0);
    EXPECT_EQ(zero.nlayers, 0);
    EXPECT_EQ(zero.GiveShellThickness(), 0.0);
    EXPECT_TRUE(std::isnan(zero.GiveSpecificWeight()));  // 0 / 0

    // No count at all keeps the count of a fresh model: no layers.
    lamina1 blank;
    EXPECT_EQ(parse(blank, "  \t\n"), 0);
    EXPECT_EQ(blank.nlayers, 0);
    lamina1 empty;
    EXPECT_EQ(parse(empty, ""), 0);
    EXPECT_EQ(empty.nlayers, 0);
}

TEST(LaminaRecord, BadRecordsAreRefused)
{
    // First token not an integer: nothing is sized.
    lamina1 word;
    EXPECT_EQ(parse(word, "one 100 10"), -1);
    EXPECT_EQ(word.E1.length(), 0);
    lamina1 point;
    EXPECT_EQ(parse(point, ".5 100 10"), -1);

    // Seventeen numbers for the last layer.
    std::string const full = "100 10 0.3 5 4 3 1 2 3 4 5 6 7 0.5 0 0.25 2 1 ";
    std::string const short17 = "100 10 0.3 5 4 3 1 2 3 4 5 6 7 0.5 0 0.75 6";
    lamina1 shortLast;
    EXPECT_EQ(parse(shortLast, "2 " + full + short17), -1);
    // The sums take in what was read, even from the rejected layer.
    EXPECT_EQ(shortLast.thickness, 1.0);
    EXPECT_EQ(shortLast.specificWeight, 0.25 * 2 + 0.75 * 6);

    // Letters inside a layer, and a count larger than the layers given.
    lamina1 letters;
    EXPECT_EQ(parse(letters, "1 100 10 0.3 5 four 3 1 2 3 4 5 6 7 0.5 0 1 1 1"),
              -1);
    lamina1 tooMany;
    EXPECT_EQ(parse(tooMany, "3 " + full + full), -1);
    lamina1 huge;
    EXPECT_EQ(parse(huge, "2000000000 " + full), -1);
    // A negative count is refused rather than sizing the vectors with it.
    lamina1 negative;
    EXPECT_EQ(parse(negative, "-1 " + full), -1);
}

TEST(LaminaNode, CopiesTheNameAndOwnsTheRestOfTheList)
{
    char name[] = "carbon";
    lam_mat* head = new lam_mat(name);
    name[0] = 'X';
    EXPECT_STREQ(head->name, "carbon");
    EXPECT_NE(head->name, name);
    EXPECT_EQ(head->next, nullptr);
    ASSERT_NE(head->lamina, nullptr);
    EXPECT_EQ(head->lamina->nlayers, 0);
    EXPECT_EQ(head->lamina->Qbar, nullptr);
    EXPECT_EQ(head->lamina->Tmat, nullptr);

    // A fully built model in the second node: destroying the head releases
    // the chain, every layer's matrices included (the sanitizer build checks
    // that nothing leaks).
    char second[] = "glass";
    head->next = new lam_mat(second);
    lamtest::define(*head->next->lamina,
                    {lamtest::ply(0), lamtest::ply(45), lamtest::ply(90)});
    vantrel::ReaVecV l = lamtest::loads(1, 0, 0, 0, 0, 0, 0, 0);
    head->next->lamina->CalcTD(2, l);
    EXPECT_EQ(head->next->lamina->Qbar[2].nrows, 3);
    delete head;
}

}  // namespace
