// Layer and laminate stiffness against the closed forms of laminated-plate
// theory: ply stiffness and its rotation, the A, B, D and H matrices of simple
// stacks, and the assembled K.
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "laminate/lamina1.h"
#include "tests/laminate/lamina_build.h"

using lamtest::near;
using lamtest::OnAxis;
using lamtest::Ply;
using lamtest::ply;
using vantrel::Matriu;

namespace {

double const kPi = 3.14159265358979323846;

void expectMatrix(Matriu const& m, double const (&want)[3][3], double tol,
                  double scale)
{
    ASSERT_EQ(m.nrows, 3);
    ASSERT_EQ(m.ncols, 3);
    for (int i = 1; i <= 3; i++) {
        for (int j = 1; j <= 3; j++) {
            EXPECT_TRUE(near(m(i, j), want[i - 1][j - 1], tol, scale))
                << "(" << i << "," << j << ")";
        }
    }
}

// Every entry of m equals f times the same entry of ref.
void expectScaled(Matriu const& m, Matriu const& ref, double f, double tol)
{
    ASSERT_EQ(m.nrows, ref.nrows);
    ASSERT_EQ(m.ncols, ref.ncols);
    for (int i = 1; i <= m.nrows; i++) {
        for (int j = 1; j <= m.ncols; j++) {
            EXPECT_TRUE(near(m(i, j), f * ref(i, j), tol, 1e-300))
                << "(" << i << "," << j << ")";
        }
    }
}

TEST(LaminaStiffness, ZeroDegreePlyHasThePlyStiffness)
{
    lamina1 lam;
    lamtest::define(lam, {ply(0)});
    EXPECT_TRUE(near(lam.nu21[0], 0.03));
    double const d = 0.991;
    double const want[3][3] = {
        {100 / d, 3 / d, 0}, {3 / d, 10 / d, 0}, {0, 0, 5}};
    expectMatrix(lam.Qbar[0], want, 1e-14, 1.0);
    double const eye[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    expectMatrix(lam.Tmat[0], eye, 0.0, 1.0);

    // The per-layer arrays are made once and then reused.
    Matriu* const kept = lam.Qbar;
    lam.calcQI();
    EXPECT_EQ(lam.Qbar, kept);
    expectMatrix(lam.Qbar[0], want, 1e-14, 1.0);
}

TEST(LaminaStiffness, NinetyDegreesSnapsTheCosineToZero)
{
    lamina1 lam;
    lamtest::define(lam, {ply(90)});
    Matriu const& Q = lam.Qbar[0];
    double const d = 0.991;
    EXPECT_TRUE(near(Q(1, 1), 10 / d, 1e-14));
    EXPECT_TRUE(near(Q(2, 2), 100 / d, 1e-14));
    EXPECT_TRUE(near(Q(1, 2), 3 / d, 1e-14));
    EXPECT_EQ(Q(1, 3), 0.0);
    EXPECT_EQ(Q(2, 3), 0.0);
    EXPECT_EQ(Q(3, 1), 0.0);
    EXPECT_EQ(Q(3, 2), 0.0);
    double const swap[3][3] = {{0, 1, 0}, {1, 0, 0}, {0, 0, -1}};
    expectMatrix(lam.Tmat[0], swap, 0.0, 1.0);

    // Transverse shear at 90 degrees: the moduli swap and nothing couples.
    lam.calcQstar(1);
    EXPECT_TRUE(near(lam.Qstar(1, 1), 3.0));
    EXPECT_TRUE(near(lam.Qstar(2, 2), 4.0));
    EXPECT_EQ(lam.Qstar(1, 2), 0.0);
    EXPECT_EQ(lam.Qstar(2, 1), 0.0);
    lam.calcQ_st(1);
    EXPECT_EQ(lam.Q_st(1, 1), 0.0);
    EXPECT_TRUE(near(lam.Q_st(1, 2), 4.0));
    EXPECT_TRUE(near(lam.Q_st(2, 1), -3.0));
    EXPECT_EQ(lam.Q_st(2, 2), 0.0);
}

TEST(LaminaStiffness, OffAxisPlyFollowsTheRotationFormulas)
{
    for (double angle : {30.0, -60.0, 45.0, 112.5}) {
        SCOPED_TRACE(angle);
        lamina1 lam;
        Ply p = ply(angle);
        lamtest::define(lam, {p});
        OnAxis const q(p);
        double const c = std::cos(angle * kPi / 180);
        double const s = std::sin(angle * kPi / 180);
        double const c2 = c * c, s2 = s * s;
        double const q11 = q.Q11 * c2 * c2 + 2 * (q.Q12 + 2 * q.Q66) * s2 * c2
                           + q.Q22 * s2 * s2;
        double const q22 = q.Q11 * s2 * s2 + 2 * (q.Q12 + 2 * q.Q66) * s2 * c2
                           + q.Q22 * c2 * c2;
        double const q12 = (q.Q11 + q.Q22 - 4 * q.Q66) * s2 * c2
                           + q.Q12 * (s2 * s2 + c2 * c2);
        double const q16 = (q.Q11 - q.Q12 - 2 * q.Q66) * c2 * c * s
                           + (q.Q12 - q.Q22 + 2 * q.Q66) * c * s2 * s;
        double const q26 = (q.Q11 - q.Q12 - 2 * q.Q66) * c * s2 * s
                           + (q.Q12 - q.Q22 + 2 * q.Q66) * c2 * c * s;
        double const q66 = (q.Q11 + q.Q22 - 2 * q.Q12 - 2 * q.Q66) * s2 * c2
                           + q.Q66 * (s2 * s2 + c2 * c2);
        double const want[3][3] = {
            {q11, q12, q16}, {q12, q22, q26}, {q16, q26, q66}};
        expectMatrix(lam.Qbar[0], want, 1e-9, q.Q11);

        // Transverse shear stiffness rotates the two shear moduli (its
        // shortened degree factor is about 1e-9 off).
        lam.calcQstar(1);
        EXPECT_TRUE(near(lam.Qstar(1, 1), p.G23 * s2 + p.G13 * c2, 1e-7));
        EXPECT_TRUE(near(lam.Qstar(2, 2), p.G23 * c2 + p.G13 * s2, 1e-7));
        EXPECT_TRUE(near(lam.Qstar(1, 2), c * s * (p.G23 - p.G13), 1e-7));
        EXPECT_EQ(lam.Qstar(1, 2), lam.Qstar(2, 1));
    }
}

TEST(LaminaStiffness, TheTwoDegreeFactorsAndSnapThresholds)
{
    // At 0.05 degrees the sine (8.7e-4) survives the fine snap of the ply
    // stiffness but not the coarse one of the transverse shear terms.
    lamina1 lam;
    lamtest::define(lam, {ply(0.05)});
    EXPECT_EQ(lam.angleRad[0], 0.05 * 0.0174532925);  // calcH ran last
    lam.calcQI();
    EXPECT_EQ(lam.angleRad[0], 0.05 * 0.01745329251993889);
    EXPECT_NE(lam.Tmat[0](1, 3), 0.0);
    EXPECT_NE(lam.Qbar[0](1, 3), 0.0);
    lam.calcQstar(1);
    EXPECT_EQ(lam.angleRad[0], 0.05 * 0.0174532925);
    EXPECT_EQ(lam.Qstar(1, 2), 0.0);
    lam.calcQ_st(1);
    EXPECT_EQ(lam.Q_st(1, 2), 0.0);
    EXPECT_EQ(lam.Q_st(2, 1), 0.0);

    // The same for the cosine near 90 degrees.
    lamina1 steep;
    lamtest::define(steep, {ply(89.95)});
    steep.calcQI();
    EXPECT_NE(steep.Tmat[0](1, 1), 0.0);
    EXPECT_NE(steep.Qbar[0](1, 3), 0.0);
    steep.calcQstar(1);
    EXPECT_EQ(steep.Qstar(1, 2), 0.0);
    steep.calcQ_st(1);
    EXPECT_EQ(steep.Q_st(1, 1), 0.0);
    EXPECT_EQ(steep.Q_st(2, 2), 0.0);
}

TEST(LaminaStiffness, InterfacesAreCentredOnMidThickness)
{
    lamina1 lam;
    lamtest::define(lam, {ply(0, 1.0), ply(0, 2.0), ply(0, 3.0)});
    EXPECT_EQ(lam.totalThickness, 6.0);
    double const z[] = {-3, -2, 0, 3};
    double const mid[] = {-2.5, -1, 1.5, 0};
    ASSERT_EQ(lam.zInterface.length(), 4);
    ASSERT_EQ(lam.zMid.length(), 4);
    for (int k = 0; k < 4; k++) {
        EXPECT_EQ(lam.zInterface[k], z[k]) << k;
        EXPECT_EQ(lam.zMid[k], mid[k]) << k;
    }
    // Same material in all layers: A is the total thickness times the ply.
    expectScaled(lam.A, lam.Qbar[0], 6.0, 1e-14);
}

TEST(LaminaStiffness, OnePlyOfThicknessT)
{
    double const t = 0.4;
    lamina1 lam;
    lamtest::define(lam, {ply(30, t)});
    Matriu const& Q = lam.Qbar[0];
    expectScaled(lam.A, Q, t, 1e-14);
    expectScaled(lam.D, Q, t * t * t / 12, 1e-13);
    for (int i = 0; i < 9; i++) {
        EXPECT_TRUE(near(lam.B.data[i], 0.0, 1e-15, Q(1, 1) * t * t));
    }
    // Parabolic shear weight about the mid-thickness: H = (5/6) t Qstar.
    Matriu const calcHForm = lam.H;
    expectScaled(calcHForm, lam.Qstar, 5.0 / 6.0 * t, 1e-14);

    // About the lower face instead: w = t - (t^3/4 + t^3/12) 4/t^2 = -t/3.
    lam.calcBDH();
    expectScaled(lam.H, lam.Qstar, -5.0 / 12.0 * t, 1e-13);
    expectScaled(lam.D, Q, t * t * t / 12, 1e-13);
    for (int i = 0; i < 9; i++) {
        EXPECT_TRUE(near(lam.B.data[i], 0.0, 1e-15, Q(1, 1) * t * t));
    }
}

TEST(LaminaStiffness, CouplingVanishesOnlyForSymmetricStacks)
{
    for (std::vector<Ply> stack :
         {std::vector<Ply>{ply(0, 0.25), ply(90, 0.5), ply(0, 0.25)},
          std::vector<Ply>{ply(30), ply(-45), ply(-45), ply(30)}}) {
        lamina1 lam;
        lamtest::define(lam, stack);
        double const scale = lam.A(1, 1) * lam.totalThickness;
        for (int i = 0; i < 9; i++) {
            EXPECT_TRUE(near(lam.B.data[i], 0.0, 1e-14, scale)) << i;
        }
        lam.calcBDH();
        for (int i = 0; i < 9; i++) {
            EXPECT_TRUE(near(lam.B.data[i], 0.0, 1e-14, scale)) << i;
        }
    }

    // Cross-ply 0/90, each ply t: z from -t to 0 and from 0 to t.
    double const t = 0.3;
    Ply const p = ply(0, t);
    OnAxis const q(p);
    lamina1 lam;
    lamtest::define(lam, {ply(0, t), ply(90, t)});
    double const b11 = 0.5 * t * t * (q.Q22 - q.Q11);
    double const wantB[3][3] = {{b11, 0, 0}, {0, -b11, 0}, {0, 0, 0}};
    expectMatrix(lam.B, wantB, 1e-13, q.Q11 * t * t);
    double const a11 = t * (q.Q11 + q.Q22);
    double const wantA[3][3] = {
        {a11, 2 * t * q.Q12, 0}, {2 * t * q.Q12, a11, 0}, {0, 0, 2 * t * q.Q66}};
    expectMatrix(lam.A, wantA, 1e-14, q.Q11 * t);
    double const t3 = t * t * t / 3;
    double const wantD[3][3] = {{t3 * (q.Q11 + q.Q22), 2 * t3 * q.Q12, 0},
                                {2 * t3 * q.Q12, t3 * (q.Q11 + q.Q22), 0},
                                {0, 0, 2 * t3 * q.Q66}};
    expectMatrix(lam.D, wantD, 1e-13, q.Q11 * t3);
    // The combined pass gives the same coupling and bending.
    lam.calcBDH();
    expectMatrix(lam.B, wantB, 1e-13, q.Q11 * t * t);
    expectMatrix(lam.D, wantD, 1e-13, q.Q11 * t3);
}

TEST(LaminaStiffness, ShearStiffnessWeightsDifferBetweenTheTwoForms)
{
    // Two plies of thickness t at 0 and 90 degrees: Qstar is diag(4, 3) and
    // diag(3, 4).
    double const t = 0.5;
    lamina1 lam;
    lamtest::define(lam, {ply(0, t), ply(90, t)});
    // Mid-thickness weights: both plies t - (t^3/4 + t^3/12) 4/(4t^2) = 2t/3.
    EXPECT_TRUE(near(lam.H(1, 1), 1.25 * 2 * t / 3 * (4 + 3)));
    EXPECT_TRUE(near(lam.H(2, 2), 1.25 * 2 * t / 3 * (3 + 4)));
    EXPECT_EQ(lam.H(1, 2), 0.0);
    // Lower-face weights: -t/12 for the ply at z = -t, 11t/12 for z = 0.
    lam.calcBDH();
    EXPECT_TRUE(near(lam.H(1, 1), 1.25 * t * (-4.0 + 11 * 3.0) / 12));
    EXPECT_TRUE(near(lam.H(2, 2), 1.25 * t * (-3.0 + 11 * 4.0) / 12));
}

TEST(LaminaStiffness, KAssemblesTheBlocksAndLeavesShearUncoupled)
{
    double const t = 0.2;
    lamina1 lam;
    lamtest::define(lam, {ply(45, t), ply(-30, t)});
    lam.calcK();
    ASSERT_EQ(lam.K.nrows, 8);
    ASSERT_EQ(lam.K.ncols, 8);
    for (int i = 1; i <= 3; i++) {
        for (int j = 1; j <= 3; j++) {
            EXPECT_EQ(lam.K(i, j), lam.A(i, j));
            EXPECT_EQ(lam.K(i, j + 3), lam.B(i, j));
            EXPECT_EQ(lam.K(i + 3, j), lam.B(i, j));
            EXPECT_EQ(lam.K(i + 3, j + 3), lam.D(i, j));
        }
    }
    for (int i = 1; i <= 6; i++) {
        for (int j = 7; j <= 8; j++) {
            EXPECT_EQ(lam.K(i, j), 0.0);
            EXPECT_EQ(lam.K(j, i), 0.0);
        }
    }
    EXPECT_NE(lam.B(1, 3), 0.0);
    EXPECT_EQ(lam.K(7, 7), lam.H(1, 1));
    EXPECT_EQ(lam.K(8, 8), lam.H(2, 2));
    EXPECT_NE(lam.H(1, 2), 0.0);
    EXPECT_EQ(lam.K(7, 8), 0.0);
    EXPECT_EQ(lam.K(8, 7), 0.0);

    // K carries the lower-face form of H: one 45 degree ply of thickness t
    // gives -(5/12) t Qstar, Qstar(1,1) = (G23 + G13)/2 = 3.5.
    lamina1 one;
    lamtest::define(one, {ply(45, t)});
    one.calcK();
    EXPECT_TRUE(near(one.K(7, 7), -5.0 / 12 * t * 3.5, 1e-8));
    EXPECT_TRUE(near(one.K(8, 8), -5.0 / 12 * t * 3.5, 1e-8));
    EXPECT_TRUE(near(one.H(1, 2), -5.0 / 12 * t * -0.5, 1e-8));
    EXPECT_EQ(one.K(7, 8), 0.0);
}

}  // namespace
