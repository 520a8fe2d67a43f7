// LaRC04 indices of the six modes.  Reference values of modes 2, 4, 5 and 6
// were worked out separately, with the misalignment rotation written in its
// textbook form (s1 sin^2 phi + s2 cos^2 phi - t12 sin 2 phi, ...).
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

// 0 degrees, zero Poisson ratio, power-of-two moduli: sigma = N / t exactly
// under membrane loads, N -/+ 6 M at the top/bottom face for t = 1,
// transverse shear stresses -2.4 Q / t.  Xc 1024, Yc 256, Xt 2048, Yt 64,
// S12 64, GIc 0.25, GIIc 0.5.
Ply cleanPly(double t = 1.0)
{
    Ply p;
    p.E1 = 131072, p.E2 = 8192, p.nu12 = 0, p.G12 = 4096, p.G13 = p.G23 = 2048, p.t = t;
    double const s[8] = {1024, 256, 2048, 64, 64, 0.25, 0.5, 0};
    std::copy(s, s + 8, p.strength);
    return p;
}

struct Lam : lamina1 {
    explicit Lam(std::vector<Ply> const& plies) { lamtest::define(*this, plies); }
};

double mode(Ply const& p, ReaVecV L, int m)
{
    return Lam({p}).FasLaRC04_layer(1, L, m);
}

TEST(LaRC04, FibreTensionIsLinearAtTheWorseFace)
{
    EXPECT_TRUE(near(mode(cleanPly(), loads(512, 0, 0, 256, 0, 0, 0, 0), 3), 1.0));  // 2048, -1024
    EXPECT_TRUE(near(mode(cleanPly(), loads(1024, 0, 0, 0, 0, 0, 0, 0), 3), 0.5));
    EXPECT_EQ(mode(cleanPly(), loads(-1024, 0, 0, 0, 0, 0, 0, 0), 3), 0.0);
}

TEST(LaRC04, MatrixCompressionSwitchesModeBelowMinusYc)
{
    ReaVecV atYc = loads(-256, -128, 32, 0, 0, 0, 0, 0);  // sigma1 = -Yc exactly
    EXPECT_TRUE(near(mode(cleanPly(), atYc, 2), 0.038099654164664196));
    EXPECT_EQ(mode(cleanPly(), atYc, 5), 0.0);
    ReaVecV beyond = loads(-512, -128, 32, 0, 0, 0, 0, 0);
    EXPECT_EQ(mode(cleanPly(), beyond, 2), 0.0);
    EXPECT_TRUE(near(mode(cleanPly(), beyond, 5), 1.7133110862412337));
}

TEST(LaRC04, MisalignmentFrameModesUnderFibreCompression)
{
    // tau_a = 64, tau_b = 32 turn the kink plane.
    double const Qa = -64 / 2.4, Qb = -32 / 2.4;
    ReaVecV closing = loads(-512, -32, 32, 0, 0, 0, Qa, Qb);  // misaligned sigma2 < 0
    EXPECT_TRUE(near(mode(cleanPly(), closing, 4), 3.4180217063437111));
    EXPECT_EQ(mode(cleanPly(), closing, 6), 0.0);
    ReaVecV opening = loads(-64, 32, 32, 0, 0, 0, Qa, Qb);  // misaligned sigma2 > 0
    EXPECT_TRUE(near(mode(cleanPly(), opening, 6), 0.85210396316250214));
    EXPECT_EQ(mode(cleanPly(), opening, 4), 0.0);
    ReaVecV crushing = loads(-512, -128, 32, 0, 0, 0, Qa, Qb);
    EXPECT_TRUE(near(mode(cleanPly(), crushing, 5), 1.2459896940141841));
}

TEST(LaRC04, ThickPlyMatrixTensionTakesTau12Unsquared)
{
    // sigma2 = 0 and W = 2 tau12: tau12 / W = 1/2 whatever tau12 and its sign.
    EXPECT_TRUE(near(mode(cleanPly(), loads(0, 0, -8, 0, 0, 0, 0, 0), 1), 0.5));
    // tau_a = 64 adds Lambda tau_a^2 / W = 2^-12 * 4096 / 64.
    ReaVecV shear = loads(0, 0, 32, 0, 0, 0, -64 / 2.4, 0);
    EXPECT_TRUE(near(mode(cleanPly(), shear, 1), 0.515625));
    Ply stiff = cleanPly();  // Lambda = 2 / E2 = 2^-17, under the floor: dropped
    stiff.E2 = 262144;
    EXPECT_TRUE(near(mode(stiff, shear, 1), 0.5));
    // Without in-plane shear the thick-ply terms divide 0 by 0.
    EXPECT_TRUE(std::isnan(mode(cleanPly(), loads(0, 32, 0, 0, 0, 0, 0, 0), 1)));
}

TEST(LaRC04, ThinPliesUseTheToughnessFields)
{
    // t = 2^-11, tau12 = 32, with pi taken as 3.14159265: the shear term of
    // mode 1 is tau12 pi t / (8 GIIc) = pi / 256; with Lambda = 2^-12 and
    // GIc = 0.25 the in-situ YTis is 4096 / sqrt(pi), and g = GIc / GIIc.
    double const pi = 3.14159265;
    Ply thin = cleanPly(1.0 / 2048), tougher = thin;
    tougher.strength[6] = 1.0;  // 13th number, GIIc
    ReaVecV shear = loads(0, 0, 32.0 / 2048, 0, 0, 0, 0, 0);
    EXPECT_TRUE(near(mode(thin, shear, 1), pi / 256));
    EXPECT_TRUE(near(mode(tougher, shear, 1), pi / 512));
    ReaVecV open = loads(0, 16.0 / 2048, 32.0 / 2048, 0, 0, 0, 0, 0);  // sigma2 = 16
    EXPECT_TRUE(near(mode(thin, open, 1), pi / 256 + 0.5 * pi / 65536 + 0.5 * std::sqrt(pi) / 256));
    ReaVecV squeezed = loads(-0.125, -0.0625, 32.0 / 2048, 0, 0, 0, 0, 0);
    EXPECT_FALSE(near(mode(tougher, squeezed, 2), mode(thin, squeezed, 2)));

    // 0.0007 still counts as thin, 0.0008 is thick.
    for (double t : {0.0007, 0.0008}) {
        Ply a = cleanPly(t), b = a;
        b.strength[6] = 1.0;
        ReaVecV L = loads(0, 0, 32 * t, 0, 0, 0, 0, 0);
        EXPECT_TRUE(near(mode(a, L, 1) / mode(b, L, 1), t < 0.00075 ? 2.0 : 1.0)) << t;
    }

    // A thick ply reads the two fields only as Tsai-Wu shear strengths.
    Ply thick = cleanPly(), thickB = thick;
    thickB.strength[5] = 0.125;
    thickB.strength[6] = 1.0;
    ReaVecV tw = loads(0, -128, 32, 0, 0, 0, -1, -1);
    EXPECT_EQ(mode(thick, tw, 2), mode(thickB, tw, 2));
    EXPECT_FALSE(near(Lam({thick}).FasTWcompleteLayer(1, tw), Lam({thickB}).FasTWcompleteLayer(1, tw)));
}

TEST(LaRC04, UnknownModesAndUnassessedLayers)
{
    ReaVecV L = loads(1536, -128, 32, 0, 0, 0, 0, 0), zero = loads(0, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_EQ(mode(cleanPly(), L, 0), 0.0);
    EXPECT_EQ(mode(cleanPly(), L, 7), 0.0);
    Ply off = cleanPly(), on = off, weak = off, half = off;
    off.flag = 0;
    weak.strength[2] = 1e-4;  // Xt: index 5e6 if it were reached
    half.strength[2] = 1024;
    EXPECT_EQ(mode(off, L, 3), 1000000.0);
    EXPECT_EQ(mode(on, zero, 3), 1000000.0);
    EXPECT_EQ(Lam({on, off, weak}).FasLaRC04(L, 3), 1000000.0);
    EXPECT_TRUE(near(Lam({on, half}).FasLaRC04(L, 3), 0.75));  // sigma1 = 768
    EXPECT_EQ(Lam({}).FasLaRC04(L, 3), 0.0);  // no layers: maximum of nothing
}

}  // namespace
