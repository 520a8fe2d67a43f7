// Cost of the laminate properties beyond the ply stresses: the engineering
// constants (compliance, moduli, free expansion) and the interlaminar shear
// profile, for an 8-ply laminate, next to the evaluation they accompany.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "laminate/analysis/engineering_constants.h"
#include "laminate/analysis/interlaminar_shear.h"
#include "laminate/analysis/laminate_analysis.h"
#include "laminate/laminate/lamina1.h"

namespace {

// A carbon/epoxy stack [0/45/-45/90]s, N-mm-MPa.
struct Model {
    lamina1 lam;
    laminate::analysis::LaminateAnalysis an;
    std::vector<double> sw, alpha, beta;
    double loads[8] = {300, 100, 40, 10, 0, 3, 6, 3};

    Model()
    {
        static const char* const angles[] = {"0", "45", "-45", "90", "90", "-45", "45", "0"};
        std::string r = "8";
        for (const char* a : angles) {
            r += " 161000 11400 0.32 5170 5170 3980 1590 185 2560 73 90 57 90 0 ";
            r += a;
            r += " 0.125 1.5e-5 1";
        }
        if (lam.LeerCampoMater(&r[0], 1.0, 1.0, 1.0) != 0) std::abort();
        lam.calcDefinition();
        if (an.prepare(lam) != laminate::analysis::LaminateAnalysis::Ok) std::abort();
        for (int k = 0; k < 8; k++) {
            sw.push_back(1.5e-5);
            alpha.insert(alpha.end(), {-0.3e-6, 28e-6});
            beta.insert(beta.end(), {0.0, 0.4});
        }
    }
};

void BM_EngineeringConstants(benchmark::State& state)
{
    Model m;
    laminate::analysis::PlyProperties props;
    props.sw = m.sw.data();
    props.alpha = m.alpha.data();
    props.beta = m.beta.data();
    for (auto _ : state) {
        laminate::analysis::EngineeringConstants e = laminate::analysis::engineeringConstants(m.an, props);
        benchmark::DoNotOptimize(e.Ex);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_EngineeringConstants);

// Preparing the profile: the compliance and each layer's polynomials.
void BM_InterlaminarPrepare(benchmark::State& state)
{
    Model m;
    laminate::analysis::InterlaminarShear shear;
    for (auto _ : state) {
        shear.prepare(m.an);
        benchmark::DoNotOptimize(shear.points());
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_InterlaminarPrepare);

// One load case's profile (17 points) from a prepared object.
void BM_InterlaminarProfile(benchmark::State& state)
{
    Model m;
    laminate::analysis::InterlaminarShear const shear(m.an);
    std::vector<laminate::analysis::ShearPoint> pts;
    for (auto _ : state) {
        shear.profile(m.loads, pts);
        benchmark::DoNotOptimize(pts.data());
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_InterlaminarProfile);

// The evaluation a profile accompanies, for scale.
void BM_Evaluate(benchmark::State& state)
{
    Model m;
    laminate::analysis::Evaluation ev;
    for (auto _ : state) {
        m.an.evaluate(m.loads, ev);
        benchmark::DoNotOptimize(ev.plies.data());
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Evaluate);

}  // namespace

BENCHMARK_MAIN();
