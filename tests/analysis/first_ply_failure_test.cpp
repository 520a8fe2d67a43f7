// First-ply failure against the model itself: loads that once made the search
// miss a root, the one rule for infinite and NaN indices, and an independent
// brute-force search on random records the strict reader accepts.
#include <cmath>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "laminate/analysis/envelope.h"
#include "laminate/analysis/laminate_analysis.h"
#include "laminate/lamina_build.h"
#include "laminate/laminate/strict_record.h"

using laminate::analysis::Criterion;
using laminate::analysis::Face;
using laminate::analysis::LaminateAnalysis;
using laminate::analysis::Outcome;
using laminate::analysis::PlyFailure;
using vantrel::ReaVecV;

namespace {

double const kInf = std::numeric_limits<double>::infinity();
Criterion const kAll[] = {Criterion::TsaiWu, Criterion::Hashin, Criterion::LaRC04};

// A model defined from record text, as a material definition leaves it.
struct Defined : lamina1 {
    explicit Defined(std::string text)
    {
        EXPECT_EQ(lamtest::parse(*this, text), 0);
        calcDefinition();
    }
};

ReaVecV times(double const loads[8], double f)
{
    ReaVecV out(8);
    for (int i = 0; i < 8; i++) out[i] = f * loads[i];
    return out;
}

double larc(lamina1& lam, double const loads[8], double f, int mode, int layer = 1)
{
    ReaVecV at = times(loads, f);
    return lam.FasLaRC04_layer(layer, at, mode);
}

}  // namespace

TEST(FirstPlyFailureRoots, LaRC04Mode2WindowBeforeFibreCompressionSwitchesIt)
{
    // Mode 2 reaches 1 at about 1.6745 and switches off where s1 = -Yc
    // (about 1.75); mode 4 only fails at 3.63.
    Defined lam("1 181000 10300 0.28 7170 7170 3500 1500 246 1500 40 68 68 68 0 -15 1 1.5e-5 1");
    double const L[8] = {-187, -38, -80, 0, 0, 0, 0, 0};
    PlyFailure const f = LaminateAnalysis(lam).firstPlyFailure(L, Criterion::LaRC04);
    EXPECT_EQ(f.outcome, Outcome::Fails);
    EXPECT_NEAR(f.factor, 1.6745, 1e-4);
    EXPECT_EQ(f.mode, 2);
    EXPECT_NEAR(larc(lam, L, 1.70, 2), 1.027, 1e-3);  // the window, by the model
    EXPECT_NEAR(larc(lam, L, f.factor, 2), 1.0, 1e-9);
    EXPECT_LT(larc(lam, L, 0.999 * f.factor, 2), 1.0);
    EXPECT_EQ(larc(lam, L, 2.0, 2), 0.0);             // switched off past s1 = -Yc
    EXPECT_LT(larc(lam, L, 3.0, 4), 1.0);
}

TEST(FirstPlyFailureRoots, LaRC04Mode4WindowOpeningAtTheJumpFromMode6)
{
    // Where s2m turns negative mode 6 gives way to mode 4, whose index jumps
    // from 0 to just above 1 and soon falls back.
    Defined lam("1 108000 11000 0.28 4000 4000 3500 1005 160 1192 87 60 59 47 0 45 0.0005 1.5e-5 1");
    double const L[8] = {240, -214, -15, 0, 0, 0, 0, 0};
    PlyFailure const f = LaminateAnalysis(lam).firstPlyFailure(L, Criterion::LaRC04);
    EXPECT_EQ(f.outcome, Outcome::Fails);
    EXPECT_EQ(f.mode, 4);
    EXPECT_NEAR(f.factor, 0.068146, 1e-6);
    EXPECT_EQ(larc(lam, L, f.factor * (1 - 1e-9), 4), 0.0);
    EXPECT_GE(larc(lam, L, f.factor * (1 + 1e-9), 4), 1.0);
    EXPECT_LT(larc(lam, L, 0.1, 4), 1.0);  // closed again before the old answer, 0.137
    double worst = 0.0;
    for (double x = 0.001; x < f.factor * (1 - 1e-9); x *= 1.01)
        for (int m = 1; m <= 6; m++) worst = std::max(worst, larc(lam, L, x, m));
    EXPECT_LT(worst, 1.0);
}

TEST(FirstPlyFailureRoots, TinyAndHugeRootsAreFoundInFull)
{
    // A thick ply under transverse shear and a little in-plane shear: mode 1
    // is 0.5 + c f (the in-plane shear cancels out of its constant), and c
    // is large, so its root lies near 1.8e-7, far below the load level at
    // which any stress reaches its strength (about 0.27).
    lamtest::Lam thick({lamtest::clean()});
    double const tiny[8] = {0, 0, 2.5e-6, 0, 0, 0, 100, 0};
    PlyFailure f = LaminateAnalysis(thick).firstPlyFailure(tiny, Criterion::LaRC04);
    EXPECT_EQ(f.outcome, Outcome::Fails);
    EXPECT_EQ(f.mode, 1);
    EXPECT_GT(f.factor, 1.7e-7);
    EXPECT_LT(f.factor, 1.9e-7);
    EXPECT_NEAR(larc(thick, tiny, 1e-15, 1), 0.5, 1e-6);
    EXPECT_NEAR(larc(thick, tiny, f.factor, 1), 1.0, 1e-9);
    EXPECT_LT(larc(thick, tiny, 0.999 * f.factor, 1), 1.0);

    // A compressive strength of 0 over a compressive stress (Yc): mode 3
    // still fails at Xt / s1 = 2048 / 1e-3, two million times the load.
    lamtest::Ply noYc = lamtest::clean();
    noYc.strength[1] = 0;
    lamtest::Lam zero({noYc});
    double const small[8] = {1e-3, -1e-3, 0, 0, 0, 0, 0, 0};
    f = LaminateAnalysis(zero).firstPlyFailure(small, Criterion::LaRC04);
    EXPECT_EQ(f.outcome, Outcome::Fails);
    EXPECT_EQ(f.mode, 3);
    EXPECT_NEAR(f.factor, 2.048e6, 1e-3);
    EXPECT_NEAR(larc(zero, small, f.factor, 3), 1.0, 1e-12);
    EXPECT_LT(larc(zero, small, f.factor, 2), 1.0);
}

TEST(FirstPlyFailureRule, AnInfiniteIndexFailsAtOnceUnderEveryLoad)
{
    // S23 = 0 under transverse shear: the Tsai-Wu index is +inf at every
    // factor, whichever sign its linear part takes.
    lamtest::Lam lam({lamtest::clean(1.0, 0.0)});
    LaminateAnalysis const an(lam);
    for (double n1 : {100.0, -100.0}) {
        double const L[8] = {n1, 0, 0, 0, 0, 0, 10, 0};
        ReaVecV small = times(L, 1e-9);
        EXPECT_EQ(lam.FasTWcompleteLayer(1, small), kInf);
        PlyFailure const f = an.firstPlyFailure(L, Criterion::TsaiWu);
        EXPECT_EQ(f.outcome, Outcome::Fails) << n1;
        EXPECT_EQ(f.factor, 0.0) << n1;
        EXPECT_EQ(f.ply, 1);
    }
}

TEST(FirstPlyFailureRule, ANanIndexIsReportedNeverCountedAsHolding)
{
    // S23 = 0 and no transverse shear: 0/0 in the Tsai-Wu index and the
    // Hashin matrix index at every factor.
    lamtest::Lam lam({lamtest::clean(1.0, 0.0)});
    LaminateAnalysis const an(lam);
    double const L[8] = {100, 0, 0, 0, 0, 0, 0, 0};
    ReaVecV at = times(L, 3.0);
    EXPECT_TRUE(std::isnan(lam.FasTWcompleteLayer(1, at)));
    PlyFailure f = an.firstPlyFailure(L, Criterion::TsaiWu);
    EXPECT_EQ(f.outcome, Outcome::Undefined);
    EXPECT_EQ(f.factor, kInf);
    EXPECT_EQ(f.ply, 1);
    EXPECT_NE(f.face, Face::None);
    // Hashin fails in the fibre mode at Xt / s1; the NaN matrix index below
    // that is passed over, and said to be.
    f = an.firstPlyFailure(L, Criterion::Hashin);
    EXPECT_EQ(f.outcome, Outcome::Fails);
    EXPECT_NEAR(f.factor, 20.48, 1e-12);
    EXPECT_EQ(f.mode, 1);
    EXPECT_TRUE(f.nanIgnored);
    // LaRC04 mode 1 of a thick ply without in-plane shear is 0/0 as well.
    f = an.firstPlyFailure(L, Criterion::LaRC04);
    EXPECT_EQ(f.mode, 3);
    EXPECT_TRUE(f.nanIgnored);
    double const sheared[8] = {100, 0, 1, 0, 0, 0, 0, 0};
    EXPECT_FALSE(an.firstPlyFailure(sheared, Criterion::LaRC04).nanIgnored);

    // The envelope has no point where the ray's answer is undefined.
    std::vector<laminate::analysis::EnvelopePoint> const pts = laminate::analysis::envelope(an, 1, 2, Criterion::TsaiWu, 4);
    ASSERT_EQ(pts.size(), 4u);
    for (auto const& p : pts) {
        EXPECT_EQ(p.failure.outcome, Outcome::Undefined);
        EXPECT_TRUE(std::isnan(p.x) && std::isnan(p.y));
    }
    EXPECT_TRUE(std::isfinite(laminate::analysis::envelope(an, 1, 2, Criterion::Hashin, 4)[0].x));
}

TEST(FirstPlyFailureRule, OverflowIsAnOutcomeNotAFactor)
{
    // A ply 0.1 thick: stresses ten times the loads, beyond the largest double.
    lamtest::Lam lam({lamtest::clean(0.1)});
    LaminateAnalysis const an(lam);
    double const huge[8] = {-1e308, 1e308, 0, 0, 0, 0, 0, 0};
    for (Criterion c : kAll) {
        PlyFailure const f = an.firstPlyFailure(huge, c);
        EXPECT_EQ(f.outcome, Outcome::Overflow);
        EXPECT_EQ(f.factor, kInf);
        EXPECT_EQ(f.ply, 0);
    }
    // Loads that are all right but whose factor lies beyond the largest
    // double (a record no strict reader accepts).
    lamtest::Ply strong = lamtest::clean();
    for (int i = 0; i < 7; i++) strong.strength[i] = 1e300;
    lamtest::Lam unbreakable({strong});
    double const tiny[8] = {1e-300, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(LaminateAnalysis(unbreakable).firstPlyFailure(tiny, Criterion::LaRC04).outcome,
              Outcome::Overflow);
    // Loads near the largest double but stresses that are numbers: a factor
    // like any other (s1 = N1 in this ply, failing at Xt in every criterion).
    lamtest::Lam unit({lamtest::clean()});
    double const big[8] = {2048e300, 0, 0, 0, 0, 0, 0, 0};
    for (Criterion c : kAll) {
        PlyFailure const f = LaminateAnalysis(unit).firstPlyFailure(big, c);
        EXPECT_EQ(f.outcome, Outcome::Fails);
        EXPECT_NEAR(f.factor, 1e-300, 1e-312) << static_cast<int>(c);
    }
}

namespace {

// A random record the strict reader accepts: 1 to 6 plies, thin or thick,
// angles that leave some faces without in-plane shear, now and then a
// strength of 0 (a strength not given), some plies not assessed.
std::string randomRecord(std::mt19937& gen)
{
    std::uniform_real_distribution<double> u(0.0, 1.0);
    auto in = [&](double a, double b) { return a + (b - a) * u(gen); };
    int const n = 1 + static_cast<int>(u(gen) * 6);
    bool const thin = u(gen) < 0.4;
    bool const zeros = u(gen) < 0.3;
    double const angles[] = {0, 90, 45, -45, 30, -60, 0.05, 15};
    std::ostringstream os;
    os.precision(17);
    os << n;
    for (int k = 0; k < n; k++) {
        os << '\n' << in(50e3, 200e3) << ' ' << in(5e3, 15e3) << ' ' << in(0.2, 0.35) << ' '
           << in(3e3, 6e3) << ' ' << in(3e3, 6e3) << ' ' << in(2e3, 5e3);
        double const s[7] = {1500, 200, 2000, 60, 90, 50, 90};
        for (double v : s) os << ' ' << (zeros && u(gen) < 0.15 ? 0.0 : v * in(0.5, 1.5));
        os << " 0 " << angles[static_cast<int>(u(gen) * 8)] << ' '
           << (thin ? in(0.0001, 0.0007) : in(0.1, 0.5)) << " 1.5 " << (u(gen) < 0.9 ? 1 : 0);
    }
    return os.str();
}

void randomLoads(std::mt19937& gen, double loads[8])
{
    std::uniform_real_distribution<double> u(0.0, 1.0);
    bool const noShear = u(gen) < 0.3;
    for (int i = 0; i < 8; i++) {
        loads[i] = u(gen) < 0.3 ? 0.0 : -300 + 600 * u(gen);
        if (noShear && (i == 2 || i == 5)) loads[i] = 0.0;
    }
}

// The model's indices of every assessed layer at factor f, the load case's
// own stresses scaled by f (the model's recovery of f * loads rounds a
// stress that should be zero to either sign, which flips LaRC04 branches):
// the largest that is not NaN, and whether one was NaN.
struct Brute {
    struct Layer {
        laminate_model::PlyData p;
        double top[3], bas[3], ta, tb;
    };
    std::vector<Layer> layers;
    Criterion c;

    Brute(lamina1& lam, double const loads[8], Criterion criterion) : c(criterion)
    {
        ReaVecV L(8);
        for (int i = 0; i < 8; i++) L[i] = loads[i];
        for (int k = 1; k <= lam.nlayers; k++) {
            lam.CalcTD(k, L);
            Layer y{laminate_model::plyData(lam, k), {}, {}, lam.shearStressesLam[0], lam.shearStressesLam[1]};
            if (laminate_model::notAssessed(y.p, lam.stressesLam.data, lam.shearStressesLam.data)) continue;
            for (int j = 0; j < 3; j++) y.top[j] = lam.stressesTopLam[j], y.bas[j] = lam.stressesBasLam[j];
            layers.push_back(y);
        }
    }

    double worst(double f, bool* nan = nullptr) const
    {
        double worst = -kInf;
        for (Layer const& y : layers) {
            double top[3], bas[3];
            for (int j = 0; j < 3; j++) top[j] = f * y.top[j], bas[j] = f * y.bas[j];
            double const ta = f * y.ta, tb = f * y.tb;
            std::vector<double> v;
            if (c == Criterion::TsaiWu) {
                v = {laminate_model::tsaiWuComplete(y.p, top, ta, tb),
                     laminate_model::tsaiWuComplete(y.p, bas, ta, tb)};
            } else if (c == Criterion::Hashin) {
                v = {laminate_model::hashinMatrix(y.p, top[1], top[2], ta, tb),
                     laminate_model::hashinMatrix(y.p, bas[1], bas[2], ta, tb),
                     laminate_model::hashinFibre(y.p, top[0], bas[2], tb),
                     laminate_model::hashinFibre(y.p, bas[0], bas[2], tb)};
            } else {
                laminate_model::LaRC04 larc(y.p, ta, tb);
                double b6[6], t6[6];
                larc.face(bas[0], bas[1], bas[2], b6);
                larc.face(top[0], top[1], top[2], t6);
                v.assign(b6, b6 + 6);
                v.insert(v.end(), t6, t6 + 6);
            }
            for (double x : v) {
                if (std::isnan(x)) {
                    if (nan) *nan = true;
                } else {
                    worst = std::max(worst, x);
                }
            }
        }
        return worst;
    }

    bool fails(double f) const { return worst(f) >= 1.0; }

    // The first factor of the grid 1e-9 .. 1e15, 20 a decade, at which an
    // index fails, refined by bisection; +inf when none does.
    double first(bool* nan) const
    {
        double previous = 0.0;
        for (int i = 0; i <= 24 * 20; i++) {
            double const f = std::pow(10.0, -9.0 + i / 20.0);
            if (worst(f, nan) >= 1.0) {
                if (i == 0) return f;
                double lo = previous, hi = f;
                for (int k = 0; k < 60; k++) {
                    double const m = 0.5 * (lo + hi);
                    (fails(m) ? hi : lo) = m;
                }
                return hi;
            }
            previous = f;
        }
        return kInf;
    }
};

}  // namespace

TEST(FirstPlyFailure, AgreesWithABruteForceSearchOnStrictRecords)
{
    std::mt19937 gen(19);
    int cases = 0, agreed = 0, windows = 0, undefined = 0, never = 0;
    for (int r = 0; r < 120; r++) {
        std::string const text = randomRecord(gen);
        StrictRecord strict;
        if (!strict.read(text)) continue;
        Defined lam(text);
        LaminateAnalysis const an(lam);
        for (int l = 0; l < 3; l++) {
            double loads[8];
            randomLoads(gen, loads);
            for (Criterion c : kAll) {
                PlyFailure const f = an.firstPlyFailure(loads, c);
                ASSERT_FALSE(std::isnan(f.factor));
                ASSERT_GE(f.factor, 0.0);
                Brute const brute(lam, loads, c);
                bool nan = false;
                double const b = brute.first(&nan);
                bool ok;
                if (f.outcome == Outcome::Fails) {
                    ASSERT_LT(f.factor, kInf);
                    bool const same = std::fabs(f.factor - b) <= 1e-6 * b ||
                                      (b == 1e-9 && f.factor <= 1e-9);
                    // Earlier than the grid saw: a window between two of its
                    // factors, which the model must confirm.
                    bool const window = !same && f.factor < b && brute.fails(f.factor) &&
                                        (f.factor == 0.0 || !brute.fails(f.factor * (1 - 1e-6)));
                    windows += window;
                    ok = same || window;
                } else {
                    ASSERT_EQ(f.factor, kInf);
                    ok = b == kInf && (f.outcome == Outcome::Undefined) == nan &&
                         f.outcome != Outcome::Overflow;
                    undefined += f.outcome == Outcome::Undefined;
                    never += f.outcome == Outcome::Never;
                }
                cases++;
                agreed += ok;
                EXPECT_TRUE(ok) << text << "\nloads " << loads[0] << " " << loads[1] << " " << loads[2]
                                << " ... criterion " << static_cast<int>(c) << ": factor " << f.factor
                                << " outcome " << static_cast<int>(f.outcome) << ", brute force " << b;
            }
        }
    }
    EXPECT_EQ(agreed, cases);
    EXPECT_GT(cases, 800);
    EXPECT_GT(undefined, 0);  // the rule is exercised both ways
    EXPECT_GT(never, 0);
    RecordProperty("windows", windows);
}
