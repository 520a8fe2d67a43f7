// Last-ply failure of an 8-ply laminate under tsaiwu2d through
// LastPlyFailure: per load case every ply's failure in turn, each followed
// by the degraded laminate's stiffness, its inverse and the remapped face
// stresses.  Mechanical loads (no dT), so that a run allocates nothing.
#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

#include "laminate/analysis/last_ply_failure.h"
#include "laminate/laminate/lamina1.h"

namespace {

const int kCases = 256;

// [0/45/-45/90]s of a carbon/epoxy ply 0.125 thick (N-mm-MPa).
std::string record()
{
    std::string r = "8";
    for (int angle : {0, 45, -45, 90, 90, -45, 45, 0})
        r += "\n 161000 11400 0.32 5170 5170 3980 1590 185 2560 73 90 57 90 0 " +
             std::to_string(angle) + " 0.125 1.5e-5 1";
    return r;
}

struct Fixture {
    lamina1 lam;
    laminate::analysis::LaminateAnalysis an;
    laminate::analysis::LaminateRating rating;
    std::vector<double> loads;

    Fixture()
    {
        std::string text = record();
        lam.LeerCampoMater(&text[0], 1.0, 1.0, 1.0);
        lam.calcDefinition();
        an.prepare(lam);
        std::vector<laminate::analysis::CriterionPly> plies;
        for (int k = 1; k <= 8; k++)
            plies.push_back(laminate::analysis::criterionPly(an.plies()[k - 1].data,
                                                             laminate::analysis::plySite(k, 8)));
        rating = laminate::analysis::LaminateRating(an, plies, nullptr, nullptr);
        // Membrane loads and small moments, any sign.
        std::mt19937 gen(7);
        std::uniform_real_distribution<double> u(-1.0, 1.0);
        for (int i = 0; i < kCases; i++)
            for (int j = 0; j < 8; j++)
                loads.push_back(j < 3 ? 200 * u(gen) : j < 6 ? 5 * u(gen) : 0.0);
    }
};

Fixture const& fixture()
{
    static Fixture f;
    return f;
}

void lastPlyFailure(benchmark::State& state)
{
    Fixture const& f = fixture();
    int c = 0;
    while (std::string(laminate::analysis::kCriteria[c]->name) != "tsaiwu2d") c++;
    laminate::analysis::LastPlyFailure lpf(f.an, f.rating, nullptr, nullptr,
                                           laminate::analysis::Degradation());
    laminate::analysis::LpfResult out;
    size_t events = 0;
    for (auto _ : state) {
        for (int i = 0; i < kCases; i++) {
            lpf.run(c, {&f.loads[8 * i], 0.0, 0.0}, out);
            events += out.events.size();
            benchmark::DoNotOptimize(out.last);
        }
    }
    state.SetItemsProcessed(state.iterations() * kCases);
    state.counters["events"] =
        benchmark::Counter(static_cast<double>(events) / (state.iterations() * kCases));
}

}  // namespace

BENCHMARK(lastPlyFailure);
BENCHMARK_MAIN();
