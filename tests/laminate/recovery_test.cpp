// Stress and strain recovery against hand solutions: a single ply under
// membrane force and bending moment, rotations into layer axes, transverse
// shear, symmetric laminates under membrane loads, and the accessors.
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "laminate/lamina1.h"
#include "tests/laminate/lamina_build.h"

using lamtest::loads;
using lamtest::near;
using lamtest::ply;
using vantrel::ReaVecV;

namespace {

void expectVec(ReaVecV const& v, std::vector<double> const& want, double tol,
               double scale)
{
    ASSERT_EQ(v.length(), static_cast<int>(want.size()));
    for (int i = 0; i < v.length(); i++) {
        EXPECT_TRUE(near(v[i], want[i], tol, scale)) << "entry " << i + 1;
    }
}

void expectSameVec(ReaVecV const& a, ReaVecV const& b, double tol, double scale)
{
    ASSERT_EQ(a.length(), b.length());
    for (int i = 0; i < a.length(); i++) {
        EXPECT_TRUE(near(a[i], b[i], tol, scale)) << "entry " << i + 1;
    }
}

double maxAbs(ReaVecV const& v)
{
    double m = 0.0;
    for (int i = 0; i < v.length(); i++) {
        m = std::fmax(m, std::fabs(v[i]));
    }
    return m;
}

TEST(LaminaRecovery, SinglePlyUnderMembraneForce)
{
    double const t = 0.2, N = 3.0;
    lamina1 lam;
    lamtest::define(lam, {ply(0, t)});
    ReaVecV L = loads(N, 0, 0, 0, 0, 0, 0, 0);
    lam.CalcTD(1, L);
    double const ex = N / (t * 100), ey = -0.3 * N / (t * 100);
    expectVec(lam.membraneStrains, {ex, ey, 0}, 1e-12, ex);
    expectVec(lam.curvatures, {0, 0, 0}, 1e-12, ex / t);
    expectVec(lam.transverseShearStrains, {0, 0}, 0, 1);
    // The whole ply carries N / t.
    expectVec(lam.stressesTop, {N / t, 0, 0}, 1e-12, N / t);
    expectVec(lam.stressesBasLam, {N / t, 0, 0}, 1e-12, N / t);
    expectVec(lam.stressesLam, {N / t, 0, 0}, 1e-12, N / t);
    expectVec(lam.strainsLam, {ex, ey, 0}, 1e-12, ex);

    // Turned to 90 degrees the same load runs across the fibres.
    lamina1 cross;
    lamtest::define(cross, {ply(90, t)});
    cross.CalcTD(1, L);
    double const ex90 = N / (t * 10);
    expectVec(cross.strainsTop, {ex90, -0.03 * ex90, 0}, 1e-12, ex90);
    expectVec(cross.stressesTopLam, {0, N / t, 0}, 1e-12, N / t);
    expectVec(cross.strainsLam, {-0.03 * ex90, ex90, 0}, 1e-12, ex90);
}

TEST(LaminaRecovery, FortyFiveDegreePlyRotatesStressesAndEngineeringShear)
{
    double const t = 0.25, N = 2.0;
    lamina1 lam;
    lamtest::define(lam, {ply(45, t)});
    ReaVecV L = loads(N, 0, 0, 0, 0, 0, 0, 0);
    lam.CalcTD(1, L);
    double const s = N / (2 * t);
    expectVec(lam.stressesTop, {N / t, 0, 0}, 1e-12, N / t);
    expectVec(lam.stressesTopLam, {s, s, -s}, 1e-12, s);
    expectVec(lam.stressesBasLam, {s, s, -s}, 1e-12, s);
    // Layer-axes strains from the ply compliance; the shear comes back as
    // an engineering strain, and the laminate-axes vector keeps its own.
    double const e1 = s / 100 - 0.3 * s / 100;
    double const e2 = s / 10 - 0.3 * s / 100;
    double const g12 = -s / 5;
    expectVec(lam.strainsTopLam, {e1, e2, g12}, 1e-12, s / 10);
    expectVec(lam.strainsBasLam, {e1, e2, g12}, 1e-12, s / 10);
    expectVec(lam.strainsLam, {e1, e2, g12}, 1e-12, s / 10);
    // Back in laminate axes: ex = (e1 + e2)/2 - g12/2, gxy = e1 - e2.
    expectVec(lam.strainsTop,
              {(e1 + e2) / 2 - g12 / 2, (e1 + e2) / 2 + g12 / 2, e1 - e2},
              1e-12, s / 10);
}

TEST(LaminaRecovery, SinglePlyUnderBendingFacesAreMidStrainsMinusPlusHalfT)
{
    double const t = 0.2, M = 0.5;
    lamina1 lam;
    lamtest::define(lam, {ply(0, t)});
    ReaVecV L = loads(0.4, 0, 0, M, 0, 0, 0, 0);
    lam.CalcTD(1, L);
    // Beam theory: kx = 12 M / (E1 t^3); the top face (layer 1, z = -t/2)
    // is compressed, sigma = -6 M / t^2 on top of the membrane stress.
    double const kx = 12 * M / (100 * t * t * t);
    expectVec(lam.curvatures, {kx, -0.3 * kx, 0}, 1e-12, kx);
    double const sb = 6 * M / (t * t), sm = 0.4 / t;
    expectVec(lam.stressesTopLam, {sm - sb, 0, 0}, 1e-12, sb);
    expectVec(lam.stressesBasLam, {sm + sb, 0, 0}, 1e-12, sb);
    expectVec(lam.stressesLam, {sm, 0, 0}, 1e-12, sb);
    for (int i = 0; i < 3; i++) {
        double const mid = lam.membraneStrains[i];
        double const half = t / 2 * lam.curvatures[i];
        EXPECT_TRUE(near(lam.strainsTop[i], mid - half, 1e-14, kx * t));
        EXPECT_TRUE(near(lam.strainsBas[i], mid + half, 1e-14, kx * t));
        EXPECT_TRUE(near(lam.strainsLam[i], mid, 1e-14, kx * t));
    }
}

TEST(LaminaRecovery, TransverseShearAtZeroAndNinetyDegrees)
{
    double const t = 0.2, Q1 = 1.5, Q2 = -0.5;
    ReaVecV L = loads(0, 0, 0, 0, 0, 0, Q1, Q2);
    // Under K's shear terms (-5/12 t G per direction, G13 = 4, G23 = 3).
    double const w = -5.0 / 12 * t;

    lamina1 zero;
    lamtest::define(zero, {ply(0, t)});
    zero.CalcTD(1, L);
    double const g1 = Q1 / (w * 4), g2 = Q2 / (w * 3);
    expectVec(zero.transverseShearStrains, {g1, g2}, 1e-12, 1e-300);
    expectVec(zero.shearStressesGlob, {Q1 / w, Q2 / w}, 1e-12, 1e-300);
    expectVec(zero.shearStressesLam, {Q1 / w, Q2 / w}, 1e-12, 1e-300);
    expectVec(zero.shearStrainsLam, {g1, g2}, 1e-12, 1e-300);
    expectVec(zero.stressesLam, {0, 0, 0}, 0, 1);

    // At 90 degrees the two directions swap exactly, with no residue.
    lamina1 ninety;
    lamtest::define(ninety, {ply(90, t)});
    ninety.CalcTD(1, L);
    double const h1 = ninety.transverseShearStrains[0];
    double const h2 = ninety.transverseShearStrains[1];
    EXPECT_TRUE(near(h1, Q1 / (w * 3)));
    EXPECT_TRUE(near(h2, Q2 / (w * 4)));
    EXPECT_EQ(ninety.shearStrainsLam[0], h2);
    EXPECT_EQ(ninety.shearStrainsLam[1], -h1);
    EXPECT_EQ(ninety.shearStressesLam[0], 4 * h2);
    EXPECT_EQ(ninety.shearStressesLam[1], -3 * h1);

    // Within 0.05 degrees of 90 the cosine is dropped: only Q1 loads the ply,
    // and nothing of it reaches the first layer-axes component.
    lamina1 near90;
    lamtest::define(near90, {ply(89.95, t)});
    ReaVecV Lq1 = loads(0, 0, 0, 0, 0, 0, Q1, 0);
    near90.CalcTD(1, Lq1);
    EXPECT_NE(near90.transverseShearStrains[0], 0.0);
    EXPECT_EQ(near90.shearStrainsLam[0], 0.0);
    EXPECT_EQ(near90.shearStressesLam[0], 0.0);
    EXPECT_NE(near90.shearStressesLam[1], 0.0);
    EXPECT_EQ(near90.shearStressesGlob[1], 0.0);
}

TEST(LaminaRecovery, SymmetricLaminateUnderMembraneLoadsHasNoGradient)
{
    lamina1 lam;
    lamtest::define(lam, {ply(30), ply(-45, 0.1), ply(-45, 0.1), ply(30)});
    ReaVecV L = loads(2.0, -1.0, 0.5, 0, 0, 0, 0, 0);
    for (int k = 1; k <= 4; k++) {
        SCOPED_TRACE(k);
        lam.CalcTD(k, L);
        double const e = maxAbs(lam.membraneStrains);
        double const s = maxAbs(lam.stressesTopLam);
        expectVec(lam.curvatures, {0, 0, 0}, 1e-12, e);
        expectSameVec(lam.strainsTop, lam.strainsBas, 1e-12, e);
        expectSameVec(lam.strainsTop, lam.membraneStrains, 1e-12, e);
        expectSameVec(lam.strainsTopLam, lam.strainsBasLam, 1e-12, e);
        expectSameVec(lam.strainsLam, lam.strainsTopLam, 1e-12, e);
        expectSameVec(lam.stressesTopLam, lam.stressesBasLam, 1e-12, s);
        expectSameVec(lam.stressesLam, lam.stressesBasLam, 1e-12, s);
    }
}

TEST(LaminaRecovery, StrainsSolveTheStiffnessAndAreContinuousAcrossLayers)
{
    lamina1 lam;
    lamtest::define(lam, {ply(0, 0.1), ply(45, 0.3), ply(90, 0.2)});
    ReaVecV L = loads(1.0, -2.0, 0.3, 0.05, 0.02, -0.01, 0.4, -0.6);
    lam.CalcTD(2, L);
    // K times the recovered generalized strains gives the loads back.
    for (int i = 1; i <= 8; i++) {
        double sum = 0.0;
        for (int j = 1; j <= 8; j++) {
            sum += lam.K(i, j) * lam.generalizedStrains[j - 1];
        }
        EXPECT_TRUE(near(sum, L[i - 1], 1e-10)) << "row " << i;
    }
    // Layer 2 runs from z = -0.2 to z = 0.1 (total 0.6, centred).
    ReaVecV const top = lam.strainsTop;
    ReaVecV const bas = lam.strainsBas;
    double const scale = std::fabs(lam.curvatures[0]) * 0.3;
    for (int i = 0; i < 3; i++) {
        EXPECT_TRUE(near(top[i],
                         lam.membraneStrains[i] - 0.2 * lam.curvatures[i],
                         1e-12, scale));
        EXPECT_TRUE(near(bas[i],
                         lam.membraneStrains[i] + 0.1 * lam.curvatures[i],
                         1e-12, scale));
    }
    lam.CalcTD(1, L);
    expectSameVec(lam.strainsBas, top, 1e-12, scale);
    lam.CalcTD(3, L);
    expectSameVec(lam.strainsTop, bas, 1e-12, scale);
}

TEST(LaminaRecovery, AccessorsReportTheRecoveredState)
{
    lamina1 lam;
    lamtest::define(lam, {ply(0, 0.1), ply(30, 0.3), ply(-60, 0.2)});
    ReaVecV L = loads(1.0, -2.0, 0.3, 0.05, 0.02, -0.01, 0.4, -0.6);
    int const k = 2;
    lam.CalcTD(k, L);
    ReaVecV const top = lam.stressesTopLam, bas = lam.stressesBasLam;
    ReaVecV const mid = lam.stressesLam, strain = lam.strainsLam;
    ReaVecV const shear = lam.shearStressesLam, gamma = lam.shearStrainsLam;
    // Recover another layer in between: every accessor starts afresh.
    lam.CalcTD(3, L);

    ReaVecV out;
    lam.GiveStresses(k, L, out, 0);
    expectSameVec(out, mid, 0, 1e-300);
    lam.GiveStrains(k, L, out, 0);
    expectSameVec(out, strain, 0, 1e-300);
    lam.GiveStressTop(k, L, out);
    expectSameVec(out, top, 0, 1e-300);
    lam.GiveStressBas(k, L, out);
    expectSameVec(out, bas, 0, 1e-300);
    ReaVecV in3(3);
    lam.GiveStresses(k, L, in3, 1);
    expectVec(in3, {shear[0], shear[1], mid[2]}, 0, 1e-300);
    lam.GiveStrains(k, L, in3, 1);
    expectVec(in3, {gamma[0], gamma[1], strain[2]}, 0, 1e-300);

    EXPECT_EQ(lam.GiveStresses1_layer(k, L), mid[0]);
    EXPECT_EQ(lam.GiveStresses2_layer(k, L), mid[1]);
    EXPECT_EQ(lam.GiveStresses3_layer(k, L), mid[2]);
    EXPECT_EQ(lam.GiveStrains1_layer(k, L), strain[0]);
    EXPECT_EQ(lam.GiveStrains2_layer(k, L), strain[1]);
    EXPECT_EQ(lam.GiveStrains3_layer(k, L), strain[2]);
    EXPECT_EQ(lam.GiveStressest1_layer(k, L), top[0]);
    EXPECT_EQ(lam.GiveStressest2_layer(k, L), top[1]);
    EXPECT_EQ(lam.GiveStressest3_layer(k, L), top[2]);
    EXPECT_EQ(lam.GiveStressesb1_layer(k, L), bas[0]);
    EXPECT_EQ(lam.GiveStressesb2_layer(k, L), bas[1]);
    EXPECT_EQ(lam.GiveStressesb3_layer(k, L), bas[2]);
    EXPECT_EQ(lam.GiveShearStresses1_layer(k, L), shear[0]);
    EXPECT_EQ(lam.GiveShearStresses2_layer(k, L), shear[1]);
    EXPECT_EQ(lam.GiveShearStrains1_layer(k, L), gamma[0]);
    EXPECT_EQ(lam.GiveShearStrains2_layer(k, L), gamma[1]);
}

TEST(LaminaRecovery, ParsedModelBuildsItsStiffnessOnFirstNeed)
{
    std::vector<lamtest::Ply> const stack = {ply(15), ply(-75, 0.3)};
    ReaVecV L = loads(1.0, 0.5, 0, 0.01, 0, 0, 0.2, 0.1);
    lamina1 defined;
    lamtest::define(defined, stack);
    defined.CalcTD(2, L);

    lamina1 parsed;
    ASSERT_EQ(lamtest::parse(parsed, lamtest::record(stack)), 0);
    ASSERT_EQ(parsed.Qbar, nullptr);
    parsed.CalcTD(2, L);
    expectSameVec(parsed.stressesTopLam, defined.stressesTopLam, 0, 1e-300);
    expectSameVec(parsed.strainsBasLam, defined.strainsBasLam, 0, 1e-300);
    expectSameVec(parsed.shearStressesLam, defined.shearStressesLam, 0, 1e-300);
}

}  // namespace
