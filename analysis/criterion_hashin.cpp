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
#include "laminate/analysis/criterion_path.h"

namespace analysis {

namespace {

using namespace criterion_path;

char const* const kModes[] = {"fibre-tension", "fibre-compression", "matrix-tension",
                              "matrix-compression", nullptr};
char const* const kNoExtras[] = {nullptr};

enum { kXt, kXc, kYt, kYc, kS, kST };

Verdict prepareCriterion(CriterionPly const& ply, double const*, PreparedCriterion& out)
{
    if (!ply.has(kGivenStrengths)) return Verdict::NoStrength;
    double* k = out.k;
    k[kXt] = ply.Xt;
    k[kXc] = ply.Xc;
    k[kYt] = ply.Yt;
    k[kYc] = ply.Yc;
    k[kS] = ply.S12;
    k[kST] = ply.has(kGivenS23) ? ply.S23 : 0.5 * ply.Yc;
    return Verdict::Ok;
}

// The fibre and matrix quadratics of the sign branches that hold at s, into
// q[0] and q[1]; their modes into m[0] and m[1].
void modes(double const* k, PlyStress const& s, Quad q[2], int m[2])
{
    double const shear = 1.0 / (k[kS] * k[kS]);
    if (s.s1 >= 0.0) {
        q[0] = Quad{1.0 / (k[kXt] * k[kXt]), 0, shear, 0, 0, 0, 0, 0};
        m[0] = 0;
    } else {
        q[0] = linear(-1.0 / k[kXc], 0.0, 0.0);
        m[0] = 1;
    }
    if (s.s2 >= 0.0) {
        q[1] = Quad{0, 1.0 / (k[kYt] * k[kYt]), shear, 0, 0, 0, 0, 0};
        m[1] = 2;
    } else {
        double const c = k[kYc] / (2.0 * k[kST]);
        q[1] = Quad{0, 1.0 / (4.0 * k[kST] * k[kST]), shear, 0, 0, (c * c - 1.0) / k[kYc], 0, 0};
        m[1] = 3;
    }
}

Assessment assessState(PreparedCriterion const& p, PlyStress const& s)
{
    Quad q[2];
    int m[2];
    modes(p.k, s, q, m);
    double const f = q[0].value(s), mx = q[1].value(s);
    return f >= mx ? Assessment{Verdict::Ok, f, m[0], {0.0, 0.0}, 0u}
                   : Assessment{Verdict::Ok, mx, m[1], {0.0, 0.0}, 0u};
}

Rating ratePath(PreparedCriterion const& p, PlyStress const& res, PlyStress const& mech)
{
    double const* k = p.k;
    Breaks b;
    b.add(res.s1, mech.s1);
    b.add(res.s2, mech.s2);
    b.finish();
    auto select = [k](PlyStress const& s, Branch& br) {
        Quad q[2];
        int m[2];
        modes(k, s, q, m);
        br.add(q[0], m[0]);
        br.add(q[1], m[1]);
    };
    return finish(p, res, mech, quadPieces(res, mech, b, select));
}

}  // namespace

extern CriterionInfo const kHashin2d = {"hashin2d", kModes,           kNoExtras,   nullptr,
                                        0,          prepareCriterion, assessState, ratePath};

}  // namespace analysis
