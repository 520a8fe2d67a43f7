// The interlaminar shear rating against the parabola of a homogeneous
// laminate, the turn into ply axes, the worse allowable at an interface and
// the plies without allowables.
#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "laminate/analysis/interlaminar_rating.h"
#include "laminate/lamina_build.h"

using laminate::analysis::InterlaminarRating;
using laminate::analysis::LaminateAnalysis;
using laminate::analysis::PlyPoint;
using laminate::analysis::ShearRating;
using laminate::analysis::Verdict;
using lamtest::near;

TEST(InterlaminarRating, HomogeneousLaminateFollowsTheParabola)
{
    // Three equal 0 degree plies, h = 0.6: tau_xz peaks at 1.5 Q1 / h at
    // the mid-plane, the middle of ply 2, and RF = S13 / peak.  Turned by
    // 90 degrees the same stress is t23 and meets S23.
    double const S13 = 60, S23 = 30, h = 0.6, Q1 = 12;
    for (double angle : {0.0, 90.0}) {
        lamtest::Lam lam({lamtest::ply(angle), lamtest::ply(angle), lamtest::ply(angle)});
        LaminateAnalysis an(lam);
        double const allow[6] = {S13, S23, S13, S23, S13, S23};
        InterlaminarRating const r(an, allow);
        ASSERT_EQ(r.status(), InterlaminarRating::Ok);
        double const loads[8] = {0, 0, 0, 0, 0, 0, Q1, 0};
        double const peak = 1.5 * Q1 / h;
        double const S = angle == 0.0 ? S13 : S23;
        ShearRating const f = r.firstPlyFailure(loads);
        EXPECT_EQ(f.verdict, Verdict::Ok);
        EXPECT_EQ(f.ply, 2);
        EXPECT_EQ(f.point, PlyPoint::Middle);
        EXPECT_TRUE(near(f.rf, S / peak, 1e-9)) << angle;
        EXPECT_TRUE(near(f.index, (peak / S) * (peak / S), 1e-9));
        // The outer plies are worst at their inner faces, z = -h/6, where
        // tau = peak (1 - (2z/h)^2) = 8/9 peak.
        ShearRating const outer = r.ratePly(1, loads);
        EXPECT_EQ(outer.point, PlyPoint::Bottom);
        EXPECT_TRUE(near(outer.rf, S / (peak * 8.0 / 9.0), 1e-9));
        // Linear in the loads; no transverse shear load, never.
        double const twice[8] = {0, 0, 0, 0, 0, 0, 2 * Q1, 0};
        EXPECT_TRUE(near(r.firstPlyFailure(twice).rf, f.rf / 2, 1e-12));
        double const membrane[8] = {100, 50, 0, 3, 0, 0, 0, 0};
        EXPECT_EQ(r.firstPlyFailure(membrane).verdict, Verdict::Never);
        EXPECT_EQ(r.firstPlyFailure(membrane).rf, std::numeric_limits<double>::infinity());
    }
}

TEST(InterlaminarRating, InterfacesTakeTheWeakerPlyAndMissingAllowablesAreSaid)
{
    // Two 0 degree plies: the mid-plane is their interface, where the
    // weaker ply's S13 counts for both.
    lamtest::Lam lam({lamtest::ply(0, 0.5), lamtest::ply(0, 0.5)});
    LaminateAnalysis an(lam);
    double const loads[8] = {0, 0, 0, 0, 0, 0, 10, 0};
    double const allow[4] = {80, 40, 20, 40};
    InterlaminarRating const r(an, allow);
    ShearRating const one = r.ratePly(1, loads), two = r.ratePly(2, loads);
    EXPECT_EQ(one.point, PlyPoint::Bottom);
    EXPECT_EQ(two.point, PlyPoint::Top);
    EXPECT_TRUE(near(one.rf, 20 / 15.0, 1e-9));
    EXPECT_TRUE(near(two.rf, one.rf, 1e-12));
    // A ply without S23: nostrength, and the laminate's rating says so.
    double const missing[4] = {80, 40, 20, 0};
    InterlaminarRating const m(an, missing);
    EXPECT_EQ(m.ratePly(2, loads).verdict, Verdict::NoStrength);
    EXPECT_EQ(m.ratePly(2, loads).rf, 0.0);
    ShearRating const f = m.firstPlyFailure(loads);
    EXPECT_EQ(f.verdict, Verdict::NoStrength);
    EXPECT_EQ(f.ply, 2);
    // Ply 1 alone at the interface: its own S13.
    EXPECT_TRUE(near(m.ratePly(1, loads).rf, 80 / 15.0, 1e-9));
    EXPECT_STREQ(laminate::analysis::plyPointWord(PlyPoint::Middle), "middle");
}
