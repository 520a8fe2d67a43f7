// Failure criteria against hand cases on the clean test ply: the Tsai-Wu
// safety factor and criterion, Hashin and LaRC04 indices, and the markers
// of layers that are not assessed.
#include <cmath>

#include <gtest/gtest.h>

#include "laminate/lamina_build.h"

using lamtest::clean;
using lamtest::Lam;
using lamtest::loads;
using lamtest::near;
using lamtest::Ply;
using vantrel::ReaVecV;

namespace {

int const kMatrix = 0, kFibre = 1;

TEST(TsaiWu, SimpleFactorIsXOverSigmaCappedAt200)
{
    Ply eq = clean();
    eq.strength[2] = 1024;  // Xt = Xc
    Lam lam({eq});
    ReaVecV L = loads({-256}), tiny = loads({1});  // factors 4 and 1024
    EXPECT_TRUE(near(lam.FasTWLayer(1, L), 4.0));
    EXPECT_TRUE(near(lam.FasTW(L), 4.0));
    EXPECT_EQ(lam.FasTWLayer(1, tiny), 200.0);
    EXPECT_EQ(lam.FasTW(tiny), 200.0);
}

TEST(TsaiWu, ZeroStrengthOrStressFreeTopFaceGivesMinusOne)
{
    ReaVecV L = loads({256}), zero = loads({});
    for (int field = 0; field < 5; field++) {  // Xc, Yc, Xt, Yt, S12
        Ply p = clean();
        p.strength[field] = 0.0;
        EXPECT_EQ(Lam({p}).FasTWLayer(1, L), -1.0) << "strength field " << field;
        // The stack form stops at the first failed guard.
        EXPECT_EQ(Lam({clean(), p, clean()}).FasTW(L), -1.0) << "strength field " << field;
    }
    EXPECT_EQ(Lam({clean()}).FasTWLayer(1, zero), -1.0);
    // With E1 = 3, N1 = 3 and M1 = 0.5 cancel the top-face stress exactly
    // while mid-thickness carries sigma1 = 3.
    Ply three = clean();
    three.E1 = three.E2 = three.G12 = 3.0;
    ReaVecV T = loads({3, 0, 0, 0.5});
    EXPECT_EQ(Lam({three}).FasTWLayer(1, T), -1.0);
}

TEST(TsaiWu, CompleteCriterionAtTheWorseFace)
{
    // Xt = 2048, Xc = 1024: F11 s^2 + F1 s is 0.375 at s = -512, 0 at s = 1024.
    Lam lam({clean()});
    ReaVecV L = loads({256, 0, 0, -128}), R = loads({256, 0, 0, 128});
    EXPECT_TRUE(near(lam.FasTWcompleteLayer(1, L), 0.375));  // top 1024, bottom -512
    EXPECT_TRUE(near(lam.FasTWcompleteLayer(1, R), 0.375));  // top -512, bottom 1024
}

TEST(Hashin, FibreAndMatrixHandCases)
{
    Lam lam({clean()});
    ReaVecV L = loads({-512});  // -Xc / 2: linear in compression
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kFibre), 0.5));
    L = loads({0, -256});  // sigma2 = -Yc
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kMatrix), 1.0));
    L = loads({0, 64});  // sigma2 = Yt
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kMatrix), 1.0));
    // Fibre tension at the top face takes the bottom face's tau12.  Top:
    // sigma1 = Xt, tau12 = S12; bottom: both 0.
    L = loads({1024, 0, 32, -1024 / 6.0, 0, -32 / 6.0});
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kFibre), 1.0));
    // Top: sigma1 = Xt, tau12 = 0; bottom: Xt / 2 and S12: 1 + 1 against 0.25 + 1.
    L = loads({1536, 0, 32, -512 / 6.0, 0, 32 / 6.0});
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kFibre), 2.0));
}

// The LaRC04 ply: GIc 0.25 and GIIc 0.5 in the sixth and seventh fields.
// The references of modes 2 and 5 were worked out separately, with the
// misalignment rotation in its textbook form.
double larc(Ply const& p, ReaVecV L, int mode)
{
    return Lam({p}).FasLaRC04_layer(1, L, mode);
}

TEST(LaRC04, FibreTensionAndMatrixCompressionAroundMinusYc)
{
    Ply const p = clean(1, 0.25, 0.5);
    EXPECT_TRUE(near(larc(p, loads({512, 0, 0, 256}), 3), 1.0));  // faces 2048, -1024
    ReaVecV atYc = loads({-256, -128, 32}), beyond = loads({-512, -128, 32});
    EXPECT_TRUE(near(larc(p, atYc, 2), 0.038099654164664196));
    EXPECT_EQ(larc(p, atYc, 5), 0.0);
    EXPECT_EQ(larc(p, beyond, 2), 0.0);
    EXPECT_TRUE(near(larc(p, beyond, 5), 1.7133110862412337));
}

TEST(LaRC04, ThinPliesUseTheToughness)
{
    // t = 2^-11, tau12 = 32, pi taken as 3.14159265: mode 1 is
    // tau12 pi t / (8 GIIc) = pi / 256.
    ReaVecV shear = loads({0, 0, 32.0 / 2048});
    EXPECT_TRUE(near(larc(clean(1.0 / 2048, 0.25, 0.5), shear, 1), 3.14159265 / 256));
    // Doubling GIIc halves it while the ply is thin (up to 0.0007), not when thick.
    for (double t : {0.0007, 0.0008}) {
        ReaVecV L = loads({0, 0, 32 * t});
        double const ratio = larc(clean(t, 0.25, 0.5), L, 1) / larc(clean(t, 0.25, 1), L, 1);
        EXPECT_TRUE(near(ratio, t < 0.00075 ? 2.0 : 1.0)) << t;
    }
}

// Criterion c (complete Tsai-Wu, Hashin fibre, LaRC04 mode 3) of layer k,
// or of the whole stack for k = 0.
double criterion(int c, lamina1& m, int k, ReaVecV& L)
{
    if (c == 0) return k ? m.FasTWcompleteLayer(k, L) : m.FasTWcomplete(L);
    if (c == 1) return k ? m.FasHashinM_layer(k, L, kFibre) : m.FasHashinM(L, kFibre);
    return k ? m.FasLaRC04_layer(k, L, 3) : m.FasLaRC04(L, 3);
}

TEST(FailureCriteria, UnassessedLayersGiveTheMarkerAndStopTheStack)
{
    Ply const on = clean();
    Ply off = on, weak = on;
    off.flag = 0;
    weak.strength[0] = weak.strength[2] = 1e-4;  // far above the marker if reached
    ReaVecV L = loads({1536}), zero = loads({});
    double const pair[3] = {0.09375, 0.140625, 0.375};  // sigma1 = 768 in two plies
    for (int c = 0; c < 3; c++) {
        Lam lone({off}), fresh({on}), stopped({on, off, weak}), two({on, on});
        EXPECT_EQ(criterion(c, lone, 1, L), 1000000.0) << c;
        EXPECT_EQ(criterion(c, fresh, 1, zero), 1000000.0) << c;
        EXPECT_EQ(criterion(c, stopped, 0, L), 1000000.0) << c;
        EXPECT_TRUE(near(criterion(c, two, 0, L), pair[c])) << c;
    }
}

}  // namespace
