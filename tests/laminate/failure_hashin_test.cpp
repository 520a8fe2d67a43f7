// Hashin failure indices in fibre and matrix mode.  The test ply (0 degrees,
// zero Poisson ratio, power-of-two moduli, thickness 1) carries sigma = N
// under membrane loads, N -/+ 6 M at its top and bottom faces under moments,
// and transverse shear stresses -2.4 Q.
#include <gtest/gtest.h>

#include "laminate/lamina1.h"
#include "tests/laminate/lamina_build.h"

using lamtest::loads;
using lamtest::near;
using lamtest::Ply;
using vantrel::ReaVecV;

namespace {

const int kMatrix = 0, kFibre = 1;

// Xc 1024, Yc 256, Xt 2048, Yt 64, S12 64, S23 64.
Ply cleanPly(double Xc = 1024)
{
    Ply p;
    p.E1 = 131072; p.E2 = 8192; p.nu12 = 0; p.G12 = 4096; p.G13 = 2048; p.G23 = 2048;
    double s[8] = {Xc, 256, 2048, 64, 64, 64, 32, 0};
    for (int i = 0; i < 8; i++) p.strength[i] = s[i];
    p.t = 1.0;
    return p;
}

TEST(Hashin, FibreModeLinearInCompressionQuadraticInTension)
{
    lamina1 lam;
    lamtest::define(lam, {cleanPly()});
    ReaVecV L = loads(-512, 0, 0, 0, 0, 0, 0, 0);  // -Xc / 2
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kFibre), 0.5));
    EXPECT_TRUE(near(lam.FasHashinM(L, 7), 0.5));  // any nonzero mode is fibre
    L = loads(1024, 0, 0, 0, 0, 0, 0, 0);  // Xt / 2
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kFibre), 0.25));
    L = loads(1024, 0, 0, 0, 0, 0, 0, -32 / 2.4);  // and tau_b = S12 / 2
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kFibre), 0.5));
}

TEST(Hashin, FibreTensionAtBothFacesUsesTheBottomFaceShear)
{
    lamina1 lam;
    lamtest::define(lam, {cleanPly()});
    // Top: sigma1 = Xt, tau12 = S12; bottom: sigma1 = 0, tau12 = 0.  The top
    // face's own shear is ignored.
    ReaVecV L = loads(1024, 0, 32, -1024 / 6.0, 0, -32 / 6.0, 0, 0);
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kFibre), 1.0, 1e-12, 1.0));
    // Top: sigma1 = Xt, tau12 = 0; bottom: sigma1 = Xt / 2, tau12 = S12.  The
    // top face takes the bottom's shear: 1 + 1 against 0.25 + 1.
    L = loads(1536, 0, 32, -512 / 6.0, 0, 32 / 6.0, 0, 0);
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kFibre), 2.0));
    EXPECT_TRUE(near(lam.FasHashinM(L, kFibre), 2.0));
}

TEST(Hashin, MatrixModeTensionAndCompressionBranches)
{
    lamina1 lam;
    lamtest::define(lam, {cleanPly()});
    ReaVecV L = loads(0, 64, 0, 0, 0, 0, 0, 0);  // sigma2 = Yt
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kMatrix), 1.0));
    L = loads(0, 64, 32, 0, 0, 0, 0, 0);  // and tau12 = S12 / 2
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kMatrix), 1.25));
    // In compression (Yc = 256, S23 = 64) sigma2 = -Yc gives exactly 1 and
    // sigma2 = -Yc/2 gives 0.5 - Yc^2 / (16 S23^2) = -0.5.
    L = loads(0, -256, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kMatrix), 1.0));
    L = loads(0, -128, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kMatrix), -0.5));
    // Transverse shear only: (tau_a / S23)^2 + tau_b^2 / S12^2.
    L = loads(0, 0, 0, 0, 0, 0, -64 / 2.4, -32 / 2.4);
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kMatrix), 1.25));
    // Top sigma2 = Yt, bottom 0: the worse face is the top.
    L = loads(0, 32, 0, 0, -32 / 6.0, 0, 0, 0);
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kMatrix), 1.0, 1e-12, 1.0));
}

TEST(Hashin, UnassessedLayersGiveTheMarker)
{
    Ply off = cleanPly();
    off.flag = 0;
    lamina1 lam;
    lamtest::define(lam, {off});
    ReaVecV L = loads(-512, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_EQ(lam.FasHashinM_layer(1, L, kFibre), 1000000.0);
    EXPECT_EQ(lam.FasHashinM(L, kMatrix), 1000000.0);

    lamina1 on;
    lamtest::define(on, {cleanPly()});
    ReaVecV zero = loads(0, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_EQ(on.FasHashinM_layer(1, zero, kFibre), 1000000.0);
    ReaVecV M = loads(0, 0, 0, 16, 0, 0, 0, 0);  // faces stressed, middle not
    EXPECT_EQ(on.FasHashinM(M, kFibre), 1000000.0);

    // Layer 3 (Xc = 1e-4, index 5e6) lies behind the unassessed layer 2.
    lamina1 three;
    lamtest::define(three, {cleanPly(), off, cleanPly(1e-4)});
    L = loads(-1536, 0, 0, 0, 0, 0, 0, 0);  // sigma1 = -512 in every ply
    EXPECT_EQ(three.FasHashinM(L, kFibre), 1000000.0);
    lamina1 two;
    lamtest::define(two, {cleanPly(), cleanPly(2048)});
    L = loads(-1024, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(near(two.FasHashinM(L, kFibre), 0.5));
}

}  // namespace
