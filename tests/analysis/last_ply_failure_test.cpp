// Last-ply failure: the stiffness of degraded laminates against laminates
// defined with the degraded moduli, a cross-ply laminate against its closed
// form, the order of failures of a quasi-isotropic laminate, and the ends
// of a run (singular, unloaded, residual, bad factors).
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "laminate/analysis/last_ply_failure.h"
#include "laminate/lamina_build.h"

using laminate::analysis::CriterionPly;
using laminate::analysis::Degradation;
using laminate::analysis::Face;
using laminate::analysis::LaminateAnalysis;
using laminate::analysis::LaminateRating;
using laminate::analysis::LastPlyFailure;
using laminate::analysis::LpfEvent;
using laminate::analysis::LpfResult;
using laminate::analysis::RatingLoad;
using lamtest::near;

namespace {

double const kInf = std::numeric_limits<double>::infinity();
double const Xt = 2000, Xc = 1200, Yt = 50, Yc = 200, S12 = 80;

lamtest::Ply carbon(double angle, double t = 0.125)
{
    lamtest::Ply p = lamtest::ply(angle, t);
    p.E1 = 140000, p.E2 = 9000, p.nu12 = 0.3, p.G12 = 4600;
    return p;
}

int criterionIndex(char const* name)
{
    for (int c = 0; laminate::analysis::kCriteria[c]; c++)
        if (std::strcmp(laminate::analysis::kCriteria[c]->name, name) == 0) return c;
    ADD_FAILURE() << name;
    return 0;
}

char const* modeWord(int criterion, LpfEvent const& e)
{
    return laminate::analysis::kCriteria[criterion]->modes[e.mode];
}

// A laminate of carbon plies with everything a run needs.
struct Case {
    lamtest::Lam lam;
    LaminateAnalysis an;
    LaminateRating rating;
    std::vector<double> alpha;

    explicit Case(std::vector<lamtest::Ply> const& plies, bool thermal = false)
        : lam(plies), an(lam)
    {
        std::vector<CriterionPly> cp;
        for (lamtest::Ply const& r : plies) {
            CriterionPly p;
            p.E1 = r.E1, p.E2 = r.E2, p.nu12 = r.nu12, p.G12 = r.G12, p.t = r.t;
            p.set(laminate::analysis::kGivenXt, Xt);
            p.set(laminate::analysis::kGivenXc, Xc);
            p.set(laminate::analysis::kGivenYt, Yt);
            p.set(laminate::analysis::kGivenYc, Yc);
            p.set(laminate::analysis::kGivenS12, S12);
            cp.push_back(p);
            alpha.insert(alpha.end(), {-0.3e-6, 28e-6});
        }
        rating = LaminateRating(an, cp, thermal ? alpha.data() : nullptr, nullptr);
    }

    LpfResult run(char const* criterion, std::vector<double> loads, double dT = 0,
                  Degradation const& d = Degradation())
    {
        LastPlyFailure lpf(an, rating, alpha.data(), nullptr, d);
        EXPECT_EQ(lpf.status(), LastPlyFailure::Ok);
        loads.resize(8, 0.0);
        LpfResult out;
        lpf.run(criterionIndex(criterion), RatingLoad{loads.data(), dT, 0.0}, out);
        for (LpfEvent const& e : out.events) {
            EXPECT_TRUE(e.factor >= 0 && e.factor <= out.last);
            for (double g : e.strains) EXPECT_TRUE(std::isfinite(g));
        }
        return out;
    }
};

}  // namespace

TEST(LaminateAnalysisScaled, MatchesTheLaminateOfScaledModuli)
{
    // Halving E1, E2 and G12 (nu12 with E1) of both plies gives the laminate
    // defined with those moduli; factors of 1 keep the intact stiffness.
    std::vector<lamtest::Ply> plies = {carbon(30), carbon(-60, 0.2)};
    lamtest::Lam lam(plies);
    LaminateAnalysis an(lam);
    for (lamtest::Ply& p : plies) p.E1 *= 0.5, p.E2 *= 0.5, p.nu12 *= 0.5, p.G12 *= 0.5;
    lamtest::Lam halved(plies);
    LaminateAnalysis expected(halved);
    LaminateAnalysis scaled, same;
    std::vector<double> const half(6, 0.5), one(6, 1.0);
    ASSERT_EQ(scaled.prepareScaled(an, half.data()), LaminateAnalysis::Ok);
    ASSERT_EQ(same.prepareScaled(an, one.data()), LaminateAnalysis::Ok);
    for (int i = 0; i < 64; i++) {
        EXPECT_TRUE(near(scaled.K().data[i], expected.K().data[i], 1e-12, 1e3)) << i;
        EXPECT_TRUE(near(scaled.Kinv().data[i], expected.Kinv().data[i], 1e-9, 1e-9)) << i;
        EXPECT_TRUE(near(same.Kinv().data[i], an.Kinv().data[i], 1e-9, 1e-9)) << i;
    }
    double const loads[8] = {100, -40, 25, 3, 1, -2, 0, 0};
    EXPECT_TRUE(scaled.carries(loads));

    // Every modulus of every ply removed: nothing is carried, and the
    // generalized inverse is all zeros in the membrane-bending block.
    std::vector<double> const zero(6, 0.0);
    ASSERT_EQ(scaled.prepareScaled(an, zero.data()), LaminateAnalysis::Ok);
    EXPECT_FALSE(scaled.carries(loads));
    for (int i = 0; i < 6; i++) EXPECT_EQ(scaled.Kinv().data[9 * i], 0.0);
    LaminateAnalysis unprepared;
    EXPECT_EQ(scaled.prepareScaled(unprepared, one.data()), LaminateAnalysis::NotPrepared);
}

TEST(LastPlyFailure, CrossPlyLastFactorIsTheZeroDegreePliesAlone)
{
    // [0/90]s under N1, maximum stress: the 90 degree plies crack, then the
    // 0 degree plies carry N1 with the cracked plies' E2 and G12 scaled by
    // f, and break at s1 = Xt.  Membrane only (B = 0): the 0 degree ply's
    // s1 per unit N1 is (Q11 A22 - Q12 A12) / det A.
    double const t = 0.125, f = 1e-6, E1 = 140000, E2 = 9000, nu = 0.3;
    Case c({carbon(0), carbon(90), carbon(90), carbon(0)});
    LpfResult const r = c.run("maxstress", {1.0});
    int const ms = criterionIndex("maxstress");
    ASSERT_EQ(r.events.size(), 4u);
    EXPECT_EQ(r.end, LpfResult::End::Singular);
    for (int i = 0; i < 2; i++) {
        EXPECT_EQ(r.events[i].ply, 2 + i);
        EXPECT_STREQ(modeWord(ms, r.events[i]), "matrix-tension");
        EXPECT_FALSE(r.events[i].fibre);
        EXPECT_EQ(r.events[2 + i].ply, 1 + 3 * i);
        EXPECT_STREQ(modeWord(ms, r.events[2 + i]), "fibre-tension");
        EXPECT_TRUE(r.events[2 + i].fibre);
        EXPECT_EQ(r.events[2 + i].factor, r.last);
    }
    double const d = 1 - nu * nu * E2 / E1;
    double const Q11 = E1 / d, Q12 = nu * E2 / d, Q22 = E2 / d;
    double const dc = 1 - nu * nu * E2 / E1 * f;  // the cracked ply
    double const C11 = E1 / dc, C12 = nu * f * E2 / dc, C22 = f * E2 / dc;
    double const A11 = 2 * t * (Q11 + C22), A12 = 2 * t * (Q12 + C12), A22 = 2 * t * (Q22 + C11);
    double const det = A11 * A22 - A12 * A12;
    double const last = Xt * det / (Q11 * A22 - Q12 * A12);
    EXPECT_TRUE(near(r.last, last, 1e-9));
    // The 0 degree plies alone, without the Poisson restraint of the 90s.
    EXPECT_TRUE(near(r.last, Xt * 2 * t, 0.01));
    // The strains of the breaking are those of the cracked laminate.
    EXPECT_TRUE(near(r.events[2].strains[0], last * A22 / det, 1e-9));
    EXPECT_TRUE(near(r.events[2].strains[1], -last * A12 / det, 1e-9));
    // The cracking: s2 = Yt in the intact 90 degree ply.
    double const I11 = 2 * t * (Q11 + Q22), I12 = 4 * t * Q12;
    double const s2 = (Q22 * I11 - Q12 * I12) / (I11 * I11 - I12 * I12);
    EXPECT_TRUE(near(r.events[0].factor, Yt / s2, 1e-9));
}

TEST(LastPlyFailure, QuasiIsotropicFailsNinetyThenFortyFiveThenZero)
{
    // [0/45/-45/90]s under N1: the 90 degree plies see the largest transverse
    // tension and crack first; the +-45 plies, in shear and transverse
    // tension, crack next; the 0 degree plies, carrying more and more of N1,
    // break in fibre tension.  Mirror plies fail together.
    Case c({carbon(0), carbon(45), carbon(-45), carbon(90), carbon(90), carbon(-45), carbon(45),
            carbon(0)});
    int const tw = criterionIndex("tsaiwu2d");
    LpfResult const r = c.run("tsaiwu2d", {1.0});
    ASSERT_GE(r.events.size(), 8u);
    EXPECT_EQ(r.events[0].ply, 4);
    EXPECT_EQ(r.events[1].ply, 5);
    EXPECT_EQ(r.events[0].factor, r.events[1].factor);
    for (int i = 0; i < 2; i++) EXPECT_FALSE(r.events[i].fibre);
    std::vector<int> order;
    for (size_t i = 2; i < 6; i++) {
        EXPECT_FALSE(r.events[i].fibre) << i;
        order.push_back(r.events[i].ply);
    }
    EXPECT_EQ(order, (std::vector<int>{2, 3, 6, 7}));
    EXPECT_EQ(r.events[6].ply, 1);
    EXPECT_EQ(r.events[7].ply, 8);
    EXPECT_STREQ(modeWord(tw, r.events[6]), "fibre-tension");
    EXPECT_EQ(r.events[6].factor, r.events[7].factor);
    for (size_t i = 1; i < r.events.size(); i++)
        EXPECT_GE(r.events[i].factor, r.events[i - 1].factor);
    EXPECT_LT(r.events[1].factor, r.events[2].factor);
    EXPECT_LT(r.events[5].factor, r.events[6].factor);
    // The first event is the laminate's first-ply failure.
    double loads[8] = {1, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(r.events[0].factor, c.rating.firstPlyFailure(tw, RatingLoad{loads, 0, 0}).rf);
    EXPECT_TRUE(r.end == LpfResult::End::Singular || r.end == LpfResult::End::Broken);
    EXPECT_TRUE(std::isfinite(r.last));
}

TEST(LastPlyFailure, EndsOfARun)
{
    // A unidirectional laminate across its fibres: one crack and the
    // stiffness left carries no N2.
    Case ud({carbon(0), carbon(0)});
    LpfResult r = ud.run("tsaiwu2d", {0, 1.0});
    ASSERT_EQ(r.events.size(), 2u);
    EXPECT_EQ(r.end, LpfResult::End::Singular);
    EXPECT_FALSE(r.events[0].fibre);
    EXPECT_TRUE(near(r.last, r.events[0].factor));
    // Along them: both plies break at once, nothing is left.
    r = ud.run("maxstress", {-1.0});
    ASSERT_EQ(r.events.size(), 2u);
    EXPECT_EQ(r.end, LpfResult::End::Broken);
    EXPECT_TRUE(near(r.last, Xc * 0.25, 1e-12));

    // No load: no event, never fails.
    r = ud.run("tsaiwu2d", {});
    EXPECT_TRUE(r.events.empty());
    EXPECT_EQ(r.end, LpfResult::End::Unloaded);
    EXPECT_EQ(r.last, kInf);

    // Cooled far enough, the residual stresses alone crack every ply of a
    // cross-ply laminate (the same transverse tension in each, factor 0);
    // the 0 degree plies then break under N1.
    Case hot({carbon(0), carbon(90), carbon(90), carbon(0)}, true);
    r = hot.run("maxstress", {1.0}, -3000);
    ASSERT_EQ(r.events.size(), 6u);
    for (int i = 0; i < 4; i++) {
        EXPECT_EQ(r.events[i].factor, 0.0);
        EXPECT_EQ(r.events[i].ply, i + 1);
        EXPECT_FALSE(r.events[i].fibre);
    }
    EXPECT_TRUE(r.events[4].fibre && r.events[5].fibre);
    EXPECT_GT(r.last, 0.0);
    EXPECT_TRUE(std::isfinite(r.last));

    // A ply without strengths cannot be rated: the run says so.
    std::vector<CriterionPly> bare(2);
    for (CriterionPly& p : bare) p.E1 = 140000, p.E2 = 9000, p.nu12 = 0.3, p.G12 = 4600;
    LaminateRating none(ud.an, bare, nullptr, nullptr);
    LastPlyFailure lpf(ud.an, none, nullptr, nullptr, Degradation());
    double loads[8] = {1, 0, 0, 0, 0, 0, 0, 0};
    lpf.run(criterionIndex("tsaiwu2d"), RatingLoad{loads, 0, 0}, r);
    EXPECT_EQ(r.end, LpfResult::End::Unrated);
    EXPECT_EQ(r.verdict, laminate::analysis::Verdict::NoStrength);
    EXPECT_EQ(r.last, 0.0);

    // Factors out of their ranges are refused; fibre failure may keep E2.
    Degradation d;
    EXPECT_TRUE(d.valid());
    d.fibreE2 = 1;
    EXPECT_TRUE(d.valid());
    for (double bad : {1.0, -0.1, std::nan(""), 2.0}) {
        Degradation e;
        e.fibreE1 = bad;
        EXPECT_FALSE(e.valid()) << bad;
        e = Degradation();
        e.matrixG12 = bad;
        EXPECT_FALSE(e.valid()) << bad;
        EXPECT_EQ(LastPlyFailure(ud.an, ud.rating, nullptr, nullptr, e).status(),
                  LastPlyFailure::BadDegradation);
    }
    EXPECT_TRUE(laminate::analysis::fibreMode("FF-c"));
    EXPECT_TRUE(laminate::analysis::fibreMode("fibre-kinking"));
    EXPECT_FALSE(laminate::analysis::fibreMode("IFF-A"));
    EXPECT_FALSE(laminate::analysis::fibreMode("shear"));
}
