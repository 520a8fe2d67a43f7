// Cost of the laminate model's hot path: the 8x8 inverse, the stress
// recovery and the failure criteria, against the number of layers.
#include <benchmark/benchmark.h>

#include <string>

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
        lam.calcNu21();
        lam.calcQI();
        lam.calcA();
        lam.calcB();
        lam.calcD();
        lam.calcH();
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

}  // namespace

BENCHMARK_MAIN();
