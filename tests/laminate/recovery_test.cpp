// Stress and strain recovery against hand solutions: a single ply under
// membrane force and bending, and a symmetric laminate under membrane loads.
#include <vector>

#include <gtest/gtest.h>

#include "laminate/lamina_build.h"

using lamtest::near;
using vantrel::ReaVecV;

namespace {

// v == want entry by entry; scale is the size below which an entry is zero.
void expectVec(ReaVecV const& v, std::vector<double> const& want, double scale)
{
    ASSERT_EQ(v.length(), static_cast<int>(want.size()));
    for (int i = 0; i < v.length(); i++) {
        EXPECT_TRUE(near(v[i], want[i], 1e-12, scale)) << "entry " << i + 1;
    }
}

TEST(LaminaRecovery, SinglePlyUnderMembraneForceAndBending)
{
    // Beam theory for a 0 degree ply of t = 0.2 under N1 = 0.4, M1 = 0.5:
    // uniform N/t plus -/+ 6M/t^2 at the top (z = -t/2) and bottom faces.
    double const t = 0.2, N = 0.4, M = 0.5;
    lamtest::Lam lam({lamtest::ply(0, t)});
    ReaVecV L = lamtest::loads({N, 0, 0, M});
    lam.CalcTD(1, L);
    double const ex = N / (100 * t), kx = 12 * M / (100 * t * t * t);
    expectVec(lam.membraneStrains, {ex, -0.3 * ex, 0}, ex);
    expectVec(lam.curvatures, {kx, -0.3 * kx, 0}, kx);
    double const sm = N / t, sb = 6 * M / (t * t);
    expectVec(lam.stressesTopLam, {sm - sb, 0, 0}, sb);
    expectVec(lam.stressesBasLam, {sm + sb, 0, 0}, sb);
    // Faces at mid strains -/+ (t/2) curvatures.
    double const et = ex - t / 2 * kx, eb = ex + t / 2 * kx;
    expectVec(lam.strainsTop, {et, -0.3 * et, 0}, kx);
    expectVec(lam.strainsBas, {eb, -0.3 * eb, 0}, kx);
}

TEST(LaminaRecovery, SymmetricLaminateUnderMembraneLoadsHasNoGradient)
{
    lamtest::Lam lam({lamtest::ply(30, 0.2), lamtest::ply(-45, 0.1),
                      lamtest::ply(-45, 0.1), lamtest::ply(30, 0.2)});
    ReaVecV L = lamtest::loads({2.0, -1.0, 0.5});
    double const e = 1e-2, s = 10;  // sizes of the strains and stresses
    for (int k = 1; k <= 4; k++) {
        lam.CalcTD(k, L);
        for (int i = 0; i < 3; i++) {
            EXPECT_TRUE(near(lam.curvatures[i], 0, 1e-12, e));
            EXPECT_TRUE(near(lam.strainsTop[i], lam.membraneStrains[i], 1e-12, e));
            EXPECT_TRUE(near(lam.strainsBas[i], lam.membraneStrains[i], 1e-12, e));
            EXPECT_TRUE(near(lam.stressesTopLam[i], lam.stressesBasLam[i], 1e-12, s));
        }
    }
}

}  // namespace
