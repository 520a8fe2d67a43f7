// Tsai-Hill (Azzi and Tsai 1965): Hill's orthotropic yield function with
// strengths for stresses, in plane stress
//   (s1/X)^2 - s1 s2 / X^2 + (s2/Y)^2 + (t12/S12)^2 = 1,
// X = Xt or Xc and Y = Yt or Yc by the signs of s1 and s2.  The criterion has
// no modes of its own: the mode word names the dominant stress (the largest
// stress-to-strength ratio) of the failure state.
#include <algorithm>
#include <cmath>

#include "laminate/analysis/criterion_path.h"

namespace laminate::analysis {

namespace {

using namespace criterion_path;

char const* const kModes[] = {
    "fibre-tension", "fibre-compression", "matrix-tension", "matrix-compression", "shear", nullptr};
char const* const kNoExtras[] = {nullptr};

// kInv: 1/Xt, 1/Xc, 1/Yt, 1/Yc, 1/S12; kQ: the quadratics of the four sign
// branches, s1 >= 0 and s2 >= 0 first; kConvex: 1 when every branch is
// convex (2 X >= Y for each pair of strengths), else 0.
enum { kInv, kQ = kInv + 5, kConvex = kQ + 32 };

Verdict prepareCriterion(CriterionPly const& ply, double const*, PreparedCriterion& out)
{
    if (!ply.has(kGivenStrengths)) return Verdict::NoStrength;
    double* k = out.k;
    double const strengths[5] = {ply.Xt, ply.Xc, ply.Yt, ply.Yc, ply.S12};
    for (int i = 0; i < 5; i++) k[kInv + i] = 1.0 / strengths[i];
    for (int i = 0; i < 4; i++) {
        double const X = i < 2 ? ply.Xt : ply.Xc, Y = i % 2 == 0 ? ply.Yt : ply.Yc;
        double const x2 = 1.0 / (X * X);
        storeQuad(k + kQ + 8 * i,
                  Quad{x2, 1.0 / (Y * Y), 1.0 / (ply.S12 * ply.S12), -0.5 * x2, 0, 0, 0, 1});
    }
    k[kConvex] = 2.0 * std::min(ply.Xt, ply.Xc) >= std::max(ply.Yt, ply.Yc) ? 1.0 : 0.0;
    return Verdict::Ok;
}

// The sign branch that holds at s, 0 to 3.
int branchOf(PlyStress const& s)
{
    return (s.s1 >= 0.0 ? 0 : 2) + (s.s2 >= 0.0 ? 0 : 1);
}

// The quadratic of the sign branch that holds at s.
Quad branch(double const* k, PlyStress const& s)
{
    return loadQuad(k + kQ + 8 * branchOf(s));
}

Assessment assessState(PreparedCriterion const& p, PlyStress const& s)
{
    double const* k = p.k;
    int const m = dominantStress(s, k + kInv);
    return Assessment{Verdict::Ok, branch(k, s).value(s), m, {0.0, 0.0}, 0u};
}

Rating ratePath(PreparedCriterion const& p, PlyStress const& res, PlyStress const& mech)
{
    double const* k = p.k;
    Breaks b;
    b.add(res.s1, mech.s1);
    b.add(res.s2, mech.s2);
    b.finish();
    auto select = [k](PlyStress const& s, int& mode) {
        mode = branchOf(s);  // the mode word comes from the failure state below
        return loadQuad(k + kQ + 8 * mode);
    };
    Crossing c = family(res, mech, b, kInf, select);
    if (c.r < kInf) c.mode = dominantStress(along(res, mech, c.r), k + kInv);
    return rating(c);
}

// The index is continuous along a path (the terms whose strength changes
// with a stress's sign vanish with it) and, with convex branches, convex
// between the points where s1 or s2 changes sign: its largest value on a
// segment is at an end or at one of those points.
bool indexBelow(PreparedCriterion const& p, PlyStress const& a, PlyStress const& b)
{
    double const* k = p.k;
    if (k[kConvex] == 0.0) return false;
    // First from the largest stress-to-strength ratios (each stress's
    // extremes are at the ends), the coupling term taken at its largest
    // magnitude: |s1 s2| / X^2 <= (|s1| / X) |s2| / min(Xt, Xc).
    double const* inv = k + kInv;
    double const r1 = std::max(std::max(a.s1, b.s1) * inv[0], -std::min(a.s1, b.s1) * inv[1]);
    double const r2 = std::max(std::max(a.s2, b.s2) * inv[2], -std::min(a.s2, b.s2) * inv[3]);
    double const r6 = std::max(std::fabs(a.t12), std::fabs(b.t12)) * inv[4];
    double const s2 = std::max(std::fabs(a.s2), std::fabs(b.s2)) * std::max(inv[0], inv[1]);
    if (under(std::max(0.0, r1) * (std::max(0.0, r1) + s2) + r2 * r2 + r6 * r6)) return true;
    // Then exactly.
    auto at = [k](PlyStress const& s) { return branch(k, s).value(s); };
    if (!(under(at(a)) && under(at(b)))) return false;
    PlyStress const d{b.s1 - a.s1, b.s2 - a.s2, b.t12 - a.t12};
    if ((a.s1 < 0.0) != (b.s1 < 0.0) && !under(at(along(a, d, a.s1 / (a.s1 - b.s1)))))
        return false;
    if ((a.s2 < 0.0) != (b.s2 < 0.0) && !under(at(along(a, d, a.s2 / (a.s2 - b.s2)))))
        return false;
    return true;
}

}  // namespace

extern CriterionInfo const kTsaiHill = {"tsaihill", kModes,           kNoExtras,   nullptr,
                                        0,          prepareCriterion, assessState, ratePath,
                                        indexBelow};

}  // namespace laminate::analysis
