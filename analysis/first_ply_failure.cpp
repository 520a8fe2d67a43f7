// First-ply failure: the smallest load factor at which a scaled load case
// brings some assessed ply to an index of 1 (the rule for infinite and NaN
// indices is PlyFailure's).
//
// Stresses are linear in the loads, so at factor f every stress of a layer is
// f times its stress under the load case itself.  Where the size of the
// stresses matters, they are scaled by a power of two (exactly) and the
// factor found is scaled back.
//
// Tsai-Wu and Hashin indices are quadratics in f at each face, solved in
// closed form.  LaRC04 is searched mode by mode, on stresses scaled below 1:
//  - mode 1 is c0 + c1 f + c2 f^2 at each face (c0 = 1/2 - ... for a thick
//    ply, c2 = 0 for it; c0 = 0 for a thin one) and mode 3 is linear:
//    closed forms;
//  - the others change branch at factors known in closed form (mode 2 gives
//    way to mode 5 where s1 = -Yc, mode 6 to mode 4 where the misalignment
//    frame's s2m turns negative, the misalignment angle has a pole where
//    G12 + s1 - s2 = 0), and are bounded from above over any interval of
//    factors: mode 2 is monotone in f up to its pole, and modes 4 to 6 are
//    f times trigonometric polynomials of the misalignment angle phi(f), a
//    Moebius function of f whose range over the interval is known.  A
//    branch-and-bound search starts from those breakpoints, drops every
//    interval whose bound stays below 1, splits the others (left first) and
//    refines the first interval that ends failing with the TOMS 748 root
//    finder.  No window in which an index reaches 1 and falls back is
//    skipped unless it is narrower than kLeaf (relative).
//  - An index whose constants are infinite or NaN (a strength of 0 that it
//    divides by, a thick ply without in-plane shear in modes 1 and 6, no
//    misalignment angle in mode 5) has one class (a number, +inf or NaN)
//    wherever its mode applies; it is taken at one factor of each stretch
//    of factors over which its mode applies.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <vector>

#include <boost/math/tools/toms748_solve.hpp>

#include "laminate/analysis/laminate_analysis.h"

using laminate_model::LayerState;
using laminate_model::PlyData;

namespace laminate::analysis {

namespace {

const double kInf = std::numeric_limits<double>::infinity();
const double kLargestDouble = std::numeric_limits<double>::max();
const double kTwoPi = 6.283185307179586;

// LaRC04 search, on the scaled load case (largest stress below 1).
const double kLeaf = 1e-7;      // intervals narrower than this (relative) are not split
const double kSlack = 1e-9;     // a bound below 1 - kSlack excludes an interval
const double kFloor = 1e-100;   // factors below count as the limit at 0
const double kCeiling = 1e100;  // nor factors above (stresses of 1e100 and more)
const long kBudget = 20000;     // intervals examined at most; beyond, the answer is Undefined
const int kRootBits = 50;       // TOMS 748 stops at a bracket of ~2^-50 relative
const std::uintmax_t kRootIterations = 100;
const int kBranchTurns = 4;     // s2m sign changes sought within 4 turns of phi either way
const double kPhiStep = kTwoPi / 32;     // widest range of phi bounded at once
const double kPhiLeast = kPhiStep / 256;  // narrowest (4 splits in four)

// ---- the answer -------------------------------------------------------------

// The smallest failing factor found so far, and the first index found NaN
// wherever it applies (with the factor from which it applies).
struct Answer {
    PlyFailure at{kInf, 0, Face::None, 0, Outcome::Never, false};
    double nanFrom = kInf;
    PlyFailure nan{kInf, 0, Face::None, 0, Outcome::Undefined, false};
    bool undecided = false;  // the LaRC04 search ran out of budget
    bool unusual = false;    // a quadratic's terms were not all numbers

    void fails(double factor, int ply, Face face, int mode)
    {
        if (factor < at.factor) at = PlyFailure{factor, ply, face, mode, Outcome::Fails, false};
    }
    void undefinedFrom(double factor, int ply, Face face, int mode)
    {
        if (factor < nanFrom) {
            nanFrom = factor;
            nan = PlyFailure{kInf, ply, face, mode, Outcome::Undefined, false};
        }
    }
    PlyFailure result() const
    {
        if (undecided) return PlyFailure{kInf, 0, Face::None, 0, Outcome::Undefined, false};
        if (at.outcome == Outcome::Fails) {
            PlyFailure r = at;
            r.nanIgnored = nanFrom < at.factor;
            return r;
        }
        return nan.ply != 0 ? nan : at;
    }
};

Face faceOf(int i)
{
    return i == 0 ? Face::Top : Face::Bottom;
}

// ---- closed forms -------------------------------------------------------------

// Smallest f > 0 with a f^2 + b f >= 1, for finite a and b; +inf when none.
inline double upTo1(double a, double b)
{
    if (a == 0.0) return b > 0.0 ? 1.0 / b : kInf;
    if (a > 0.0) {
        // One positive root; each form avoids cancellation for its sign of b.
        double const d = std::fabs(b) < 1e150 && a < 1e300 ? std::sqrt(b * b + 4.0 * a)
                                                            : std::hypot(b, 2.0 * std::sqrt(a));
        return b >= 0.0 ? 2.0 / (b + d) : (d - b) / (2.0 * a);
    }
    // a < 0: the parabola tops out; it reaches 1 only if its top does.
    if (b <= 0.0) return kInf;
    double disc = b * b + 4.0 * a;
    if (!std::isfinite(disc)) {
        double const r = 2.0 * std::sqrt(-a);
        disc = (b - r) * (b + r);
    }
    return disc < 0.0 ? kInf : 2.0 / (b + std::sqrt(disc));
}

// Smallest f > 0 with c0 + c1 f + c2 f^2 >= 1, for finite coefficients.
double polyUpTo1(double c0, double c1, double c2)
{
    if (c0 >= 1.0) return 0.0;
    double const gap = 1.0 - c0;
    return upTo1(c2 / gap, c1 / gap);
}

// What a sum of terms is, whatever their grouping: NaN, +inf, -inf or a number.
enum class Kind { Number, NaN, PlusInf, MinusInf };

Kind kindOf(double v)
{
    if (std::isnan(v)) return Kind::NaN;
    if (std::isinf(v)) return v > 0 ? Kind::PlusInf : Kind::MinusInf;
    return Kind::Number;
}

Kind sumKind(double x, double y)
{
    Kind const a = kindOf(x), b = kindOf(y);
    if (a == Kind::NaN || b == Kind::NaN) return Kind::NaN;
    if ((a == Kind::PlusInf && b == Kind::MinusInf) || (a == Kind::MinusInf && b == Kind::PlusInf))
        return Kind::NaN;
    return a != Kind::Number ? a : b;
}

// An index that is q f^2 + l f at every factor (|q f^2 + l f| when absolute):
// at every factor it is of the class of q + l, since scaling every stress by
// f > 0 changes no sign and no zero.
inline void quadratic(double q, double l, bool absolute, int ply, Face face, int mode, Answer& ans)
{
    if (std::fabs(q) <= kLargestDouble && std::fabs(l) <= kLargestDouble) {
        // q f^2 + l f can fall to -1 only when q < 0 or l < 0 (q >= 0 for
        // every strict record): that root is sought only then.
        double f = upTo1(q, l);
        if (absolute && (q < 0.0 || l < 0.0)) f = std::min(f, upTo1(-q, -l));
        if (f < ans.at.factor) ans.fails(f, ply, face, mode);
        return;
    }
    ans.unusual = true;
    switch (sumKind(q, l)) {
    case Kind::NaN:
        ans.undefinedFrom(0.0, ply, face, mode);
        return;
    case Kind::PlusInf:
        ans.fails(0.0, ply, face, mode);
        return;
    case Kind::MinusInf:
        if (absolute) ans.fails(0.0, ply, face, mode);
        return;
    case Kind::Number:  // cannot happen: finite terms were handled above
        break;
    }
}

// The stresses of one assessed ply, layer axes, scaled: faces (s1, s2, t12)
// and the transverse shear stresses ta, tb.
struct PlyStress {
    PlyData const* data;
    int ply;
    double top[3], bas[3];
    double ta, tb;
};

// Tsai-Wu: |q f^2 + l f| at each face, q the quadratic part with the
// transverse shear terms, l the linear part.  Faces (s1, s2, t12) in layer
// axes, ta and tb the transverse shear stresses.
void tsaiWu(PlyData const& p, int ply, double const* top, double const* bas, double ta, double tb,
            Answer& ans)
{
    laminate_model::TsaiWu const tw(p);
    double const qa = ta / p.S23;
    double const qb = tb / p.S13;
    double const* const faces[] = {top, bas};
    for (int i = 0; i < 2; i++) {
        double const* v = faces[i];
        double const q = tw.quadratic(v[0], v[1], v[2]) + qa * qa + qb * qb;
        double const l = tw.linear(v[0], v[1]);
        quadratic(q, l, true, ply, faceOf(i), 0, ans);
    }
}

// Hashin: for f > 0 each face keeps its tension or compression branch, and
// its index splits into a f^2 + b f (the index's own terms, grouped by power
// of the factor).  In fibre tension both faces take the bottom face's
// in-plane shear stress, as the index does.
void hashin(PlyData const& p, int ply, double const* top, double const* bas, double ta, double tb,
            Answer& ans)
{
    double const* const faces[] = {top, bas};
    double const tBottom = bas[2];
    double const qa = ta / p.S23;
    for (int i = 0; i < 2; i++) {
        double const s1 = faces[i][0], s2 = faces[i][1], t12 = faces[i][2];
        double const shear = (t12 * t12 + tb * tb) / (p.S12 * p.S12) + qa * qa;
        double am, bm = 0.0;
        if (s2 <= 0.0) {
            double const r = s2 / (2.0 * p.S23), c = p.Yc / (2.0 * p.S23);
            am = shear + r * r;
            bm = s2 * (c * c - 1.0) / p.Yc;
        } else {
            double const r = s2 / p.Yt;
            am = shear + r * r;
        }
        quadratic(am, bm, false, ply, faceOf(i), 0, ans);

        double af = 0.0, bf = 0.0;
        if (s1 <= 0.0) {
            bf = -s1 / p.Xc;
        } else {
            double const r = s1 / p.Xt;
            af = r * r + (tBottom * tBottom + tb * tb) / (p.S12 * p.S12);
        }
        quadratic(af, bf, false, ply, faceOf(i), 1, ans);
    }
}

// ---- LaRC04: bounds over intervals of factors -------------------------------------

struct Range {
    double lo, hi;
};

// sin and cos of phi and 2 phi at one angle.
struct Angles {
    double c2, s2, c, s;
    explicit Angles(double phi) : c(std::cos(phi)), s(std::sin(phi))
    {
        c2 = (c - s) * (c + s);
        s2 = 2.0 * s * c;
    }
};

// c0 + c1 cos 2phi + c2 sin 2phi + c3 cos phi + c4 sin phi: a quantity of the
// misalignment frame per unit factor, as a function of phi.
struct Trig {
    double c[5] = {0.0, 0.0, 0.0, 0.0, 0.0};
    double r2 = 0.0, r1 = 0.0;  // amplitudes of the 2 phi and phi terms, once c is set

    void done()
    {
        r2 = std::hypot(c[1], c[2]);
        r1 = std::hypot(c[3], c[4]);
    }

    double at(Angles const& a) const
    {
        return c[0] + c[1] * a.c2 + c[2] * a.s2 + c[3] * a.c + c[4] * a.s;
    }
    // Its values for phi within half-width w of the angle of a (a Taylor
    // bound, its second derivative bounded by 4 |c1, c2| + |c3, c4|, clipped
    // to the bounds over every phi); every phi when a is null or w is not
    // below pi.
    Range over(Angles const* a, double w) const
    {
        double const slack = 1e-12 * (std::fabs(c[0]) + r2 + r1);
        Range all{c[0] - r2 - r1 - slack, c[0] + r2 + r1 + slack};
        if (a == nullptr || !(w < 0.5 * kTwoPi)) return all;
        double const v = at(*a);
        double const d = -2.0 * c[1] * a->s2 + 2.0 * c[2] * a->c2 - c[3] * a->s + c[4] * a->c;
        double const spread = std::fabs(d) * w + 0.5 * (4.0 * r2 + r1) * w * w + slack;
        return Range{std::max(all.lo, v - spread), std::min(all.hi, v + spread)};
    }
};

double largest(Range r)
{
    return std::max(std::fabs(r.lo), std::fabs(r.hi));
}

// Largest of alpha x for x in r.
double upper(double alpha, Range r)
{
    return alpha >= 0.0 ? alpha * r.hi : alpha * r.lo;
}

bool finite(std::initializer_list<double> values)
{
    for (double v : values)
        if (!std::isfinite(v)) return false;
    return true;
}

// Largest (f t / (S - eta f sn))^2 = (t / (S / f - eta sn))^2 for f in
// [a, b] and sn in the range given, |t| at most tMax: +inf when the
// denominator may vanish (S >= 0 and eta >= 0).
double fracture(double tMax, double S, double eta, Range sn, double a, double b)
{
    double const lo = (S == 0.0 ? 0.0 : S / b) - eta * sn.hi;
    double const hi = (S == 0.0 ? 0.0 : S / a) - eta * sn.lo;
    double const den = lo > 0.0 ? lo : hi < 0.0 ? -hi : 0.0;
    if (!(den > 0.0)) return tMax == 0.0 ? 0.0 : kInf;
    double const r = tMax / den;
    return r * r;
}

// One face of an assessed ply under the scaled load case: what its LaRC04
// indices are made of, per unit factor.
struct LarcFace {
    double a1, a2, tau;  // s1, s2, t12
    // Misalignment angle phi(f) = sigma (f |tau| + G12 phi0) / (G12 + f d).
    bool hasPhi;         // tau != 0 and phi0 finite; else modes 4 and 6 are 0, mode 5 NaN
    double sigma, absTau, d, pole;  // pole: G12 + f d = 0 (+inf when none)
    double switchAt;     // last factor of mode 2 (s1 >= -Yc), +inf when s1 >= 0
    double cuts[4 * kBranchTurns + 3];  // where s2m changes sign, and the pole
    int nCuts;
    Trig h, m, n2, sn, tT, tL;       // s2m, t12m, t23m^2, and mode 5's tractions
    double sn2, tT2, tL2;            // mode 2's tractions
    bool searched[6];    // modes 2, 4, 5, 6 searched by bounds
    bool degenerate[6];  // taken at one factor per interval

    double phiAt(double f, double G12, double phi0) const
    {
        if (f == 0.0) return sigma * phi0;
        if (std::isinf(f)) return d != 0.0 ? sigma * absTau / d : kInf;
        return sigma * (f * absTau + G12 * phi0) / (G12 + f * d);
    }
};

// An assessed ply under the scaled load case, with what does not change with
// the factor: its constants and each face's kink-plane frame.
struct LarcPly {
    PlyStress const* s;
    laminate_model::LaRC04 larc;
    laminate_model::LaRC04::Kink kinkBas, kinkTop;
    laminate_model::LaRC04::Constants k;
    LarcFace faces[2];  // as evaluated: 0 bottom, 1 top
    bool anySearched, anyDegenerate;

    explicit LarcPly(PlyStress const& stress)
        : s(&stress), larc(*stress.data, stress.ta, stress.tb),
          kinkBas(larc.kink(stress.bas[1])), kinkTop(larc.kink(stress.top[1])), k(larc.constants())
    {
        setUp(faces[0], stress.bas, kinkBas);
        setUp(faces[1], stress.top, kinkTop);
        anySearched = anyDegenerate = false;
        for (LarcFace const& fc : faces)
            for (int m = 0; m < 6; m++) {
                anySearched = anySearched || fc.searched[m];
                anyDegenerate = anyDegenerate || fc.degenerate[m];
            }
    }

    Face face(int i) const { return i == 0 ? Face::Bottom : Face::Top; }

    // The six indices of both faces at factor f, as the model gives them.
    void indices(double f, double bottom[6], double top[6])
    {
        larc.restart(f * s->ta, f * s->tb);
        // The bottom face first: a thick ply may clear its compliance term there.
        larc.face(f * s->bas[0], f * s->bas[1], f * s->bas[2], kinkBas, bottom);
        larc.face(f * s->top[0], f * s->top[1], f * s->top[2], kinkTop, top);
    }

private:
    void setUp(LarcFace& fc, double const v[3], laminate_model::LaRC04::Kink const& kink);
    void cutsOf(LarcFace& fc, double G12);
};

// The factors where a face's misalignment frame changes branch, in closed
// form: the pole of phi, and where s2m = 0 (H1 cos 2phi + H2 sin 2phi = H0,
// phi(f) inverted) for phi within kBranchTurns turns of phi(0) either way.
void LarcPly::cutsOf(LarcFace& fc, double G12)
{
    auto add = [&fc](double f) {
        if (f > 0.0 && f < kInf) fc.cuts[fc.nCuts++] = f;
    };
    add(fc.pole);
    double const H0 = fc.h.c[0], H1 = -fc.h.c[1], H2 = -fc.h.c[2];
    double const R = std::hypot(H1, H2);
    if (!(R > 0.0) || !(std::fabs(H0) <= R)) return;
    double const theta = std::atan2(H2, H1), alpha = std::acos(H0 / R);
    double const start = 2.0 * fc.phiAt(0.0, G12, k.phi0);
    if (!std::isfinite(start) || std::fabs(start) > 1e6) return;
    double const turn = std::floor((start - theta) / kTwoPi);
    for (int t = -kBranchTurns; t <= kBranchTurns; t++) {
        for (double sgn : {-1.0, 1.0}) {
            double const sp = fc.sigma * 0.5 * (theta + sgn * alpha + kTwoPi * (turn + t));
            add(G12 * (k.phi0 - sp) / (sp * fc.d - fc.absTau));
        }
    }
}

void LarcPly::setUp(LarcFace& fc, double const v[3], laminate_model::LaRC04::Kink const& kink)
{
    PlyData const& p = *s->data;
    double const ta = s->ta, tb = s->tb;
    double const a1 = v[0], a2 = v[1], tau = v[2];
    fc.a1 = a1;
    fc.a2 = a2;
    fc.tau = tau;
    for (int m = 0; m < 6; m++) fc.searched[m] = fc.degenerate[m] = false;

    // Mode 2 switches to mode 5 after the last factor at which s1 >= -Yc, as
    // the index computes s1 (f * a1).
    fc.switchAt = kInf;
    if (a1 < 0.0) {
        // -Yc / a1 is within a step or two of it.
        double x = -p.Yc / a1;
        if (!(x >= kFloor && x < kInf)) {
            x = x >= kInf ? kInf : 0.0;  // below kFloor, f a1 only underflows
        } else {
            for (int i = 0; i < 4 && !(x * a1 >= -p.Yc); i++) x = std::nextafter(x, 0.0);
            for (int i = 0; i < 4 && std::nextafter(x, kInf) * a1 >= -p.Yc; i++)
                x = std::nextafter(x, kInf);
        }
        fc.switchAt = x;
    }

    // Kink and misalignment frames per unit factor.
    double const pk = a2 / 2.0 + (a2 / 2.0) * kink.c2psi;  // s2psi
    double const q = kink.cpsi * tau + kink.spsi * tb;      // t12psi
    double const w = kink.cpsi * tb - kink.spsi * tau;      // t13psi
    double const H0 = (a1 + pk) / 2.0, H1 = (a1 - pk) / 2.0, H2 = q;
    using laminate_model::kCos2A0;
    using laminate_model::kCosA0;
    using laminate_model::kSin2A0;
    using laminate_model::kSinA0;
    fc.h.c[0] = H0, fc.h.c[1] = -H1, fc.h.c[2] = -H2;
    fc.m.c[1] = q, fc.m.c[2] = -H1;
    fc.n2.c[0] = 0.5 * w * w, fc.n2.c[1] = -0.5 * w * w;
    double const up = (1.0 + kCos2A0) / 2.0, rest = (a2 - pk) * (1.0 - kCos2A0) / 2.0;
    fc.sn.c[0] = H0 * up + rest, fc.sn.c[1] = -H1 * up, fc.sn.c[2] = -H2 * up;
    fc.sn.c[4] = -w * kSin2A0;
    fc.tT.c[0] = kSin2A0 * (a2 - pk - H0) / 2.0, fc.tT.c[1] = kSin2A0 * H1 / 2.0;
    fc.tT.c[2] = kSin2A0 * H2 / 2.0, fc.tT.c[4] = -w * kCos2A0;
    fc.tL.c[1] = kCosA0 * q, fc.tL.c[2] = -kCosA0 * H1, fc.tL.c[3] = kSinA0 * w;
    for (Trig* t : {&fc.h, &fc.m, &fc.n2, &fc.sn, &fc.tT, &fc.tL}) t->done();
    fc.sn2 = a2 / 2.0 + (a2 / 2.0) * kCos2A0 + ta * kSin2A0;
    fc.tT2 = a2 / 2.0 - (a2 / 2.0) * kSin2A0 + ta * kCos2A0;
    fc.tL2 = kCosA0 * tau + kSinA0 * tb;

    fc.sigma = tau / std::fabs(tau);
    fc.absTau = std::fabs(tau);
    fc.d = a1 - a2;
    fc.hasPhi = tau != 0.0 && std::isfinite(k.phi0) && std::isfinite(fc.sigma);
    fc.pole = fc.d < 0.0 ? -p.G12 / fc.d : kInf;
    fc.nCuts = 0;
    if (fc.hasPhi && a1 < 0.0) cutsOf(fc, p.G12);

    // A fracture-plane term t / (S - eta sn) has a bound when its constants
    // are numbers, S >= 0 and eta >= 0, and it is not t / 0 throughout.
    bool const inSitu = k.ST >= 0.0 && k.SLis >= 0.0 && k.etaL >= 0.0 &&
                        finite({k.ST, k.SLis, k.etaL}) && (k.SLis > 0.0 || k.etaL > 0.0);
    bool const fracture2 = inSitu && finite({fc.sn2, fc.tT2, fc.tL2}) &&
                           (k.ST > 0.0 || fc.sn2 != 0.0) && (k.SLis > 0.0 || fc.sn2 != 0.0);
    bool const frame = finite({H0, H1, H2, w});
    // Modes 1 and 3 are closed forms (solved elsewhere).
    if (a2 < 0.0) {
        if (fc.switchAt > 0.0) (fracture2 ? fc.searched : fc.degenerate)[1] = true;
        if (a1 < 0.0) (inSitu && fc.hasPhi && frame ? fc.searched : fc.degenerate)[4] = true;
    }
    if (a1 < 0.0 && fc.hasPhi) {
        (inSitu && frame ? fc.searched : fc.degenerate)[3] = true;
        bool tension = frame && k.YTis > 0.0 && finite({k.YTis, k.Lambda});
        if (k.thin)
            tension = tension && k.W > 0.0 && k.g >= 0.0 && finite({k.W, k.g});
        else
            tension = tension && std::isfinite(k.gThick);
        (tension ? fc.searched : fc.degenerate)[5] = true;
    }
}

// The closed forms of modes 1 (s2 >= 0) and 3 (s1 >= 0) at a face:
// c0 + c1 f + c2 f^2.
void closedForms(LarcPly& lp, Answer& ans, double probe)
{
    laminate_model::LaRC04::Constants const& k = lp.k;
    PlyStress const& s = *lp.s;
    PlyData const& p = *s.data;
    double probed[2][6];
    bool haveProbe = false;
    for (int i = 0; i < 2; i++) {
        LarcFace const& fc = lp.faces[i];
        double const a1 = fc.a1, a2 = fc.a2, tau = fc.tau, ta = s.ta, YT = k.YTis;
        double c[2][3] = {{0.0, 0.0, 0.0}, {0.0, 0.0, 0.0}};
        bool applies[2] = {a2 >= 0.0, a1 >= 0.0};
        if (k.thin) {
            c[0][1] = tau / k.W + (1.0 - k.g) * a2 / YT;
            c[0][2] = k.Lambda * (ta * ta) / k.W + k.g * (a2 * a2) / (YT * YT);
        } else {
            c[0][0] = 0.5 - k.gThick * a2 / (tau * YT);
            c[0][1] = k.Lambda * (ta * ta) / (2.0 * tau) + k.gThick * (a2 * a2) / (tau * YT * YT) +
                      a2 / YT;
        }
        c[1][1] = a1 / p.Xt;
        for (int j = 0; j < 2; j++) {
            if (!applies[j]) continue;
            int const mode = j == 0 ? 1 : 3;
            if (finite({c[j][0], c[j][1], c[j][2]})) {
                double const f = polyUpTo1(c[j][0], c[j][1], c[j][2]);
                if (f < kInf) ans.fails(f, s.ply, lp.face(i), mode);
                continue;
            }
            // Constants that are not numbers: the index has one class at
            // every factor, the model's at one of them.
            if (!haveProbe) {
                lp.indices(probe, probed[0], probed[1]);
                haveProbe = true;
            }
            double const v = probed[i][mode - 1];
            if (std::isnan(v))
                ans.undefinedFrom(0.0, s.ply, lp.face(i), mode);
            else if (v >= 1.0)
                ans.fails(0.0, s.ply, lp.face(i), mode);
        }
    }
}

// The branch-and-bound search of the modes 2, 4, 5 and 6 that have bounds,
// and the probing of those that have none.
class LarcSearch {
public:
    LarcSearch(std::vector<LarcPly>& plies, double ref) : plies_(plies), ref_(ref) {}

    void probeDegenerate(Answer& ans);
    void limitAtZero(Answer& ans);
    void search(std::vector<double> const& cuts, Answer& ans);

private:
    double bound(double a, double b) const;
    double worst(double f, PlyFailure* where);
    double boundFace(LarcPly const& lp, LarcFace const& fc, double a, double b) const;
    double boundPhi(LarcPly const& lp, LarcFace const& fc, double a, double b, Angles const* at,
                    double w) const;

    std::vector<LarcPly>& plies_;
    double ref_;
};

// Upper bound of the searched indices of a face for factors in [a, b].
double LarcSearch::boundFace(LarcPly const& lp, LarcFace const& fc, double a, double b) const
{
    laminate_model::LaRC04::Constants const& k = lp.k;
    double const G12 = lp.s->data->G12;
    double worst = 0.0;

    // Mode 2, over the factors of [a, b] where it applies (its tractions are
    // f times constants: the bound is its value at the last of them).
    if (fc.searched[1] && (a == 0.0 || a < fc.switchAt)) {
        double const e = std::min(b, fc.switchAt);
        Range const sn{fc.sn2, fc.sn2};
        worst = std::max(worst, (fracture(std::fabs(fc.tT2), k.ST, laminate_model::kEtaT, sn, a, e) +
                                 fracture(std::fabs(fc.tL2), k.SLis, k.etaL, sn, a, e)) *
                                    (1.0 + 1e-12));
    }
    if (!(fc.searched[3] || fc.searched[4] || fc.searched[5])) return worst;

    // First over every misalignment angle (no trigonometry), then, when that
    // does not settle it, over the angles of [a, b] (between those of its
    // ends, every angle when the pole of phi lies within), in pieces of at
    // most kPhiStep.
    double const loose = std::max(worst, boundPhi(lp, fc, a, b, nullptr, kInf));
    if (loose < 1.0 - kSlack) return loose;
    double lo = 0.0, hi = kTwoPi;
    bool const acrossPole = fc.pole < kInf && a <= fc.pole * (1.0 + 1e-9) && b >= fc.pole * (1.0 - 1e-9);
    if (!acrossPole) {
        double const pa = fc.phiAt(a, G12, k.phi0), pb = fc.phiAt(b, G12, k.phi0);
        // The index computes phi in its own order: allow for its rounding,
        // which grows as G12 + f d nears 0.
        double const near = std::max(G12 / std::fabs(G12 + a * fc.d),
                                     std::isinf(b) ? 1.0 : G12 / std::fabs(G12 + b * fc.d));
        double const slack =
            1e-14 * near * (1.0 + std::fabs(pa) + std::fabs(pb) + std::fabs(k.phi0));
        if (std::fabs(pa) < 1e6 && std::fabs(pb) < 1e6 && std::fabs(pb - pa) + 2.0 * slack < kTwoPi) {
            lo = std::min(pa, pb) - slack;
            hi = std::max(pa, pb) + slack;
        }
    }
    // A piece whose bound does not settle it is split in four, down to
    // kPhiLeast: the terms are bounded one by one, and the narrower the
    // piece, the less that loses.
    int const pieces = std::max(1, static_cast<int>(std::ceil((hi - lo) / kPhiStep)));
    double const step = (hi - lo) / pieces;
    struct Piece {
        double lo, width;
    };
    Piece stack[4 * 8 + 1];
    for (int j = 0; j < pieces && worst < 1.0 - kSlack; j++) {
        int n = 0;
        stack[n++] = Piece{lo + j * step, step};
        while (n > 0 && worst < 1.0 - kSlack) {
            Piece const pc = stack[--n];
            Angles const at(pc.lo + 0.5 * pc.width);
            double const v = boundPhi(lp, fc, a, b, &at, 0.5 * pc.width);
            if (v < 1.0 - kSlack) {
                worst = std::max(worst, v);
            } else if (pc.width <= kPhiLeast) {
                worst = std::max(worst, v);
            } else {
                for (int q = 3; q >= 0; q--) stack[n++] = Piece{pc.lo + q * 0.25 * pc.width, 0.25 * pc.width};
            }
        }
    }
    return worst;
}

// Upper bound of modes 4 to 6 of a face for factors in [a, b] and angles
// within w of at's (every angle when at is null).
double LarcSearch::boundPhi(LarcPly const& lp, LarcFace const& fc, double a, double b,
                            Angles const* at, double w) const
{
    laminate_model::LaRC04::Constants const& k = lp.k;
    double worst = 0.0;
    Range const h = fc.h.over(at, w);

    // Mode 4 (s2m < 0): (t12m / (SLis - etaL s2m))^2 with s2m <= 0.
    if (fc.searched[3] && h.lo < 0.0) {
        Range const hNeg{h.lo, std::min(h.hi, 0.0)};
        worst = std::max(worst, fracture(largest(fc.m.over(at, w)), k.SLis, k.etaL, hNeg, a, b));
    }
    // Mode 5 (s1 < -Yc): the fracture-plane index of the misalignment frame.
    if (fc.searched[4] && b > fc.switchAt) {
        double const a5 = std::max(a, fc.switchAt);
        Range const sn = fc.sn.over(at, w);
        worst = std::max(worst,
                         fracture(largest(fc.tT.over(at, w)), k.ST, laminate_model::kEtaT, sn, a5, b) +
                             fracture(largest(fc.tL.over(at, w)), k.SLis, k.etaL, sn, a5, b));
    }
    // Mode 6 (s2m >= 0), with h = s2m / f >= 0 and n2 = (t23m / f)^2:
    //   thin:  f^2 (Lambda n2 / W + g h^2 / YTis^2) + f (tau / W + (1 - g) h / YTis)
    //   thick: 1/2 + f Lambda n2 / (2 tau) + (f / YTis - gThick / (tau YTis)) h
    //          + f gThick / (tau YTis^2) h^2.
    // For each f both are quadratics in h, taken at the ends of its range and
    // at the vertex; in f they are convex (thin) or linear (thick), so the
    // ends of [a, b] bound them.  n2 is bounded on its own.
    if (fc.searched[5] && h.hi >= 0.0) {
        Range const hp{std::max(h.lo, 0.0), h.hi};
        Range const n2 = fc.n2.over(at, w);
        Range const n2p{std::max(n2.lo, 0.0), std::max(n2.hi, 0.0)};
        double const YT = k.YTis;
        auto quadraticMax = [hp](double alpha, double beta) {
            double v = std::max(alpha * hp.lo + beta * hp.lo * hp.lo, alpha * hp.hi + beta * hp.hi * hp.hi);
            if (beta < 0.0) {
                double const x = -alpha / (2.0 * beta);
                if (x > hp.lo && x < hp.hi) v = std::max(v, alpha * x + beta * x * x);
            }
            return v;
        };
        auto at6 = [&](double f) {
            if (k.thin)
                return f * f * upper(k.Lambda / k.W, n2p) + f * fc.tau / k.W +
                       quadraticMax(f * (1.0 - k.g) / YT, f * f * k.g / (YT * YT));
            return 0.5 + f * upper(k.Lambda / (2.0 * fc.tau), n2p) +
                   quadraticMax(f / YT - k.gThick / (fc.tau * YT), f * k.gThick / (fc.tau * YT * YT));
        };
        double v;
        if (std::isinf(b)) {
            // Without bound unless no term grows with f.
            bool grows;
            if (k.thin) {
                double const c2 = upper(k.Lambda / k.W, n2p) + quadraticMax(0.0, k.g / (YT * YT));
                grows = c2 > 0.0 || (c2 == 0.0 && fc.tau / k.W + quadraticMax((1.0 - k.g) / YT, 0.0) > 0.0);
            } else {
                grows = upper(k.Lambda / (2.0 * fc.tau), n2p) +
                            quadraticMax(1.0 / YT, k.gThick / (fc.tau * YT * YT)) > 0.0;
            }
            v = grows ? kInf : at6(a);
        } else {
            v = std::max(at6(a), at6(b));
        }
        if (!(v == v)) return kInf;
        worst = std::max(worst, v + 1e-12 * std::fabs(v));
    }
    return worst;
}

// Upper bound of the searched indices for factors in [a, b], or a number of
// at least 1 - kSlack as soon as one is found.
double LarcSearch::bound(double a, double b) const
{
    double worst = 0.0;
    for (LarcPly const& lp : plies_) {
        if (!lp.anySearched) continue;
        for (LarcFace const& fc : lp.faces) {
            worst = std::max(worst, boundFace(lp, fc, a, b));
            if (worst >= 1.0 - kSlack) return worst;
        }
    }
    return worst;
}

// Largest searched index at factor f (NaN not counted); where it is goes to
// *where.
double LarcSearch::worst(double f, PlyFailure* where)
{
    double worst = -kInf;
    for (LarcPly& lp : plies_) {
        if (!lp.anySearched) continue;
        double idx[2][6];
        lp.indices(f, idx[0], idx[1]);
        for (int i = 0; i < 2; i++)
            for (int m = 0; m < 6; m++) {
                if (!lp.faces[i].searched[m] || !(idx[i][m] > worst)) continue;
                worst = idx[i][m];
                if (where) *where = PlyFailure{f, lp.s->ply, lp.face(i), m + 1, Outcome::Fails, false};
            }
    }
    return worst;
}

// The LaRC04 indices without bounds, each at one factor of every interval
// over which its class cannot change (mode 2 before the switch at s1 = -Yc,
// mode 5 after it, modes 4 and 6 between the face's own cuts): +inf (or 1
// and more) fails from the interval's start, NaN is undefined from there.
void LarcSearch::probeDegenerate(Answer& ans)
{
    for (LarcPly& lp : plies_) {
        if (!lp.anyDegenerate) continue;
        double idx[2][6];
        auto probe = [&](double x, double from, int face, std::initializer_list<int> modes) {
            lp.indices(x, idx[0], idx[1]);
            for (int m : modes) {
                if (!lp.faces[face].degenerate[m - 1]) continue;
                double const v = idx[face][m - 1];
                if (std::isnan(v))
                    ans.undefinedFrom(from, lp.s->ply, lp.face(face), m);
                else if (v >= 1.0)
                    ans.fails(from, lp.s->ply, lp.face(face), m);
            }
        };
        for (int i = 0; i < 2; i++) {
            LarcFace const& fc = lp.faces[i];
            double const sw = fc.switchAt;
            if (fc.degenerate[1]) probe(std::min(ref_, 0.5 * sw), 0.0, i, {2});
            if (fc.degenerate[4])
                probe(std::max(ref_, 2.0 * sw), sw > 0.0 ? std::nextafter(sw, kInf) : 0.0, i, {5});
            if (!fc.degenerate[3] && !fc.degenerate[5]) continue;
            double cuts[4 * kBranchTurns + 5];
            int n = 0;
            cuts[n++] = 0.0;
            for (int j = 0; j < fc.nCuts; j++) cuts[n++] = fc.cuts[j];
            std::sort(cuts, cuts + n);
            cuts[n++] = kInf;
            for (int j = 0; j + 1 < n; j++) {
                double const a = cuts[j], b = cuts[j + 1];
                if (a == b) continue;
                double const x = a == 0.0 ? (std::isinf(b) ? ref_ : 0.5 * b)
                                          : std::isinf(b) ? 2.0 * a : a + 0.5 * (b - a);
                probe(x, a == 0.0 ? 0.0 : std::nextafter(a, kInf), i, {4, 6});
            }
        }
    }
}

// Thick-ply mode 6 tends to 1/2 - gThick h(phi0) / (tau YTis) as the factor
// tends to 0: 1 or more there fails at factor 0.
void LarcSearch::limitAtZero(Answer& ans)
{
    for (LarcPly const& lp : plies_) {
        laminate_model::LaRC04::Constants const& k = lp.k;
        if (k.thin) continue;
        for (int i = 0; i < 2; i++) {
            LarcFace const& fc = lp.faces[i];
            if (!fc.searched[5]) continue;
            Angles const at(fc.phiAt(0.0, lp.s->data->G12, k.phi0));
            double const h = fc.h.at(at);
            if (h < 0.0) continue;
            if (0.5 - k.gThick * h / (fc.tau * k.YTis) >= 1.0) ans.fails(0.0, lp.s->ply, lp.face(i), 6);
        }
    }
}

void LarcSearch::search(std::vector<double> const& cuts, Answer& ans)
{
    bool any = false;
    for (LarcPly const& lp : plies_) any = any || lp.anySearched;
    if (!any) return;

    struct Interval {
        double a, b;
    };
    std::vector<Interval> stack;
    stack.reserve(64);
    for (size_t i = cuts.size() - 1; i > 0; i--) stack.push_back(Interval{cuts[i - 1], cuts[i]});
    double failAt = ans.at.factor;  // the searched indices need not be looked at beyond
    long examined = 0;
    while (!stack.empty()) {
        Interval const iv = stack.back();
        stack.pop_back();
        double const a = iv.a;
        if (a >= failAt || a >= kCeiling) break;
        double const b = std::min(iv.b, failAt);
        if (++examined > kBudget) {
            ans.undecided = true;
            return;
        }
        if (bound(a, b) < 1.0 - kSlack) continue;
        if (a == 0.0 && b <= kFloor) {
            // As good as the limit at 0: 1 or more there fails at factor 0.
            PlyFailure where;
            if (worst(b, &where) >= 1.0) ans.fails(0.0, where.ply, where.face, where.mode);
            continue;
        }
        if (a > 0.0 && std::isfinite(b) && b - a <= kLeaf * b) {
            // A leaf: does it end failing?
            PlyFailure where;
            double const vb = worst(b, &where);
            if (!(vb >= 1.0)) continue;
            double const va = worst(a, &where);
            if (va >= 1.0) {
                ans.fails(a, where.ply, where.face, where.mode);
                return;
            }
            auto excess = [this](double f) {
                return std::max(-1.0, std::min(1.0, worst(f, nullptr) - 1.0));
            };
            std::uintmax_t iterations = kRootIterations;
            std::pair<double, double> const bracket = boost::math::tools::toms748_solve(
                excess, a, b, std::max(-1.0, va - 1.0), std::min(1.0, vb - 1.0),
                boost::math::tools::eps_tolerance<double>(kRootBits), iterations);
            worst(bracket.second, &where);
            ans.fails(bracket.second, where.ply, where.face, where.mode);
            return;
        }
        double m;
        if (a == 0.0)
            m = std::isinf(b) ? ref_ : std::ldexp(b, -20);
        else if (std::isinf(b))
            m = 16.0 * a;
        else if (b > 16.0 * a)
            m = std::sqrt(a) * std::sqrt(b);
        else
            m = a + 0.5 * (b - a);
        if (worst(m, nullptr) >= 1.0) {
            failAt = m;
            stack.push_back(Interval{a, m});
        } else {
            stack.push_back(Interval{m, b});
            stack.push_back(Interval{a, m});
        }
    }
}

// The factor at which the largest stress-to-strength ratio reaches 1 (a
// strength of 0 left out): the scale of the search.
double referenceFactor(std::vector<LarcPly> const& plies)
{
    double ratio = 0.0;
    auto take = [&ratio](double stress, double strength) {
        if (strength > 0.0) ratio = std::max(ratio, std::fabs(stress) / strength);
    };
    for (LarcPly const& lp : plies) {
        PlyData const& p = *lp.s->data;
        for (double const* s : {lp.s->top, lp.s->bas}) {
            take(s[0], s[0] >= 0.0 ? p.Xt : p.Xc);
            take(s[1], s[1] >= 0.0 ? p.Yt : p.Yc);
            take(s[2], p.S12);
        }
        take(lp.s->ta, p.S12);
        take(lp.s->tb, p.S12);
    }
    return ratio > 0.0 && std::isfinite(ratio) && std::isfinite(1.0 / ratio) ? 1.0 / ratio : 1.0;
}

// The factors where a LaRC04 index changes branch, in closed form, with 0,
// the reference factor and +inf: the cuts of the search.
std::vector<double> breakpoints(std::vector<LarcPly> const& plies, double ref)
{
    std::vector<double> cuts = {0.0, ref, kInf};
    for (LarcPly const& lp : plies) {
        for (LarcFace const& fc : lp.faces) {
            if (fc.switchAt > 0.0 && fc.switchAt < kInf) cuts.push_back(fc.switchAt);
            cuts.insert(cuts.end(), fc.cuts, fc.cuts + fc.nCuts);
        }
    }
    std::sort(cuts.begin(), cuts.end());
    cuts.erase(std::unique(cuts.begin(), cuts.end()), cuts.end());
    return cuts;
}

void larc04(std::vector<PlyStress> const& stresses, Answer& ans)
{
    std::vector<LarcPly> plies;
    plies.reserve(stresses.size());
    for (PlyStress const& s : stresses) plies.emplace_back(s);
    if (plies.empty()) return;
    double const ref = referenceFactor(plies);
    for (LarcPly& lp : plies) closedForms(lp, ans, ref);
    LarcSearch search(plies, ref);
    search.limitAtZero(ans);
    if (ans.at.factor == 0.0) return;
    std::vector<double> const cuts = breakpoints(plies, ref);
    search.probeDegenerate(ans);
    search.search(cuts, ans);
}


// A bound on the magnitude of the stresses of a layer: at least the largest
// and at most 8 times it; +inf or NaN when one of them is not a number (or,
// rarely, when they are all near the largest double).
inline double sizeOf(double const* top, double const* bas, double ta, double tb)
{
    return std::fabs(top[0]) + std::fabs(top[1]) + std::fabs(top[2]) + std::fabs(bas[0]) +
           std::fabs(bas[1]) + std::fabs(bas[2]) + std::fabs(ta) + std::fabs(tb);
}

// sizeOf, or when that is not a number: the largest magnitude, or -1 when a
// stress is not a number.
double sizeExactly(double const* top, double const* bas, double ta, double tb)
{
    double size = sizeOf(top, bas, ta, tb);
    if (std::isfinite(size)) return size;
    size = 0.0;
    for (double v : {top[0], top[1], top[2], bas[0], bas[1], bas[2], ta, tb}) {
        if (!std::isfinite(v)) return -1.0;
        size = std::max(size, std::fabs(v));
    }
    return size;
}

// The power of two that brings largest into [0.5, 1).
int exponentOf(double largest)
{
    int exponent;
    std::frexp(largest, &exponent);
    return exponent;
}

// v times 2^-exponent, in two halves each a normal number: exact but for
// subnormal results.
struct Scale {
    double half, rest;
    explicit Scale(int exponent) : half(1.0), rest(1.0)
    {
        if (exponent != 0) {
            half = std::ldexp(1.0, -exponent / 2);
            rest = std::ldexp(1.0, -exponent - (-exponent / 2));
        }
    }
    double operator()(double v) const { return v * half * rest; }
};

// Scaling stresses by 2^-e scales the quadratics' roots by 2^e exactly, so
// stresses within this span need none: their squares and products with the
// strict records' constants stay normal numbers.
bool scaleNeeded(double largest)
{
    return largest > 0x1p300 || largest < 0x1p-300;
}

// Tsai-Wu or Hashin over the plies, the stresses scaled by 2^-exponent.  One
// instance per criterion, so that the loop over the plies carries no test of
// which one it rates.
template <Criterion C>
void closedForms(std::vector<LaminateAnalysis::Ply> const& plies, double const g[8], int exponent,
                 Answer& ans)
{
    Scale const scale(exponent);
    LayerState st;
    for (size_t i = 0; i < plies.size(); i++) {
        LaminateAnalysis::Ply const& ply = plies[i];
        laminate_model::recoverLayer(g, ply.frame(), st);
        if (laminate_model::notAssessed(ply.data, st.stressesLam, st.shearStressesLam)) continue;
        double const* top = st.stressesTopLam;
        double const* bas = st.stressesBasLam;
        double ta = st.shearStressesLam[0], tb = st.shearStressesLam[1];
        double t[3], b[3];
        if (exponent != 0) {
            for (int j = 0; j < 3; j++) t[j] = scale(top[j]), b[j] = scale(bas[j]);
            top = t, bas = b, ta = scale(ta), tb = scale(tb);
        }
        int const layer = static_cast<int>(i) + 1;
        if (C == Criterion::TsaiWu)
            tsaiWu(ply.data, layer, top, bas, ta, tb, ans);
        else
            hashin(ply.data, layer, top, bas, ta, tb, ans);
    }
}

void closedForms(std::vector<LaminateAnalysis::Ply> const& plies, double const g[8], Criterion c,
                 int exponent, Answer& ans)
{
    if (c == Criterion::TsaiWu)
        closedForms<Criterion::TsaiWu>(plies, g, exponent, ans);
    else
        closedForms<Criterion::Hashin>(plies, g, exponent, ans);
}

// The largest stress magnitude of the assessed plies (up to 8 times it), or
// -1 when a stress is not a number.
double largestStress(std::vector<LaminateAnalysis::Ply> const& plies, double const g[8])
{
    double largest = 0.0;
    LayerState st;
    for (LaminateAnalysis::Ply const& ply : plies) {
        laminate_model::recoverLayer(g, ply.frame(), st);
        if (laminate_model::notAssessed(ply.data, st.stressesLam, st.shearStressesLam)) continue;
        double const size =
            sizeExactly(st.stressesTopLam, st.stressesBasLam, st.shearStressesLam[0], st.shearStressesLam[1]);
        if (size < 0.0) return -1.0;
        largest = std::max(largest, size);
    }
    return largest;
}

// Tsai-Wu or Hashin: one pass over the plies as they are.  Only when a
// quadratic's terms were not all numbers, or no factor below 2^250 was found
// (stresses so small that their squares may underflow), are the stresses
// looked at: not numbers, false; too large or too small, scaled and again.
bool closedFormSearch(std::vector<LaminateAnalysis::Ply> const& plies, double const g[8], Criterion c,
                      Answer& ans, int& exponent)
{
    closedForms(plies, g, c, 0, ans);
    if (!ans.unusual && ans.at.factor <= 0x1p250) return true;
    double const largest = largestStress(plies, g);
    if (largest < 0.0) return false;
    if (largest == 0.0 || !scaleNeeded(largest)) return true;
    exponent = exponentOf(largest);
    ans = Answer();
    closedForms(plies, g, c, exponent, ans);
    return true;
}

// LaRC04: the search revisits every ply many times, so they are all
// recovered first, scaled so that the largest stress is below 1.  False when
// a stress is not a number.
bool larcSearch(std::vector<LaminateAnalysis::Ply> const& plies, double const g[8], Answer& ans,
                int& exponent)
{
    thread_local std::vector<PlyStress> stresses;
    stresses.clear();
    double largest = 0.0;
    LayerState st;
    for (size_t i = 0; i < plies.size(); i++) {
        laminate_model::recoverLayer(g, plies[i].frame(), st);
        if (laminate_model::notAssessed(plies[i].data, st.stressesLam, st.shearStressesLam)) continue;
        PlyStress s{&plies[i].data, static_cast<int>(i) + 1, {}, {}, st.shearStressesLam[0],
                    st.shearStressesLam[1]};
        for (int j = 0; j < 3; j++) s.top[j] = st.stressesTopLam[j], s.bas[j] = st.stressesBasLam[j];
        double const size = sizeExactly(s.top, s.bas, s.ta, s.tb);
        if (size < 0.0) return false;
        largest = std::max(largest, size);
        stresses.push_back(s);
    }
    if (largest == 0.0) return true;
    exponent = exponentOf(largest);
    Scale const scale(exponent);
    for (PlyStress& s : stresses) {
        for (int j = 0; j < 3; j++) s.top[j] = scale(s.top[j]), s.bas[j] = scale(s.bas[j]);
        s.ta = scale(s.ta), s.tb = scale(s.tb);
    }
    larc04(stresses, ans);
    return true;
}

}  // namespace

PlyFailure LaminateAnalysis::firstPlyFailure(double const loads[8], Criterion c) const
{
    PlyFailure const overflow{kInf, 0, Face::None, 0, Outcome::Overflow, false};
    Answer ans;
    if (status_ != Ok) return ans.result();
    double g[8];
    strains(loads, g);
    for (double v : g)
        if (!std::isfinite(v)) return overflow;

    int exponent = 0;
    bool const numbers = c == Criterion::LaRC04 ? larcSearch(plies_, g, ans, exponent)
                                                : closedFormSearch(plies_, g, c, ans, exponent);
    if (!numbers) return overflow;
    PlyFailure r = ans.result();
    if (r.outcome == Outcome::Fails && exponent != 0) {
        r.factor = std::ldexp(r.factor, -exponent);
        if (std::isinf(r.factor)) return overflow;
    }
    return r;
}

}  // namespace laminate::analysis
