// Residual stresses of free laminates against hand computations, and
// reserve factors of laminates under the criteria catalogue: closed-form
// states through the laminate path, agreement with a bisection on the index
// of the recovered stresses, and the words of residual and missing data.
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "laminate/analysis/laminate_rating.h"
#include "laminate/analysis/residual_stress.h"
#include "laminate/lamina_build.h"

using laminate::analysis::CriterionPly;
using laminate::analysis::Face;
using laminate::analysis::LaminateAnalysis;
using laminate::analysis::LaminateFailure;
using laminate::analysis::LaminateRating;
using laminate::analysis::PlyStress;
using laminate::analysis::ResidualStress;
using laminate::analysis::Verdict;
using lamtest::near;

namespace {

double const kInf = std::numeric_limits<double>::infinity();

// A carbon/epoxy ply, N-mm-MPa, as a record layer and as the criteria read it.
lamtest::Ply carbon(double angle, double t = 0.125)
{
    lamtest::Ply p = lamtest::ply(angle, t);
    p.E1 = 140000, p.E2 = 9000, p.nu12 = 0.3, p.G12 = 4600;
    return p;
}

CriterionPly criterionPly(lamtest::Ply const& r, laminate::analysis::PlySite site)
{
    CriterionPly p;
    p.E1 = r.E1, p.E2 = r.E2, p.nu12 = r.nu12, p.G12 = r.G12, p.t = r.t, p.site = site;
    p.set(laminate::analysis::kGivenXt, 2000);
    p.set(laminate::analysis::kGivenXc, 1200);
    p.set(laminate::analysis::kGivenYt, 50);
    p.set(laminate::analysis::kGivenYc, 200);
    p.set(laminate::analysis::kGivenS12, 80);
    p.set(laminate::analysis::kGivenGIc, 0.26);
    p.set(laminate::analysis::kGivenGIIc, 1.0);
    return p;
}

int criterionIndex(char const* name)
{
    for (int c = 0; laminate::analysis::kCriteria[c]; c++)
        if (std::strcmp(laminate::analysis::kCriteria[c]->name, name) == 0) return c;
    ADD_FAILURE() << name;
    return 0;
}

struct Q {
    double Q11, Q22, Q12;
    explicit Q(lamtest::Ply const& p)
    {
        double const d = 1 - p.nu12 * p.nu12 * p.E2 / p.E1;
        Q11 = p.E1 / d, Q22 = p.E2 / d, Q12 = p.nu12 * p.E2 / d;
    }
};

}  // namespace

TEST(ResidualStress, CrossPlyUnderTemperatureAndMoistureMatchesHandComputation)
{
    // [0/90]s: the free laminate expands by e = ((Q11 + Q12) a1 + (Q12 + Q22) a2)
    // / (Q11 + Q22 + 2 Q12) per degree in x and y, without curvature; each ply
    // is held at e against its own free strains, so in layer axes
    //   s1 = Q11 (e - a1) dT + Q12 (e - a2) dT,  s2 = Q12 (e - a1) dT + Q22 (e - a2) dT.
    double const a1 = -0.3e-6, a2 = 28e-6, b2 = 0.4, dT = -160, dM = 0.005, t = 0.125;
    std::vector<lamtest::Ply> const plies = {carbon(0), carbon(90), carbon(90), carbon(0)};
    lamtest::Lam lam(plies);
    LaminateAnalysis an(lam);
    double const alpha[8] = {a1, a2, a1, a2, a1, a2, a1, a2};
    double const beta[8] = {0, b2, 0, b2, 0, b2, 0, b2};
    ResidualStress const r(an, alpha, beta);
    ASSERT_EQ(r.status(), ResidualStress::Ok);
    ASSERT_TRUE(r.hasThermal() && r.hasMoisture());
    Q const q(plies[0]);
    double const e = ((q.Q11 + q.Q12) * a1 + (q.Q12 + q.Q22) * a2) / (q.Q11 + q.Q22 + 2 * q.Q12);
    double const s1 = (q.Q11 * (e - a1) + q.Q12 * (e - a2)) * dT;
    double const s2 = (q.Q12 * (e - a1) + q.Q22 * (e - a2)) * dT;
    EXPECT_GT(s2, 20.0);  // cooled down from the cure: transverse tension
    for (int k = 1; k <= 4; k++) {
        for (Face f : {Face::Top, Face::Bottom}) {
            PlyStress const s = r.stress(k, f, dT, 0);
            EXPECT_TRUE(near(s.s1, s1, 1e-9)) << k;
            EXPECT_TRUE(near(s.s2, s2, 1e-9)) << k;
            EXPECT_NEAR(s.t12, 0.0, 1e-9 * std::fabs(s1)) << k;
            // Moisture superposes, by the same rule with beta.
            double const em = (q.Q12 + q.Q22) * b2 / (q.Q11 + q.Q22 + 2 * q.Q12);
            PlyStress const both = r.stress(k, f, dT, dM);
            EXPECT_TRUE(near(both.s2 - s.s2, (q.Q12 * em + q.Q22 * (em - b2)) * dM, 1e-9));
        }
    }
    double nm[6], free[6];
    r.resultants(dT, 0, nm);
    r.freeStrains(dT, 0, free);
    double const NT = 2 * t * ((q.Q11 + q.Q12) * a1 + (q.Q12 + q.Q22) * a2) * dT;
    EXPECT_TRUE(near(nm[0], NT, 1e-9));
    EXPECT_TRUE(near(nm[1], NT, 1e-9));
    EXPECT_TRUE(near(free[0], e * dT, 1e-9));
    EXPECT_TRUE(near(free[1], e * dT, 1e-9));
    for (int i : {2, 3, 4, 5}) EXPECT_NEAR(free[i], 0.0, 1e-12) << i;
    // Laminate axes: the 90 degree ply carries the x stress the 0 degree
    // ply carries across its fibres.
    double xy[3];
    r.stressLaminateAxes(2, Face::Top, dT, 0, xy);
    EXPECT_TRUE(near(xy[0], s2, 1e-9));
    EXPECT_TRUE(near(xy[1], s1, 1e-9));
}

TEST(ResidualStress, SelfEquilibratedInAnyLaminate)
{
    // No external load: the residual stresses of every laminate, symmetric
    // or not, integrate to zero force and zero moment.
    std::mt19937 gen(5);
    std::uniform_real_distribution<double> u(0, 1);
    for (int trial = 0; trial < 20; trial++) {
        std::vector<lamtest::Ply> plies;
        std::vector<double> alpha, beta;
        int const n = 1 + trial % 7;
        for (int k = 0; k < n; k++) {
            plies.push_back(carbon(-90 + 180 * u(gen), 0.05 + 0.3 * u(gen)));
            alpha.insert(alpha.end(), {-1e-6 + 2e-6 * u(gen), 20e-6 + 20e-6 * u(gen)});
            beta.insert(beta.end(), {0.01 * u(gen), 0.2 + 0.3 * u(gen)});
        }
        lamtest::Lam lam(plies);
        LaminateAnalysis an(lam);
        ResidualStress const r(an, alpha.data(), beta.data());
        ASSERT_EQ(r.status(), ResidualStress::Ok);
        double N[3] = {0, 0, 0}, M[3] = {0, 0, 0}, scale = 1;
        for (int k = 1; k <= n; k++) {
            double top[3], bot[3];
            r.stressLaminateAxes(k, Face::Top, -150, 0.01, top);
            r.stressLaminateAxes(k, Face::Bottom, -150, 0.01, bot);
            double const z0 = an.zLow(k), z1 = an.zHigh(k), h = z1 - z0;
            for (int i = 0; i < 3; i++) {
                // Linear through the ply: exact integrals of s and s z.
                N[i] += 0.5 * (top[i] + bot[i]) * h;
                M[i] += h / 6 * (top[i] * (2 * z0 + z1) + bot[i] * (z0 + 2 * z1));
                scale = std::fmax(scale, std::fabs(top[i]) * h);
            }
        }
        for (int i = 0; i < 3; i++) {
            EXPECT_NEAR(N[i], 0.0, 1e-9 * scale) << trial;
            EXPECT_NEAR(M[i], 0.0, 1e-9 * scale * an.thickness()) << trial;
        }
    }
}

TEST(LaminateRating, SinglePlyUniaxialGivesStrengthOverStress)
{
    // One 0 degree ply of thickness 0.5 on its own: N / t is the only
    // stress, and every criterion reaches its strength there.
    double const t = 0.5;
    lamtest::Ply const p = carbon(0, t);
    lamtest::Lam lam({p});
    LaminateAnalysis an(lam);
    LaminateRating const rating(an, {criterionPly(p, laminate::analysis::plySite(1, 1))}, nullptr, nullptr);
    ASSERT_EQ(rating.status(), LaminateRating::Ok);
    struct Case {
        double loads[8];
        double strength, resultant;
    };
    Case const cases[] = {{{100, 0, 0, 0, 0, 0, 0, 0}, 2000, 100},
                          {{-100, 0, 0, 0, 0, 0, 0, 0}, 1200, 100},
                          {{0, 10, 0, 0, 0, 0, 0, 0}, 50, 10},
                          {{0, -10, 0, 0, 0, 0, 0, 0}, 200, 10},
                          {{0, 0, 10, 0, 0, 0, 0, 0}, 80, 10},
                          {{0, 0, -10, 0, 0, 0, 0, 0}, 80, 10}};
    char const* const fibreModes[] = {"fibre-tension", "fibre-compression", "matrix-tension",
                                      "matrix-compression", "shear", "shear"};
    for (int c = 0; laminate::analysis::kCriteria[c]; c++) {
        char const* name = laminate::analysis::kCriteria[c]->name;
        for (int i = 0; i < 6; i++) {
            Case const& k = cases[i];
            LaminateFailure const f = rating.firstPlyFailure(c, {k.loads, 0, 0});
            EXPECT_EQ(f.verdict, Verdict::Ok) << name << " case " << i;
            EXPECT_TRUE(near(f.rf, k.strength * t / k.resultant, 1e-9)) << name << " case " << i;
            EXPECT_EQ(f.ply, 1);
            if (std::strncmp(name, "max", 3) == 0) {
                EXPECT_STREQ(laminate::analysis::kCriteria[c]->modes[f.mode], fibreModes[i]) << name;
            }
        }
    }
    // Nothing mechanical, nothing residual: never.
    double const none[8] = {0, 0, 0, 0, 0, 0, 0, 0};
    LaminateFailure const f = rating.firstPlyFailure(0, {none, 0, 0});
    EXPECT_EQ(f.verdict, Verdict::Never);
    EXPECT_EQ(f.rf, kInf);
    EXPECT_EQ(f.ply, 0);
    EXPECT_EQ(f.face, Face::None);
}

TEST(LaminateRating, ResidualStressesAloneGiveZeroAndTheirWord)
{
    // [0/90]s cooled far enough cracks across its fibres before any load.
    double const a1 = -0.3e-6, a2 = 28e-6;
    std::vector<lamtest::Ply> const plies = {carbon(0), carbon(90), carbon(90), carbon(0)};
    lamtest::Lam lam(plies);
    LaminateAnalysis an(lam);
    double const alpha[8] = {a1, a2, a1, a2, a1, a2, a1, a2};
    std::vector<CriterionPly> cps;
    for (int k = 1; k <= 4; k++) cps.push_back(criterionPly(plies[k - 1], laminate::analysis::plySite(k, 4)));
    LaminateRating const rating(an, cps, alpha, nullptr);
    int const maxstress = criterionIndex("maxstress");
    double const load[8] = {100, 0, 0, 0, 0, 0, 0, 0};
    // The transverse residual stress per degree of cooling, from the rating's
    // own residual stresses (checked above against the hand computation).
    double const perDegree = -rating.residual().stress(1, Face::Top, 1, 0).s2;
    double const cracking = 50 / perDegree;  // Yt reached by the cooling alone
    LaminateFailure const cold = rating.firstPlyFailure(maxstress, {load, -1.01 * cracking, 0});
    EXPECT_EQ(cold.verdict, Verdict::Residual);
    EXPECT_EQ(cold.rf, 0.0);
    EXPECT_EQ(cold.ply, 1);
    EXPECT_STREQ(laminate::analysis::kCriteria[maxstress]->modes[cold.mode], "matrix-tension");
    EXPECT_STREQ(laminate::analysis::verdictWord(cold.verdict), "residual");
    // Cooled less, the 90 degree plies under N1 fail at the load that brings
    // their transverse stress from the residual one up to Yt.
    LaminateFailure const warm = rating.firstPlyFailure(maxstress, {load, -0.5 * cracking, 0});
    EXPECT_EQ(warm.verdict, Verdict::Ok);
    double const mech = rating.mechanical(2, Face::Top, load).s2;
    EXPECT_TRUE(near(warm.rf, (50 - 25) / mech, 1e-9));
    EXPECT_EQ(warm.ply, 2);
}

TEST(LaminateRating, PliesWithoutWhatACriterionNeedsSayWhy)
{
    lamtest::Ply const p = carbon(0);
    lamtest::Lam lam({p, carbon(90), p});
    LaminateAnalysis an(lam);
    std::vector<CriterionPly> cps(3, criterionPly(p, laminate::analysis::PlySite::Outer));
    cps[1] = CriterionPly{};  // the middle ply: moduli only, no strength
    cps[1].E1 = p.E1, cps[1].E2 = p.E2, cps[1].nu12 = p.nu12, cps[1].G12 = p.G12;
    LaminateRating const rating(an, cps, nullptr, nullptr);
    double const load[8] = {100, 0, 0, 0, 0, 0, 0, 0};
    for (int c = 0; laminate::analysis::kCriteria[c]; c++) {
        LaminateFailure const f = rating.firstPlyFailure(c, {load, 0, 0});
        EXPECT_EQ(f.verdict, Verdict::NoStrength) << laminate::analysis::kCriteria[c]->name;
        EXPECT_EQ(f.ply, 2);
        EXPECT_EQ(f.rf, 0.0);
        laminate::analysis::FaceRating const r = rating.ratePly(c, 2, {load, 0, 0});
        EXPECT_EQ(r.rating.verdict, Verdict::NoStrength);
        EXPECT_EQ(r.face, Face::None);
        EXPECT_EQ(rating.ratePly(c, 1, {load, 0, 0}).rating.verdict, Verdict::Ok);
    }
    // A record without a fibre kind gives Puck no inclinations.
    laminate_model::PlyData d = an.plies()[0].data;
    CriterionPly const fromRecord = laminate::analysis::criterionPly(d, laminate::analysis::PlySite::Outer);
    EXPECT_EQ(fromRecord.fibre, laminate::analysis::FibreKind::Other);
    EXPECT_TRUE(fromRecord.has(laminate::analysis::kGivenStrengths));
    d.Yt = 0;  // 0 is "not given" in a record
    EXPECT_FALSE(laminate::analysis::criterionPly(d, laminate::analysis::PlySite::Outer).has(laminate::analysis::kGivenYt));
}

TEST(LaminateRating, MaterialsMapToTheCriteriaWithTheirUnitsAndSites)
{
    laminate::analysis::PlyMaterial m;
    ASSERT_TRUE(m.read({{"E1", "140e9"}, {"E2", "9e9"}, {"nu12", "0.3"}, {"G12", "4.6e9"},
                        {"Xt", "2e9"}, {"Yc", "2e8"}, {"GIc", "260"}, {"fibre", "glass"},
                        {"units", "N-m-Pa"}, {"alpha0", "50"}}));
    CriterionPly const p = laminate::analysis::criterionPly(m, 0.000125, laminate::analysis::PlySite::Embedded);
    EXPECT_EQ(p.mmPerLength, 1000.0);
    EXPECT_EQ(p.fibre, laminate::analysis::FibreKind::Glass);
    EXPECT_EQ(p.alpha0, 50.0);
    EXPECT_EQ(p.t, 0.000125);
    EXPECT_TRUE(p.has(laminate::analysis::kGivenXt | laminate::analysis::kGivenYc | laminate::analysis::kGivenGIc));
    EXPECT_FALSE(p.has(laminate::analysis::kGivenXc));
    EXPECT_FALSE(p.has(laminate::analysis::kGivenGIIc));
    // Glass has default inclinations, which count as given.
    EXPECT_TRUE(p.has(laminate::analysis::kGivenPParT | laminate::analysis::kGivenPParC));
    EXPECT_EQ(laminate::analysis::plySite(1, 1), laminate::analysis::PlySite::Unidirectional);
    EXPECT_EQ(laminate::analysis::plySite(1, 4), laminate::analysis::PlySite::Outer);
    EXPECT_EQ(laminate::analysis::plySite(4, 4), laminate::analysis::PlySite::Outer);
    EXPECT_EQ(laminate::analysis::plySite(2, 4), laminate::analysis::PlySite::Embedded);
}

namespace {

// The first r at which the index of res + r mech reaches 1, by a scan of
// 4000 steps on [0, top] and bisection of the first step that reaches it.
double bisection(laminate::analysis::PreparedCriterion const& p, PlyStress res, PlyStress mech, double top)
{
    auto index = [&](double r) {
        return laminate::analysis::assess(p, {res.s1 + r * mech.s1, res.s2 + r * mech.s2,
                                    res.t12 + r * mech.t12})
            .index;
    };
    double lo = 0.0;
    for (int i = 1; i <= 4000; i++) {
        double hi = top * i / 4000;
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

}  // namespace

TEST(LaminateRating, ReserveFactorsMatchBisectionOnRecoveredStresses)
{
    // Random laminates, temperatures and load paths: every face's reserve
    // factor against a bisection on the index of residual stresses plus the
    // stresses the model's recovery gives for the loads.
    std::mt19937 gen(21);
    std::uniform_real_distribution<double> u(0, 1);
    int checked = 0, residual = 0;
    for (int trial = 0; trial < 40; trial++) {
        int const n = 2 + trial % 7;
        std::vector<lamtest::Ply> plies;
        std::vector<CriterionPly> cps;
        std::vector<double> alpha;
        for (int k = 1; k <= n; k++) {
            plies.push_back(carbon(std::round(-90 + 180 * u(gen)), 0.1 + 0.3 * u(gen)));
            plies.back().E2 *= 0.8 + 0.4 * u(gen);
            cps.push_back(criterionPly(plies.back(), laminate::analysis::plySite(k, n)));
            cps.back().fibre = laminate::analysis::FibreKind::Carbon;
            alpha.insert(alpha.end(), {-0.5e-6 * u(gen), 20e-6 + 15e-6 * u(gen)});
        }
        lamtest::Lam lam(plies);
        LaminateAnalysis an(lam);
        LaminateRating const rating(an, cps, alpha.data(), nullptr);
        ASSERT_EQ(rating.status(), LaminateRating::Ok);
        double loads[8];
        for (int i = 0; i < 8; i++) loads[i] = (u(gen) < 0.3 ? 0.0 : -200 + 400 * u(gen)) / (i < 3 ? 1 : 10);
        double const dT = -300 * u(gen);
        laminate::analysis::Evaluation ev;
        an.evaluate(loads, ev);
        for (int c = 0; laminate::analysis::kCriteria[c]; c++) {
            double smallest = kInf;
            for (int k = 1; k <= n; k++) {
                laminate::analysis::PreparedCriterion const& p = rating.prepared(c, k);
                if (p.status != Verdict::Ok) continue;  // LaRC03 may refuse a thin ply
                for (Face f : {Face::Top, Face::Bottom}) {
                    double const* s = f == Face::Top ? ev.plies[k - 1].state.stressesTopLam
                                                     : ev.plies[k - 1].state.stressesBasLam;
                    PlyStress const mech{s[0], s[1], s[2]};
                    PlyStress const res = rating.residual().stress(k, f, dT, 0);
                    laminate::analysis::FaceRating const r = rating.rateFace(c, k, f, {loads, dT, 0});
                    smallest = std::fmin(smallest, r.rating.rf);
                    if (r.rating.verdict == Verdict::Residual) {
                        EXPECT_GE(laminate::analysis::assess(p, res).index, 1.0);
                        residual++;
                        continue;
                    }
                    double const top = r.rating.rf < kInf ? 2.0 * r.rating.rf : 1e3;
                    double const ref = bisection(p, res, mech, top);
                    if (r.rating.rf == kInf) {
                        EXPECT_EQ(ref, kInf) << laminate::analysis::kCriteria[c]->name;
                        continue;
                    }
                    EXPECT_NEAR(r.rating.rf, ref, 1e-9 * ref)
                        << laminate::analysis::kCriteria[c]->name << " trial " << trial << " ply " << k;
                    checked++;
                }
            }
            // The laminate's first-ply failure is the smallest of them.
            LaminateFailure const f = rating.firstPlyFailure(c, {loads, dT, 0});
            if (f.verdict == Verdict::Ok || f.verdict == Verdict::Never) {
                EXPECT_EQ(f.rf, smallest);
            }
        }
    }
    EXPECT_GT(checked, 1500);
    EXPECT_GT(residual, 0);
}

TEST(LaminateRating, FirstPlyFailureEqualsTheSmallestOfEveryFace)
{
    // The first-ply failure skips faces that its criterion's bound shows
    // cannot fail first; it must still answer exactly what rating every face
    // in order gives: the first face on residual stresses alone, else the
    // first face that could not be rated, else the first face with the
    // smallest factor.  Random laminates, loads (some of them 0) and
    // temperatures, every criterion.
    std::mt19937 gen(8);
    std::uniform_real_distribution<double> u(0, 1);
    int failures = 0, residuals = 0, refusals = 0;
    for (int trial = 0; trial < 60; trial++) {
        int const n = 2 + trial % 9;
        std::vector<lamtest::Ply> plies;
        std::vector<CriterionPly> cps;
        std::vector<double> alpha;
        for (int k = 1; k <= n; k++) {
            plies.push_back(carbon(15 * std::round(-6 + 12 * u(gen)), 0.1 + 0.8 * u(gen)));
            cps.push_back(criterionPly(plies.back(), laminate::analysis::plySite(k, n)));
            cps.back().fibre = laminate::analysis::FibreKind::Carbon;
            alpha.insert(alpha.end(), {-0.5e-6, 20e-6 + 15e-6 * u(gen)});
        }
        // Now and then a layer without a strength, which no criterion rates.
        if (trial % 10 == 9) cps[n / 2].given &= ~laminate::analysis::kGivenYt;
        lamtest::Lam lam(plies);
        LaminateAnalysis an(lam);
        LaminateRating const rating(an, cps, alpha.data(), nullptr);
        ASSERT_EQ(rating.status(), LaminateRating::Ok);
        for (int load = 0; load < 20; load++) {
            double loads[8];
            for (int i = 0; i < 8; i++)
                loads[i] = (u(gen) < 0.3 ? 0.0 : -300 + 600 * u(gen)) / (i < 3 ? 1 : 10);
            double const dT = load % 4 == 0 ? 0.0 : -150 - 200 * u(gen);
            laminate::analysis::RatingLoad const rl{loads, dT, 0};
            for (int c = 0; laminate::analysis::kCriteria[c]; c++) {
                LaminateFailure ref{Verdict::Never, kInf, 0, Face::None, -1};
                LaminateFailure unrated{Verdict::Ok, 0.0, 0, Face::None, -1};
                bool done = false;
                for (int k = 1; k <= n && !done; k++)
                    for (Face f : {Face::Top, Face::Bottom}) {
                        laminate::analysis::FaceRating const r = rating.rateFace(c, k, f, rl);
                        Verdict const v = r.rating.verdict;
                        if (v == Verdict::Residual) {
                            ref = LaminateFailure{v, 0.0, k, f, r.rating.mode};
                            done = true;
                            break;
                        }
                        if (v != Verdict::Ok && v != Verdict::Never) {
                            // A refused ply has no face; a face that could
                            // not be rated is named.
                            if (unrated.ply == 0) unrated = LaminateFailure{v, 0.0, k, r.face, -1};
                            if (r.face == Face::None) break;
                            continue;
                        }
                        if (r.rating.rf < ref.rf)
                            ref = LaminateFailure{v, r.rating.rf, k, f, r.rating.mode};
                    }
                if (!done && unrated.ply != 0) ref = unrated;
                LaminateFailure const got = rating.firstPlyFailure(c, rl);
                char const* name = laminate::analysis::kCriteria[c]->name;
                EXPECT_EQ(got.verdict, ref.verdict) << name << " trial " << trial;
                EXPECT_EQ(got.rf, ref.rf) << name << " trial " << trial;
                EXPECT_EQ(got.ply, ref.ply) << name << " trial " << trial;
                EXPECT_EQ(got.face, ref.face) << name << " trial " << trial;
                EXPECT_EQ(got.mode, ref.mode) << name << " trial " << trial;
                failures += ref.verdict == Verdict::Ok;
                residuals += ref.verdict == Verdict::Residual;
                refusals += ref.ply != 0 && ref.mode < 0;
            }
        }
    }
    EXPECT_GT(failures, 5000);
    EXPECT_GT(residuals, 0);
    EXPECT_GT(refusals, 0);
}
