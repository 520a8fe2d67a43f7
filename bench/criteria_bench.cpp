// Cost of rating one load case under each criterion once the ply stresses
// are known: the reserve factor of 8 plies x 2 faces, with the residual
// stresses of a cool-down from cure held, and the smallest of them kept (the
// per-load-case work of a first-ply failure on an 8-ply laminate).  The
// criteria/NAME/dT/fpf rows skip, as LaminateRating's first-ply failure
// does, the faces whose index provably stays below 1 up to the smallest
// factor found so far; the other rows rate every face.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "laminate/analysis/criterion.h"
#include "laminate/analysis/criterion_path.h"

namespace {

using laminate::analysis::CriterionInfo;
using laminate::analysis::CriterionPly;
using laminate::analysis::PlyStress;
using laminate::analysis::PreparedCriterion;

const int kPlies = 8;
const int kFaces = 2 * kPlies;
const int kCases = 256;
const double kPi = 3.14159265358979323846;

// 3 x 3 matrices, row-major.
struct M3 {
    double a[9];
};

M3 mul(M3 const& x, M3 const& y)
{
    M3 r{};
    for (int i = 0; i < 3; i++)
        for (int j = 0; j < 3; j++)
            for (int k = 0; k < 3; k++) r.a[3 * i + j] += x.a[3 * i + k] * y.a[3 * k + j];
    return r;
}

M3 transpose(M3 const& x)
{
    M3 r;
    for (int i = 0; i < 3; i++)
        for (int j = 0; j < 3; j++) r.a[3 * i + j] = x.a[3 * j + i];
    return r;
}

M3 inverse(M3 const& m)
{
    double const* a = m.a;
    M3 r;
    r.a[0] = a[4] * a[8] - a[5] * a[7];
    r.a[1] = a[2] * a[7] - a[1] * a[8];
    r.a[2] = a[1] * a[5] - a[2] * a[4];
    r.a[3] = a[5] * a[6] - a[3] * a[8];
    r.a[4] = a[0] * a[8] - a[2] * a[6];
    r.a[5] = a[2] * a[3] - a[0] * a[5];
    r.a[6] = a[3] * a[7] - a[4] * a[6];
    r.a[7] = a[1] * a[6] - a[0] * a[7];
    r.a[8] = a[0] * a[4] - a[1] * a[3];
    double const det = a[0] * r.a[0] + a[1] * r.a[3] + a[2] * r.a[6];
    for (double& v : r.a) v /= det;
    return r;
}

void apply(M3 const& m, double const x[3], double y[3])
{
    for (int i = 0; i < 3; i++)
        y[i] = m.a[3 * i] * x[0] + m.a[3 * i + 1] * x[1] + m.a[3 * i + 2] * x[2];
}

// A [45/0/-45/90]s carbon/epoxy laminate in N-mm-MPa, cured 155 K above its
// service temperature: every face's residual stresses and, for kCases random
// membrane and bending loads, its mechanical stresses (classical lamination
// theory, ply axes).
struct Laminate {
    CriterionPly ply[kPlies];
    PlyStress res[kFaces];
    std::vector<PlyStress> mech;  // kCases x kFaces

    Laminate() : mech(kCases * kFaces)
    {
        double const E1 = 161000, E2 = 11400, nu12 = 0.32, G12 = 5170, t = 0.125;
        double const alpha[3] = {-0.9e-6, 27e-6, 0.0}, dT = -155;
        double const angles[kPlies] = {45, 0, -45, 90, 90, -45, 0, 45};
        double const d = 1 - nu12 * nu12 * E2 / E1;
        M3 const Q{{E1 / d, nu12 * E2 / d, 0, nu12 * E2 / d, E2 / d, 0, 0, 0, G12}};
        M3 T[kPlies];  // laminate to ply strains, engineering shear
        M3 A{}, D{};
        double NT[3] = {0, 0, 0};
        for (int k = 0; k < kPlies; k++) {
            double const c = std::cos(angles[k] * kPi / 180), s = std::sin(angles[k] * kPi / 180);
            T[k] = M3{
                {c * c, s * s, c * s, s * s, c * c, -c * s, -2 * c * s, 2 * c * s, c * c - s * s}};
            M3 const Qbar = mul(transpose(T[k]), mul(Q, T[k]));
            double const zt = (k - kPlies / 2) * t, zb = zt + t;
            for (int i = 0; i < 9; i++) {
                A.a[i] += Qbar.a[i] * t;
                D.a[i] += Qbar.a[i] * (zb * zb * zb - zt * zt * zt) / 3;
            }
            double qa[3], la[3];
            apply(Q, alpha, qa);
            apply(transpose(T[k]), qa, la);
            for (int i = 0; i < 3; i++) NT[i] += la[i] * dT * t;
        }
        M3 const Ai = inverse(A), Di = inverse(D);
        auto faces = [&](double const e0[3], double const kappa[3], bool thermal, PlyStress* out) {
            for (int k = 0; k < kPlies; k++)
                for (int f = 0; f < 2; f++) {
                    double const z = (k - kPlies / 2 + f) * t;
                    double const e[3] = {e0[0] + z * kappa[0], e0[1] + z * kappa[1],
                                         e0[2] + z * kappa[2]};
                    double ep[3], sp[3];
                    apply(T[k], e, ep);
                    if (thermal)
                        for (int i = 0; i < 3; i++) ep[i] -= alpha[i] * dT;
                    apply(Q, ep, sp);
                    out[2 * k + f] = PlyStress{sp[0], sp[1], sp[2]};
                }
        };
        double e0[3], zero[3] = {0, 0, 0};
        apply(Ai, NT, e0);
        faces(e0, zero, true, res);

        std::mt19937 gen(7);
        std::uniform_real_distribution<double> u(-1, 1);
        for (int c = 0; c < kCases; c++) {
            double const N[3] = {300 * u(gen), 300 * u(gen), 150 * u(gen)};
            double const M[3] = {20 * u(gen), 20 * u(gen), 10 * u(gen)};
            double kappa[3];
            apply(Ai, N, e0);
            apply(Di, M, kappa);
            faces(e0, kappa, false, &mech[c * kFaces]);
        }

        for (int k = 0; k < kPlies; k++) {
            CriterionPly& p = ply[k];
            p.E1 = E1;
            p.E2 = E2;
            p.nu12 = nu12;
            p.G12 = G12;
            p.set(laminate::analysis::kGivenXt, 2560);
            p.set(laminate::analysis::kGivenXc, 1590);
            p.set(laminate::analysis::kGivenYt, 73);
            p.set(laminate::analysis::kGivenYc, 185);
            p.set(laminate::analysis::kGivenS12, 90);
            p.set(laminate::analysis::kGivenGIc, 0.258);
            p.set(laminate::analysis::kGivenGIIc, 0.8);
            p.t = t;
            p.site =
                k == 0 || k == kPlies - 1 ? laminate::analysis::PlySite::Outer : laminate::analysis::PlySite::Embedded;
        }
    }
};

Laminate const& laminate()
{
    static Laminate const lam;
    return lam;
}

// Items processed: load cases, each the 16 face ratings of one case.  With
// skip, as a laminate's first-ply failure rates them: a face whose index
// provably stays below 1 up to the smallest factor so far is not rated.
void rateFaces(benchmark::State& state, CriterionInfo const* c, double const* params, bool residual,
               bool skip)
{
    Laminate const& lam = laminate();
    PreparedCriterion prepared[kPlies];
    for (int k = 0; k < kPlies; k++)
        if (laminate::analysis::prepare(*c, lam.ply[k], params, prepared[k]) != laminate::analysis::Verdict::Ok) {
            state.SkipWithError("ply refused");
            return;
        }
    PlyStress const none{0, 0, 0};
    int i = 0;
    for (auto _ : state) {
        PlyStress const* mech = &lam.mech[i * kFaces];
        double first = std::numeric_limits<double>::infinity();
        for (int f = 0; f < kFaces; f++) {
            PlyStress const& res = residual ? lam.res[f] : none;
            if (skip && first < std::numeric_limits<double>::infinity() &&
                laminate::analysis::criterion_path::staysBelow(prepared[f / 2], res, mech[f], first))
                continue;
            laminate::analysis::Rating const r = laminate::analysis::rate(prepared[f / 2], res, mech[f]);
            first = std::min(first, r.rf);
        }
        benchmark::DoNotOptimize(first);
        i = (i + 1) % kCases;
    }
    state.SetItemsProcessed(state.iterations());
}

void rateCases(benchmark::State& state, CriterionInfo const* c, double const* params, bool residual)
{
    rateFaces(state, c, params, residual, false);
}

void firstPlyFailure(benchmark::State& state, CriterionInfo const* c)
{
    rateFaces(state, c, nullptr, true, true);
}

int registerAll()
{
    static double const weakening[] = {1, 0.5, 0.5};
    for (int i = 0; laminate::analysis::kCriteria[i]; i++) {
        CriterionInfo const* c = laminate::analysis::kCriteria[i];
        for (bool residual : {true, false})
            benchmark::RegisterBenchmark(
                (std::string("criteria/") + c->name + (residual ? "/dT" : "/mechanical")).c_str(),
                rateCases, c, nullptr, residual);
    }
    benchmark::RegisterBenchmark("criteria/puck-weakening/dT", rateCases,
                                 laminate::analysis::findCriterion("puck"), weakening, true);
    for (int i = 0; laminate::analysis::kCriteria[i]; i++) {
        CriterionInfo const* c = laminate::analysis::kCriteria[i];
        benchmark::RegisterBenchmark((std::string("criteria/") + c->name + "/dT/fpf").c_str(),
                                     firstPlyFailure, c);
    }
    return 0;
}

int const registered = registerAll();

}  // namespace

BENCHMARK_MAIN();
