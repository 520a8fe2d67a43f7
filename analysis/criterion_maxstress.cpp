// Maximum stress: each ply stress against its own strength, no interaction.
// Index: the largest of s1/Xt (s1 >= 0) or -s1/Xc, s2/Yt (s2 >= 0) or
// -s2/Yc, and |t12|/S12; the mode is the stress that gives it.
#include "laminate/analysis/criterion_path.h"

namespace analysis {

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

Rating ratePath(PreparedCriterion const& p, PlyStress const& res, PlyStress const& mech)
{
    double const* k = p.k;
    Breaks b;
    b.add(res.s1, mech.s1);
    b.add(res.s2, mech.s2);
    b.add(res.t12, mech.t12);
    b.finish();
    auto select = [k](PlyStress const& s, Branch& br) {
        if (s.s1 >= 0.0)
            br.add(linear(1.0 / k[kXt], 0.0, 0.0), 0);
        else
            br.add(linear(-1.0 / k[kXc], 0.0, 0.0), 1);
        if (s.s2 >= 0.0)
            br.add(linear(0.0, 1.0 / k[kYt], 0.0), 2);
        else
            br.add(linear(0.0, -1.0 / k[kYc], 0.0), 3);
        br.add(linear(0.0, 0.0, (s.t12 >= 0.0 ? 1.0 : -1.0) / k[kS]), 4);
    };
    return finish(p, res, mech, quadPieces(res, mech, b, select));
}

}  // namespace

extern CriterionInfo const kMaxStress = {"maxstress", kModes,           kNoExtras,   nullptr,
                                         0,           prepareCriterion, assessState, ratePath};

}  // namespace analysis
