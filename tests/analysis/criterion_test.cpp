// The criterion catalogue as an engineer checks it: uniaxial states give the
// strengths back, the reserve factor along a path with residual stresses
// agrees with a plain bisection on the index, and every refusal has its word.
#include <cmath>
#include <cstring>
#include <limits>
#include <map>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "laminate/analysis/criterion.h"
#include "laminate/analysis/criterion_path.h"
#include "criterion_plies.h"

using laminate::analysis::CriterionInfo;
using laminate::analysis::CriterionPly;
using criterion_plies::carbon;
using laminate::analysis::PlyStress;
using laminate::analysis::PreparedCriterion;
using laminate::analysis::Rating;
using laminate::analysis::Verdict;

namespace {

double const kInf = std::numeric_limits<double>::infinity();

CriterionInfo const& criterion(char const* name)
{
    CriterionInfo const* c = laminate::analysis::findCriterion(name);
    EXPECT_NE(c, nullptr) << name;
    return *c;
}

Rating rate(char const* name, CriterionPly const& ply, PlyStress res, PlyStress mech,
            double const* params = nullptr)
{
    PreparedCriterion p;
    laminate::analysis::prepare(criterion(name), ply, params, p);
    return laminate::analysis::rate(p, res, mech);
}

// The index at the failure state of a rating.
double indexAt(char const* name, CriterionPly const& ply, PlyStress res, PlyStress mech,
               Rating const& r)
{
    PreparedCriterion p;
    laminate::analysis::prepare(criterion(name), ply, nullptr, p);
    return laminate::analysis::assess(p, laminate::analysis::failureState(res, mech, r)).index;
}

std::string mode(char const* name, Rating const& r)
{
    return r.mode >= 0 ? criterion(name).modes[r.mode] : "-";
}

}  // namespace

TEST(CriterionCatalogue, RowsAreCompleteAndFoundByName)
{
    int n = 0;
    for (CriterionInfo const* const* c = laminate::analysis::kCriteria; *c; c++, n++) {
        CriterionInfo const& row = **c;
        EXPECT_EQ(laminate::analysis::findCriterion(row.name), &row);
        EXPECT_NE(row.modes[0], nullptr) << row.name;
        EXPECT_LE(row.nparams, laminate::analysis::kMaxCriterionParams);
        for (int i = 0; i < row.nparams; i++) {
            EXPECT_GE(row.params[i].def, row.params[i].min) << row.name;
            EXPECT_LE(row.params[i].def, row.params[i].max) << row.name;
        }
    }
    EXPECT_EQ(n, 8);
    EXPECT_EQ(laminate::analysis::findCriterion("larc04"), nullptr);
    EXPECT_EQ(laminate::analysis::wordIndex(criterion("puck").modes, "IFF-C"), 4);
    EXPECT_STREQ(laminate::analysis::verdictWord(Verdict::NoStrength), "nostrength");
    EXPECT_DOUBLE_EQ(laminate::analysis::marginOfSafety(2.0, 1.5), 1.0 / 3.0);
}

// Each criterion reduces to the strength under each uniaxial stress, in
// tension and in compression: RF = strength / stress, with its mode word.
TEST(CriterionUniaxial, ReserveFactorIsStrengthOverStress)
{
    CriterionPly ply = carbon();
    ply.site = laminate::analysis::PlySite::Unidirectional;  // LaRC03 without in-situ strengths
    struct Case {
        PlyStress mech;
        double strength;
        char const* word;  // of maxstress and maxstrain
    };
    Case const cases[] = {{{100, 0, 0}, 2560, "fibre-tension"},
                          {{-100, 0, 0}, 1590, "fibre-compression"},
                          {{0, 10, 0}, 73, "matrix-tension"},
                          {{0, -10, 0}, 185, "matrix-compression"},
                          {{0, 0, 10}, 90, "shear"},
                          {{0, 0, -10}, 90, "shear"}};
    char const* const names[] = {"maxstress", "maxstrain", "tsaihill", "hoffman",
                                 "tsaiwu2d",  "hashin2d",  "puck",     "larc03"};
    for (char const* name : names) {
        for (Case const& c : cases) {
            double const stress = std::fabs(c.mech.s1 + c.mech.s2 + c.mech.t12);
            Rating const r = rate(name, ply, {0, 0, 0}, c.mech);
            EXPECT_EQ(r.verdict, Verdict::Ok) << name;
            EXPECT_NEAR(r.rf, c.strength / stress, 1e-12 * r.rf) << name << " " << c.word;
            EXPECT_NEAR(indexAt(name, ply, {0, 0, 0}, c.mech, r), 1.0, 1e-12) << name;
            if (std::strncmp(name, "max", 3) == 0) {
                EXPECT_EQ(mode(name, r), c.word) << name;
            }
        }
    }
    // The mode words of the criteria with modes of their own.
    EXPECT_EQ(mode("puck", rate("puck", ply, {0, 0, 0}, {0, -10, 0})), "IFF-C");
    EXPECT_EQ(mode("puck", rate("puck", ply, {0, 0, 0}, {0, 0, 10})), "IFF-A");
    EXPECT_EQ(mode("puck", rate("puck", ply, {0, 0, 0}, {-100, 0, 0})), "FF-c");
    EXPECT_EQ(mode("hashin2d", rate("hashin2d", ply, {0, 0, 0}, {0, -10, 0})),
              "matrix-compression");
    EXPECT_EQ(mode("larc03", rate("larc03", ply, {0, 0, 0}, {-100, 0, 0})), "fibre-kinking");
    EXPECT_EQ(mode("larc03", rate("larc03", ply, {0, 0, 0}, {0, 0, 10})), "matrix-tension");
    // Hoffman and Tsai-Wu 2-D, with the published F12* = -1/2, differ under
    // biaxial stress only through the interaction term: at s1 = s2 = s both
    // are (F11 + F22 + 2 F12) s^2 + (F1 + F2) s.
    double const F11 = 1.0 / (2560.0 * 1590), F22 = 1.0 / (73.0 * 185);
    double const F1 = 1 / 2560.0 - 1 / 1590.0, F2 = 1 / 73.0 - 1 / 185.0;
    double const a = F11 + F22 - std::sqrt(F11 * F22), b = F1 + F2;
    double const s = (std::sqrt(b * b + 4 * a) - b) / (2 * a);
    EXPECT_NEAR(rate("tsaiwu2d", ply, {0, 0, 0}, {1, 1, 0}).rf, s, 1e-12 * s);
}

// Residual stresses alone: failure gives RF 0 and "residual"; nothing
// mechanical gives +inf and "never"; the path starts from the residual state.
TEST(CriterionResidual, ResidualStateSetsTheStartOfThePath)
{
    CriterionPly const ply = carbon();
    for (CriterionInfo const* const* c = laminate::analysis::kCriteria; *c; c++) {
        char const* name = (*c)->name;
        Rating r = rate(name, ply, {0, 400, 0}, {100, 0, 0});
        EXPECT_EQ(r.verdict, Verdict::Residual) << name;
        EXPECT_EQ(r.rf, 0.0) << name;
        EXPECT_GE(indexAt(name, ply, {0, 400, 0}, {100, 0, 0}, r), 1.0) << name;
        EXPECT_EQ(mode(name, r), std::strcmp(name, "puck") ? "matrix-tension" : "IFF-A");
        EXPECT_STREQ(laminate::analysis::verdictWord(r.verdict), "residual");

        r = rate(name, ply, {0, 20, 0}, {0, 0, 0});
        EXPECT_EQ(r.verdict, Verdict::Never) << name;
        EXPECT_EQ(r.rf, kInf) << name;
        EXPECT_EQ(r.mode, -1) << name;
        EXPECT_LT(indexAt(name, ply, {0, 20, 0}, {0, 0, 0}, r), 1.0) << name;
    }
    // Max stress: a residual transverse tension of 30 leaves 73 - 30 to the
    // load; a residual compression of 30 adds 30 to it.
    EXPECT_DOUBLE_EQ(rate("maxstress", ply, {0, 30, 0}, {0, 10, 0}).rf, 4.3);
    EXPECT_DOUBLE_EQ(rate("maxstress", ply, {0, -30, 0}, {0, 10, 0}).rf, 10.3);
    // Tsai-Hill: the load path leaves transverse compression for tension at
    // RF = 3; from there (s2/73)^2 = 1 at RF = 3 + 7.3.
    EXPECT_NEAR(rate("tsaihill", ply, {0, -30, 0}, {0, 10, 0}).rf, 10.3, 1e-12);
}

// What a ply lacks, a stress that is not finite and a parameter out of range
// each give their word and a factor of 0, never "never fails".
TEST(CriterionRefusal, MissingDataHasItsWord)
{
    for (CriterionInfo const* const* c = laminate::analysis::kCriteria; *c; c++) {
        CriterionPly ply = carbon();
        ply.given &= ~laminate::analysis::kGivenYc;
        Rating r = rate((*c)->name, ply, {0, 0, 0}, {0, 0, 10});
        EXPECT_EQ(r.verdict, Verdict::NoStrength) << (*c)->name;
        EXPECT_EQ(r.rf, 0.0);
        r = rate((*c)->name, carbon(), {0, 0, 0}, {NAN, 0, 10});
        EXPECT_EQ(r.verdict, Verdict::NonFinite) << (*c)->name;
        r = rate((*c)->name, carbon(), {kInf, 0, 0}, {0, 0, 10});
        EXPECT_EQ(r.verdict, Verdict::NonFinite) << (*c)->name;
        EXPECT_EQ(laminate::analysis::assess(PreparedCriterion{*c, Verdict::NoData, {}}, {0, 0, 0}).verdict,
                  Verdict::NoData);
    }
    CriterionPly ply = carbon();
    ply.Yc = -185;  // given but not usable
    EXPECT_EQ(rate("puck", ply, {0, 0, 0}, {0, 0, 1}).verdict, Verdict::NoStrength);

    ply = carbon();
    ply.given &= ~(laminate::analysis::kGivenGIc | laminate::analysis::kGivenGIIc);
    EXPECT_EQ(rate("larc03", ply, {0, 0, 0}, {0, 0, 1}).verdict, Verdict::NoData);  // thin ply
    ply.t = 1.0;  // thick: its in-situ strengths need no toughness
    EXPECT_EQ(rate("larc03", ply, {0, 0, 0}, {0, 0, 1}).verdict, Verdict::Ok);
    ply.G12 = 1000;  // below Xc: no misalignment model
    EXPECT_EQ(rate("larc03", ply, {0, 0, 0}, {0, 0, 1}).verdict, Verdict::NoData);

    ply = carbon();
    ply.fibre = laminate::analysis::FibreKind::Other;  // no default inclinations
    EXPECT_EQ(rate("puck", ply, {0, 0, 0}, {0, 0, 1}).verdict, Verdict::NoData);
    ply.set(laminate::analysis::kGivenPParT, 0.3);
    ply.set(laminate::analysis::kGivenPParC, 0.25);
    EXPECT_EQ(rate("puck", ply, {0, 0, 0}, {0, 0, 1}).verdict, Verdict::Ok);

    ply = carbon();
    ply.given &= ~laminate::analysis::kGivenXt;  // a strain allowable stands in for it
    EXPECT_EQ(rate("maxstrain", ply, {0, 0, 0}, {1, 0, 0}).verdict, Verdict::NoStrength);
    ply.set(laminate::analysis::kGivenE1t, 0.015);
    EXPECT_DOUBLE_EQ(rate("maxstrain", ply, {0, 0, 0}, {1610, 0, 0}).rf, 1.5);

    double const f12[] = {2.0};
    EXPECT_EQ(rate("tsaiwu2d", carbon(), {0, 0, 0}, {0, 0, 1}, f12).verdict, Verdict::BadParameter);
    double const half[] = {0.5, 0.5, 0.5};  // weakening is 0 or 1
    EXPECT_EQ(rate("puck", carbon(), {0, 0, 0}, {0, 0, 1}, half).verdict, Verdict::BadParameter);
}

namespace {

// The first r at which the index reaches 1 along res + r mech, by a plain
// scan of 4000 steps on [0, top] and bisection of the first step that
// reaches 1; +inf when none does.
double bisection(PreparedCriterion const& p, PlyStress res, PlyStress mech, double top)
{
    auto index = [&](double r) {
        PlyStress const s{res.s1 + r * mech.s1, res.s2 + r * mech.s2, res.t12 + r * mech.t12};
        return laminate::analysis::assess(p, s).index;
    };
    int const steps = 4000;
    double lo = 0.0;
    for (int i = 1; i <= steps; i++) {
        double hi = top * i / steps;
        if (index(hi) < 1.0) {
            lo = hi;
            continue;
        }
        for (int j = 0; j < 200 && hi - lo > 1e-15 * hi; j++) {
            double const mid = 0.5 * (lo + hi);
            (index(mid) >= 1.0 ? hi : lo) = mid;
        }
        return 0.5 * (lo + hi);
    }
    return kInf;
}

// A random ply around the carbon one: strengths, stiffness, thickness, site
// and inclinations varied.
CriterionPly randomPly(std::mt19937& gen)
{
    std::uniform_real_distribution<double> u(0.6, 1.4);
    CriterionPly p = carbon();
    p.E1 *= u(gen);
    p.E2 *= u(gen);
    p.G12 *= u(gen);
    p.set(laminate::analysis::kGivenXt, p.Xt * u(gen));
    p.set(laminate::analysis::kGivenXc, p.Xc * u(gen));
    p.set(laminate::analysis::kGivenYt, p.Yt * u(gen));
    p.set(laminate::analysis::kGivenYc, p.Yc * u(gen));
    p.set(laminate::analysis::kGivenS12, p.S12 * u(gen));
    p.set(laminate::analysis::kGivenGIc, p.GIc * u(gen));
    p.set(laminate::analysis::kGivenGIIc, p.GIIc * u(gen));
    double const sites = std::uniform_real_distribution<double>(0, 3)(gen);
    p.site = sites < 1   ? laminate::analysis::PlySite::Embedded
             : sites < 2 ? laminate::analysis::PlySite::Outer
                         : laminate::analysis::PlySite::Unidirectional;
    p.t = u(gen) < 1.0 ? 0.125 * u(gen) : 1.0 * u(gen);
    p.fibre = u(gen) < 1.0 ? laminate::analysis::FibreKind::Carbon : laminate::analysis::FibreKind::Glass;
    return p;
}

}  // namespace

// The reserve factor from the closed forms (and from the bracketed roots of
// LaRC03 and of Puck with weakening) equals a plain bisection on the index
// within 1e-9, on random plies and random paths with residual stresses.
TEST(CriterionRandomPaths, ReserveFactorMatchesBisection)
{
    std::mt19937 gen(21);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    struct Run {
        char const* name;
        double params[3];
        int nparams;
    };
    Run const runs[] = {{"maxstress", {}, 0},       {"maxstrain", {}, 0},       {"tsaihill", {}, 0},
                        {"hoffman", {}, 0},         {"tsaiwu2d", {-0.5}, 1},    {"hashin2d", {}, 0},
                        {"puck", {0, 0.5, 0.5}, 3}, {"puck", {1, 0.5, 0.5}, 3}, {"larc03", {}, 0}};
    for (Run const& run : runs) {
        int rated = 0;
        std::map<int, int> hist;
        for (int trial = 0; trial < 300; trial++) {
            CriterionPly const ply = randomPly(gen);
            PreparedCriterion p;
            Verdict const v = laminate::analysis::prepare(criterion(run.name), ply, run.params, p);
            // Only LaRC03 may refuse a random ply: a thin ply's in-situ shear
            // strength can leave no misalignment angle that fails at Xc.
            if (v == Verdict::NoData && std::strcmp(run.name, "larc03") == 0) continue;
            ASSERT_EQ(v, Verdict::Ok) << run.name;
            // Residual stresses up to about half the strengths, mechanical
            // ones about the strengths; some components 0.
            PlyStress res{800 * u(gen), 40 * u(gen), 40 * u(gen)};
            PlyStress mech{2000 * u(gen), 100 * u(gen), 80 * u(gen)};
            if (trial % 7 == 0) mech.s1 = 0.0;
            if (trial % 11 == 0) res.t12 = 0.0;
            if (laminate::analysis::assess(p, res).index >= 1.0) continue;
            Rating const r = laminate::analysis::rate(p, res, mech);
            double const top = r.rf < kInf ? 2.0 * r.rf : 1e3;
            double const ref = bisection(p, res, mech, top);
            if (r.rf == kInf) {
                EXPECT_EQ(ref, kInf) << run.name << " trial " << trial;
                continue;
            }
            EXPECT_EQ(r.verdict, Verdict::Ok);
            EXPECT_NEAR(r.rf, ref, 1e-9 * ref) << run.name << " trial " << trial;
            rated++;
            hist[r.mode]++;
        }
        EXPECT_GT(rated, 200) << run.name;
        // Every mode has been the first to fail on some path.
        for (int m = 0; criterion(run.name).modes[m]; m++)
            EXPECT_GT(hist[m], 0) << run.name << " " << criterion(run.name).modes[m];
    }
}

// Stresses from 1e-30 to 1e90, exact zeros and both signs: every criterion
// answers a factor that is 0, positive or +inf (never NaN) and a finite
// index, without throwing.
TEST(CriterionRandomPaths, ExtremeStressesGiveNumbers)
{
    std::mt19937 gen(5);
    std::uniform_real_distribution<double> u(0.0, 1.0);
    auto stress = [&]() {
        double const pick = u(gen);
        if (pick < 0.15) return 0.0;
        double const v = std::pow(10.0, -30.0 + 120.0 * u(gen));
        return pick < 0.6 ? v : -v;
    };
    double const weak[] = {1, 0.5, 0.5};
    for (CriterionInfo const* const* c = laminate::analysis::kCriteria; *c; c++) {
        for (double const* params : {static_cast<double const*>(nullptr), weak}) {
            if (params && std::strcmp((*c)->name, "puck") != 0) continue;
            PreparedCriterion p;
            ASSERT_EQ(laminate::analysis::prepare(**c, carbon(), params, p), Verdict::Ok);
            for (int trial = 0; trial < 2000; trial++) {
                PlyStress const res{stress(), stress(), stress()};
                PlyStress const mech{stress(), stress(), stress()};
                Rating const r = laminate::analysis::rate(p, res, mech);
                EXPECT_TRUE(r.verdict == Verdict::Ok || r.verdict == Verdict::Never ||
                            r.verdict == Verdict::Residual)
                    << (*c)->name;
                EXPECT_GE(r.rf, 0.0) << (*c)->name;
                EXPECT_EQ(r.rf == 0.0, r.verdict == Verdict::Residual) << (*c)->name;
                double const index = laminate::analysis::assess(p, res).index;
                EXPECT_TRUE(std::isfinite(index)) << (*c)->name;
                EXPECT_EQ(index >= 1.0, r.verdict == Verdict::Residual) << (*c)->name;
            }
        }
    }
}

// A first-ply failure skips a face once another has failed at a factor cap,
// when the criterion's bound keeps the face's index below 1 up to there.  On
// random plies and paths: a skipped face never fails by cap (its factor lies
// beyond, the index sampled along the way stays below 1), a face that fails
// by cap is never skipped, and the bounds do skip most faces far from
// failing (every one of them for the exact bounds of Tsai-Hill and Hashin).
TEST(CriterionBound, SkipsOnlyFacesThatCannotFailBeforeTheCap)
{
    using laminate::analysis::criterion_path::staysBelow;
    std::mt19937 gen(33);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    struct Run {
        char const* name;
        double least;  // the share of rated faces skipped at a third of their factor
    };
    Run const runs[] = {{"tsaihill", 1.0}, {"hashin2d", 1.0}, {"larc03", 0.5}, {"puck", 0.0}};
    double const factors[] = {0.33, 0.9, 0.999, 1.0, 1.5};
    for (Run const& run : runs) {
        int rated = 0, skipped = 0;
        for (int trial = 0; trial < 400; trial++) {
            PreparedCriterion p;
            if (laminate::analysis::prepare(criterion(run.name), randomPly(gen), nullptr, p) !=
                Verdict::Ok)
                continue;  // LaRC03 may refuse a thin ply
            PlyStress res{800 * u(gen), 40 * u(gen), 40 * u(gen)};
            PlyStress mech{2000 * u(gen), 100 * u(gen), 80 * u(gen)};
            if (trial % 7 == 0) mech.s1 = 0.0;
            if (trial % 11 == 0) res.t12 = 0.0;
            Rating const r = laminate::analysis::rate(p, res, mech);
            if (r.verdict == Verdict::Residual) {
                EXPECT_FALSE(staysBelow(p, res, mech, 1.0)) << run.name;
                continue;
            }
            double const scale = r.rf < kInf ? r.rf : 100.0;
            rated++;
            for (double factor : factors) {
                double const cap = factor * scale;
                if (!staysBelow(p, res, mech, cap)) continue;
                EXPECT_GT(r.rf, cap) << run.name << " trial " << trial;
                for (int i = 0; i <= 200; i++) {
                    double const f = cap * i / 200;
                    PlyStress const s{res.s1 + f * mech.s1, res.s2 + f * mech.s2,
                                      res.t12 + f * mech.t12};
                    ASSERT_LT(laminate::analysis::assess(p, s).index, 1.0)
                        << run.name << " trial " << trial << " at " << f;
                }
                if (factor == factors[0]) skipped++;
            }
        }
        EXPECT_GT(rated, 300) << run.name;
        EXPECT_GE(skipped, run.least * rated) << run.name;
        if (run.least == 0.0) {
            EXPECT_EQ(skipped, 0) << run.name;  // no bound: always rated
        }
    }
    // Nothing is said about stresses that are not numbers, nor without a cap.
    PreparedCriterion p;
    laminate::analysis::prepare(criterion("hashin2d"), carbon(), nullptr, p);
    PlyStress const small{1, 1, 1};
    EXPECT_FALSE(staysBelow(p, small, PlyStress{std::nan(""), 0, 0}, 1.0));
    EXPECT_FALSE(staysBelow(p, small, small, kInf));
    EXPECT_TRUE(staysBelow(p, small, small, 1.0));
    // Tsai-Hill with a transverse strength above twice the axial one has
    // branches that are not convex: its bound says nothing.
    CriterionPly odd = carbon();
    odd.set(laminate::analysis::kGivenYc, 5000);
    laminate::analysis::prepare(criterion("tsaihill"), odd, nullptr, p);
    EXPECT_FALSE(staysBelow(p, small, small, 1.0));
}
