// Tsai-Wu safety factors: the simple load factor with its guards and cap, and
// the complete criterion with its not-assessed marker.
#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "laminate/lamina1.h"
#include "tests/laminate/lamina_build.h"

using lamtest::loads;
using lamtest::near;
using lamtest::Ply;
using vantrel::ReaVecV;

namespace {

// 0 degrees, zero Poisson ratio, power-of-two moduli, thickness 1: sigma = N
// exactly under membrane loads, N -/+ 6 M at the top/bottom face under
// moments, transverse shear stresses -2.4 Q.  Yc 256, Yt 64, S12 64, S23 64,
// S13 32.
Ply cleanPly(double Xc, double Xt)
{
    Ply p;
    p.E1 = 131072, p.E2 = 8192, p.nu12 = 0, p.G12 = 4096, p.G13 = p.G23 = 2048, p.t = 1;
    double const s[8] = {Xc, 256, Xt, 64, 64, 64, 32, 0};
    std::copy(s, s + 8, p.strength);
    return p;
}

struct Lam : lamina1 {
    explicit Lam(std::vector<Ply> const& plies) { lamtest::define(*this, plies); }
};

TEST(TsaiWuSimple, FactorIsTheSmallerRootMagnitudeCappedAt200)
{
    Lam lam({cleanPly(1024, 1024)}), unequal({cleanPly(1024, 2048)});
    ReaVecV L = loads(-256, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(near(lam.FasTWLayer(1, L), 4.0));  // X / |sigma1|
    EXPECT_TRUE(near(lam.FasTW(L), 4.0));
    // Xt = 2048, Xc = 1024, sigma1 = 512: roots 4 and -2.
    L = loads(512, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(near(unequal.FasTWLayer(1, L), 2.0));
    L = loads(1, 0, 0, 0, 0, 0, 0, 0);  // uncapped factor 1024
    EXPECT_EQ(lam.FasTWLayer(1, L), 200.0);
    EXPECT_EQ(lam.FasTW(L), 200.0);
}

TEST(TsaiWuSimple, ZeroStrengthOrStressFreeTopFaceGivesMinusOne)
{
    ReaVecV L = loads(256, 0, 0, 0, 0, 0, 0, 0), zero = loads(0, 0, 0, 0, 0, 0, 0, 0);
    for (int field = 0; field < 5; field++) {  // Xc, Yc, Xt, Yt, S12
        Ply p = cleanPly(1024, 1024);
        p.strength[field] = 0.0;
        EXPECT_EQ(Lam({p}).FasTWLayer(1, L), -1.0) << "strength field " << field;
    }
    EXPECT_EQ(Lam({cleanPly(1024, 1024)}).FasTWLayer(1, zero), -1.0);

    // With E1 = 3, N1 = 3 and M1 = 0.5 cancel the top-face strain exactly
    // while mid-thickness carries sigma1 = 3.
    Ply three = cleanPly(1024, 1024);
    three.E1 = three.E2 = three.G12 = 3.0;
    Lam lam({three});
    ReaVecV T = loads(3, 0, 0, 0.5, 0, 0, 0, 0), top;
    lam.GiveStressTop(1, T, top);
    ASSERT_TRUE(top[0] == 0.0 && top[1] == 0.0 && top[2] == 0.0);
    ASSERT_TRUE(near(lam.GiveStresses1_layer(1, T), 3.0));
    EXPECT_EQ(lam.FasTWLayer(1, T), -1.0);
}

TEST(TsaiWuSimple, StackTakesTheSmallestFactorAndStopsAtAFailedGuard)
{
    Lam two({cleanPly(1024, 1024), cleanPly(512, 512)});  // sigma1 = N1 / 2 in both
    ReaVecV L = loads(512, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(near(two.FasTW(L), 2.0));
    Ply broken = cleanPly(1024, 1024);
    broken.strength[3] = 0.0;
    Ply const ok = cleanPly(1024, 1024);
    EXPECT_EQ(Lam({ok, ok, broken, ok, ok}).FasTW(L), -1.0);

    // Bending alone leaves mid-thickness unstressed and the factor 0/0: the
    // one-layer form passes the NaN through, the stack form caps it.
    ReaVecV M = loads(0, 0, 0, 16, 0, 0, 0, 0);
    EXPECT_TRUE(std::isnan(Lam({ok}).FasTWLayer(1, M)));
    EXPECT_EQ(Lam({ok}).FasTW(M), 200.0);
}

TEST(TsaiWuComplete, CriterionValueAtTheWorseFace)
{
    // Xt = 2048, Xc = 1024: F11 s^2 + F1 s is -0.125 at s = 512 (magnitude
    // taken), 0.375 at s = -512 and 0 at s = 1024.
    Lam lam({cleanPly(1024, 2048)});
    ReaVecV L = loads(512, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(near(lam.FasTWcompleteLayer(1, L), 0.125));
    EXPECT_TRUE(near(lam.FasTWcomplete(L), 0.125));
    L = loads(256, 0, 0, -128, 0, 0, 0, 0);  // top 1024, bottom -512
    EXPECT_TRUE(near(lam.FasTWcompleteLayer(1, L), 0.375));
    L = loads(256, 0, 0, 128, 0, 0, 0, 0);  // top -512, bottom 1024
    EXPECT_TRUE(near(lam.FasTWcompleteLayer(1, L), 0.375));
    // Transverse shear alone: tau_a = S23 adds 1, tau_b = S13 adds 1.
    L = loads(0, 0, 0, 0, 0, 0, -64 / 2.4, -32 / 2.4);
    EXPECT_TRUE(near(lam.FasTWcompleteLayer(1, L), 2.0));
}

TEST(TsaiWuComplete, UnassessedLayersGiveTheMarker)
{
    Ply off = cleanPly(1024, 1024), on = off;
    off.flag = 0;
    ReaVecV L = loads(1536, 0, 0, 0, 0, 0, 0, 0), zero = loads(0, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_EQ(Lam({off}).FasTWcompleteLayer(1, L), 1000000.0);
    EXPECT_EQ(Lam({on}).FasTWcompleteLayer(1, zero), 1000000.0);
    // Bending alone stresses both faces but not the middle.
    ReaVecV M = loads(0, 0, 0, 16, 0, 0, 0, 0);
    EXPECT_EQ(Lam({on}).FasTWcomplete(M), 1000000.0);
    // The stack stops at layer 2: layer 3, far beyond its strength, would
    // raise the maximum above the marker.
    EXPECT_EQ(Lam({on, off, cleanPly(1e-4, 1e-4)}).FasTWcomplete(L), 1000000.0);
    // sigma1 = 768: (768/1024)^2 and 1.
    EXPECT_TRUE(near(Lam({on, cleanPly(768, 768)}).FasTWcomplete(L), 1.0));
}

}  // namespace
