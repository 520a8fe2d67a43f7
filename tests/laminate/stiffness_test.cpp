// Layer and laminate stiffness against the closed forms of laminated-plate
// theory for simple stacks.
#include <vector>

#include <gtest/gtest.h>

#include "laminate/lamina_build.h"

using lamtest::ply;
using vantrel::Matriu;

namespace {

double const d = 0.991;  // 1 - nu12 nu21 of the test ply

// m == f * want entry by entry, relative to the larger of each
// pair and of scale (the size below which an entry counts as zero).
void expectScaled(Matriu const& m, std::vector<double> const& want, double f,
                  double scale)
{
    ASSERT_EQ(m.size, static_cast<int>(want.size()));
    for (int i = 0; i < m.size; i++) {
        EXPECT_TRUE(lamtest::near(m.data[i], f * want[i], 1e-13, scale)) << "entry " << i;
    }
}

std::vector<double> entries(Matriu const& m)
{
    return std::vector<double>(m.data, m.data + m.size);
}

TEST(LaminaStiffness, PlyStiffnessAtZeroAndNinetyDegrees)
{
    lamtest::Lam lam({ply(0), ply(90)});
    EXPECT_TRUE(lamtest::near(lam.nu21[0], 0.03));
    expectScaled(lam.Qbar[0], {100 / d, 3 / d, 0, 3 / d, 10 / d, 0, 0, 0, 5}, 1, 1);
    // cos 90 degrees is snapped, so nothing couples shear and stretch.
    expectScaled(lam.Qbar[1], {10 / d, 3 / d, 0, 3 / d, 100 / d, 0, 0, 0, 5}, 1, 0);
    expectScaled(lam.Tmat[1], {0, 1, 0, 1, 0, 0, 0, 0, -1}, 1, 0);
}

TEST(LaminaStiffness, OnePlyOfThicknessT)
{
    double const t = 0.4;
    lamtest::Lam lam({ply(30, t)});
    std::vector<double> const Q = entries(lam.Qbar[0]), Qstar = entries(lam.Qstar);
    expectScaled(lam.A, Q, t, 0);
    expectScaled(lam.B, Q, 0, 0);
    expectScaled(lam.D, Q, t * t * t / 12, 0);
    // Parabolic shear weight about the mid-thickness: (5/6) t Qstar; about
    // the lower face w = t - (t^3/4 + t^3/12) 4/t^2 = -t/3.
    expectScaled(lam.H, Qstar, 5.0 / 6.0 * t, 0);
    lam.calcBDH();
    expectScaled(lam.H, Qstar, -5.0 / 12.0 * t, 0);
    expectScaled(lam.D, Q, t * t * t / 12, 0);
}

TEST(LaminaStiffness, CouplingVanishesOnlyForSymmetricStacks)
{
    lamtest::Lam sym({ply(30, 0.2), ply(-45, 0.1), ply(90, 0.3), ply(-45, 0.1), ply(30, 0.2)});
    // Cross-ply 0/90 of plies t, z from -t to t: B11 = t^2/2 (Q22 - Q11).
    double const t = 0.3, b = 0.5 * t * t * (10 - 100) / d;
    lamtest::Lam cross({ply(0, t), ply(90, t)});
    for (int pass = 0; pass < 2; pass++) {  // calcB, then calcBDH
        expectScaled(sym.B, std::vector<double>(9, 0.0), 1, 100);
        expectScaled(cross.B, {b, 0, 0, 0, -b, 0, 0, 0, 0}, 1, 1);
        sym.calcBDH();
        cross.calcBDH();
    }
}

}  // namespace
