// Stress and strain recovery against hand solutions: a single ply under
// membrane force and bending, rotation into layer axes, transverse shear,
// a symmetric laminate under membrane loads, and the accessors.
#include <vector>

#include <gtest/gtest.h>

#include "tests/laminate/lamina_build.h"

using lamtest::loads;
using lamtest::near;
using lamtest::ply;
using vantrel::ReaVecV;

namespace {

// v == want entry by entry; scale is the size below which an entry is zero.
void expectVec(ReaVecV const& v, std::vector<double> const& want,
               double scale, double tol = 1e-12)
{
    ASSERT_EQ(v.length(), static_cast<int>(want.size()));
    for (int i = 0; i < v.length(); i++) {
        EXPECT_TRUE(near(v[i], want[i], tol, scale)) << "entry " << i + 1;
    }
}

TEST(LaminaRecovery, SinglePlyUnderMembraneForceAndBending)
{
    // Beam theory for a 0 degree ply of t = 0.2 under N1 = 0.4, M1 = 0.5:
    // uniform N/t plus -/+ 6M/t^2 at the top (z = -t/2) and bottom faces.
    double const t = 0.2, N = 0.4, M = 0.5;
    lamina1 lam;
    lamtest::define(lam, {ply(0, t)});
    ReaVecV L = loads(N, 0, 0, M, 0, 0, 0, 0);
    lam.CalcTD(1, L);
    double const ex = N / (100 * t), kx = 12 * M / (100 * t * t * t);
    expectVec(lam.membraneStrains, {ex, -0.3 * ex, 0}, ex);
    expectVec(lam.curvatures, {kx, -0.3 * kx, 0}, kx);
    double const sm = N / t, sb = 6 * M / (t * t), et = ex - t / 2 * kx;
    expectVec(lam.stressesTopLam, {sm - sb, 0, 0}, sb);
    expectVec(lam.stressesBasLam, {sm + sb, 0, 0}, sb);
    expectVec(lam.stressesLam, {sm, 0, 0}, sb);
    // Faces at mid strains -/+ (t/2) curvatures; their mean is the middle.
    expectVec(lam.strainsTop, {et, -0.3 * et, 0}, kx);
    expectVec(lam.strainsBas, {ex + t / 2 * kx, -0.3 * (ex + t / 2 * kx), 0}, kx);
    expectVec(lam.strainsLam, {ex, -0.3 * ex, 0}, kx);
}

TEST(LaminaRecovery, FortyFiveDegreePlyRotatesStressesAndEngineeringShear)
{
    // A single ply carries N/t along x; at 45 degrees the layer sees s, s, -s.
    double const t = 0.25, N = 2.0, s = N / (2 * t);
    lamina1 lam;
    lamtest::define(lam, {ply(45, t)});
    ReaVecV L = loads(N, 0, 0, 0, 0, 0, 0, 0);
    lam.CalcTD(1, L);
    expectVec(lam.stressesTopLam, {s, s, -s}, s);
    // Layer-axes strains from the ply compliance, shear as engineering
    // strain; the laminate-axes vector keeps its own engineering shear.
    double const e1 = 0.7 * s / 100, e2 = s / 10 - 0.3 * s / 100, g12 = -s / 5;
    expectVec(lam.strainsTopLam, {e1, e2, g12}, s / 10);
    expectVec(lam.strainsBas, {(e1 + e2 - g12) / 2, (e1 + e2 + g12) / 2, e1 - e2},
              s / 10);
}

TEST(LaminaRecovery, TransverseShearSwapsExactlyAtNinetyDegrees)
{
    // K's shear terms for one ply are -(5/12) t G: G13 = 4 first at 0
    // degrees, G23 = 3 first at 90.
    double const t = 0.2, w = -5.0 / 12 * t, Q1 = 1.5, Q2 = -0.5;
    ReaVecV L = loads(0, 0, 0, 0, 0, 0, Q1, Q2);
    lamina1 zero, ninety;
    lamtest::define(zero, {ply(0, t)});
    zero.CalcTD(1, L);
    expectVec(zero.shearStressesLam, {Q1 / w, Q2 / w}, 0.0);
    expectVec(zero.stressesLam, {0, 0, 0}, 0.0);
    lamtest::define(ninety, {ply(90, t)});
    ninety.CalcTD(1, L);
    double const g1 = ninety.transverseShearStrains[0];
    double const g2 = ninety.transverseShearStrains[1];
    EXPECT_TRUE(near(g1, Q1 / (3 * w)));
    expectVec(ninety.shearStressesGlob, {3 * g1, 4 * g2}, 0.0, 0.0);
    expectVec(ninety.shearStrainsLam, {g2, -g1}, 0.0, 0.0);
    expectVec(ninety.shearStressesLam, {4 * g2, -3 * g1}, 0.0, 0.0);

    // A cosine below 0.001 (89.95 degrees) counts as 90: with Q1 alone,
    // nothing reaches the first layer-axes component.
    lamina1 steep;
    lamtest::define(steep, {ply(89.95, t)});
    ReaVecV L1 = loads(0, 0, 0, 0, 0, 0, Q1, 0);
    steep.CalcTD(1, L1);
    EXPECT_EQ(steep.shearStrainsLam[0], 0.0);
    EXPECT_EQ(steep.shearStressesLam[0], 0.0);
    EXPECT_NE(steep.shearStressesLam[1], 0.0);
}

TEST(LaminaRecovery, SymmetricLaminateUnderMembraneLoadsHasNoGradient)
{
    lamina1 lam;
    lamtest::define(lam,
                    {ply(30, 0.2), ply(-45, 0.1), ply(-45, 0.1), ply(30, 0.2)});
    ReaVecV L = loads(2.0, -1.0, 0.5, 0, 0, 0, 0, 0);
    for (int k = 1; k <= 4; k++) {
        lam.CalcTD(k, L);
        for (int i = 0; i < 3; i++) {
            double const e = 1e-2, s = 10;  // sizes of the strains and stresses
            EXPECT_TRUE(near(lam.curvatures[i], 0, 1e-12, e));
            EXPECT_TRUE(near(lam.strainsTop[i], lam.membraneStrains[i], 1e-12, e));
            EXPECT_TRUE(near(lam.strainsBas[i], lam.membraneStrains[i], 1e-12, e));
            EXPECT_TRUE(near(lam.strainsTopLam[i], lam.strainsBasLam[i], 1e-12, e));
            EXPECT_TRUE(near(lam.stressesTopLam[i], lam.stressesBasLam[i], 1e-12, s));
            EXPECT_TRUE(near(lam.stressesLam[i], lam.stressesTopLam[i], 1e-12, s));
        }
    }
}

TEST(LaminaRecovery, AccessorsRecoverTheStateAfresh)
{
    lamina1 lam;
    lamtest::define(lam, {ply(0, 0.1), ply(30, 0.3), ply(-60, 0.2)});
    ReaVecV L = loads(1.0, -2.0, 0.3, 0.05, 0.02, -0.01, 0.4, -0.6);
    lam.CalcTD(2, L);
    ReaVecV const mid = lam.stressesLam, strain = lam.strainsLam;
    ReaVecV const top = lam.stressesTopLam, bas = lam.stressesBasLam;
    ReaVecV const shear = lam.shearStressesLam, gamma = lam.shearStrainsLam;
    lam.CalcTD(3, L);  // another layer in between

    struct { double (lamina1::*give)(int, ReaVecV&); double want; } const one[] = {
        {&lamina1::GiveStresses1_layer, mid[0]}, {&lamina1::GiveStresses2_layer, mid[1]},
        {&lamina1::GiveStresses3_layer, mid[2]}, {&lamina1::GiveStrains1_layer, strain[0]},
        {&lamina1::GiveStrains2_layer, strain[1]}, {&lamina1::GiveStrains3_layer, strain[2]},
        {&lamina1::GiveStressest1_layer, top[0]}, {&lamina1::GiveStressest2_layer, top[1]},
        {&lamina1::GiveStressest3_layer, top[2]}, {&lamina1::GiveStressesb1_layer, bas[0]},
        {&lamina1::GiveStressesb2_layer, bas[1]}, {&lamina1::GiveStressesb3_layer, bas[2]},
        {&lamina1::GiveShearStresses1_layer, shear[0]},
        {&lamina1::GiveShearStresses2_layer, shear[1]},
        {&lamina1::GiveShearStrains1_layer, gamma[0]},
        {&lamina1::GiveShearStrains2_layer, gamma[1]}};
    for (int i = 0; i < 16; i++) {
        EXPECT_EQ((lam.*one[i].give)(2, L), one[i].want) << "accessor " << i;
    }
    ReaVecV out, in3(3);
    lam.GiveStresses(2, L, out, 0);
    EXPECT_TRUE(out == mid);
    lam.GiveStrains(2, L, out, 0);
    EXPECT_TRUE(out == strain);
    lam.GiveStressBas(2, L, out);
    EXPECT_TRUE(out == bas);
    // Any other mode writes the transverse shear over the first two entries.
    lam.GiveStresses(2, L, in3, 1);
    expectVec(in3, {shear[0], shear[1], mid[2]}, 0.0, 0.0);
    lam.GiveStrains(2, L, in3, 1);
    expectVec(in3, {gamma[0], gamma[1], strain[2]}, 0.0, 0.0);
}

}  // namespace
