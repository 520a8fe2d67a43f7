// Results of an eight-ply laminate pinned to their exact bits, so that work on
// the speed of the stiffness and recovery code cannot change a single digit.
// On a mismatch the test prints every value, ready to paste.
#include <cstdio>
#include <cstring>
#include <vector>

#include "lamina_build.h"

namespace {

// Thin and thick plies, angles on and just off the snapping limits, SI units.
std::vector<lamtest::Ply> stack()
{
    double const angles[8] = {0, 37.5, -45, 90, 89.97, -12, 45, 0.03};
    double const thick[8] = {0.000125, 0.0009, 0.000125, 0.0002,
                             0.000125, 0.0011, 0.000125, 0.0003};
    double const strengths[8] = {1200e6, 200e6, 1500e6, 50e6, 70e6, 60e6, 80e6, 0};
    std::vector<lamtest::Ply> plies;
    for (int k = 0; k < 8; k++) {
        lamtest::Ply p;
        p.E1 = 135e9 + 1e9 * k;
        p.E2 = 10e9;
        p.nu12 = 0.3;
        p.G12 = 5e9;
        p.G13 = 5.5e9;
        p.G23 = 3.6e9;
        std::memcpy(p.strength, strengths, sizeof strengths);
        p.angle = angles[k];
        p.t = thick[k];
        p.sw = 1600;
        plies.push_back(p);
    }
    return plies;
}

void append(std::vector<double>& to, vantrel::ReaVecV const& v)
{
    for (int i = 0; i < v.length(); i++) to.push_back(v[i]);
}

// Every recovered vector and every per-layer criterion, layer by layer.
std::vector<double> results(lamina1& lam, vantrel::ReaVecV& loads)
{
    std::vector<double> r;
    for (int k = 1; k <= lam.nlayers; k++) {
        lam.CalcTD(k, loads);
        append(r, lam.generalizedStrains);
        append(r, lam.stressesTopLam);
        append(r, lam.stressesBasLam);
        append(r, lam.strainsLam);
        append(r, lam.shearStressesLam);
        append(r, lam.shearStressesGlob);
        append(r, lam.shearStrainsLam);
        r.push_back(lam.FasTWLayer(k, loads));
        r.push_back(lam.FasTWcompleteLayer(k, loads));
        r.push_back(lam.FasHashinM_layer(k, loads, 0));
        r.push_back(lam.FasHashinM_layer(k, loads, 1));
        for (int mode = 1; mode <= 6; mode++) r.push_back(lam.FasLaRC04_layer(k, loads, mode));
    }
    r.push_back(lam.FasTW(loads));
    r.push_back(lam.FasTWcomplete(loads));
    for (int i = 1; i <= 8; i++)
        for (int j = 1; j <= 8; j++) r.push_back(lam.K(i, j));
    return r;
}

const double kPinned[] = {
#include "pinned_bits.inc"
};

}  // namespace

TEST(PinnedResults, EightPlyLaminateKeepsEveryBit)
{
    lamina1 lam;
    lamtest::define(lam, stack());
    vantrel::ReaVecV loads(8);
    double const values[8] = {2.0e5, -1.0e5, 5.0e4, 10.0, -5.0, 2.0, 1.0e3, 5.0e2};
    for (int i = 0; i < 8; i++) loads[i] = values[i];

    std::vector<double> got = results(lam, loads);
    size_t const n = sizeof kPinned / sizeof kPinned[0];
    bool same = got.size() == n;
    for (size_t i = 0; same && i < n; i++)
        same = std::memcmp(&got[i], &kPinned[i], sizeof(double)) == 0;
    if (!same) {
        std::string dump;
        char line[64];
        for (double v : got) {
            std::snprintf(line, sizeof line, "    %a,\n", v);
            dump += line;
        }
        ADD_FAILURE() << "results differ from the pinned bits; now:\n" << dump;
    }
}
