#include "laminate/analysis/interlaminar_rating.h"

#include <cmath>
#include <limits>

namespace laminate::analysis {

namespace {

const double kInf = std::numeric_limits<double>::infinity();

double allowable(double v)
{
    return std::isfinite(v) && v > 0.0 ? v : 0.0;
}

}  // namespace

char const* plyPointWord(PlyPoint p)
{
    static char const* const words[] = {"none", "top", "middle", "bottom"};
    return words[static_cast<int>(p)];
}

InterlaminarRating::InterlaminarRating(LaminateAnalysis const& an, double const* allowables)
    : shear_(an)
{
    if (shear_.status() != InterlaminarShear::Ok) return;
    for (int k = 1; k <= an.layers(); k++) {
        LaminateAnalysis::Ply const& p = an.plies()[k - 1];
        double const zl = an.zLow(k), zu = an.zHigh(k);
        plies_.push_back(Ply{p.c, p.s, allowable(allowables[2 * (k - 1)]),
                             allowable(allowables[2 * (k - 1) + 1]),
                             {zl, 0.5 * (zl + zu), zu}});
    }
    status_ = Ok;
}

bool InterlaminarRating::index(int k, double txz, double tyz, double& out) const
{
    Ply const& p = plies_[k];
    if (p.S13 == 0.0 || p.S23 == 0.0) return false;
    double const a = (p.c * txz + p.s * tyz) / p.S13;
    double const b = (-p.s * txz + p.c * tyz) / p.S23;
    out = a * a + b * b;
    return true;
}

ShearRating InterlaminarRating::ratePly(int layer, double const loads[8]) const
{
    ShearRating out{Verdict::NoData, 0.0, 0.0, layer, PlyPoint::None};
    if (status_ != Ok) return out;
    int const k = layer - 1;
    double worst = 0.0;
    if (!index(k, 0.0, 0.0, worst)) {
        out.verdict = Verdict::NoStrength;
        return out;
    }
    PlyPoint const points[3] = {PlyPoint::Top, PlyPoint::Middle, PlyPoint::Bottom};
    out.point = PlyPoint::Top;
    for (int i = 0; i < 3; i++) {
        ShearPoint const sp = shear_.at(plies_[k].z[i], loads);
        double v = 0.0, other = 0.0;
        index(k, sp.xz, sp.yz, v);
        // At an interface the neighbour's allowables count as well.
        int const n = i == 0 ? k - 1 : i == 2 ? k + 1 : -1;
        if (n >= 0 && n < layers() && index(n, sp.xz, sp.yz, other) && other > v) v = other;
        if (!std::isfinite(v) || !std::isfinite(sp.xz) || !std::isfinite(sp.yz)) {
            out.verdict = Verdict::NonFinite;
            out.point = points[i];
            return out;
        }
        if (v > worst) {
            worst = v;
            out.point = points[i];
        }
    }
    out.index = worst;
    if (worst > 0.0) {
        out.verdict = Verdict::Ok;
        out.rf = 1.0 / std::sqrt(worst);
    } else {
        out.verdict = Verdict::Never;
        out.rf = kInf;
    }
    return out;
}

ShearRating InterlaminarRating::firstPlyFailure(double const loads[8]) const
{
    ShearRating best{Verdict::Never, kInf, 0.0, 0, PlyPoint::None};
    if (status_ != Ok) return ShearRating{Verdict::NoData, 0.0, 0.0, 0, PlyPoint::None};
    for (int k = 1; k <= layers(); k++) {
        ShearRating const r = ratePly(k, loads);
        if (r.verdict != Verdict::Ok && r.verdict != Verdict::Never) return r;
        if (r.rf < best.rf) best = r;
    }
    return best;
}

}  // namespace laminate::analysis
