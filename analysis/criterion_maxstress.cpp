// Maximum stress: each ply stress against its own strength, no interaction.
// Index: the largest of s1/Xt (s1 >= 0) or -s1/Xc, s2/Yt (s2 >= 0) or
// -s2/Yc, and |t12|/S12; the mode is the stress that gives it.
#include "laminate/analysis/criterion_path.h"

namespace laminate::analysis {

namespace {

using namespace criterion_path;

char const* const kModes[] = {
    "fibre-tension", "fibre-compression", "matrix-tension", "matrix-compression", "shear", nullptr};
char const* const kNoExtras[] = {nullptr};

enum { kXt, kXc, kYt, kYc, kS };

Verdict prepareCriterion(CriterionPly const& ply, double const*, PreparedCriterion& out)
{
    if (!ply.has(kGivenStrengths)) return Verdict::NoStrength;
    double* k = out.k;
    k[kXt] = ply.Xt;
    k[kXc] = ply.Xc;
    k[kYt] = ply.Yt;
    k[kYc] = ply.Yc;
    k[kS] = ply.S12;
    return Verdict::Ok;
}

// The ratio of each mode, 0 where its sign does not hold.
void ratios(double const* k, PlyStress const& s, double r[5])
{
    r[0] = s.s1 >= 0.0 ? s.s1 / k[kXt] : 0.0;
    r[1] = s.s1 < 0.0 ? -s.s1 / k[kXc] : 0.0;
    r[2] = s.s2 >= 0.0 ? s.s2 / k[kYt] : 0.0;
    r[3] = s.s2 < 0.0 ? -s.s2 / k[kYc] : 0.0;
    r[4] = std::fabs(s.t12) / k[kS];
}

Assessment assessState(PreparedCriterion const& p, PlyStress const& s)
{
    double r[5];
    ratios(p.k, s, r);
    int m = 0;
    for (int i = 1; i < 5; i++)
        if (r[i] > r[m]) m = i;
    return Assessment{Verdict::Ok, r[m], m, {0.0, 0.0}, 0u};
}

// Each stress reaches its strength where res + r mech = strength, in closed
// form per mode.
Rating ratePath(PreparedCriterion const& p, PlyStress const& res, PlyStress const& mech)
{
    double const* k = p.k;
    Assessment const start = assessState(p, res);
    if (start.index >= 1.0) return rating(Crossing{0.0, start.mode});
    Crossing best{kInf, -1};
    auto reach = [&best](double r0, double m, double up, double down, int upMode, int downMode) {
        double const r = m > 0.0 ? (up - r0) / m : m < 0.0 ? (-down - r0) / m : kInf;
        if (r < best.r) best = Crossing{r, m > 0.0 ? upMode : downMode};
    };
    reach(res.s1, mech.s1, k[kXt], k[kXc], 0, 1);
    reach(res.s2, mech.s2, k[kYt], k[kYc], 2, 3);
    reach(res.t12, mech.t12, k[kS], k[kS], 4, 4);
    return rating(best);
}

}  // namespace

extern CriterionInfo const kMaxStress = {"maxstress", kModes,           kNoExtras,   nullptr,
                                         0,           prepareCriterion, assessState, ratePath, nullptr};

}  // namespace laminate::analysis
