// Engineering constants and free expansion of a laminate against closed
// forms worked by hand from the ply properties.
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "laminate/analysis/engineering_constants.h"
#include "laminate/lamina_build.h"
#include "laminate/laminate/layer_recovery.h"

using laminate::analysis::EngineeringConstants;
using laminate::analysis::LaminateAnalysis;
using lamtest::near;

namespace {

// A carbon/epoxy ply, N-mm-MPa.
lamtest::Ply carbon(double angle, double t = 0.125)
{
    lamtest::Ply p = lamtest::ply(angle, t);
    p.E1 = 140000, p.E2 = 9000, p.nu12 = 0.3, p.G12 = 4600;
    return p;
}

// The ply's own stiffness: Q11, Q22, Q12, Q66.
struct PlyQ {
    double Q11, Q22, Q12, Q66;
    explicit PlyQ(lamtest::Ply const& p)
    {
        double const d = 1 - p.nu12 * p.nu12 * p.E2 / p.E1;
        Q11 = p.E1 / d, Q22 = p.E2 / d, Q12 = p.nu12 * p.E2 / d, Q66 = p.G12;
    }
};

EngineeringConstants constants(std::vector<lamtest::Ply> const& plies,
                               laminate::analysis::PlyProperties const& props = {})
{
    lamtest::Lam lam(plies);
    return laminate::analysis::engineeringConstants(LaminateAnalysis(lam), props);
}

}  // namespace

TEST(EngineeringConstants, IsotropicPliesGiveTheirModuliBack)
{
    // Any angles and thicknesses: E, nu, E / (2 (1 + nu)), membrane and flexural.
    double const E = 70000, nu = 0.33, G = E / (2 * (1 + nu));
    std::vector<lamtest::Ply> plies;
    for (double angle : {0, 30, -45, 90, 17}) {
        plies.push_back(lamtest::ply(angle, 0.1 + 0.001 * angle));
        plies.back().E1 = plies.back().E2 = E, plies.back().nu12 = nu, plies.back().G12 = G;
    }
    lamtest::Lam lam(plies);
    LaminateAnalysis an(lam);
    EngineeringConstants const e = laminate::analysis::engineeringConstants(an);
    ASSERT_EQ(e.status, EngineeringConstants::Ok);
    for (double v : {e.Ex, e.Ey, e.Exb, e.Eyb}) EXPECT_TRUE(near(v, E, 1e-9));
    for (double v : {e.Gxy, e.Gxyb}) EXPECT_TRUE(near(v, G, 1e-9));
    for (double v : {e.nuxy, e.nuyx, e.nuxyb, e.nuyxb}) EXPECT_TRUE(near(v, nu, 1e-9));
    EXPECT_FALSE(e.hasWeight || e.hasThermal || e.hasMoisture);
    for (int i = 0; i < 6; i++) {  // compliance times [A B; B D] is the identity
        for (int j = 0; j < 6; j++) {
            double sum = 0;
            for (int m = 0; m < 6; m++) sum += e.compliance[i * 6 + m] * an.K()(m + 1, j + 1);
            EXPECT_NEAR(sum, i == j ? 1.0 : 0.0, 1e-12) << i << "," << j;
        }
    }
}

TEST(EngineeringConstants, CrossPlyMatchesTheClosedFormsOfItsStiffness)
{
    // [0/90]s of plies t thick, z from -2t to 2t: A = 2t (Q0 + Q90),
    // D11 = t^3 (14 Q11 + 2 Q22) / 3, D22 = t^3 (2 Q11 + 14 Q22) / 3,
    // D12 = 16 t^3 Q12 / 3, D66 = 16 t^3 Q66 / 3.  Areal weight sum sw t.
    double const t = 0.125, h = 4 * t, t3 = t * t * t, h3 = h * h * h;
    std::vector<lamtest::Ply> plies = {carbon(0), carbon(90), carbon(90), carbon(0)};
    double const sw[4] = {1.6e-5, 2.5e-5, 2.5e-5, 1.6e-5};
    laminate::analysis::PlyProperties props;
    props.sw = sw;
    EngineeringConstants const e = constants(plies, props);
    ASSERT_EQ(e.status, EngineeringConstants::Ok);
    PlyQ const q(carbon(0));
    double const A11 = 2 * t * (q.Q11 + q.Q22), A12 = 4 * t * q.Q12, A66 = 4 * t * q.Q66;
    EXPECT_TRUE(near(e.Ex, (A11 * A11 - A12 * A12) / (h * A11), 1e-9));
    EXPECT_TRUE(near(e.Ey, e.Ex, 1e-9));
    EXPECT_TRUE(near(e.Gxy, A66 / h, 1e-9));
    EXPECT_TRUE(near(e.nuxy, A12 / A11, 1e-9));
    double const D11 = t3 * (14 * q.Q11 + 2 * q.Q22) / 3, D22 = t3 * (2 * q.Q11 + 14 * q.Q22) / 3;
    double const D12 = 16 * t3 * q.Q12 / 3, D66 = 16 * t3 * q.Q66 / 3;
    EXPECT_TRUE(near(e.Exb, 12 * (D11 * D22 - D12 * D12) / (h3 * D22), 1e-9));
    EXPECT_TRUE(near(e.Eyb, 12 * (D11 * D22 - D12 * D12) / (h3 * D11), 1e-9));
    EXPECT_TRUE(near(e.Gxyb, 12 * D66 / h3, 1e-9));
    EXPECT_TRUE(near(e.nuxyb, D12 / D22, 1e-9));
    ASSERT_TRUE(e.hasWeight);
    EXPECT_TRUE(near(e.weight, 2 * t * (1.6e-5 + 2.5e-5), 1e-14, 0));
}

TEST(EngineeringConstants, ReportsWhatItCannotComputeAndNeverEnds)
{
    LaminateAnalysis none;
    EXPECT_EQ(laminate::analysis::engineeringConstants(none).status, EngineeringConstants::NotPrepared);
    double c[36];
    EXPECT_FALSE(laminate::analysis::abdCompliance(none, c));
    EXPECT_EQ(c[0], 0.0);

    // A Poisson ratio the strict reader refuses makes the ply stiffness
    // indefinite: invertible, but the moduli would be negative.
    lamtest::Ply p = carbon(0);
    p.E1 = p.E2 = 100, p.G12 = 40, p.nu12 = 2;
    double const alpha[4] = {1, 1, 1, 1};
    laminate::analysis::PlyProperties props;
    props.alpha = alpha;
    EngineeringConstants const e = constants({p, p}, props);
    EXPECT_EQ(e.status, EngineeringConstants::NotPositive);
    EXPECT_NE(e.compliance[0], 0.0);
    EXPECT_EQ(e.Ex, 0.0);
    EXPECT_FALSE(e.hasThermal);
}

TEST(FreeExpansion, RotatedPlyExpandsAsItsStiffnessAndRecoveryTurnIt)
{
    double const a1 = -0.3e-6, a2 = 28e-6, alpha[2] = {a1, a2};
    laminate::analysis::PlyProperties props;
    props.alpha = alpha;
    for (double angle : {0.0, 30.0, -45.0, 90.0, 112.5}) {
        lamtest::Lam lam({carbon(angle, 0.2)});
        LaminateAnalysis an(lam);
        EngineeringConstants const e = laminate::analysis::engineeringConstants(an, props);
        ASSERT_TRUE(e.hasThermal);
        // The tensor rotation of (a1, a2, 0), engineering shear; no curvature.
        double const c = std::cos(angle * M_PI / 180), s = std::sin(angle * M_PI / 180);
        EXPECT_TRUE(near(e.thermal[0], c * c * a1 + s * s * a2, 1e-9, a2)) << angle;
        EXPECT_TRUE(near(e.thermal[1], s * s * a1 + c * c * a2, 1e-9, a2)) << angle;
        EXPECT_TRUE(near(e.thermal[2], 2 * s * c * (a1 - a2), 1e-9, a2)) << angle;
        for (int i = 3; i < 6; i++) EXPECT_NEAR(e.thermal[i], 0.0, 1e-18) << angle;

        // The model's recovery turns them into the ply's free strains
        // (a1, a2, 0), and its Qbar and T into the stresses Q (a1, a2, 0):
        // no shear stress along the fibres.
        double const g[8] = {e.thermal[0], e.thermal[1], e.thermal[2], 0, 0, 0, 0, 0};
        laminate_model::LayerState st;
        laminate_model::recoverLayer(g, an.plies()[0].frame(), st);
        PlyQ const q(carbon(0));
        double const strain[3] = {a1, a2, 0};
        double const stress[3] = {q.Q11 * a1 + q.Q12 * a2, q.Q12 * a1 + q.Q22 * a2, 0};
        for (int i = 0; i < 3; i++) {
            EXPECT_TRUE(near(st.strainsTopLam[i], strain[i], 1e-9, a2)) << angle << " " << i;
            EXPECT_TRUE(near(st.stressesTopLam[i], stress[i], 1e-9, stress[1])) << angle << " " << i;
        }
    }
}

TEST(FreeExpansion, CrossPlyAndBimetalMatchHandComputations)
{
    // [0/90]s: ex = ey = ((Q11 + Q12) a1 + (Q12 + Q22) a2) / (Q11 + Q22 + 2 Q12),
    // no shear, no curvature; moisture alike.
    double const a1 = -0.3e-6, a2 = 28e-6, b2 = 0.4;
    double const alpha[8] = {a1, a2, a1, a2, a1, a2, a1, a2}, beta[8] = {0, b2, 0, b2, 0, b2, 0, b2};
    laminate::analysis::PlyProperties props;
    props.alpha = alpha;
    props.beta = beta;
    EngineeringConstants const e = constants({carbon(0), carbon(90), carbon(90), carbon(0)}, props);
    ASSERT_TRUE(e.hasThermal && e.hasMoisture);
    PlyQ const q(carbon(0));
    auto free = [&](double x1, double x2) {
        return ((q.Q11 + q.Q12) * x1 + (q.Q12 + q.Q22) * x2) / (q.Q11 + q.Q22 + 2 * q.Q12);
    };
    for (int i : {0, 1}) {
        EXPECT_TRUE(near(e.thermal[i], free(a1, a2), 1e-9, 0));
        EXPECT_TRUE(near(e.moisture[i], free(0, b2), 1e-9, 0));
    }
    for (int i : {2, 3, 4, 5}) {
        EXPECT_NEAR(e.thermal[i], 0.0, 1e-18) << i;
        EXPECT_NEAR(e.moisture[i], 0.0, 1e-12) << i;
    }

    // A bimetal strip of 0 degree plies without Poisson coupling bends as a
    // beam, at the classical curvature per degree
    //   6 (ab - aa) (1 + m)^2 / (h (3 (1 + m)^2 + (1 + m n) (m^2 + 1 / (m n))))
    // with m = ta / tb, n = Ea / Eb, layer a below.
    lamtest::Ply pa = carbon(0, 0.3), pb = carbon(0, 0.5);
    pa.nu12 = pb.nu12 = 0, pa.E1 = 200000, pb.E1 = 70000;
    double const aa = 12e-6, ab = 23e-6, strip[4] = {aa, 0, ab, 0};
    props.alpha = strip;
    props.beta = nullptr;
    double const m = 0.3 / 0.5, n = pa.E1 / pb.E1, h = 0.8;
    double const kappa = 6 * (ab - aa) * (1 + m) * (1 + m) /
                         (h * (3 * (1 + m) * (1 + m) + (1 + m * n) * (m * m + 1 / (m * n))));
    EXPECT_TRUE(near(constants({pa, pb}, props).thermal[3], kappa, 1e-9, 0));
}
