// What the criteria share to find where an index first reaches 1 along a load
// path s(r) = res + r * mech, r >= 0.
//
// Every stress of the path is linear in r, so the sign of each stress, or of
// any linear combination of them, changes at most once, at a point found in
// closed form: the breakpoints.  Between two breakpoints each criterion keeps
// one branch, a quadratic in the stresses for most criteria, and its first
// crossing of 1 there is a root of a quadratic in r.  A criterion without a
// closed form on a piece is bracketed by the piece's ends and refined with
// the TOMS 748 root finder.
#ifndef LAMINATE_ANALYSIS_CRITERION_PATH_H
#define LAMINATE_ANALYSIS_CRITERION_PATH_H

#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include <boost/math/tools/toms748_solve.hpp>

#include "laminate/analysis/criterion.h"

namespace analysis {
namespace criterion_path {

const double kInf = std::numeric_limits<double>::infinity();

inline PlyStress along(PlyStress const& res, PlyStress const& mech, double r)
{
    return PlyStress{res.s1 + r * mech.s1, res.s2 + r * mech.s2, res.t12 + r * mech.t12};
}

// A quadratic function of the stresses:
//   a11 s1^2 + a22 s2^2 + a66 t12^2 + 2 a12 s1 s2 + b1 s1 + b2 s2 + b6 t12 + c0.
struct Quad {
    double a11, a22, a66, a12, b1, b2, b6, c0;

    double value(PlyStress const& s) const
    {
        return a11 * s.s1 * s.s1 + a22 * s.s2 * s.s2 + a66 * s.t12 * s.t12 +
               2.0 * a12 * s.s1 * s.s2 + b1 * s.s1 + b2 * s.s2 + b6 * s.t12 + c0;
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
    return Quad{0, 0, 0, 0, b1, b2, b6, 0};
}

// The smallest t >= 0 at which a t^2 + b t + c reaches 0 from below: 0 when
// c > 0, or c = 0 and the function does not fall; +inf when there is none.
// Written without cancellation in either sign of b.
double firstRoot(double a, double b, double c);

// The first r in [lo, hi] (hi may be +inf) at which q(res + r mech) >= 1,
// or +inf.
double quadCrossing(Quad const& q, PlyStress const& res, PlyStress const& mech, double lo,
                    double hi);

// The breakpoints of a path: the r > 0 at which linear functions of r
// change sign, sorted, with 0 first.
class Breaks {
public:
    Breaks() : n_(1) { r_[0] = 0.0; }
    // The root of v0 + r * slope, when it is finite and positive.
    void add(double v0, double slope);
    // Sorts and drops repeats; call once, after the last add().
    void finish();
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

// Where a criterion first reaches 1 and in which mode (-1: the criterion
// has no modes; the mode of the failure state's assessment stands).
struct Crossing {
    double r;
    int mode;
};

// The active quadratics of one piece: the branch each mode takes there.
struct Branch {
    static const int kMax = 6;
    Quad q[kMax];
    int mode[kMax];
    int n = 0;
    void add(Quad const& quad, int m)
    {
        q[n] = quad;
        mode[n] = m;
        n++;
    }
};

// The first crossing of a criterion made of quadratic branches: select(s,
// branch) fills the branch that holds at a state s inside a piece.
template <class Select>
Crossing quadPieces(PlyStress const& res, PlyStress const& mech, Breaks const& breaks,
                    Select const& select)
{
    for (int i = 0; i < breaks.pieces(); i++) {
        Branch b;
        select(along(res, mech, breaks.inside(i)), b);
        Crossing best{kInf, -1};
        for (int j = 0; j < b.n; j++) {
            double const r = quadCrossing(b.q[j], res, mech, breaks.lo(i), breaks.hi(i));
            if (r < best.r) best = Crossing{r, b.mode[j]};
        }
        if (best.r < kInf) return best;
    }
    return Crossing{kInf, -1};
}

// Largest stress-to-strength ratio of a state: a scale for the numeric
// searches.
double stressRatio(PlyStress const& s, double Xt, double Xc, double Yt, double Yc, double S);

// The first r in [lo, hi] (hi may be +inf) at which g(r) >= 1, for a g that
// is continuous on the piece and crosses 1 at most once upwards there, with
// glo = g(lo).  A bounded piece is bracketed by its ends; an unbounded one by
// doubling the step from lo, starting at step, until g reaches 1 or r passes
// far (then +inf).  The bracket is refined with TOMS 748 to ~1e-14 relative.
template <class G>
double numericCrossing(G const& g, double lo, double hi, double glo, double step, double far)
{
    if (glo >= 1.0) return lo;
    double a = lo, ga = glo, b = hi, gb;
    if (hi < kInf) {
        gb = g(hi);
        if (!(gb >= 1.0)) return kInf;
    } else {
        for (;;) {
            b = a + step;
            if (b > far) return kInf;
            gb = g(b);
            if (gb >= 1.0) break;
            a = b;
            ga = gb;
            step *= 2.0;
        }
    }
    auto excess = [&g](double r) { return g(r) - 1.0; };
    std::uintmax_t iterations = 80;
    std::pair<double, double> const root = boost::math::tools::toms748_solve(
        excess, a, b, ga - 1.0, gb - 1.0, boost::math::tools::eps_tolerance<double>(48),
        iterations);
    return 0.5 * (root.first + root.second);
}

// The rating of a crossing: the verdict from its factor, the assessment at
// the failure state (at res + mech when it never fails) and the crossing's
// mode.
Rating finish(PreparedCriterion const& p, PlyStress const& res, PlyStress const& mech, Crossing c);

// The mode word position of the largest of |s1|/X, |s2|/Y, |t12|/S (X, Y
// by the sign of the stress), in the order fibre-tension, fibre-compression,
// matrix-tension, matrix-compression, shear: the dominant stress of a state
// for the interactive criteria, which have no modes of their own.
int dominantStress(PlyStress const& s, double Xt, double Xc, double Yt, double Yc, double S);

}  // namespace criterion_path
}  // namespace analysis

#endif
