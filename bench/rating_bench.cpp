// First-ply failure of an 8-ply laminate with a temperature change, per
// criterion of the catalogue, through LaminateRating: per load case the
// mechanical stresses of 16 faces from the loads, their residual stresses
// under dT, every face's reserve factor and the smallest kept.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "laminate/analysis/laminate_rating.h"
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
        std::vector<double> alpha;
        for (int k = 1; k <= 8; k++) {
            laminate::analysis::CriterionPly p =
                laminate::analysis::criterionPly(an.plies()[k - 1].data, laminate::analysis::plySite(k, 8));
            p.fibre = laminate::analysis::FibreKind::Carbon;
            p.set(laminate::analysis::kGivenGIc, 0.258);
            p.set(laminate::analysis::kGivenGIIc, 1.08);
            plies.push_back(p);
            alpha.insert(alpha.end(), {-0.5e-6, 30e-6});
        }
        rating = laminate::analysis::LaminateRating(an, plies, alpha.data(), nullptr);
        // Membrane loads and small moments, any sign.
        std::mt19937 gen(7);
        std::uniform_real_distribution<double> u(-1.0, 1.0);
        for (int i = 0; i < kCases; i++)
            for (int j = 0; j < 8; j++) loads.push_back(j < 3 ? 200 * u(gen) : j < 6 ? 5 * u(gen) : 0.0);
    }
};

Fixture const& fixture()
{
    static Fixture f;
    return f;
}

void firstPlyFailure(benchmark::State& state)
{
    Fixture const& f = fixture();
    int const c = static_cast<int>(state.range(0));
    state.SetLabel(laminate::analysis::kCriteria[c]->name);
    for (auto _ : state) {
        for (int i = 0; i < kCases; i++) {
            laminate::analysis::LaminateFailure const r =
                f.rating.firstPlyFailure(c, {&f.loads[8 * i], -150.0, 0.0});
            benchmark::DoNotOptimize(r);
        }
    }
    state.SetItemsProcessed(state.iterations() * kCases);
}

}  // namespace

BENCHMARK(firstPlyFailure)->DenseRange(0, 7);

BENCHMARK_MAIN();
