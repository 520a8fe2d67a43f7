// Hashin (1980) in plane stress: four modes, each with its own quadratic,
//   fibre tension (s1 >= 0):      (s1/Xt)^2 + (t12/S12)^2
//   fibre compression (s1 < 0):   -s1/Xc
//   matrix tension (s2 >= 0):     (s2/Yt)^2 + (t12/S12)^2
//   matrix compression (s2 < 0):  (s2/(2 ST))^2 + ((Yc/(2 ST))^2 - 1) s2/Yc
//                                 + (t12/S12)^2
// with ST the transverse shear strength S23 where given, Yc/2 otherwise (the
// matrix compression mode is then (s2/Yc)^2 + (t12/S12)^2).  The index is
// the largest mode's.  This is not the model's own Hashin index, which adds
// the transverse shear stresses.
#include <algorithm>

#include "laminate/analysis/criterion_path.h"

namespace laminate::analysis {

namespace {

using namespace criterion_path;

char const* const kModes[] = {"fibre-tension", "fibre-compression", "matrix-tension",
                              "matrix-compression", nullptr};
char const* const kNoExtras[] = {nullptr};

// kQ: the quadratics of the four modes, in the order of the mode words.
enum { kXt, kXc, kYt, kYc, kS, kST, kQ };

Verdict prepareCriterion(CriterionPly const& ply, double const*, PreparedCriterion& out)
{
    if (!ply.has(kGivenStrengths)) return Verdict::NoStrength;
    double* k = out.k;
    k[kXt] = ply.Xt;
    k[kXc] = ply.Xc;
    k[kYt] = ply.Yt;
    k[kYc] = ply.Yc;
    k[kS] = ply.S12;
    double const ST = ply.has(kGivenS23) ? ply.S23 : 0.5 * ply.Yc;
    k[kST] = ST;
    double const shear = 1.0 / (ply.S12 * ply.S12), c = ply.Yc / (2.0 * ST);
    storeQuad(k + kQ, Quad{1.0 / (ply.Xt * ply.Xt), 0, shear, 0, 0, 0, 0, 1});
    storeQuad(k + kQ + 8, linear(-1.0 / ply.Xc, 0.0, 0.0));
    storeQuad(k + kQ + 16, Quad{0, 1.0 / (ply.Yt * ply.Yt), shear, 0, 0, 0, 0, 1});
    storeQuad(k + kQ + 24,
              Quad{0, 1.0 / (4.0 * ST * ST), shear, 0, 0, (c * c - 1.0) / ply.Yc, 0, 1});
    return Verdict::Ok;
}

// The fibre mode that holds at s and its quadratic.
Quad fibre(double const* k, PlyStress const& s, int& mode)
{
    mode = s.s1 >= 0.0 ? 0 : 1;
    return loadQuad(k + kQ + 8 * mode);
}

// The matrix mode that holds at s and its quadratic.
Quad matrix(double const* k, PlyStress const& s, int& mode)
{
    mode = s.s2 >= 0.0 ? 2 : 3;
    return loadQuad(k + kQ + 8 * mode);
}

Assessment assessState(PreparedCriterion const& p, PlyStress const& s)
{
    int mf, mm;
    double const f = fibre(p.k, s, mf).value(s), m = matrix(p.k, s, mm).value(s);
    return f >= m ? Assessment{Verdict::Ok, f, mf, {0.0, 0.0}, 0u}
                  : Assessment{Verdict::Ok, m, mm, {0.0, 0.0}, 0u};
}

// The fibre modes and the matrix modes each change branch at one point.
Rating ratePath(PreparedCriterion const& p, PlyStress const& res, PlyStress const& mech)
{
    double const* k = p.k;
    Breaks bf, bm;
    bf.add(res.s1, mech.s1);
    bf.finish();
    bm.add(res.s2, mech.s2);
    bm.finish();
    Crossing const f = family(res, mech, bf, kInf,
                              [k](PlyStress const& s, int& mode) { return fibre(k, s, mode); });
    Crossing const m = family(res, mech, bm, f.r,
                              [k](PlyStress const& s, int& mode) { return matrix(k, s, mode); });
    return rating(m.r < f.r ? m : f);
}

// Each branch is a convex quadratic (the fibre compression one linear).  The
// matrix index is continuous where s2 changes sign, both branches being
// (t12/S12)^2 there; the fibre index jumps where s1 does, from 0 to
// (t12/S12)^2 on the tension side.  The largest value on a segment is
// therefore at an end or at one of those points.
bool indexBelow(PreparedCriterion const& p, PlyStress const& a, PlyStress const& b)
{
    double const* k = p.k;
    // First from the largest stresses of either sign (each is at an end):
    // every branch is convex in its own stress, the shear term at most its
    // largest value.
    double const* ft = k + kQ;
    double const* mt = k + kQ + 16;
    double const* mc = k + kQ + 24;
    double const shear = ft[2] * std::max(a.t12 * a.t12, b.t12 * b.t12);
    double const P1 = std::max(a.s1, b.s1), N1 = -std::min(a.s1, b.s1);
    double const P2 = std::max(a.s2, b.s2), N2 = -std::min(a.s2, b.s2);
    double fibreMax = N1 > 0.0 ? N1 / k[kXc] : 0.0;
    if (P1 >= 0.0) fibreMax = std::max(fibreMax, ft[0] * P1 * P1 + shear);
    double matrixMax = 0.0;
    if (P2 >= 0.0) matrixMax = mt[1] * P2 * P2;
    if (N2 > 0.0) matrixMax = std::max(matrixMax, (mc[1] * N2 - mc[5]) * N2);
    if (under(fibreMax) && under(matrixMax + shear)) return true;
    // Then exactly.
    int mode;
    auto fibreAt = [k, &mode](PlyStress const& s) { return fibre(k, s, mode).value(s); };
    auto matrixAt = [k, &mode](PlyStress const& s) { return matrix(k, s, mode).value(s); };
    if (!(under(fibreAt(a)) && under(fibreAt(b)) && under(matrixAt(a)) && under(matrixAt(b))))
        return false;
    PlyStress const d{b.s1 - a.s1, b.s2 - a.s2, b.t12 - a.t12};
    if ((a.s1 < 0.0) != (b.s1 < 0.0)) {
        // The tension branch where s1 = 0.
        PlyStress const z = along(a, d, a.s1 / (a.s1 - b.s1));
        if (!under(loadQuad(k + kQ).value(PlyStress{0.0, z.s2, z.t12}))) return false;
    }
    if ((a.s2 < 0.0) != (b.s2 < 0.0) && !under(matrixAt(along(a, d, a.s2 / (a.s2 - b.s2)))))
        return false;
    return true;
}

}  // namespace

extern CriterionInfo const kHashin2d = {"hashin2d", kModes,           kNoExtras,   nullptr,
                                        0,          prepareCriterion, assessState, ratePath,
                                        indexBelow};

}  // namespace laminate::analysis
