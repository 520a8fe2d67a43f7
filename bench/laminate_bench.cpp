// Cost of the laminate model's hot path: the 8x8 inverse, the stress
// recovery and the failure criteria, against the number of layers.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "laminate/analysis/laminate_analysis.h"
#include "laminate/laminate/lamina1.h"
#include "laminate/linalg/matriu.h"
#include "laminate/linalg/reavecv.h"

namespace {

// A carbon/epoxy quasi-isotropic stack [0/45/-45/90] repeated to n plies,
// SI units (Pa, m).
std::string record(int n)
{
    static const char* const angles[] = {"0", "45", "-45", "90"};
    std::string r = std::to_string(n);
    for (int k = 0; k < n; k++) {
        r += " 135e9 10e9 0.3 5e9 5e9 3.6e9"
             " 1200e6 200e6 1500e6 50e6 70e6 50e6 70e6 0 ";
        r += angles[k % 4];
        r += " 0.000125 1600 1";
    }
    return r;
}

// A model with its stiffness built, as laminate_material leaves it.
struct Model {
    lamina1 lam;
    vantrel::ReaVecV loads;

    explicit Model(int n) : loads(8)
    {
        std::string r = record(n);
        if (lam.LeerCampoMater(&r[0], 1.0, 1.0, 1.0) != 0) abort();
        lam.calcDefinition();
        const double values[8] = {2.0e5, -1.0e5, 5.0e4, 10.0, -5.0, 2.0, 1.0e3, 5.0e2};
        for (int i = 0; i < 8; i++) loads[i] = values[i];
    }
};

void BM_Inverse8x8(benchmark::State& state)
{
    Model m(8);
    m.lam.calcK();
    for (auto _ : state) {
        vantrel::Matriu inv = m.lam.K.i();
        benchmark::DoNotOptimize(inv.data);
    }
}
BENCHMARK(BM_Inverse8x8);

void BM_CalcTD(benchmark::State& state)
{
    const int n = static_cast<int>(state.range(0));
    Model m(n);
    for (auto _ : state) {
        m.lam.CalcTD(n / 2 + 1, m.loads);
        benchmark::DoNotOptimize(m.lam.stressesLam[0]);
    }
    state.SetComplexityN(n);
}
BENCHMARK(BM_CalcTD)->Arg(1)->Arg(4)->Arg(8)->Arg(16)->Arg(64)->Complexity(benchmark::oN);

void BM_FasTWcompleteLayer(benchmark::State& state)
{
    Model m(8);
    for (auto _ : state) benchmark::DoNotOptimize(m.lam.FasTWcompleteLayer(2, m.loads));
}
BENCHMARK(BM_FasTWcompleteLayer);

void BM_FasLaRC04_layer_mode2(benchmark::State& state)
{
    Model m(8);
    for (auto _ : state) benchmark::DoNotOptimize(m.lam.FasLaRC04_layer(2, m.loads, 2));
}
BENCHMARK(BM_FasLaRC04_layer_mode2);

// Every layer recovers the whole laminate again: quadratic in the layer count.
void BM_FasTWcomplete(benchmark::State& state)
{
    const int n = static_cast<int>(state.range(0));
    Model m(n);
    for (auto _ : state) benchmark::DoNotOptimize(m.lam.FasTWcomplete(m.loads));
    state.SetComplexityN(n);
}
BENCHMARK(BM_FasTWcomplete)->Arg(1)->Arg(4)->Arg(16)->Arg(64)->Complexity(benchmark::oNSquared);

// Rating a laminate under one load case, every layer and every result type:
// the 30 per-layer operations of the results command, each recovering the
// laminate afresh, against one evaluation of a prepared analysis.
double allResultTypes(lamina1& lam, int k, vantrel::ReaVecV& L, vantrel::ReaVecV& out)
{
    double sum = lam.FasTWcompleteLayer(k, L) + lam.FasTWLayer(k, L);
    lam.GiveStresses(k, L, out, 0);
    lam.GiveStrains(k, L, out, 0);
    lam.GiveStressTop(k, L, out);
    lam.GiveStressBas(k, L, out);
    lam.GiveStresses(k, L, out, 1);
    lam.GiveStrains(k, L, out, 1);
    for (int m = 1; m <= 6; m++) sum += lam.FasLaRC04_layer(k, L, m);
    sum += lam.GiveStresses1_layer(k, L) + lam.GiveStresses2_layer(k, L) + lam.GiveStresses3_layer(k, L);
    sum += lam.GiveStrains1_layer(k, L) + lam.GiveStrains2_layer(k, L) + lam.GiveStrains3_layer(k, L);
    sum += lam.GiveStressest1_layer(k, L) + lam.GiveStressest2_layer(k, L) + lam.GiveStressest3_layer(k, L);
    sum += lam.GiveStressesb1_layer(k, L) + lam.GiveStressesb2_layer(k, L) + lam.GiveStressesb3_layer(k, L);
    sum += lam.GiveShearStresses1_layer(k, L) + lam.GiveShearStresses2_layer(k, L);
    sum += lam.GiveShearStrains1_layer(k, L) + lam.GiveShearStrains2_layer(k, L);
    return sum + out[0];
}

void BM_RateLaminatePerCall(benchmark::State& state)
{
    const int n = static_cast<int>(state.range(0));
    Model m(n);
    vantrel::ReaVecV out(3);
    for (auto _ : state) {
        double sum = 0.0;
        for (int k = 1; k <= n; k++) sum += allResultTypes(m.lam, k, m.loads, out);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_RateLaminatePerCall)->Arg(8);

void BM_RateLaminate(benchmark::State& state)
{
    const int n = static_cast<int>(state.range(0));
    Model m(n);
    laminate::analysis::LaminateAnalysis an(m.lam);
    laminate::analysis::Evaluation ev;
    for (auto _ : state) {
        an.evaluate(m.loads.data, ev);
        benchmark::DoNotOptimize(ev.plies[n - 1].tsaiWu);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_RateLaminate)->Arg(8);

template <laminate::analysis::Criterion C>
void BM_FirstPlyFailure(benchmark::State& state)
{
    const int n = static_cast<int>(state.range(0));
    Model m(n);
    laminate::analysis::LaminateAnalysis an(m.lam);
    for (auto _ : state) benchmark::DoNotOptimize(an.firstPlyFailure(m.loads.data, C).factor);
    state.SetItemsProcessed(state.iterations());
}
void BM_FirstPlyFailureTsaiWu(benchmark::State& state)
{
    BM_FirstPlyFailure<laminate::analysis::Criterion::TsaiWu>(state);
}
void BM_FirstPlyFailureHashin(benchmark::State& state)
{
    BM_FirstPlyFailure<laminate::analysis::Criterion::Hashin>(state);
}
void BM_FirstPlyFailureLaRC04(benchmark::State& state)
{
    BM_FirstPlyFailure<laminate::analysis::Criterion::LaRC04>(state);
}
BENCHMARK(BM_FirstPlyFailureTsaiWu)->Arg(8);
BENCHMARK(BM_FirstPlyFailureHashin)->Arg(8);
BENCHMARK(BM_FirstPlyFailureLaRC04)->Arg(8);

// The same over 64 load cases of every kind (each resultant scaled by a
// fixed pseudo-random factor in [-1, 1], a quarter of them 0), so that every
// LaRC04 mode and every way of searching it takes its share; per case.
template <laminate::analysis::Criterion C>
void BM_FirstPlyFailureCases(benchmark::State& state)
{
    Model m(8);
    laminate::analysis::LaminateAnalysis an(m.lam);
    std::vector<double> cases(64 * 8);
    unsigned seed = 12345;
    for (size_t i = 0; i < cases.size(); i++) {
        seed = seed * 1103515245u + 12345u;  // the same cases on every machine
        double const u = (seed >> 8) / 16777216.0;
        cases[i] = u < 0.25 ? 0.0 : m.loads[static_cast<int>(i % 8)] * (8.0 * u - 5.0) / 3.0;
    }
    for (auto _ : state)
        for (size_t k = 0; k < 64; k++)
            benchmark::DoNotOptimize(an.firstPlyFailure(&cases[8 * k], C).factor);
    state.SetItemsProcessed(64 * state.iterations());
}
void BM_FirstPlyFailureCasesTsaiWu(benchmark::State& state)
{
    BM_FirstPlyFailureCases<laminate::analysis::Criterion::TsaiWu>(state);
}
void BM_FirstPlyFailureCasesHashin(benchmark::State& state)
{
    BM_FirstPlyFailureCases<laminate::analysis::Criterion::Hashin>(state);
}
void BM_FirstPlyFailureCasesLaRC04(benchmark::State& state)
{
    BM_FirstPlyFailureCases<laminate::analysis::Criterion::LaRC04>(state);
}
BENCHMARK(BM_FirstPlyFailureCasesTsaiWu);
BENCHMARK(BM_FirstPlyFailureCasesHashin);
BENCHMARK(BM_FirstPlyFailureCasesLaRC04);

}  // namespace

BENCHMARK_MAIN();
