#include "laminate/analysis/criterion_path.h"

#include <algorithm>

namespace analysis {
namespace criterion_path {

double firstRoot(double a, double b, double c)
{
    if (c == 0.0) {
        // At 1 already: the crossing is here unless the function leaves 1
        // downwards (a branch whose quadratic form meets 1 at a state where
        // the criterion itself is 0/0, as Puck's mode C at s2 = t12 = 0).
        if (b > 0.0 || (b == 0.0 && a >= 0.0)) return 0.0;
        return a > 0.0 ? -b / a : kInf;
    }
    if (!(c < 0.0)) return 0.0;
    double const d = b * b - 4.0 * a * c;
    if (d < 0.0) return kInf;  // only when a < 0: the function stays below 0
    double const sd = std::sqrt(d);
    // For b > 0 the smaller positive root is -2c / (b + sqrt d) whatever the
    // sign of a (a = 0 included); for b <= 0 there is one only when a > 0.
    if (b > 0.0) return -2.0 * c / (b + sd);
    if (a > 0.0) return (sd - b) / (2.0 * a);
    return kInf;
}

double quadCrossing(Quad const& q, PlyStress const& res, PlyStress const& mech, double lo,
                    double hi)
{
    // Centred on lo: q(lo + t) - 1 = A t^2 + B t + C, with B and C taken
    // from the state at lo itself rather than expanded from r = 0.
    PlyStress const s = along(res, mech, lo);
    double const t = firstRoot(q.curvature(mech), q.slope(s, mech), q.value(s) - 1.0);
    if (t == kInf || t > hi - lo) return kInf;
    return std::min(lo + t, hi);
}

void Breaks::add(double v0, double slope)
{
    if (slope == 0.0 || n_ == kMax) return;
    double const r = -v0 / slope;
    if (r > 0.0 && r < kInf) r_[n_++] = r;
}

void Breaks::finish()
{
    std::sort(r_ + 1, r_ + n_);
    n_ = static_cast<int>(std::unique(r_, r_ + n_) - r_);
}

double stressRatio(PlyStress const& s, double Xt, double Xc, double Yt, double Yc, double S)
{
    double const r1 = s.s1 >= 0.0 ? s.s1 / Xt : -s.s1 / Xc;
    double const r2 = s.s2 >= 0.0 ? s.s2 / Yt : -s.s2 / Yc;
    return std::max(std::max(r1, r2), std::fabs(s.t12) / S);
}

int dominantStress(PlyStress const& s, double Xt, double Xc, double Yt, double Yc, double S)
{
    double const r[3] = {s.s1 >= 0.0 ? s.s1 / Xt : -s.s1 / Xc, s.s2 >= 0.0 ? s.s2 / Yt : -s.s2 / Yc,
                         std::fabs(s.t12) / S};
    int const word[3] = {s.s1 >= 0.0 ? 0 : 1, s.s2 >= 0.0 ? 2 : 3, 4};
    int k = 0;
    for (int i = 1; i < 3; i++)
        if (r[i] > r[k]) k = i;
    return word[k];
}

Rating finish(PreparedCriterion const& p, PlyStress const& res, PlyStress const& mech, Crossing c)
{
    Rating out;
    out.rf = c.r;
    if (c.r == kInf) {
        out.verdict = Verdict::Never;
        out.at = p.info->assess(p, along(res, mech, 1.0));
        return out;
    }
    out.verdict = c.r == 0.0 ? Verdict::Residual : Verdict::Ok;
    out.at = p.info->assess(p, along(res, mech, c.r));
    if (c.mode >= 0) out.at.mode = c.mode;
    return out;
}

}  // namespace criterion_path
}  // namespace analysis
