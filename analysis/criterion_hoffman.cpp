// Hoffman (1967): Hill's form with linear terms for unequal tension and
// compression strengths, in plane stress with transverse isotropy
//   s1^2/(Xt Xc) - s1 s2/(Xt Xc) + s2^2/(Yt Yc) + (1/Xt - 1/Xc) s1
//     + (1/Yt - 1/Yc) s2 + (t12/S12)^2 = 1.
// One quadratic everywhere; the mode word names the dominant stress of the
// failure state.
#include "laminate/analysis/criterion_path.h"

namespace analysis {

namespace {

using namespace criterion_path;

char const* const kModes[] = {
    "fibre-tension", "fibre-compression", "matrix-tension", "matrix-compression", "shear", nullptr};
char const* const kNoExtras[] = {nullptr};

// kInv: 1/Xt, 1/Xc, 1/Yt, 1/Yc, 1/S12.
enum { kInv, kA11 = kInv + 5, kA22, kA66, kA12, kB1, kB2 };

Verdict prepareCriterion(CriterionPly const& ply, double const*, PreparedCriterion& out)
{
    if (!ply.has(kGivenStrengths)) return Verdict::NoStrength;
    double* k = out.k;
    double const strengths[5] = {ply.Xt, ply.Xc, ply.Yt, ply.Yc, ply.S12};
    for (int i = 0; i < 5; i++) k[kInv + i] = 1.0 / strengths[i];
    k[kA11] = 1.0 / (ply.Xt * ply.Xc);
    k[kA22] = 1.0 / (ply.Yt * ply.Yc);
    k[kA66] = 1.0 / (ply.S12 * ply.S12);
    k[kA12] = -0.5 * k[kA11];
    k[kB1] = 1.0 / ply.Xt - 1.0 / ply.Xc;
    k[kB2] = 1.0 / ply.Yt - 1.0 / ply.Yc;
    return Verdict::Ok;
}

Quad quad(double const* k)
{
    return Quad{k[kA11], k[kA22], k[kA66], k[kA12], k[kB1], k[kB2], 0, 1};
}

Assessment assessState(PreparedCriterion const& p, PlyStress const& s)
{
    double const* k = p.k;
    int const m = dominantStress(s, k + kInv);
    return Assessment{Verdict::Ok, quad(k).value(s), m, {0.0, 0.0}, 0u};
}

Rating ratePath(PreparedCriterion const& p, PlyStress const& res, PlyStress const& mech)
{
    double const* k = p.k;
    Crossing c{quadCrossing(quad(k), res, mech, 0.0, kInf), -1};
    if (c.r < kInf) c.mode = dominantStress(along(res, mech, c.r), k + kInv);
    return rating(c);
}

}  // namespace

extern CriterionInfo const kHoffman = {"hoffman", kModes,           kNoExtras,   nullptr,
                                       0,         prepareCriterion, assessState, ratePath};

}  // namespace analysis
