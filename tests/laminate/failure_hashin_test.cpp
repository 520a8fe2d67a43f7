// Hashin failure indices in fibre and matrix mode.
#include <algorithm>

#include <gtest/gtest.h>

#include "laminate/lamina1.h"
#include "tests/laminate/lamina_build.h"

using lamtest::loads;
using lamtest::near;
using lamtest::Ply;
using vantrel::ReaVecV;

namespace {

const int kMatrix = 0, kFibre = 1;

// 0 degrees, zero Poisson ratio, power-of-two moduli, thickness 1: sigma = N
// exactly under membrane loads, N -/+ 6 M at the top/bottom face under
// moments, transverse shear stresses -2.4 Q.  Yc 256, Xt 2048, Yt 64,
// S12 64, S23 64.
Ply cleanPly(double Xc = 1024)
{
    Ply p;
    p.E1 = 131072, p.E2 = 8192, p.nu12 = 0, p.G12 = 4096, p.G13 = p.G23 = 2048, p.t = 1;
    double const s[8] = {Xc, 256, 2048, 64, 64, 64, 32, 0};
    std::copy(s, s + 8, p.strength);
    return p;
}

struct Lam : lamina1 {
    explicit Lam(std::vector<Ply> const& plies) { lamtest::define(*this, plies); }
};

TEST(Hashin, FibreModeLinearInCompressionQuadraticInTension)
{
    Lam lam({cleanPly()});
    ReaVecV L = loads(-512, 0, 0, 0, 0, 0, 0, 0);  // -Xc / 2
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kFibre), 0.5));
    EXPECT_TRUE(near(lam.FasHashinM(L, 7), 0.5));  // any nonzero mode is fibre
    L = loads(1024, 0, 0, 0, 0, 0, 0, -32 / 2.4);  // Xt / 2 and tau_b = S12 / 2
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kFibre), 0.5));
}

TEST(Hashin, FibreTensionAtBothFacesUsesTheBottomFaceShear)
{
    Lam lam({cleanPly()});
    // Top: sigma1 = Xt, tau12 = S12; bottom: both 0.  The top face's own
    // shear is ignored.
    ReaVecV L = loads(1024, 0, 32, -1024 / 6.0, 0, -32 / 6.0, 0, 0);
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kFibre), 1.0));
    // Top: sigma1 = Xt, tau12 = 0; bottom: sigma1 = Xt / 2, tau12 = S12.  The
    // top face takes the bottom's shear: 1 + 1 against 0.25 + 1.
    L = loads(1536, 0, 32, -512 / 6.0, 0, 32 / 6.0, 0, 0);
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kFibre), 2.0));
}

TEST(Hashin, MatrixModeTensionAndCompressionBranches)
{
    Lam lam({cleanPly()});
    ReaVecV L = loads(0, 64, 32, 0, 0, 0, 0, 0);  // sigma2 = Yt, tau12 = S12 / 2
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kMatrix), 1.25));
    // Compression with Yc = 256, S23 = 64: sigma2 = -Yc gives exactly 1 and
    // sigma2 = -Yc / 2 gives 0.5 - Yc^2 / (16 S23^2) = -0.5.
    L = loads(0, -256, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kMatrix), 1.0));
    L = loads(0, -128, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(near(lam.FasHashinM(L, kMatrix), -0.5));
    // Transverse shear only: (tau_a / S23)^2 + (tau_b / S12)^2.
    L = loads(0, 0, 0, 0, 0, 0, -64 / 2.4, -32 / 2.4);
    EXPECT_TRUE(near(lam.FasHashinM_layer(1, L, kMatrix), 1.25));
}

TEST(Hashin, UnassessedLayersGiveTheMarker)
{
    Ply off = cleanPly(), on = off;
    off.flag = 0;
    ReaVecV L = loads(-1536, 0, 0, 0, 0, 0, 0, 0), zero = loads(0, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_EQ(Lam({off}).FasHashinM_layer(1, L, kFibre), 1000000.0);
    EXPECT_EQ(Lam({on}).FasHashinM_layer(1, zero, kMatrix), 1000000.0);
    // Layer 3 (index 5e6 at sigma1 = -512) lies behind the unassessed layer 2.
    EXPECT_EQ(Lam({on, off, cleanPly(1e-4)}).FasHashinM(L, kFibre), 1000000.0);
    // sigma1 = -768: 0.75 and 0.375.
    EXPECT_TRUE(near(Lam({on, cleanPly(2048)}).FasHashinM(L, kFibre), 0.75));
}

}  // namespace
