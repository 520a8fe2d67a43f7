#include "laminate/analysis/criterion_path.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include <boost/math/tools/toms748_solve.hpp>

namespace analysis {
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

}  // namespace criterion_path
}  // namespace analysis
