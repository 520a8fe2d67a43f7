// Tsai-Wu safety factors: the simple load factor with its guards and cap, and
// the complete criterion with its not-assessed marker.  A 0 degree ply with a
// zero Poisson ratio and power-of-two moduli and thickness 1 carries
// membrane stresses sigma = N exactly, and sigma = N -/+ 6 M at its top and
// bottom faces under a moment M.
#include <cmath>

#include <gtest/gtest.h>

#include "laminate/lamina1.h"
#include "tests/laminate/lamina_build.h"

using lamtest::loads;
using lamtest::near;
using lamtest::Ply;
using vantrel::ReaVecV;

namespace {

Ply cleanPly(double Xc, double Xt)
{
    Ply p;
    p.E1 = 131072; p.E2 = 8192; p.nu12 = 0; p.G12 = 4096; p.G13 = 2048; p.G23 = 2048;
    double s[8] = {Xc, 256, Xt, 64, 64, 64, 32, 0};
    for (int i = 0; i < 8; i++) p.strength[i] = s[i];
    p.t = 1.0;
    return p;
}

TEST(TsaiWuSimple, UniaxialFactorIsTheSmallerRootMagnitude)
{
    lamina1 lam;
    lamtest::define(lam, {cleanPly(1024, 1024)});
    ReaVecV L = loads(256, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(near(lam.FasTWLayer(1, L), 4.0));  // X / sigma1
    EXPECT_TRUE(near(lam.FasTW(L), 4.0));
    L = loads(-256, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(near(lam.FasTWLayer(1, L), 4.0));

    // Xt = 2048, Xc = 1024 under sigma1 = 512: the roots are 4 (tensile
    // failure) and -2 (compressive); the smaller magnitude wins.
    lamina1 unequal;
    lamtest::define(unequal, {cleanPly(1024, 2048)});
    L = loads(512, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(near(unequal.FasTWLayer(1, L), 2.0));
}

TEST(TsaiWuSimple, FactorIsCappedAt200)
{
    lamina1 lam;
    lamtest::define(lam, {cleanPly(1024, 1024)});
    ReaVecV L = loads(1, 0, 0, 0, 0, 0, 0, 0);  // uncapped factor 1024
    EXPECT_EQ(lam.FasTWLayer(1, L), 200.0);
    EXPECT_EQ(lam.FasTW(L), 200.0);
    L = loads(5.2, 0, 0, 0, 0, 0, 0, 0);  // just below the cap
    EXPECT_TRUE(near(lam.FasTWLayer(1, L), 1024 / 5.2));
}

TEST(TsaiWuSimple, ZeroStrengthOrStressFreeTopFaceGivesMinusOne)
{
    ReaVecV L = loads(256, 0, 0, 0, 0, 0, 0, 0);
    for (int field = 0; field < 5; field++) {  // Xc, Yc, Xt, Yt, S12
        Ply p = cleanPly(1024, 1024);
        p.strength[field] = 0.0;
        lamina1 lam;
        lamtest::define(lam, {p});
        EXPECT_EQ(lam.FasTWLayer(1, L), -1.0) << "strength field " << field;
        EXPECT_EQ(lam.FasTW(L), -1.0) << "strength field " << field;
    }
    Ply noS23 = cleanPly(1024, 1024);  // the transverse shear strengths are not guarded
    noS23.strength[5] = 0.0;
    lamina1 rated;
    lamtest::define(rated, {noS23});
    EXPECT_TRUE(near(rated.FasTWLayer(1, L), 4.0));

    lamina1 lam;
    lamtest::define(lam, {cleanPly(1024, 1024)});
    ReaVecV zero = loads(0, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_EQ(lam.FasTWLayer(1, zero), -1.0);

    // E1 = 3: N1 = 3 with M1 = 0.5 cancels the strain at the top face
    // exactly while the mid-thickness sigma1 is 3.
    Ply three = cleanPly(1024, 1024);
    three.E1 = three.E2 = three.G12 = 3.0;
    lamina1 topFree;
    lamtest::define(topFree, {three});
    ReaVecV T = loads(3, 0, 0, 0.5, 0, 0, 0, 0);
    ReaVecV top;
    topFree.GiveStressTop(1, T, top);
    ASSERT_TRUE(top[0] == 0.0 && top[1] == 0.0 && top[2] == 0.0);
    ASSERT_TRUE(near(topFree.GiveStresses1_layer(1, T), 3.0));
    EXPECT_EQ(topFree.FasTWLayer(1, T), -1.0);
    EXPECT_EQ(topFree.FasTW(T), -1.0);
}

TEST(TsaiWuSimple, StackTakesTheSmallestFactorAndStopsAtAFailedGuard)
{
    lamina1 lam;  // two plies of thickness 1: sigma1 = N1 / 2 in both
    lamtest::define(lam, {cleanPly(1024, 1024), cleanPly(512, 512)});
    ReaVecV L = loads(512, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(near(lam.FasTWLayer(1, L), 4.0));
    EXPECT_TRUE(near(lam.FasTWLayer(2, L), 2.0));
    EXPECT_TRUE(near(lam.FasTW(L), 2.0));

    Ply broken = cleanPly(1024, 1024);
    broken.strength[3] = 0.0;
    lamina1 five;
    lamtest::define(five, {cleanPly(1024, 1024), cleanPly(1024, 1024), broken,
                           cleanPly(1024, 1024), cleanPly(1024, 1024)});
    EXPECT_EQ(five.FasTW(L), -1.0);

    // Pure bending leaves mid-thickness unstressed: the factor is 0/0.  The
    // one-layer form passes the NaN through, the stack form caps it at 200.
    ReaVecV M = loads(0, 0, 0, 16, 0, 0, 0, 0);
    lamina1 single;
    lamtest::define(single, {cleanPly(1024, 1024)});
    EXPECT_TRUE(std::isnan(single.FasTWLayer(1, M)));
    EXPECT_EQ(single.FasTW(M), 200.0);
}

TEST(TsaiWuComplete, CriterionValueAtTheWorseFace)
{
    lamina1 lam;
    lamtest::define(lam, {cleanPly(1024, 1024)});
    ReaVecV L = loads(1024, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(near(lam.FasTWcompleteLayer(1, L), 1.0));
    EXPECT_TRUE(near(lam.FasTWcomplete(L), 1.0));

    // Xt = 2048, Xc = 1024: F11 s^2 + F1 s is -0.125 at s = 512 (magnitude
    // taken), 0.375 at s = -512 and 0 at s = 1024.
    lamina1 un;
    lamtest::define(un, {cleanPly(1024, 2048)});
    L = loads(512, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(near(un.FasTWcompleteLayer(1, L), 0.125));
    L = loads(256, 0, 0, 128, 0, 0, 0, 0);  // top -512, bottom 1024
    EXPECT_TRUE(near(un.FasTWcompleteLayer(1, L), 0.375));
    L = loads(256, 0, 0, -128, 0, 0, 0, 0);  // top 1024, bottom -512
    EXPECT_TRUE(near(un.FasTWcompleteLayer(1, L), 0.375));

    // Transverse shear alone (tau = -2.4 Q / t for one ply): tau_a = S23 = 64
    // adds 1, tau_b = S13 = 32 adds 1.
    L = loads(0, 0, 0, 0, 0, 0, -64 / 2.4, 0);
    EXPECT_TRUE(near(lam.FasTWcompleteLayer(1, L), 1.0));
    L = loads(0, 0, 0, 0, 0, 0, -64 / 2.4, -32 / 2.4);
    EXPECT_TRUE(near(lam.FasTWcompleteLayer(1, L), 2.0));
}

TEST(TsaiWuComplete, UnassessedLayersGiveTheMarker)
{
    Ply off = cleanPly(1024, 1024);
    off.flag = 0;
    lamina1 lam;
    lamtest::define(lam, {off});
    ReaVecV L = loads(256, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_EQ(lam.FasTWcompleteLayer(1, L), 1000000.0);
    EXPECT_EQ(lam.FasTWcomplete(L), 1000000.0);

    lamina1 on;
    lamtest::define(on, {cleanPly(1024, 1024)});
    ReaVecV zero = loads(0, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_EQ(on.FasTWcompleteLayer(1, zero), 1000000.0);
    EXPECT_EQ(on.FasTWcomplete(zero), 1000000.0);
    // Bending alone stresses both faces but not the middle.
    ReaVecV M = loads(0, 0, 0, 16, 0, 0, 0, 0);
    EXPECT_EQ(on.FasTWcompleteLayer(1, M), 1000000.0);

    // The stack stops at the unassessed layer 2: layer 3, far beyond its
    // strength, is never reached.
    lamina1 three;
    lamtest::define(three, {cleanPly(1024, 1024), off, cleanPly(1e-4, 1e-4)});
    EXPECT_EQ(three.FasTWcomplete(L), 1000000.0);
    lamina1 two;  // sigma1 = 256 in both: 1/16 and 1/4
    lamtest::define(two, {cleanPly(1024, 1024), cleanPly(512, 512)});
    L = loads(512, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(near(two.FasTWcomplete(L), 0.25));
}

}  // namespace
