// Tsai-Wu (1971) in plane stress, as published: the strength tensor
//   F1 s1 + F2 s2 + F11 s1^2 + F22 s2^2 + F66 t12^2 + 2 F12 s1 s2 = 1,
// F1 = 1/Xt - 1/Xc, F2 = 1/Yt - 1/Yc, F11 = 1/(Xt Xc), F22 = 1/(Yt Yc),
// F66 = 1/S12^2 and F12 = F12* sqrt(F11 F22).  F12* (parameter f12star) is
// -1/2 unless a biaxial test gives another value (Tsai and Hahn 1980).
//
// The index is the polynomial itself, below 0 where the linear terms
// dominate; the mode word names the dominant stress of the failure state.
// This is not the model's own Tsai-Wu index, which takes the polynomial's
// magnitude and adds the transverse shear terms.
#include <cmath>

#include "laminate/analysis/criterion_path.h"

namespace analysis {

namespace {

using namespace criterion_path;

char const* const kModes[] = {
    "fibre-tension", "fibre-compression", "matrix-tension", "matrix-compression", "shear", nullptr};
char const* const kNoExtras[] = {nullptr};
CriterionParam const kParams[] = {{"f12star", -0.5, -1.0, 1.0}};

// kInv: 1/Xt, 1/Xc, 1/Yt, 1/Yc, 1/S12.
enum { kInv, kF11 = kInv + 5, kF22, kF66, kF12, kF1, kF2 };

Verdict prepareCriterion(CriterionPly const& ply, double const* params, PreparedCriterion& out)
{
    if (!ply.has(kGivenStrengths)) return Verdict::NoStrength;
    double* k = out.k;
    double const strengths[5] = {ply.Xt, ply.Xc, ply.Yt, ply.Yc, ply.S12};
    for (int i = 0; i < 5; i++) k[kInv + i] = 1.0 / strengths[i];
    k[kF11] = 1.0 / (ply.Xt * ply.Xc);
    k[kF22] = 1.0 / (ply.Yt * ply.Yc);
    k[kF66] = 1.0 / (ply.S12 * ply.S12);
    k[kF12] = params[0] * std::sqrt(k[kF11] * k[kF22]);
    k[kF1] = 1.0 / ply.Xt - 1.0 / ply.Xc;
    k[kF2] = 1.0 / ply.Yt - 1.0 / ply.Yc;
    return Verdict::Ok;
}

Quad quad(double const* k)
{
    return Quad{k[kF11], k[kF22], k[kF66], k[kF12], k[kF1], k[kF2], 0, 1};
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

extern CriterionInfo const kTsaiWu2d = {"tsaiwu2d", kModes,           kNoExtras,   kParams,
                                        1,          prepareCriterion, assessState, ratePath};

}  // namespace analysis
