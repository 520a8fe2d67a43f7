// Maximum strain: each ply strain against its own allowable, no interaction.
// The strains are those the ply stresses cause,
//   e1 = (s1 - nu12 s2) / E1,  e2 = s2 / E2 - nu12 s1 / E1,  g12 = t12 / G12,
// free thermal and moisture strains not included (the allowables are
// measured under mechanical load).  Index: the largest of e1/e1t (e1 >= 0)
// or -e1/e1c, e2/e2t or -e2/e2c, and |g12|/g12u; the mode is the strain that
// gives it, named as the stress modes are.
#include "laminate/analysis/criterion_path.h"

namespace laminate::analysis {

namespace {

using namespace criterion_path;

char const* const kModes[] = {
    "fibre-tension", "fibre-compression", "matrix-tension", "matrix-compression", "shear", nullptr};
char const* const kNoExtras[] = {nullptr};

enum { kE1, kE2, kNu12, kG12, kE1t, kE1c, kE2t, kE2c, kG12u };

// An allowable given, or else its strength over its modulus.
bool allowable(CriterionPly const& ply, PlyValue bit, double value, PlyValue strengthBit,
               double strength, double modulus, double& out)
{
    if (ply.has(bit)) {
        out = value;
        return true;
    }
    if (!ply.has(strengthBit)) return false;
    out = strength / modulus;
    return true;
}

Verdict prepareCriterion(CriterionPly const& ply, double const*, PreparedCriterion& out)
{
    double* k = out.k;
    if (!(ply.E1 > 0.0 && ply.E2 > 0.0 && ply.G12 > 0.0 && std::isfinite(ply.E1) &&
          std::isfinite(ply.E2) && std::isfinite(ply.G12) && std::isfinite(ply.nu12)))
        return Verdict::NoData;
    bool const all = allowable(ply, kGivenE1t, ply.e1t, kGivenXt, ply.Xt, ply.E1, k[kE1t]) &&
                     allowable(ply, kGivenE1c, ply.e1c, kGivenXc, ply.Xc, ply.E1, k[kE1c]) &&
                     allowable(ply, kGivenE2t, ply.e2t, kGivenYt, ply.Yt, ply.E2, k[kE2t]) &&
                     allowable(ply, kGivenE2c, ply.e2c, kGivenYc, ply.Yc, ply.E2, k[kE2c]) &&
                     allowable(ply, kGivenG12u, ply.g12u, kGivenS12, ply.S12, ply.G12, k[kG12u]);
    if (!all) return Verdict::NoStrength;
    k[kE1] = ply.E1;
    k[kE2] = ply.E2;
    k[kNu12] = ply.nu12;
    k[kG12] = ply.G12;
    return Verdict::Ok;
}

// The strains of a stress state, as three linear functions of the stresses
// (row i: d strain i / d s1, d s2, d t12).
void compliance(double const* k, double c[3][3])
{
    c[0][0] = 1.0 / k[kE1];
    c[0][1] = -k[kNu12] / k[kE1];
    c[0][2] = 0.0;
    c[1][0] = -k[kNu12] / k[kE1];
    c[1][1] = 1.0 / k[kE2];
    c[1][2] = 0.0;
    c[2][0] = 0.0;
    c[2][1] = 0.0;
    c[2][2] = 1.0 / k[kG12];
}

double strain(double const c[3], PlyStress const& s)
{
    return c[0] * s.s1 + c[1] * s.s2 + c[2] * s.t12;
}

Assessment assessState(PreparedCriterion const& p, PlyStress const& s)
{
    double const* k = p.k;
    double c[3][3];
    compliance(k, c);
    double const e1 = strain(c[0], s), e2 = strain(c[1], s), g = strain(c[2], s);
    double const r[5] = {e1 >= 0.0 ? e1 / k[kE1t] : 0.0, e1 < 0.0 ? -e1 / k[kE1c] : 0.0,
                         e2 >= 0.0 ? e2 / k[kE2t] : 0.0, e2 < 0.0 ? -e2 / k[kE2c] : 0.0,
                         std::fabs(g) / k[kG12u]};
    int m = 0;
    for (int i = 1; i < 5; i++)
        if (r[i] > r[m]) m = i;
    return Assessment{Verdict::Ok, r[m], m, {0.0, 0.0}, 0u};
}

// Each strain reaches its allowable where e(res) + r e(mech) = allowable, in
// closed form per mode.
Rating ratePath(PreparedCriterion const& p, PlyStress const& res, PlyStress const& mech)
{
    double const* k = p.k;
    Assessment const start = assessState(p, res);
    if (start.index >= 1.0) return rating(Crossing{0.0, start.mode});
    double c[3][3];
    compliance(k, c);
    Crossing best{kInf, -1};
    auto reach = [&](int row, double up, double down, int upMode, int downMode) {
        double const r0 = strain(c[row], res), m = strain(c[row], mech);
        double const r = m > 0.0 ? (up - r0) / m : m < 0.0 ? (-down - r0) / m : kInf;
        if (r < best.r) best = Crossing{r, m > 0.0 ? upMode : downMode};
    };
    reach(0, k[kE1t], k[kE1c], 0, 1);
    reach(1, k[kE2t], k[kE2c], 2, 3);
    reach(2, k[kG12u], k[kG12u], 4, 4);
    return rating(best);
}

}  // namespace

extern CriterionInfo const kMaxStrain = {"maxstrain", kModes,           kNoExtras,   nullptr,
                                         0,           prepareCriterion, assessState, ratePath, nullptr};

}  // namespace laminate::analysis
