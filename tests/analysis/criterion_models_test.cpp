// Puck's mode boundaries and fracture angle, and the in-situ strengths and
// angles of LaRC03, against the closed forms of their publications.
#include <cmath>

#include <gtest/gtest.h>

#include "laminate/analysis/criterion.h"
#include "laminate/analysis/criterion_larc03.h"
#include "laminate/analysis/criterion_puck.h"
#include "criterion_plies.h"

using laminate::analysis::CriterionPly;
using criterion_plies::carbon;
using laminate::analysis::PlyStress;
using laminate::analysis::PreparedCriterion;
using laminate::analysis::Verdict;

namespace {

double const kPi = 3.14159265358979323846;

PreparedCriterion prepared(char const* name, CriterionPly const& ply,
                           double const* params = nullptr)
{
    PreparedCriterion p;
    EXPECT_EQ(laminate::analysis::prepare(*laminate::analysis::findCriterion(name), ply, params, p), Verdict::Ok);
    return p;
}

std::string mode(PreparedCriterion const& p, PlyStress s)
{
    return p.info->modes[laminate::analysis::assess(p, s).mode];
}

}  // namespace

// RA and tau21c from the inclinations, the s2 at which mode B turns into
// mode C, and the fracture angle on either side.
TEST(CriterionPuck, ModeBoundariesFollowTheInclinations)
{
    double const S = 90, Yc = 185;
    for (auto fibre : {laminate::analysis::FibreKind::Carbon, laminate::analysis::FibreKind::Glass}) {
        CriterionPly ply = carbon();
        ply.fibre = fibre;
        double const pC = fibre == laminate::analysis::FibreKind::Carbon ? 0.30 : 0.25;
        laminate::analysis::PuckConstants c;
        ASSERT_TRUE(laminate::analysis::puckConstants(ply, c));
        double const RA = S / (2 * pC) * (std::sqrt(1 + 2 * pC * Yc / S) - 1);
        EXPECT_NEAR(c.RA, RA, 1e-12 * RA);
        EXPECT_NEAR(c.pPerpC, pC * RA / S, 1e-12);
        EXPECT_NEAR(c.tau21c, S * std::sqrt(1 + 2 * c.pPerpC), 1e-12 * S);

        PreparedCriterion const p = prepared("puck", ply);
        // (-RA, tau21c) lies on the envelope, where modes B and C meet.
        EXPECT_NEAR(laminate::analysis::assess(p, {0, -RA, c.tau21c}).index, 1.0, 1e-12);
        EXPECT_NEAR(laminate::analysis::rate(p, {0, 0, 0}, {0, -RA / 4, c.tau21c / 4}).rf, 4.0, 1e-12);
        // Under t12 = 40, mode B turns into mode C at s2 = -RA 40 / tau21c,
        // with the index continuous there and the fracture plane leaving 0.
        double const s2 = -RA * 40 / c.tau21c;
        PlyStress const b{0, s2 * (1 - 1e-9), 40}, cc{0, s2 * (1 + 1e-9), 40};
        EXPECT_EQ(mode(p, b), "IFF-B");
        EXPECT_EQ(mode(p, cc), "IFF-C");
        EXPECT_NEAR(laminate::analysis::assess(p, b).index, laminate::analysis::assess(p, cc).index, 1e-8);
        EXPECT_EQ(laminate::analysis::assess(p, b).extra[0], 0.0);
        EXPECT_NEAR(laminate::analysis::assess(p, cc).extra[0], 0.0, 0.01);
        // Pure transverse compression: cos^2 theta_fp = 1 / (2 (1 + pPC)).
        double const theta = std::acos(std::sqrt(0.5 / (1 + c.pPerpC))) * 180 / kPi;
        EXPECT_NEAR(laminate::analysis::assess(p, {0, -100, 0}).extra[0], theta, 1e-9);
        EXPECT_GT(theta, 49.0);
        EXPECT_LT(theta, 52.0);
    }
}

// With weakening, a state on the ellipse eta(x) = sqrt(1 - ((x - s)/a)^2)
// is on the envelope; a state whose ray meets inter-fibre fracture below
// x = s is not weakened.
TEST(CriterionPuck, WeakeningBySigma1)
{
    CriterionPly const ply = carbon();
    double const on[] = {1, 0.5, 0.5};
    PreparedCriterion const weak = prepared("puck", ply, on), plain = prepared("puck", ply);
    double const a = 0.5 / std::sqrt(1 - 0.25), eta = std::sqrt(1 - std::pow(0.3 / a, 2));
    PlyStress const edge{0.8 * 2560, eta * 73, 0};
    EXPECT_NEAR(laminate::analysis::assess(weak, edge).index, 1.0, 1e-12);
    EXPECT_NEAR(laminate::analysis::assess(plain, edge).index, eta, 1e-12);
    EXPECT_NEAR(laminate::analysis::rate(weak, {0, 0, 0}, {0.4 * 2560, eta * 36.5, 0}).rf, 2.0, 1e-9);
    PlyStress const low{0.2 * 2560, 50, 10};  // fails by IFF at x = 0.29
    EXPECT_EQ(laminate::analysis::assess(weak, low).index, laminate::analysis::assess(plain, low).index);
    // A residual transverse tension held while the fibres are loaded: the
    // ply fails in inter-fibre mode A before the fibres, once weakened.
    laminate::analysis::Rating const r = laminate::analysis::rate(weak, {0, 60, 0}, {100, 0, 0});
    EXPECT_EQ(weak.info->modes[r.mode], std::string("IFF-A"));
    EXPECT_LT(r.rf, 25.6);
    EXPECT_NEAR(laminate::analysis::assess(weak, {100 * r.rf, 60, 0}).index, 1.0, 1e-9);
}

// In-situ strengths of thin embedded, thin outer and thick plies, in
// N-mm-MPa and in N-m-Pa; the 0.7 mm limit in both.
TEST(CriterionLarc03, InSituStrengths)
{
    CriterionPly ply = carbon();
    double const L = 2 * (1 / 11400.0 - 0.32 * 0.32 / 161000);
    laminate::analysis::Larc03Constants c;
    ASSERT_EQ(laminate::analysis::larc03Constants(ply, c), Verdict::Ok);
    EXPECT_TRUE(c.thin);
    EXPECT_NEAR(c.Lambda22, L, 1e-15);
    double const YtThin = std::sqrt(8 * 0.258 / (kPi * 0.125 * L));
    double const SThin = std::sqrt(8 * 5170 * 1.08 / (kPi * 0.125));
    EXPECT_NEAR(c.YtIs, YtThin, 1e-12 * YtThin);
    EXPECT_NEAR(c.SLis, SThin, 1e-12 * SThin);
    EXPECT_NEAR(c.g, 0.258 / 1.08, 1e-15);
    // The thin embedded ply fails at its in-situ strengths.
    PreparedCriterion const p = prepared("larc03", ply);
    EXPECT_NEAR(laminate::analysis::rate(p, {0, 0, 0}, {0, 10, 0}).rf, YtThin / 10, 1e-12 * YtThin);
    EXPECT_NEAR(laminate::analysis::rate(p, {0, 0, 0}, {0, 0, -10}).rf, SThin / 10, 1e-12 * SThin);

    // The same ply in N-m-Pa: stresses times 1e6, lengths times 1e-3,
    // toughness (N/mm to J/m^2) times 1e3.
    CriterionPly si = ply;
    si.E1 *= 1e6;
    si.E2 *= 1e6;
    si.G12 *= 1e6;
    for (double* v : {&si.Xt, &si.Xc, &si.Yt, &si.Yc, &si.S12}) *v *= 1e6;
    si.GIc *= 1e3;
    si.GIIc *= 1e3;
    si.t *= 1e-3;
    si.mmPerLength = 1000;
    laminate::analysis::Larc03Constants s;
    ASSERT_EQ(laminate::analysis::larc03Constants(si, s), Verdict::Ok);
    EXPECT_TRUE(s.thin);
    EXPECT_NEAR(s.YtIs, 1e6 * c.YtIs, 1e-6 * c.YtIs);
    EXPECT_NEAR(s.SLis, 1e6 * c.SLis, 1e-6 * c.SLis);

    ply.site = laminate::analysis::PlySite::Outer;
    ASSERT_EQ(laminate::analysis::larc03Constants(ply, c), Verdict::Ok);
    EXPECT_NEAR(c.YtIs, 1.79 * std::sqrt(0.258 / (kPi * 0.125 * L)), 1e-9);
    EXPECT_NEAR(c.SLis, std::sqrt(4 * 5170 * 1.08 / (kPi * 0.125)), 1e-9);

    for (CriterionPly* q : {&ply, &si}) {
        q->site = laminate::analysis::PlySite::Embedded;
        q->t = 0.69 / q->mmPerLength;
        ASSERT_EQ(laminate::analysis::larc03Constants(*q, c), Verdict::Ok);
        EXPECT_TRUE(c.thin);
        q->t = 0.7 / q->mmPerLength;
        ASSERT_EQ(laminate::analysis::larc03Constants(*q, c), Verdict::Ok);
        EXPECT_FALSE(c.thin);
        double const scale = q->mmPerLength == 1 ? 1 : 1e6;
        EXPECT_NEAR(c.YtIs, 1.12 * std::sqrt(2.0) * 73 * scale, 1e-12 * c.YtIs);
        EXPECT_NEAR(c.SLis, std::sqrt(2.0) * 90 * scale, 1e-12 * c.SLis);
    }
    // A thick ply without toughness takes g from its strengths.
    ply.given &= ~(laminate::analysis::kGivenGIc | laminate::analysis::kGivenGIIc);
    ASSERT_EQ(laminate::analysis::larc03Constants(ply, c), Verdict::Ok);
    EXPECT_NEAR(c.g, 1.12 * 1.12 * L * 5170 * 73 * 73 / (90 * 90), 1e-12);
}

// The fracture-plane angle is alpha0 under transverse compression and 0
// under matrix tension; the misalignment at kinking under pure compression is
// phiC.
TEST(CriterionLarc03, FracturePlaneAndMisalignmentAngles)
{
    CriterionPly ply = carbon();
    ply.alpha0 = 53;
    PreparedCriterion const p = prepared("larc03", ply);
    laminate::analysis::Assessment a = laminate::analysis::assess(p, {0, -100, 0});
    EXPECT_EQ(p.info->modes[a.mode], std::string("matrix-compression"));
    EXPECT_NEAR(a.extra[0], 53.0, 1e-3);
    EXPECT_NEAR(a.index, std::pow(100 / 185.0, 2), 1e-12);
    a = laminate::analysis::assess(p, {0, 20, 30});
    EXPECT_EQ(a.extra[0], 0.0);
    // Shear with a little transverse compression: the plane stays near 0.
    a = laminate::analysis::assess(p, {0, -1, 60});
    EXPECT_LT(a.extra[0], 5.0);

    laminate::analysis::Larc03Constants c;
    ASSERT_EQ(laminate::analysis::larc03Constants(ply, c), Verdict::Ok);
    laminate::analysis::Rating const r = laminate::analysis::rate(p, {0, 0, 0}, {-100, 0, 0});
    EXPECT_NEAR(r.rf, 15.9, 1e-12);
    EXPECT_EQ(p.info->modes[r.mode], std::string("fibre-kinking"));
    a = laminate::analysis::assess(p, laminate::analysis::failureState({0, 0, 0}, {-100, 0, 0}, r));
    EXPECT_EQ(a.extraValid & 2u, 2u);
    EXPECT_NEAR(a.extra[1], c.phiC * 180 / kPi, 1e-12);
}
