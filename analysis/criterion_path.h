// What the criteria share to find where an index first reaches 1 along a load
// path s(r) = res + r * mech, r >= 0.
//
// Every stress of the path is linear in r, so the sign of each stress, or of
// any linear combination of them, changes at most once, at a point found in
// closed form: the breakpoints.  Between two breakpoints each criterion keeps
// one branch, a quadratic in the stresses for most criteria, and its first
// crossing of 1 there is a root of a quadratic in r.  A criterion without a
// closed form on a piece is bracketed there and refined with the TOMS 748
// root finder.
#ifndef LAMINATE_ANALYSIS_CRITERION_PATH_H
#define LAMINATE_ANALYSIS_CRITERION_PATH_H

#include <algorithm>
#include <cmath>
#include <limits>

#include "laminate/analysis/criterion.h"

namespace laminate::analysis {
namespace criterion_path {

const double kInf = std::numeric_limits<double>::infinity();

inline PlyStress along(PlyStress const& res, PlyStress const& mech, double r)
{
    return PlyStress{res.s1 + r * mech.s1, res.s2 + r * mech.s2, res.t12 + r * mech.t12};
}

// A branch of a criterion as a quadratic function of the stresses,
//   a11 s1^2 + a22 s2^2 + a66 t12^2 + 2 a12 s1 s2 + b1 s1 + b2 s2 + b6 t12,
// that fails where it reaches level (1 for most; Puck's mode C compares its
// value with 0, so that small stresses are not lost against a constant).
struct Quad {
    double a11, a22, a66, a12, b1, b2, b6, level;

    double value(PlyStress const& s) const
    {
        return a11 * s.s1 * s.s1 + a22 * s.s2 * s.s2 + a66 * s.t12 * s.t12 +
               2.0 * a12 * s.s1 * s.s2 + b1 * s.s1 + b2 * s.s2 + b6 * s.t12;
    }
    // d/dr of value(s + r m) at r = 0.
    double slope(PlyStress const& s, PlyStress const& m) const
    {
        return 2.0 * (a11 * s.s1 * m.s1 + a22 * s.s2 * m.s2 + a66 * s.t12 * m.t12 +
                      a12 * (s.s1 * m.s2 + s.s2 * m.s1)) +
               b1 * m.s1 + b2 * m.s2 + b6 * m.t12;
    }
    // The r^2 coefficient of value(s + r m).
    double curvature(PlyStress const& m) const
    {
        return a11 * m.s1 * m.s1 + a22 * m.s2 * m.s2 + a66 * m.t12 * m.t12 +
               2.0 * a12 * m.s1 * m.s2;
    }
};

inline Quad linear(double b1, double b2, double b6)
{
    return Quad{0, 0, 0, 0, b1, b2, b6, 1};
}

// The smallest t >= 0 at which a t^2 + b t + c reaches 0 from below: 0 when
// c > 0, or c = 0 and the function does not fall; +inf when there is none.
// Written without cancellation in either sign of b.
inline double firstRoot(double a, double b, double c)
{
    if (c == 0.0) {
        // At its level already: the crossing is here unless the function
        // leaves it downwards (a branch whose quadratic form meets its level
        // where the criterion itself is 0/0, as Puck's mode C at
        // s2 = t12 = 0).
        if (b > 0.0 || (b == 0.0 && a >= 0.0)) return 0.0;
        return a > 0.0 ? -b / a : kInf;
    }
    if (!(c < 0.0)) return 0.0;
    double const d = b * b - 4.0 * a * c;
    if (d < 0.0) return kInf;  // only when a < 0: the function stays below 0
    double const sd = std::sqrt(d);
    // For b > 0 the smaller positive root is -2c / (b + sqrt d) whatever the
    // sign of a (a = 0 included); for b <= 0 there is one only when a > 0.
    if (b > 0.0) return -2.0 * c / (b + sd);
    if (a > 0.0) return (sd - b) / (2.0 * a);
    return kInf;
}

// The first r in [lo, hi] (hi may be +inf) at which q(res + r mech) reaches
// q.level, or +inf.
inline double quadCrossing(Quad const& q, PlyStress const& res, PlyStress const& mech, double lo,
                           double hi)
{
    // Centred on lo: q(lo + t) - level = A t^2 + B t + C, with B and C taken
    // from the state at lo itself rather than expanded from r = 0.
    PlyStress const s = along(res, mech, lo);
    double const A = q.curvature(mech), B = q.slope(s, mech), C = q.value(s) - q.level;
    double const T = hi - lo;
    // A convex branch below its level at both ends stays below it in
    // between: no root to take.
    if (C < 0.0 && A >= 0.0 && T < kInf && (A * T + B) * T + C < 0.0) return kInf;
    double const t = firstRoot(A, B, C);
    if (t == kInf || t > T) return kInf;
    return std::min(lo + t, hi);
}

// The breakpoints of a path: the r > 0 at which linear functions of r
// change sign, sorted, with 0 first.
class Breaks {
public:
    Breaks() : n_(1) { r_[0] = 0.0; }
    // The root of v0 + r * slope, when it is finite and positive.
    void add(double v0, double slope)
    {
        if (slope == 0.0 || n_ == kMax) return;
        double const r = -v0 / slope;
        if (r > 0.0 && r < kInf) r_[n_++] = r;
    }
    // Sorts and drops repeats; call once, after the last add().
    void finish()
    {
        // Insertion sort: r_[0] = 0 lies below every root and stops it.
        for (int i = 2; i < n_; i++) {
            double const r = r_[i];
            int j = i;
            for (; r_[j - 1] > r; j--) r_[j] = r_[j - 1];
            r_[j] = r;
        }
        int n = 1;
        for (int i = 1; i < n_; i++)
            if (r_[i] != r_[n - 1]) r_[n++] = r_[i];
        n_ = n;
    }
    int pieces() const { return n_; }
    // Piece i runs from lo(i) to hi(i); the last one to +inf.
    double lo(int i) const { return r_[i]; }
    double hi(int i) const { return i + 1 < n_ ? r_[i + 1] : kInf; }
    // A point inside piece i, away from both ends.
    double inside(int i) const
    {
        return i + 1 < n_ ? 0.5 * (r_[i] + r_[i + 1]) : 2.0 * r_[i] + 1.0;
    }

private:
    static const int kMax = 24;
    double r_[kMax];
    int n_;
};

// Where a criterion first reaches 1 and in which mode (-1 where it never
// does).
struct Crossing {
    double r;
    int mode;
};

// A quadratic kept in 8 consecutive slots of a preparation.
inline void storeQuad(double* k, Quad const& q)
{
    double const v[8] = {q.a11, q.a22, q.a66, q.a12, q.b1, q.b2, q.b6, q.level};
    for (int i = 0; i < 8; i++) k[i] = v[i];
}
inline Quad loadQuad(double const* k)
{
    return Quad{k[0], k[1], k[2], k[3], k[4], k[5], k[6], k[7]};
}

// The first crossing below cap of one family of quadratic branches (the
// fibre modes of a criterion, say, whose branch follows the sign of s1):
// breaks holds the points where the family's branch may change, and
// select(s, mode) gives the quadratic of the branch that holds at a state s
// and sets its mode (distinct for distinct branches).  Where the residual
// state's own branch differs from the first piece's (one of its stresses is
// exactly 0), the residual state is checked with its own branch as well.
template <class Select>
Crossing family(PlyStress const& res, PlyStress const& mech, Breaks const& breaks, double cap,
                Select const& select)
{
    int start;
    Quad const first = select(res, start);
    for (int i = 0; i < breaks.pieces() && breaks.lo(i) < cap; i++) {
        int mode;
        Quad const q = select(along(res, mech, breaks.inside(i)), mode);
        if (i == 0 && mode != start && first.value(res) >= first.level) return Crossing{0.0, start};
        double const r = quadCrossing(q, res, mech, breaks.lo(i), std::min(breaks.hi(i), cap));
        if (r < kInf) return Crossing{r, mode};
    }
    return Crossing{kInf, -1};
}

// A function of the path factor r, passed by reference to any callable
// double(double) without copying it; the callable must outlive it.
class IndexAlong {
public:
    template <class G>
    explicit IndexAlong(G const& g)
        : obj_(&g), call_([](void const* o, double r) { return (*static_cast<G const*>(o))(r); })
    {
    }
    double operator()(double r) const { return call_(obj_, r); }

private:
    void const* obj_;  // the callable, not owned
    double (*call_)(void const*, double);
};

// Largest stress-to-strength ratio of a state: a scale for the numeric
// searches.
double stressRatio(PlyStress const& s, double Xt, double Xc, double Yt, double Yc, double S);

// The first r in [lo, hi] (hi may be +inf) at which g(r) >= 1, with glo =
// g(lo) and g continuous on the piece.  walk false: g crosses 1 at most once
// upwards on the piece, which a bounded piece's ends then bracket.  walk
// true, or an unbounded piece: the bracket is found by steps from lo,
// starting at step and doubling, up to hi or, on an unbounded piece, until r
// passes far (then +inf); g may then leave 1 again, as long as it does not
// rise above 1 and fall back within one step.  The bracket is refined with
// TOMS 748 to ~1e-12 relative.
double numericCrossing(IndexAlong const& g, double lo, double hi, double glo, double step,
                       double far, bool walk);

// True only when rate(p, res, mech) would give a rated verdict with a factor
// above cap (cap > 0 and finite): the stresses are usable and the
// criterion's bound keeps the index below 1 up to a little beyond cap.  A
// first-ply failure skips such a face once another has failed at cap; false
// whenever it cannot tell, and then the face is rated.
bool staysBelow(PreparedCriterion const& p, PlyStress const& res, PlyStress const& mech,
                double cap);

// A bound on an index keeps it below 1 when it is under 1 by kBelowMargin
// (CriterionInfo::below).
const double kBelowMargin = 1e-9;
inline bool under(double index)
{
    return index < 1.0 - kBelowMargin;
}

// The rating of a crossing: the verdict from its factor, and its mode.
inline Rating rating(Crossing c)
{
    if (c.r == kInf) return Rating{Verdict::Never, kInf, -1};
    return Rating{c.r == 0.0 ? Verdict::Residual : Verdict::Ok, c.r, c.mode};
}

// The mode word position of the largest of |s1|/X, |s2|/Y, |t12|/S (X, Y
// by the sign of the stress), in the order fibre-tension, fibre-compression,
// matrix-tension, matrix-compression, shear: the dominant stress of a state
// for the interactive criteria, which have no modes of their own.  inv holds
// 1/Xt, 1/Xc, 1/Yt, 1/Yc and 1/S12.
inline int dominantStress(PlyStress const& s, double const inv[5])
{
    double const r1 = s.s1 >= 0.0 ? s.s1 * inv[0] : -s.s1 * inv[1];
    double const r2 = s.s2 >= 0.0 ? s.s2 * inv[2] : -s.s2 * inv[3];
    double const r6 = std::fabs(s.t12) * inv[4];
    if (r6 > r1 && r6 > r2) return 4;
    if (r2 > r1) return s.s2 >= 0.0 ? 2 : 3;
    return s.s1 >= 0.0 ? 0 : 1;
}

// The interactive criteria of one quadratic everywhere (Tsai-Wu, Hoffman):
//   F11 s1^2 + F22 s2^2 + F66 t12^2 + 2 F12 s1 s2 + F1 s1 + F2 s2 = 1
// with F11 = 1/(Xt Xc), F22 = 1/(Yt Yc), F66 = 1/S12^2, F1 = 1/Xt - 1/Xc,
// F2 = 1/Yt - 1/Yc; they differ in F12 only, prepared as
// F12 = perF11 F11 + perRoot sqrt(F11 F22) (Hoffman: -1/2 and 0; Tsai-Wu:
// 0 and F12*).  The mode word is the dominant stress of the failure state.
Verdict prepareGeneralQuadratic(CriterionPly const& ply, double perF11, double perRoot,
                                PreparedCriterion& out);
Assessment assessGeneralQuadratic(PreparedCriterion const& p, PlyStress const& s);
Rating rateGeneralQuadratic(PreparedCriterion const& p, PlyStress const& res,
                            PlyStress const& mech);

}  // namespace criterion_path
}  // namespace laminate::analysis

#endif
