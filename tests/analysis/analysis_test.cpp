// The analysis floor against the per-layer operations of the laminate model:
// the same numbers to the bit, first-ply failure checked the way an engineer
// checks it, and the guards that keep a stale or singular material out.
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "laminate/analysis/envelope.h"
#include "laminate/analysis/laminate_analysis.h"
#include "laminate/lamina_build.h"

using laminate::analysis::Criterion;
using laminate::analysis::Face;
using laminate::analysis::LaminateAnalysis;
using laminate::analysis::PlyFailure;
using laminate::analysis::PlyResult;
using vantrel::ReaVecV;

namespace {

double const kInf = std::numeric_limits<double>::infinity();

// Random laminates of 1 to 16 plies: symmetric or not, thin (below the LaRC04
// limit) or thick plies, N-mm-MPa or SI moduli, some plies not assessed.
std::vector<lamtest::Ply> randomStack(std::mt19937& gen)
{
    std::uniform_real_distribution<double> u(0.0, 1.0);
    auto in = [&](double a, double b) { return a + (b - a) * u(gen); };
    int const n = 1 + static_cast<int>(u(gen) * 16);
    bool const symmetric = u(gen) < 0.4;
    double const scale = u(gen) < 0.5 ? 1.0 : 1e6;
    bool const thin = u(gen) < 0.5;
    double const angles[] = {0, 45, -45, 90, 30, -60, 0.05, 89.97, 15, -75};
    std::vector<lamtest::Ply> plies(n);
    for (int k = 0; k < n; k++) {
        if (symmetric && k >= (n + 1) / 2) {
            plies[k] = plies[n - 1 - k];
            continue;
        }
        lamtest::Ply& p = plies[k];
        p.E1 = in(50e3, 200e3) * scale;
        p.E2 = in(5e3, 15e3) * scale;
        p.nu12 = in(0.2, 0.35);
        p.G12 = in(3e3, 6e3) * scale;
        p.G13 = in(3e3, 6e3) * scale;
        p.G23 = in(2e3, 5e3) * scale;
        double const s[8] = {1500, 200, 2000, 60, 90, 50, 90, 0};
        for (int i = 0; i < 8; i++) p.strength[i] = s[i] * in(0.5, 1.5) * scale;
        p.angle = angles[static_cast<int>(u(gen) * 10)];
        p.t = thin ? in(0.0001, 0.0007) : in(0.1, 0.5);
        p.flag = u(gen) < 0.85;
    }
    return plies;
}

// Load values as the results command reads them: a magnitude of at most
// 1e-6 counts as 0.  Some entries are 0 or tiny on purpose.
ReaVecV randomLoads(std::mt19937& gen)
{
    std::uniform_real_distribution<double> u(0.0, 1.0);
    ReaVecV loads(8);
    for (int i = 0; i < 8; i++) {
        double const pick = u(gen);
        double const v = pick < 0.2 ? 0.0 : pick < 0.3 ? 5e-7 : -300 + 600 * u(gen);
        loads[i] = std::fabs(v) <= 1e-6 ? 0.0 : v;
    }
    return loads;
}

bool sameBits(double a, double b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// Every value the 30 result types and the two Hashin modes give for layer k:
// first as the model's per-layer operations give them, then as one analysis
// evaluation holds them, in the same order.
std::vector<double> modelValues(lamina1& l, int k, ReaVecV& L)
{
    std::vector<double> v;
    ReaVecV out(3);
    auto vec = [&](void (lamina1::*get)(int, ReaVecV&, ReaVecV&, int), int mode) {
        (l.*get)(k, L, out, mode);
        v.insert(v.end(), out.data, out.data + 3);
    };
    v.push_back(l.FasTWcompleteLayer(k, L));
    vec(&lamina1::GiveStresses, 0);
    vec(&lamina1::GiveStrains, 0);
    l.GiveStressTop(k, L, out);
    v.insert(v.end(), out.data, out.data + 3);
    l.GiveStressBas(k, L, out);
    v.insert(v.end(), out.data, out.data + 3);
    vec(&lamina1::GiveStresses, 1);
    vec(&lamina1::GiveStrains, 1);
    for (int m = 1; m <= 6; m++) v.push_back(l.FasLaRC04_layer(k, L, m));
    for (auto get : {&lamina1::GiveStresses1_layer, &lamina1::GiveStresses2_layer,
                     &lamina1::GiveStresses3_layer, &lamina1::GiveStrains1_layer,
                     &lamina1::GiveStrains2_layer, &lamina1::GiveStrains3_layer,
                     &lamina1::GiveStressest1_layer, &lamina1::GiveStressest2_layer,
                     &lamina1::GiveStressest3_layer, &lamina1::GiveStressesb1_layer,
                     &lamina1::GiveStressesb2_layer, &lamina1::GiveStressesb3_layer,
                     &lamina1::GiveShearStresses1_layer, &lamina1::GiveShearStresses2_layer,
                     &lamina1::GiveShearStrains1_layer, &lamina1::GiveShearStrains2_layer,
                     &lamina1::FasTWLayer})
        v.push_back((l.*get)(k, L));
    v.push_back(l.FasHashinM_layer(k, L, 0));
    v.push_back(l.FasHashinM_layer(k, L, 1));
    return v;
}

std::vector<double> analysisValues(PlyResult const& r)
{
    laminate_model::LayerState const& s = r.state;
    std::vector<double> v = {r.tsaiWu};
    for (double const* a : {s.stressesLam, s.strainsLam, s.stressesTopLam, s.stressesBasLam})
        v.insert(v.end(), a, a + 3);
    v.insert(v.end(), {s.shearStressesLam[0], s.shearStressesLam[1], s.stressesLam[2]});
    v.insert(v.end(), {s.shearStrainsLam[0], s.shearStrainsLam[1], s.strainsLam[2]});
    v.insert(v.end(), r.larc04, r.larc04 + 6);
    for (double const* a : {s.stressesLam, s.strainsLam, s.stressesTopLam, s.stressesBasLam})
        v.insert(v.end(), a, a + 3);
    v.insert(v.end(), {s.shearStressesLam[0], s.shearStressesLam[1], s.shearStrainsLam[0],
                       s.shearStrainsLam[1], r.tsaiWuSimple, r.hashinMatrix, r.hashinFibre});
    return v;
}

// Largest index over the assessed layers of lam under loads, by the model's
// own per-layer operations.
double worstIndex(lamina1& lam, ReaVecV& loads, Criterion c)
{
    double worst = -kInf;
    for (int k = 1; k <= lam.nlayers; k++) {
        std::vector<double> v;
        if (c == Criterion::TsaiWu) v = {lam.FasTWcompleteLayer(k, loads)};
        if (c == Criterion::Hashin) v = {lam.FasHashinM_layer(k, loads, 0), lam.FasHashinM_layer(k, loads, 1)};
        if (c == Criterion::LaRC04)
            for (int m = 1; m <= 6; m++) v.push_back(lam.FasLaRC04_layer(k, loads, m));
        for (double x : v)
            if (x != laminate::analysis::kNotAssessed && x > worst) worst = x;
    }
    return worst;
}

ReaVecV times(ReaVecV const& loads, double f)
{
    ReaVecV out(8);
    for (int i = 0; i < 8; i++) out[i] = f * loads[i];
    return out;
}

}  // namespace

TEST(LaminateAnalysis, EveryLayerResultEqualsTheModelsToTheBit)
{
    // Both paths run the same recovery and criteria code on the same inverse
    // and layer matrices, so no tolerance is needed.
    std::mt19937 gen(2026);
    long compared = 0, mismatches = 0;
    for (int m = 0; m < 300; m++) {
        lamtest::Lam lam(randomStack(gen));
        LaminateAnalysis an(lam);
        ASSERT_EQ(an.status(), LaminateAnalysis::Ok);
        laminate::analysis::Evaluation ev;
        for (int c = 0; c < 3; c++) {
            ReaVecV loads = randomLoads(gen);
            an.evaluate(loads.data, ev);
            for (int k = 1; k <= lam.nlayers; k++) {
                std::vector<double> const want = modelValues(lam, k, loads);
                std::vector<double> const got = analysisValues(ev.plies[k - 1]);
                ASSERT_EQ(want.size(), 44u);  // 30 types, six of them 3-vectors, and 2 Hashin modes
                ASSERT_EQ(got.size(), want.size());
                for (size_t i = 0; i < want.size(); i++, compared++) {
                    if (!sameBits(want[i], got[i]) && mismatches++ < 10)
                        ADD_FAILURE() << "laminate " << m << " layer " << k << " value " << i
                                      << ": model " << want[i] << ", analysis " << got[i];
                }
                EXPECT_EQ(ev.plies[k - 1].state.stressesTop[0], lam.stressesTop[0]);
            }
            for (int i = 0; i < 8; i++) EXPECT_TRUE(sameBits(ev.strains[i], lam.generalizedStrains[i]));
        }
    }
    EXPECT_EQ(mismatches, 0);
    EXPECT_GT(compared, 300000);
}

TEST(FirstPlyFailure, EveryCriterionReachesOneExactlyAtItsFactor)
{
    std::mt19937 gen(99);
    int rated[3] = {0, 0, 0}, jumps = 0;
    for (int m = 0; m < 120; m++) {
        lamtest::Lam lam(randomStack(gen));
        LaminateAnalysis an(lam);
        ReaVecV loads = randomLoads(gen);
        for (Criterion c : {Criterion::TsaiWu, Criterion::Hashin, Criterion::LaRC04}) {
            PlyFailure const f = an.firstPlyFailure(loads.data, c);
            if (!(f.factor > 0.0 && f.factor < kInf)) continue;
            ReaVecV at = times(loads, f.factor), below = times(loads, 0.999 * f.factor);
            double const worst = worstIndex(lam, at, c);
            if (c == Criterion::LaRC04 && std::fabs(worst - 1.0) > 1e-9) {
                // LaRC04 switches from mode 2 to mode 5 where s1 passes -Yc,
                // and the index may jump past 1 there: the factor is then the
                // jump, to within 1e-9.
                ReaVecV before = times(loads, f.factor * (1 - 1e-9));
                ReaVecV after = times(loads, f.factor * (1 + 1e-9));
                EXPECT_LT(worstIndex(lam, before, c), 1.0) << "laminate " << m;
                EXPECT_GE(worstIndex(lam, after, c), 1.0) << "laminate " << m;
                jumps++;
            } else {
                EXPECT_NEAR(worst, 1.0, 1e-9) << "laminate " << m << " criterion " << int(c);
            }
            EXPECT_LT(worstIndex(lam, below, c), 1.0) << "laminate " << m << " criterion " << int(c);
            EXPECT_GE(f.ply, 1);
            EXPECT_LE(f.ply, lam.nlayers);
            EXPECT_NE(f.face, Face::None);
            rated[int(c)]++;
        }
    }
    for (int n : rated) EXPECT_GT(n, 40);
    EXPECT_LT(jumps, rated[2] / 10);
}

TEST(FirstPlyFailure, TsaiWuOfAUniaxialPlyIsTheStrength)
{
    // One clean 0-degree ply, unit thickness: sigma1 = N1.  With the
    // transverse terms zero, F11 N^2 + F1 N = 1 gives N = Xt in tension and
    // -Xc in compression; Hashin fibre gives the same, linear in compression.
    lamtest::Lam lam({lamtest::clean()});
    LaminateAnalysis an(lam);
    double tension[8] = {1, 0, 0, 0, 0, 0, 0, 0}, compression[8] = {-1, 0, 0, 0, 0, 0, 0, 0};
    PlyFailure f = an.firstPlyFailure(tension, Criterion::TsaiWu);
    EXPECT_NEAR(f.factor, 2048.0, 1e-9 * 2048);
    EXPECT_EQ(f.ply, 1);
    EXPECT_NEAR(an.firstPlyFailure(compression, Criterion::TsaiWu).factor, 1024.0, 1e-9 * 1024);
    f = an.firstPlyFailure(compression, Criterion::Hashin);
    EXPECT_NEAR(f.factor, 1024.0, 1e-9 * 1024);
    EXPECT_EQ(f.mode, 1);  // fibre
    EXPECT_NEAR(an.firstPlyFailure(tension, Criterion::LaRC04).factor, 2048.0, 1e-9 * 2048);
    EXPECT_EQ(an.firstPlyFailure(tension, Criterion::LaRC04).mode, 3);
}

TEST(FirstPlyFailure, NeverAndAlreadyFailed)
{
    lamtest::Lam lam({lamtest::ply(0, 0.5), lamtest::ply(90, 0.5)});
    LaminateAnalysis an(lam);
    double zero[8] = {0, 0, 0, 0, 0, 0, 0, 0};
    for (Criterion c : {Criterion::TsaiWu, Criterion::Hashin, Criterion::LaRC04}) {
        PlyFailure const f = an.firstPlyFailure(zero, c);
        EXPECT_EQ(f.factor, kInf);
        EXPECT_EQ(f.ply, 0);
        EXPECT_EQ(f.face, Face::None);
    }
    // No assessed ply: never.
    lamtest::Ply off = lamtest::ply(0, 0.5);
    off.flag = 0;
    lamtest::Lam unflagged({off, off});
    double loads[8] = {100, 50, 10, 1, 1, 1, 1, 1};
    EXPECT_EQ(LaminateAnalysis(unflagged).firstPlyFailure(loads, Criterion::TsaiWu).factor, kInf);

    // A thick ply under transverse tension with a little negative in-plane
    // shear: its LaRC04 matrix-tension index tends to about 0.5 + 0.01 s2/|t12|
    // as the load vanishes, so it has failed at every load factor.
    lamtest::Ply thick;
    thick.E1 = 161000, thick.E2 = 11400, thick.nu12 = 0.32, thick.G12 = thick.G13 = 5170;
    thick.G23 = 3980, thick.t = 1.0;
    double const s[8] = {1590, 185, 2560, 73, 90, 57, 90, 0};
    std::memcpy(thick.strength, s, sizeof s);
    lamtest::Lam single({thick});
    double tearing[8] = {0, 100, -0.01, 0, 0, 0, 0, 0};
    PlyFailure const f = LaminateAnalysis(single).firstPlyFailure(tearing, Criterion::LaRC04);
    EXPECT_EQ(f.factor, 0.0);
    EXPECT_EQ(f.ply, 1);
    EXPECT_EQ(f.mode, 1);
    ReaVecV small = lamtest::loads({0, 1e-3, -1e-7});
    EXPECT_GT(single.FasLaRC04_layer(1, small, 1), 1.0);
}

TEST(LaminateAnalysis, RefusesSingularAndEmptyAndKnowsStaleData)
{
    lamtest::Ply noShear;
    noShear.G13 = noShear.G23 = 0;
    lamtest::Lam singular({noShear});
    EXPECT_EQ(LaminateAnalysis(singular).status(), LaminateAnalysis::Singular);

    lamina1 empty;
    ASSERT_EQ(lamtest::parse(empty, "0"), 0);
    EXPECT_EQ(LaminateAnalysis(empty).status(), LaminateAnalysis::NoLayers);
    LaminateAnalysis unprepared;
    double loads[8] = {1, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(unprepared.firstPlyFailure(loads, Criterion::TsaiWu).factor, kInf);

    lamtest::Lam lam({lamtest::ply(0), lamtest::ply(45)});
    LaminateAnalysis an(lam);
    LaminateAnalysis copy = an;  // a copy evaluates from its own arrays
    EXPECT_TRUE(an.preparedFrom(lam));
    EXPECT_TRUE(copy.preparedFrom(lam));
    laminate::analysis::Evaluation a, b;
    an.evaluate(loads, a);
    copy.evaluate(loads, b);
    EXPECT_TRUE(sameBits(a.plies[1].tsaiWu, b.plies[1].tsaiWu));
    lam.G13[1] *= 2;
    EXPECT_FALSE(an.preparedFrom(lam));
    lam.G13[1] /= 2;
    EXPECT_TRUE(an.preparedFrom(lam));
    lam.angleDeg[0] = 10;
    EXPECT_FALSE(an.preparedFrom(lam));
}

TEST(Envelope, EachPointIsItsRaysFirstPlyFailure)
{
    lamtest::Lam lam({lamtest::ply(0, 0.25), lamtest::ply(90, 0.25), lamtest::ply(90, 0.25),
                      lamtest::ply(0, 0.25)});
    LaminateAnalysis an(lam);
    std::vector<laminate::analysis::EnvelopePoint> const pts = laminate::analysis::envelope(an, 1, 2, Criterion::TsaiWu, 8);
    ASSERT_EQ(pts.size(), 8u);
    double n1[8] = {1, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(pts[0].x, an.firstPlyFailure(n1, Criterion::TsaiWu).factor);
    EXPECT_EQ(pts[0].y, 0.0);
    EXPECT_EQ(pts[2].x, 0.0);  // straight up N2: no N1 component at all
    for (auto const& p : pts) EXPECT_NEAR(std::hypot(p.x, p.y), p.failure.factor, 1e-12 * p.failure.factor);
    // Cross-ply symmetry: N1 and N2 fail at the same load.
    EXPECT_NEAR(pts[0].x, pts[2].y, 1e-9 * pts[0].x);
    EXPECT_TRUE(laminate::analysis::envelope(an, 1, 1, Criterion::TsaiWu, 8).empty());
    EXPECT_TRUE(laminate::analysis::envelope(an, 0, 9, Criterion::TsaiWu, 8).empty());
}
