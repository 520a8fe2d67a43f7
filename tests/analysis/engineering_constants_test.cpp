// Engineering constants and free expansion of a laminate against closed
// forms worked by hand from the ply properties: isotropic plies, off-axis
// plies, a cross-ply, a bimetal strip.
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "laminate/analysis/engineering_constants.h"
#include "laminate/lamina_build.h"
#include "laminate/laminate/layer_recovery.h"

using analysis::EngineeringConstants;
using analysis::LaminateAnalysis;
using lamtest::near;

namespace {

double const kPi = 3.14159265358979323846;

// A plausible carbon/epoxy ply in N-mm-MPa.
lamtest::Ply carbon(double angle, double t = 0.125)
{
    lamtest::Ply p = lamtest::ply(angle, t);
    p.E1 = 140000, p.E2 = 9000, p.nu12 = 0.3, p.G12 = 4600, p.G13 = 4600, p.G23 = 3200;
    return p;
}

// The ply's own stiffness Q (1-2 axes): Q11, Q22, Q12, Q66.
struct PlyQ {
    double Q11, Q22, Q12, Q66;
    explicit PlyQ(lamtest::Ply const& p)
    {
        double const d = 1 - p.nu12 * p.nu12 * p.E2 / p.E1;
        Q11 = p.E1 / d, Q22 = p.E2 / d, Q12 = p.nu12 * p.E2 / d, Q66 = p.G12;
    }
};

}  // namespace

TEST(EngineeringConstants, IsotropicPliesGiveTheirOwnModuliBack)
{
    // Whatever the angles and thicknesses, isotropic plies make an isotropic
    // plate: membrane and flexural constants are E, nu and E / (2 (1 + nu)).
    double const E = 70000, nu = 0.33, G = E / (2 * (1 + nu));
    std::vector<lamtest::Ply> plies;
    double const angles[] = {0, 30, -45, 90, 17, 60};
    for (int k = 0; k < 6; k++) {
        lamtest::Ply p = lamtest::ply(angles[k], 0.1 + 0.05 * k);
        p.E1 = p.E2 = E, p.nu12 = nu, p.G12 = G;
        plies.push_back(p);
    }
    lamtest::Lam lam(plies);
    LaminateAnalysis an(lam);
    EngineeringConstants const e = analysis::engineeringConstants(an);
    ASSERT_EQ(e.status, EngineeringConstants::Ok);
    EXPECT_TRUE(near(e.thickness, 6 * 0.1 + 0.05 * 15));
    for (double v : {e.Ex, e.Ey, e.Exb, e.Eyb}) EXPECT_TRUE(near(v, E, 1e-9));
    for (double v : {e.Gxy, e.Gxyb}) EXPECT_TRUE(near(v, G, 1e-9));
    for (double v : {e.nuxy, e.nuyx, e.nuxyb, e.nuyxb}) EXPECT_TRUE(near(v, nu, 1e-9));
    EXPECT_FALSE(e.hasWeight || e.hasThermal || e.hasMoisture);

    // The compliance is the inverse of [[A B][B D]] (and agrees with the
    // block of the inverse the recovery uses).
    for (int i = 0; i < 6; i++) {
        for (int j = 0; j < 6; j++) {
            double sum = 0;
            for (int m = 0; m < 6; m++) sum += e.compliance[i * 6 + m] * an.K()(m + 1, j + 1);
            EXPECT_NEAR(sum, i == j ? 1.0 : 0.0, 1e-12) << i << "," << j;
            EXPECT_TRUE(near(e.compliance[i * 6 + j], an.Kinv()(i + 1, j + 1), 1e-10, 1e-12));
        }
    }
}

TEST(EngineeringConstants, OffAxisPlyAndCrossPlyMatchTheClosedForms)
{
    // A single ply at 30 degrees: the classical off-axis modulus
    // 1/Ex = c^4/E1 + (1/G12 - 2 nu12/E1) c^2 s^2 + s^4/E2, the same for
    // membrane and bending.
    lamtest::Ply const p = carbon(30, 0.2);
    lamtest::Lam one({p});
    EngineeringConstants const e1 = analysis::engineeringConstants(LaminateAnalysis(one));
    ASSERT_EQ(e1.status, EngineeringConstants::Ok);
    double const c = std::cos(kPi / 6), s = std::sin(kPi / 6);
    double const mid = (1 / p.G12 - 2 * p.nu12 / p.E1) * c * c * s * s;
    double const Ex = 1 / (std::pow(c, 4) / p.E1 + mid + std::pow(s, 4) / p.E2);
    double const Ey = 1 / (std::pow(s, 4) / p.E1 + mid + std::pow(c, 4) / p.E2);
    double const nuxy =
        Ex * (p.nu12 / p.E1 * (std::pow(c, 4) + std::pow(s, 4)) -
              (1 / p.E1 + 1 / p.E2 - 1 / p.G12) * c * c * s * s);
    EXPECT_TRUE(near(e1.Ex, Ex, 1e-9));
    EXPECT_TRUE(near(e1.Ey, Ey, 1e-9));
    EXPECT_TRUE(near(e1.nuxy, nuxy, 1e-9));
    EXPECT_TRUE(near(e1.Exb, Ex, 1e-9));
    EXPECT_TRUE(near(e1.nuyx, nuxy * Ey / Ex, 1e-9));

    // [0/90]s of plies t thick: A = 2t (Q0 + Q90), and with z from -2t to 2t
    // D11 = t^3 (14 Q11 + 2 Q22) / 3, D22 = t^3 (2 Q11 + 14 Q22) / 3,
    // D12 = 16 t^3 Q12 / 3, D66 = 16 t^3 Q66 / 3.
    double const t = 0.125, h = 4 * t;
    lamtest::Lam cross({carbon(0, t), carbon(90, t), carbon(90, t), carbon(0, t)});
    EngineeringConstants const e = analysis::engineeringConstants(LaminateAnalysis(cross));
    ASSERT_EQ(e.status, EngineeringConstants::Ok);
    PlyQ const q(carbon(0));
    double const A11 = 2 * t * (q.Q11 + q.Q22), A12 = 4 * t * q.Q12, A66 = 4 * t * q.Q66;
    EXPECT_TRUE(near(e.Ex, (A11 * A11 - A12 * A12) / (h * A11), 1e-9));
    EXPECT_TRUE(near(e.Ey, e.Ex, 1e-9));
    EXPECT_TRUE(near(e.Gxy, A66 / h, 1e-9));
    EXPECT_TRUE(near(e.nuxy, A12 / A11, 1e-9));
    double const t3 = t * t * t;
    double const D11 = t3 * (14 * q.Q11 + 2 * q.Q22) / 3, D22 = t3 * (2 * q.Q11 + 14 * q.Q22) / 3;
    double const D12 = 16 * t3 * q.Q12 / 3, D66 = 16 * t3 * q.Q66 / 3;
    double const h3 = h * h * h;
    EXPECT_TRUE(near(e.Exb, 12 * (D11 * D22 - D12 * D12) / (h3 * D22), 1e-9));
    EXPECT_TRUE(near(e.Eyb, 12 * (D11 * D22 - D12 * D12) / (h3 * D11), 1e-9));
    EXPECT_TRUE(near(e.Gxyb, 12 * D66 / h3, 1e-9));
    EXPECT_TRUE(near(e.nuxyb, D12 / D22, 1e-9));
    EXPECT_TRUE(near(e.nuyxb, D12 / D11, 1e-9));
    EXPECT_GT(e.Exb, e.Eyb);  // the 0 degree plies sit outside
}

TEST(EngineeringConstants, ArealWeightIsTheSumOfSpecificWeightTimesThickness)
{
    lamtest::Ply a = carbon(0, 0.125), b = carbon(45, 0.3);
    a.sw = 1.6e-5, b.sw = 2.5e-5;
    lamtest::Lam lam({a, b, a});
    LaminateAnalysis an(lam);
    double const sw[3] = {a.sw, b.sw, a.sw};
    analysis::PlyProperties props;
    props.sw = sw;
    EngineeringConstants const e = analysis::engineeringConstants(an, props);
    ASSERT_TRUE(e.hasWeight);
    EXPECT_TRUE(near(e.weight, 2 * 0.125 * 1.6e-5 + 0.3 * 2.5e-5, 1e-14, 0.0));
    EXPECT_FALSE(analysis::engineeringConstants(an).hasWeight);
}

TEST(FreeExpansion, RotatedPlyExpandsAsItsStiffnessAndRecoveryTurnIt)
{
    double const a1 = -0.3e-6, a2 = 28e-6;
    double const alpha[2] = {a1, a2};
    analysis::PlyProperties props;
    props.alpha = alpha;
    for (double angle : {0.0, 30.0, -45.0, 90.0, 112.5}) {
        lamtest::Ply const p = carbon(angle, 0.2);
        lamtest::Lam lam({p});
        LaminateAnalysis an(lam);
        EngineeringConstants const e = analysis::engineeringConstants(an, props);
        ASSERT_TRUE(e.hasThermal);
        EXPECT_FALSE(e.hasMoisture);

        // The tensor rotation of (a1, a2, 0) by the angle, engineering shear.
        double const c = std::cos(angle * kPi / 180), s = std::sin(angle * kPi / 180);
        // Tolerances relative to the largest coefficient and stress.
        EXPECT_TRUE(near(e.thermal[0], c * c * a1 + s * s * a2, 1e-9, a2)) << angle;
        EXPECT_TRUE(near(e.thermal[1], s * s * a1 + c * c * a2, 1e-9, a2)) << angle;
        EXPECT_TRUE(near(e.thermal[2], 2 * s * c * (a1 - a2), 1e-9, a2)) << angle;
        for (int i = 3; i < 6; i++) EXPECT_NEAR(e.thermal[i], 0.0, 1e-18) << angle;

        // The model's recovery turns these strains into the ply's own free
        // strains (a1, a2, 0), and its Qbar and T make them the stresses
        // Q (a1, a2, 0): no shear stress along the fibres.
        double g[8] = {e.thermal[0], e.thermal[1], e.thermal[2], 0, 0, 0, 0, 0};
        laminate_model::LayerState st;
        laminate_model::recoverLayer(g, an.plies()[0].frame(), st);
        PlyQ const q(p);
        double const want[3] = {a1, a2, 0};
        double const stress[3] = {q.Q11 * a1 + q.Q12 * a2, q.Q12 * a1 + q.Q22 * a2, 0};
        for (int i = 0; i < 3; i++) {
            EXPECT_TRUE(near(st.strainsTopLam[i], want[i], 1e-9, a2)) << angle << " " << i;
            EXPECT_TRUE(near(st.stressesTopLam[i], stress[i], 1e-9, stress[1])) << angle << " " << i;
        }
    }
}

TEST(FreeExpansion, CrossPlyAndBimetalMatchHandComputations)
{
    // [0/90]s: by symmetry ex = ey and the membrane resultants of the four
    // plies balance: e = ((Q11 + Q12) a1 + (Q12 + Q22) a2) / (Q11 + Q22 + 2 Q12).
    // The symmetric stack does not bend; moisture follows the same rule.
    double const a1 = -0.3e-6, a2 = 28e-6, b1 = 0.0, b2 = 0.4;
    double const alpha[8] = {a1, a2, a1, a2, a1, a2, a1, a2};
    double const beta[8] = {b1, b2, b1, b2, b1, b2, b1, b2};
    lamtest::Lam cross({carbon(0), carbon(90), carbon(90), carbon(0)});
    analysis::PlyProperties props;
    props.alpha = alpha;
    props.beta = beta;
    EngineeringConstants const e = analysis::engineeringConstants(LaminateAnalysis(cross), props);
    ASSERT_TRUE(e.hasThermal && e.hasMoisture);
    PlyQ const q(carbon(0));
    auto free = [&](double x1, double x2) {
        return ((q.Q11 + q.Q12) * x1 + (q.Q12 + q.Q22) * x2) / (q.Q11 + q.Q22 + 2 * q.Q12);
    };
    EXPECT_TRUE(near(e.thermal[0], free(a1, a2), 1e-9, 0));
    EXPECT_TRUE(near(e.thermal[1], free(a1, a2), 1e-9, 0));
    EXPECT_TRUE(near(e.moisture[0], free(b1, b2), 1e-9, 0));
    EXPECT_TRUE(near(e.moisture[1], free(b1, b2), 1e-9, 0));
    for (int i : {2, 3, 4, 5}) {
        EXPECT_NEAR(e.thermal[i], 0.0, 1e-18) << i;
        EXPECT_NEAR(e.moisture[i], 0.0, 1e-12) << i;
    }

    // A bimetal strip: two 0 degree plies without Poisson coupling, so x
    // bends as a beam.  Its curvature per degree is the classical
    //   6 (ab - aa) (1 + m)^2 / (h (3 (1 + m)^2 + (1 + m n) (m^2 + 1 / (m n))))
    // with m = ta / tb, n = Ea / Eb, layer a below; the mid-plane strain
    // makes the force resultant vanish.
    lamtest::Ply pa = carbon(0, 0.3), pb = carbon(0, 0.5);
    pa.nu12 = pb.nu12 = 0;
    pa.E1 = 200000, pb.E1 = 70000;
    double const aa = 12e-6, ab = 23e-6;
    double const ab2[4] = {aa, 0, ab, 0};
    analysis::PlyProperties bp;
    bp.alpha = ab2;
    lamtest::Lam strip({pa, pb});
    EngineeringConstants const b = analysis::engineeringConstants(LaminateAnalysis(strip), bp);
    double const m = 0.3 / 0.5, n = pa.E1 / pb.E1, h = 0.8;
    double const kappa = 6 * (ab - aa) * (1 + m) * (1 + m) /
                         (h * (3 * (1 + m) * (1 + m) + (1 + m * n) * (m * m + 1 / (m * n))));
    EXPECT_TRUE(near(b.thermal[3], kappa, 1e-9, 0));
    double const za = -0.25, zb = 0.15;  // mid-thickness of each layer
    double const fa = pa.E1 * 0.3 * (b.thermal[0] + za * b.thermal[3] - aa);
    double const fb = pb.E1 * 0.5 * (b.thermal[0] + zb * b.thermal[3] - ab);
    EXPECT_TRUE(near(fa, -fb, 1e-9, 0));
    EXPECT_NEAR(b.thermal[4], 0.0, 1e-18);  // no a2, no Poisson coupling
}

TEST(EngineeringConstants, ReportsWhatItCannotComputeAndNeverEnds)
{
    // Not prepared.
    LaminateAnalysis none;
    EngineeringConstants e = analysis::engineeringConstants(none);
    EXPECT_EQ(e.status, EngineeringConstants::NotPrepared);
    EXPECT_EQ(e.Ex, 0.0);
    double c[36];
    EXPECT_FALSE(analysis::abdCompliance(none, c));
    for (double v : c) EXPECT_EQ(v, 0.0);

    // A Poisson ratio the strict reader refuses leaves the ply stiffness
    // indefinite; the stiffness can be inverted, but its moduli would be
    // negative: only the compliance is given.
    lamtest::Ply p = carbon(0);
    p.E1 = p.E2 = 100, p.G12 = 40, p.nu12 = 2;
    lamtest::Lam bad({p, p});
    LaminateAnalysis an(bad);
    ASSERT_EQ(an.status(), LaminateAnalysis::Ok);
    double const alpha[4] = {1, 1, 1, 1};
    analysis::PlyProperties props;
    props.alpha = alpha;
    e = analysis::engineeringConstants(an, props);
    EXPECT_EQ(e.status, EngineeringConstants::NotPositive);
    EXPECT_NE(e.compliance[0], 0.0);
    EXPECT_EQ(e.Ex, 0.0);
    EXPECT_FALSE(e.hasThermal);

    // A non-finite angle makes every stiffness term NaN: no compliance.
    lamtest::Lam nan({carbon(std::nan(""))});
    LaminateAnalysis an2(nan);
    if (an2.status() == LaminateAnalysis::Ok) {
        EXPECT_FALSE(analysis::abdCompliance(an2, c));
        EXPECT_EQ(analysis::engineeringConstants(an2).status, EngineeringConstants::Singular);
    } else {
        EXPECT_EQ(analysis::engineeringConstants(an2).status, EngineeringConstants::NotPrepared);
    }
}
