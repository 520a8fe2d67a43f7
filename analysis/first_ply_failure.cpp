// First-ply failure: the smallest load factor at which a scaled load case
// brings some assessed ply to an index of 1.
//
// Stresses are linear in the loads, so at factor f every stress of a layer is
// f times its stress under the load case itself.  Tsai-Wu and Hashin indices
// are then quadratics in f at each face and are solved in closed form.  The
// LaRC04 indices are not (the misalignment angle depends on the load level,
// and modes switch on and off with it): their factor is bracketed on a
// geometric scan and refined with the TOMS 748 root finder.  Where a LaRC04
// mode switches on with the load level (mode 2 gives way to mode 5 where s1
// passes -Yc) an index can jump past 1; the factor is then that jump.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include <boost/math/tools/toms748_solve.hpp>

#include "laminate/analysis/laminate_analysis.h"

using laminate_model::LayerState;
using laminate_model::PlyData;

namespace analysis {

namespace {

const double kInf = std::numeric_limits<double>::infinity();

// LaRC04 scan: from kScanLow to kScanHigh times a reference factor (the factor
// at which the largest stress-to-strength ratio reaches 1), kScanSteps steps
// a decade.  An excursion of an index above 1 narrower than one step can be
// missed; none is known for the modes as written.
const double kScanLow = 1e-6;
const double kScanHigh = 1e6;
const int kScanSteps = 4;
const int kRootBits = 46;       // TOMS 748 stops at a bracket of ~2^-46 relative
const std::uintmax_t kRootIterations = 100;

// Smallest f > 0 with a f^2 + b f = target, for a >= 0; +inf when there is
// none.  Written to avoid cancellation in either sign of b.
double reach(double a, double b, double target)
{
    if (a > 0.0) {
        double const d = std::sqrt(b * b + 4.0 * a * target);
        return b >= 0.0 ? 2.0 * target / (b + d) : (d - b) / (2.0 * a);
    }
    if (a == 0.0 && b > 0.0) return target / b;
    return kInf;
}

// Smallest f > 0 with |a f^2 + b f| = 1 (a >= 0): the index reaches 1 either
// rising through +1 or, while its linear part dominates with a negative sign,
// falling through -1.
double reachAbs(double a, double b)
{
    double f = reach(a, b, 1.0);
    if (b < 0.0) {
        if (a == 0.0) {
            f = std::min(f, -1.0 / b);
        } else if (a > 0.0) {
            double const disc = b * b - 4.0 * a;
            if (disc >= 0.0) f = std::min(f, 2.0 / (std::sqrt(disc) - b));
        }
    }
    return f;
}

void scaled(double const v[3], double f, double out[3])
{
    for (int i = 0; i < 3; i++) out[i] = f * v[i];
}

struct Best {
    PlyFailure at{kInf, 0, Face::None, 0};
    void offer(double factor, int ply, Face face, int mode)
    {
        if (factor < at.factor) at = PlyFailure{factor, ply, face, mode};
    }
};

// Tsai-Wu: |q f^2 + l f| at each face, q the quadratic part with the
// transverse shear terms, l the linear part.
void tsaiWu(PlyData const& p, LayerState const& st, int ply, Best& best)
{
    laminate_model::TsaiWu const tw(p);
    double const qa = st.shearStressesLam[0] / p.S23;
    double const qb = st.shearStressesLam[1] / p.S13;
    double const* const faces[] = {st.stressesTopLam, st.stressesBasLam};
    for (int i = 0; i < 2; i++) {
        double const* s = faces[i];
        double const q = tw.quadratic(s[0], s[1], s[2]) + qa * qa + qb * qb;
        double const l = tw.linear(s[0], s[1]);
        best.offer(reachAbs(q, l), ply, i == 0 ? Face::Top : Face::Bottom, 0);
    }
}

// Hashin: for f > 0 each face keeps its tension or compression branch, and
// its index splits into a f^2 + b f (the index's own terms, grouped by power
// of the factor).  In fibre tension both faces take the bottom face's
// in-plane shear stress, as the index does.
void hashin(PlyData const& p, LayerState const& st, int ply, Best& best)
{
    double const ta = st.shearStressesLam[0], tb = st.shearStressesLam[1];
    double const* const faces[] = {st.stressesTopLam, st.stressesBasLam};
    double const tBottom = st.stressesBasLam[2];
    double const qa = ta / p.S23;
    for (int i = 0; i < 2; i++) {
        double const s1 = faces[i][0], s2 = faces[i][1], t12 = faces[i][2];
        Face const face = i == 0 ? Face::Top : Face::Bottom;

        double const shear = (t12 * t12 + tb * tb) / (p.S12 * p.S12) + qa * qa;
        double am, bm = 0.0;
        if (s2 <= 0.0) {
            double const r = s2 / (2.0 * p.S23), c = p.Yc / (2.0 * p.S23);
            am = shear + r * r;
            bm = s2 * (c * c - 1.0) / p.Yc;
        } else {
            double const r = s2 / p.Yt;
            am = shear + r * r;
        }
        best.offer(reach(am, bm, 1.0), ply, face, 0);

        double af = 0.0, bf = 0.0;
        if (s1 <= 0.0) {
            bf = -s1 / p.Xc;
        } else {
            double const r = s1 / p.Xt;
            af = r * r + (tBottom * tBottom + tb * tb) / (p.S12 * p.S12);
        }
        best.offer(reach(af, bf, 1.0), ply, face, 1);
    }
}

// The LaRC04 state of one assessed ply under the unscaled load case, with
// what does not change with the load level: the ply's constants and each
// face's kink-plane frame.
struct LarcPly {
    PlyData const* p;
    LayerState const* st;
    int ply;
    laminate_model::LaRC04 larc;
    laminate_model::LaRC04::Kink kinkBas, kinkTop;

    LarcPly(PlyData const& data, LayerState const& state, int layer)
        : p(&data), st(&state), ply(layer),
          larc(data, state.shearStressesLam[0], state.shearStressesLam[1]),
          kinkBas(larc.kink(state.stressesBasLam[1])), kinkTop(larc.kink(state.stressesTopLam[1]))
    {
    }
};

// Largest LaRC04 index over the plies, faces and modes at factor f; NaN
// indices do not count.  Where the largest is reached goes to *where.
double larcWorst(std::vector<LarcPly>& plies, double f, PlyFailure* where)
{
    double worst = -kInf;
    for (LarcPly& lp : plies) {
        LayerState const& st = *lp.st;
        lp.larc.restart(f * st.shearStressesLam[0], f * st.shearStressesLam[1]);
        double bas[3], top[3], ib[6], it[6];
        scaled(st.stressesBasLam, f, bas);
        scaled(st.stressesTopLam, f, top);
        lp.larc.face(bas[0], bas[1], bas[2], lp.kinkBas, ib);
        lp.larc.face(top[0], top[1], top[2], lp.kinkTop, it);
        for (int m = 0; m < 6; m++) {
            if (ib[m] > worst) {
                worst = ib[m];
                if (where) *where = PlyFailure{f, lp.ply, Face::Bottom, m + 1};
            }
            if (it[m] > worst) {
                worst = it[m];
                if (where) *where = PlyFailure{f, lp.ply, Face::Top, m + 1};
            }
        }
    }
    return worst;
}

// The factor at which the largest stress-to-strength ratio reaches 1: the
// scale of the LaRC04 scan.
double referenceFactor(std::vector<LarcPly> const& plies)
{
    double ratio = 0.0;
    for (LarcPly const& lp : plies) {
        PlyData const& p = *lp.p;
        LayerState const& st = *lp.st;
        for (double const* s : {st.stressesTopLam, st.stressesBasLam}) {
            ratio = std::max(ratio, std::fabs(s[0]) / (s[0] >= 0.0 ? p.Xt : p.Xc));
            ratio = std::max(ratio, std::fabs(s[1]) / (s[1] >= 0.0 ? p.Yt : p.Yc));
            ratio = std::max(ratio, std::fabs(s[2]) / p.S12);
        }
        ratio = std::max(ratio, std::fabs(st.shearStressesLam[0]) / p.S12);
        ratio = std::max(ratio, std::fabs(st.shearStressesLam[1]) / p.S12);
    }
    if (ratio == 0.0) return 0.0;
    return std::isfinite(ratio) ? 1.0 / ratio : 1.0;
}

PlyFailure larc04(std::vector<LarcPly>& plies)
{
    PlyFailure const never{kInf, 0, Face::None, 0};
    double const ref = referenceFactor(plies);
    if (plies.empty() || ref == 0.0) return never;

    PlyFailure where = never;
    double lo = ref * kScanLow;
    if (larcWorst(plies, lo, &where) >= 1.0) {
        where.factor = 0.0;
        return where;
    }
    double const step = std::pow(10.0, 1.0 / kScanSteps);
    int const steps = static_cast<int>(std::lround(std::log10(kScanHigh / kScanLow) * kScanSteps));
    for (int i = 1; i <= steps; i++) {
        double const hi = ref * kScanLow * std::pow(step, i);
        double const worstHi = larcWorst(plies, hi, nullptr);
        if (worstHi >= 1.0) {
            auto excess = [&plies](double f) { return larcWorst(plies, f, nullptr) - 1.0; };
            std::uintmax_t iterations = kRootIterations;
            double const excessLo = larcWorst(plies, lo, nullptr) - 1.0;
            std::pair<double, double> const bracket = boost::math::tools::toms748_solve(
                excess, lo, hi, excessLo, worstHi - 1.0,
                boost::math::tools::eps_tolerance<double>(kRootBits), iterations);
            larcWorst(plies, bracket.second, &where);
            where.factor = 0.5 * (bracket.first + bracket.second);
            return where;
        }
        lo = hi;
    }
    return never;
}

}  // namespace

PlyFailure LaminateAnalysis::firstPlyFailure(double const loads[8], Criterion c) const
{
    Best best;
    if (status_ != Ok) return best.at;
    double g[8];
    strains(loads, g);
    if (c == Criterion::LaRC04) {
        // The scan revisits every ply many times: recover them all first.
        std::vector<LayerState> states(plies_.size());
        std::vector<LarcPly> assessed;
        for (size_t i = 0; i < plies_.size(); i++) {
            laminate_model::recoverLayer(g, plies_[i].frame(), states[i]);
            if (!laminate_model::notAssessed(plies_[i].data, states[i].stressesLam,
                                             states[i].shearStressesLam))
                assessed.emplace_back(plies_[i].data, states[i], static_cast<int>(i) + 1);
        }
        return larc04(assessed);
    }
    LayerState st;
    for (size_t i = 0; i < plies_.size(); i++) {
        Ply const& ply = plies_[i];
        laminate_model::recoverLayer(g, ply.frame(), st);
        if (laminate_model::notAssessed(ply.data, st.stressesLam, st.shearStressesLam)) continue;
        int const layer = static_cast<int>(i) + 1;
        if (c == Criterion::TsaiWu)
            tsaiWu(ply.data, st, layer, best);
        else
            hashin(ply.data, st, layer, best);
    }
    return best.at;
}

}  // namespace analysis
