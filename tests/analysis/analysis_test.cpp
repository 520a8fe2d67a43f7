// The analysis floor against the per-layer operations of the laminate model:
// the same numbers to the bit, first-ply failure checked the way an engineer
// checks it, and the guards that keep a stale or singular material out.
#include <cmath>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "laminate/analysis/envelope.h"
#include "laminate/analysis/laminate_analysis.h"
#include "laminate/lamina_build.h"

using analysis::Criterion;
using analysis::Face;
using analysis::LaminateAnalysis;
using analysis::PlyFailure;
using analysis::PlyResult;
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

// One result type: the model's answer for a layer, and the analysis's.
struct ResultType {
    std::string name;
    std::function<void(lamina1&, int, ReaVecV&, double*)> model;
    std::function<void(PlyResult const&, double*)> analysis;
    int count;
};

template <double (lamina1::*Get)(int, ReaVecV&)>
ResultType single(std::string name, std::function<double(PlyResult const&)> pick)
{
    return {name, [](lamina1& l, int k, ReaVecV& L, double* v) { v[0] = (l.*Get)(k, L); },
            [pick](PlyResult const& r, double* v) { v[0] = pick(r); }, 1};
}

ResultType vector3(std::string name, std::function<void(lamina1&, int, ReaVecV&, ReaVecV&)> get,
                   std::function<void(PlyResult const&, double*)> pick)
{
    return {name,
            [get](lamina1& l, int k, ReaVecV& L, double* v) {
                ReaVecV out(3);
                get(l, k, L, out);
                for (int i = 0; i < 3; i++) v[i] = out[i];
            },
            pick, 3};
}

ResultType larc(int mode)
{
    return {"FS_LaRCm" + std::to_string(mode),
            [mode](lamina1& l, int k, ReaVecV& L, double* v) { v[0] = l.FasLaRC04_layer(k, L, mode); },
            [mode](PlyResult const& r, double* v) { v[0] = r.larc04[mode - 1]; }, 1};
}

void copy3(double const* from, double* to)
{
    std::memcpy(to, from, 3 * sizeof(double));
}

// The 30 result types, plus the two Hashin modes.
std::vector<ResultType> resultTypes()
{
    using S = laminate_model::LayerState;
    std::vector<ResultType> t = {
        single<&lamina1::FasTWcompleteLayer>("FS_TW", [](PlyResult const& r) { return r.tsaiWu; }),
        vector3("stresses", [](lamina1& l, int k, ReaVecV& L, ReaVecV& o) { l.GiveStresses(k, L, o, 0); },
                [](PlyResult const& r, double* v) { copy3(r.state.stressesLam, v); }),
        vector3("strains", [](lamina1& l, int k, ReaVecV& L, ReaVecV& o) { l.GiveStrains(k, L, o, 0); },
                [](PlyResult const& r, double* v) { copy3(r.state.strainsLam, v); }),
        vector3("stresstop", [](lamina1& l, int k, ReaVecV& L, ReaVecV& o) { l.GiveStressTop(k, L, o); },
                [](PlyResult const& r, double* v) { copy3(r.state.stressesTopLam, v); }),
        vector3("stressbas", [](lamina1& l, int k, ReaVecV& L, ReaVecV& o) { l.GiveStressBas(k, L, o); },
                [](PlyResult const& r, double* v) { copy3(r.state.stressesBasLam, v); }),
        vector3("s_stresses", [](lamina1& l, int k, ReaVecV& L, ReaVecV& o) { l.GiveStresses(k, L, o, 1); },
                [](PlyResult const& r, double* v) {
                    S const& s = r.state;
                    double const x[3] = {s.shearStressesLam[0], s.shearStressesLam[1], s.stressesLam[2]};
                    copy3(x, v);
                }),
        vector3("s_strains", [](lamina1& l, int k, ReaVecV& L, ReaVecV& o) { l.GiveStrains(k, L, o, 1); },
                [](PlyResult const& r, double* v) {
                    S const& s = r.state;
                    double const x[3] = {s.shearStrainsLam[0], s.shearStrainsLam[1], s.strainsLam[2]};
                    copy3(x, v);
                }),
    };
    for (int m = 1; m <= 6; m++) t.push_back(larc(m));
    using R = PlyResult const&;
    t.push_back(single<&lamina1::GiveStresses1_layer>("stress1_lam", [](R r) { return r.state.stressesLam[0]; }));
    t.push_back(single<&lamina1::GiveStresses2_layer>("stress2_lam", [](R r) { return r.state.stressesLam[1]; }));
    t.push_back(single<&lamina1::GiveStresses3_layer>("stress3_lam", [](R r) { return r.state.stressesLam[2]; }));
    t.push_back(single<&lamina1::GiveStrains1_layer>("strain1_lam", [](R r) { return r.state.strainsLam[0]; }));
    t.push_back(single<&lamina1::GiveStrains2_layer>("strain2_lam", [](R r) { return r.state.strainsLam[1]; }));
    t.push_back(single<&lamina1::GiveStrains3_layer>("strain3_lam", [](R r) { return r.state.strainsLam[2]; }));
    t.push_back(single<&lamina1::GiveStressest1_layer>("stress1_t_lam", [](R r) { return r.state.stressesTopLam[0]; }));
    t.push_back(single<&lamina1::GiveStressest2_layer>("stress2_t_lam", [](R r) { return r.state.stressesTopLam[1]; }));
    t.push_back(single<&lamina1::GiveStressest3_layer>("stress3_t_lam", [](R r) { return r.state.stressesTopLam[2]; }));
    t.push_back(single<&lamina1::GiveStressesb1_layer>("stress1_b_lam", [](R r) { return r.state.stressesBasLam[0]; }));
    t.push_back(single<&lamina1::GiveStressesb2_layer>("stress2_b_lam", [](R r) { return r.state.stressesBasLam[1]; }));
    t.push_back(single<&lamina1::GiveStressesb3_layer>("stress3_b_lam", [](R r) { return r.state.stressesBasLam[2]; }));
    t.push_back(single<&lamina1::GiveShearStresses1_layer>("shearStress23_lam", [](R r) { return r.state.shearStressesLam[0]; }));
    t.push_back(single<&lamina1::GiveShearStresses2_layer>("shearStress13_lam", [](R r) { return r.state.shearStressesLam[1]; }));
    t.push_back(single<&lamina1::GiveShearStrains1_layer>("shearStrain23_lam", [](R r) { return r.state.shearStrainsLam[0]; }));
    t.push_back(single<&lamina1::GiveShearStrains2_layer>("shearStrain13_lam", [](R r) { return r.state.shearStrainsLam[1]; }));
    t.push_back(single<&lamina1::FasTWLayer>("FS_TW_simple", [](R r) { return r.tsaiWuSimple; }));
    t.push_back({"hashin_matrix", [](lamina1& l, int k, ReaVecV& L, double* v) { v[0] = l.FasHashinM_layer(k, L, 0); },
                 [](R r, double* v) { v[0] = r.hashinMatrix; }, 1});
    t.push_back({"hashin_fibre", [](lamina1& l, int k, ReaVecV& L, double* v) { v[0] = l.FasHashinM_layer(k, L, 1); },
                 [](R r, double* v) { v[0] = r.hashinFibre; }, 1});
    return t;
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
            if (x != analysis::kNotAssessed && x > worst) worst = x;
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
    std::vector<ResultType> const types = resultTypes();
    ASSERT_EQ(types.size(), 32u);
    long compared = 0, mismatches = 0;
    for (int m = 0; m < 300; m++) {
        lamtest::Lam lam(randomStack(gen));
        LaminateAnalysis an(lam);
        ASSERT_EQ(an.status(), LaminateAnalysis::Ok);
        analysis::Evaluation ev;
        for (int c = 0; c < 3; c++) {
            ReaVecV loads = randomLoads(gen);
            an.evaluate(loads.data, ev);
            for (int k = 1; k <= lam.nlayers; k++) {
                for (ResultType const& t : types) {
                    double want[3], got[3];
                    t.model(lam, k, loads, want);
                    t.analysis(ev.plies[k - 1], got);
                    for (int i = 0; i < t.count; i++, compared++) {
                        if (!sameBits(want[i], got[i]) && mismatches++ < 10)
                            ADD_FAILURE() << "laminate " << m << " layer " << k << " " << t.name << "["
                                          << i << "]: model " << want[i] << ", analysis " << got[i];
                    }
                }
                EXPECT_EQ(ev.plies[k - 1].state.stressesTop[0], lam.stressesTop[0]);
            }
            for (int i = 0; i < 8; i++) EXPECT_TRUE(sameBits(ev.strains[i], lam.generalizedStrains[i]));
        }
    }
    EXPECT_EQ(mismatches, 0);
    EXPECT_GT(compared, 100000);
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
    analysis::Evaluation a, b;
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
    std::vector<analysis::EnvelopePoint> const pts = analysis::envelope(an, 1, 2, Criterion::TsaiWu, 8);
    ASSERT_EQ(pts.size(), 8u);
    double n1[8] = {1, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(pts[0].x, an.firstPlyFailure(n1, Criterion::TsaiWu).factor);
    EXPECT_EQ(pts[0].y, 0.0);
    EXPECT_EQ(pts[2].x, 0.0);  // straight up N2: no N1 component at all
    for (auto const& p : pts) EXPECT_NEAR(std::hypot(p.x, p.y), p.failure.factor, 1e-12 * p.failure.factor);
    // Cross-ply symmetry: N1 and N2 fail at the same load.
    EXPECT_NEAR(pts[0].x, pts[2].y, 1e-9 * pts[0].x);
    EXPECT_TRUE(analysis::envelope(an, 1, 1, Criterion::TsaiWu, 8).empty());
    EXPECT_TRUE(analysis::envelope(an, 0, 9, Criterion::TsaiWu, 8).empty());
}
