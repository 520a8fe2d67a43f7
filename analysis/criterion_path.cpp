#include "laminate/analysis/criterion_path.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include <boost/math/tools/toms748_solve.hpp>

namespace laminate::analysis {
namespace criterion_path {

double stressRatio(PlyStress const& s, double Xt, double Xc, double Yt, double Yc, double S)
{
    double const r1 = s.s1 >= 0.0 ? s.s1 / Xt : -s.s1 / Xc;
    double const r2 = s.s2 >= 0.0 ? s.s2 / Yt : -s.s2 / Yc;
    return std::max(std::max(r1, r2), std::fabs(s.t12) / S);
}

double numericCrossing(IndexAlong const& g, double lo, double hi, double glo, double step,
                       double far, bool walk)
{
    if (glo >= 1.0) return lo;
    double a = lo, ga = glo, b = hi, gb;
    if (hi < kInf && !walk) {
        gb = g(hi);
        if (!(gb >= 1.0)) return kInf;
    } else {
        // Each step at most doubles the one before and is at least half of
        // it; within that, it stops a little past where the line through the
        // last two points reaches 1 (so that a convex g, which the line meets
        // late, is bracketed at once).
        double before = a, gBefore = ga;
        bool line = false;
        for (;;) {
            double next = a + step;
            if (line && ga > gBefore) {
                double const reach = (1.0 - ga) * (a - before) / (ga - gBefore);
                next = std::min(next, a + std::max(1.02 * reach, 0.25 * step));
            }
            b = std::min(next, hi);
            if (b > far) return kInf;
            gb = g(b);
            if (gb >= 1.0) break;
            if (b == hi) return kInf;
            step = 2.0 * (b - a);
            before = a;
            gBefore = ga;
            line = true;
            a = b;
            ga = gb;
        }
    }
    auto excess = [&g](double r) { return g(r) - 1.0; };
    std::uintmax_t iterations = 80;
    std::pair<double, double> const root = boost::math::tools::toms748_solve(
        excess, a, b, ga - 1.0, gb - 1.0, boost::math::tools::eps_tolerance<double>(42),
        iterations);
    return 0.5 * (root.first + root.second);
}

namespace {

// Slots of a general quadratic's prepared constants: kInv holds 1/Xt, 1/Xc,
// 1/Yt, 1/Yc, 1/S12, then the coefficients.
enum { kInv, kF11 = kInv + 5, kF22, kF66, kF12, kF1, kF2 };

Quad generalQuad(double const* k)
{
    return Quad{k[kF11], k[kF22], k[kF66], k[kF12], k[kF1], k[kF2], 0, 1};
}

}  // namespace

Verdict prepareGeneralQuadratic(CriterionPly const& ply, double perF11, double perRoot,
                                PreparedCriterion& out)
{
    if (!ply.has(kGivenStrengths)) return Verdict::NoStrength;
    double* k = out.k;
    double const strengths[5] = {ply.Xt, ply.Xc, ply.Yt, ply.Yc, ply.S12};
    for (int i = 0; i < 5; i++) k[kInv + i] = 1.0 / strengths[i];
    k[kF11] = 1.0 / (ply.Xt * ply.Xc);
    k[kF22] = 1.0 / (ply.Yt * ply.Yc);
    k[kF66] = 1.0 / (ply.S12 * ply.S12);
    k[kF12] = perF11 * k[kF11] + perRoot * std::sqrt(k[kF11] * k[kF22]);
    k[kF1] = 1.0 / ply.Xt - 1.0 / ply.Xc;
    k[kF2] = 1.0 / ply.Yt - 1.0 / ply.Yc;
    return Verdict::Ok;
}

Assessment assessGeneralQuadratic(PreparedCriterion const& p, PlyStress const& s)
{
    double const* k = p.k;
    int const m = dominantStress(s, k + kInv);
    return Assessment{Verdict::Ok, generalQuad(k).value(s), m, {0.0, 0.0}, 0u};
}

Rating rateGeneralQuadratic(PreparedCriterion const& p, PlyStress const& res, PlyStress const& mech)
{
    double const* k = p.k;
    Crossing c{quadCrossing(generalQuad(k), res, mech, 0.0, kInf), -1};
    if (c.r < kInf) c.mode = dominantStress(along(res, mech, c.r), k + kInv);
    return rating(c);
}

}  // namespace criterion_path
}  // namespace laminate::analysis
