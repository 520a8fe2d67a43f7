// Layer and laminate stiffness against the closed forms of laminated-plate
// theory for simple stacks.
#include <vector>

#include <gtest/gtest.h>

#include "tests/laminate/lamina_build.h"

using lamtest::near;
using lamtest::ply;
using vantrel::Matriu;

namespace {

double const d = 0.991;  // 1 - nu12 nu21 of the test ply

// m == f * ref entry by entry, relative to the larger of each pair and of
// scale (the size below which an entry counts as zero).
void expectScaled(Matriu const& m, Matriu const& ref, double f, double scale,
                  double tol = 1e-13)
{
    ASSERT_EQ(m.size, ref.size);
    for (int i = 0; i < m.size; i++) {
        EXPECT_TRUE(near(m.data[i], f * ref.data[i], tol, scale)) << "entry " << i;
    }
}

Matriu matrix(int n, std::vector<double> const& v)
{
    Matriu m(n, n);
    for (int i = 0; i < n * n; i++) {
        m.data[i] = v[i];
    }
    return m;
}

TEST(LaminaStiffness, PlyStiffnessAtZeroAndNinetyDegrees)
{
    lamina1 lam;
    lamtest::define(lam, {ply(0, 0.2), ply(90, 0.2)});
    EXPECT_TRUE(near(lam.nu21[0], 0.03));
    expectScaled(lam.Qbar[0], matrix(3, {100 / d, 3 / d, 0, 3 / d, 10 / d, 0,
                                         0, 0, 5}), 1.0, 1.0, 1e-14);
    // cos 90 degrees is snapped, so nothing couples shear and stretch.
    expectScaled(lam.Qbar[1], matrix(3, {10 / d, 3 / d, 0, 3 / d, 100 / d, 0,
                                         0, 0, 5}), 1.0, 0.0, 1e-14);
    expectScaled(lam.Tmat[1], matrix(3, {0, 1, 0, 1, 0, 0, 0, 0, -1}), 1.0, 0.0);
}

TEST(LaminaStiffness, ShearTermsSnapSmallSinesAndCosinesHarder)
{
    // 0.05 degrees off an axis: the 8.7e-4 survives the ply stiffness but
    // not the transverse shear terms, which also use the shorter factor.
    lamina1 lam;
    lamtest::define(lam, {ply(0.05, 0.2), ply(89.95, 0.2)});
    EXPECT_EQ(lam.angleRad[0], 0.05 * 0.0174532925);
    EXPECT_NE(lam.Qbar[0](1, 3), 0.0);
    EXPECT_NE(lam.Qbar[1](1, 3), 0.0);
    for (int k = 1; k <= 2; k++) {
        lam.calcQstar(k);
        EXPECT_EQ(lam.Qstar(1, 2), 0.0);
        lam.calcQ_st(k);
        EXPECT_EQ(lam.Q_st(1, 2) * lam.Q_st(1, 1), 0.0);
    }
    lam.calcQI();
    EXPECT_EQ(lam.angleRad[0], 0.05 * 0.01745329251993889);
}

TEST(LaminaStiffness, OnePlyOfThicknessT)
{
    double const t = 0.4;
    lamina1 lam;
    lamtest::define(lam, {ply(30, t)});
    EXPECT_EQ(lam.zInterface[0], -t / 2);
    EXPECT_EQ(lam.zInterface[1], t / 2);
    Matriu const& Q = lam.Qbar[0];
    expectScaled(lam.A, Q, t, 0.0);
    expectScaled(lam.B, Q, 0.0, 0.0);
    expectScaled(lam.D, Q, t * t * t / 12, 0.0);
    // Parabolic shear weight about the mid-thickness: (5/6) t Qstar.
    expectScaled(lam.H, lam.Qstar, 5.0 / 6.0 * t, 0.0);
    // About the lower face: w = t - (t^3/4 + t^3/12) 4/t^2 = -t/3.
    lam.calcBDH();
    expectScaled(lam.H, lam.Qstar, -5.0 / 12.0 * t, 0.0);
    expectScaled(lam.B, Q, 0.0, 0.0);
    expectScaled(lam.D, Q, t * t * t / 12, 0.0);
}

TEST(LaminaStiffness, CouplingVanishesOnlyForSymmetricStacks)
{
    lamina1 sym;
    lamtest::define(sym, {ply(30, 0.2), ply(-45, 0.1), ply(90, 0.3),
                          ply(-45, 0.1), ply(30, 0.2)});
    expectScaled(sym.B, sym.A, 0.0, 100.0);
    sym.calcBDH();
    expectScaled(sym.B, sym.A, 0.0, 100.0);

    // Cross-ply 0/90 of plies t, z from -t to t: B11 = t^2/2 (Q22 - Q11).
    double const t = 0.3, b = 0.5 * t * t * (10 - 100) / d;
    Matriu const B = matrix(3, {b, 0, 0, 0, -b, 0, 0, 0, 0});
    lamina1 lam;
    lamtest::define(lam, {ply(0, t), ply(90, t)});
    expectScaled(lam.B, B, 1.0, 1.0);
    lam.calcBDH();
    expectScaled(lam.B, B, 1.0, 1.0);
}

TEST(LaminaStiffness, ShearWeightsAboutMidAndLowerFaceDiffer)
{
    // Plies t at 0 and 90 degrees: Qstar diag(4, 3) and diag(3, 4).
    double const t = 0.5;
    lamina1 lam;
    lamtest::define(lam, {ply(0, t), ply(90, t)});
    // About each mid-thickness both weights are 2t/3.
    expectScaled(lam.H, matrix(2, {7, 0, 0, 7}), 1.25 * 2 * t / 3, 0.0);
    // About the lower faces (z = -t and 0): -t/12 and 11t/12.
    lam.calcBDH();
    expectScaled(lam.H, matrix(2, {29, 0, 0, 41}), 1.25 * t / 12, 0.0);
}

TEST(LaminaStiffness, KAssemblesTheBlocksAndLeavesShearUncoupled)
{
    lamina1 lam;
    lamtest::define(lam, {ply(45, 0.2), ply(-30, 0.2)});
    lam.calcK();
    ASSERT_EQ(lam.K.size, 64);
    EXPECT_NE(lam.B(1, 3), 0.0);
    EXPECT_NE(lam.H(1, 2), 0.0);
    // [A B; B D] with B placed as it stands in both corners; the shear rows
    // hold only H(1,1) and H(2,2).
    for (int i = 1; i <= 8; i++) {
        for (int j = 1; j <= 8; j++) {
            Matriu const& blk = i <= 3 ? (j <= 3 ? lam.A : lam.B)
                                       : (j <= 3 ? lam.B : lam.D);
            double const want = (i <= 6 && j <= 6) ? blk((i - 1) % 3 + 1, (j - 1) % 3 + 1)
                                : i == j ? lam.H(i - 6, j - 6) : 0.0;
            EXPECT_EQ(lam.K(i, j), want) << i << "," << j;
        }
    }
}

}  // namespace
