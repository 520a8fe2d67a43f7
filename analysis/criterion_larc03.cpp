// LaRC03 in plane stress (Davila, Camanho and Rose 2005; Davila and Camanho,
// NASA/TM-2003-212663), with the failure index FI as index.
//
// Constants: Lambda22 = 2 (1/E2 - nu12^2/E1); alpha0 the fracture-plane
// angle under pure transverse compression; ST = Yc cos a0 (sin a0 +
// cos a0 / tan 2a0), etaT = -1/tan 2a0, etaL = -S12 cos 2a0 / (Yc cos^2 a0).
// In-situ strengths (thin: thinner than 0.7 mm):
//   thin embedded  YtIs = sqrt(8 GIc / (pi t Lambda22)),  SLis = sqrt(8 G12 GIIc / (pi t))
//   thin outer     YtIs = 1.79 sqrt(GIc / (pi t Lambda22)), SLis = sqrt(4 G12 GIIc / (pi t))
//   thick          YtIs = 1.12 sqrt(2) Yt,                  SLis = sqrt(2) S12
//   unidirectional ply on its own: YtIs = Yt, SLis = S12
// (the in-plane shear response taken linear).  g = GIc/GIIc where both are
// given, else 1.12^2 Lambda22 G12 Yt^2 / S12^2 (the same ratio from the
// strengths of a thick ply).
//
// Modes:
//   matrix tension (s2 >= 0):
//     (1 - g) s2/YtIs + g (s2/YtIs)^2 + (t12/SLis)^2
//   matrix compression (s2 < 0, s1 >= -Yc): the largest over fracture
//     planes alpha of (tTeff/ST)^2 + (tLeff/SLis)^2 with
//       tTeff = <-s2 cos a (sin a - etaT cos a cos th)>,
//       tLeff = <cos a (|t12| + etaL s2 cos a sin th)>,
//       th = atan(-|t12| / (s2 sin a));
//   fibre tension (s1 >= 0): s1/Xt
//   fibre compression (s1 < 0), in the misalignment frame:
//     phi = (|t12| + (G12 - Xc) phiC) / (G12 + s1 - s2),
//     phiC = atan((1 - sqrt(1 - 4 (SLis/Xc + etaL) SLis/Xc)) / (2 (SLis/Xc + etaL))),
//     s2m = s1 sin^2 phi + s2 cos^2 phi - 2 |t12| sin phi cos phi,
//     t12m = -(s1 - s2) sin phi cos phi + |t12| (cos^2 phi - sin^2 phi);
//     fibre kinking (s2m < 0): <|t12m| + etaL s2m> / SLis;
//     fibre splitting (s2m >= 0): the matrix tension index of (s2m, t12m);
//   matrix compression misaligned (s2 < 0, s1 < -Yc): the matrix
//     compression index of (s2m, t12m).
// The misalignment model holds while the angle stays below 45 degrees: a
// compressed ply whose fibres would turn further counts as kinked there.
//
// Along a load path, matrix and fibre tension are solved in closed form.  The
// other modes are continuous between the points at which s1, s1 + Yc, s2 or
// t12 change sign or phi reaches 45 degrees.  Matrix compression crosses 1
// at most once on such a piece, between the crossings of a quadratic above
// it and of its planes alpha0 and 0 below it; the modes of the misalignment
// frame, which turns with the load, may fall back below 1, so their bracket
// is walked from the piece's start.  Each bracket is refined with TOMS 748.  Where the kinking and splitting indices meet
// (s2m = 0) they are both below 1 or both at least 1, so that switch needs no
// bracket of its own.
#include "laminate/analysis/criterion_larc03.h"

#include <algorithm>
#include <cmath>

#include "laminate/analysis/criterion_path.h"

namespace laminate::analysis {

namespace {

using namespace criterion_path;

const double kPi = 3.14159265358979323846;
const double kDegree = kPi / 180.0;
const double kThinPlyMm = 0.7;
const double kPhiLimit = kPi / 4.0;
const double kAngleTolerance = 1e-6;
const double kWarmStep = 1.0 / 32;  // bracket around a nearby state's plane

char const* const kModes[] = {
    "matrix-tension", "matrix-compression", "matrix-compression-misaligned",
    "fibre-tension",  "fibre-kinking",      "fibre-splitting",
    nullptr};
char const* const kExtras[] = {"alpha", "phi", nullptr};

enum { kModeMT, kModeMC, kModeMCm, kModeFT, kModeFK, kModeFS };
// kInvST, kInvSL: 1/ST and 1/SLis; kMT: the matrix tension quadratic; kMCup:
// a quadratic above the matrix compression index, (s2/(2 ST))^2 +
// (t12/SLis)^2 (each effective shear stress is at most its traction).
enum {
    kXt,
    kXc,
    kYt,
    kYc,
    kS,
    kG12,
    kYtIs,
    kSLis,
    kG,
    kST,
    kEtaT,
    kEtaL,
    kK0,
    kInvST,
    kInvSL,
    kMT,
    kMCup = kMT + 8
};

bool positive(double v)
{
    return std::isfinite(v) && v > 0.0;
}

}  // namespace

Verdict larc03Constants(CriterionPly const& ply, Larc03Constants& out)
{
    if (!ply.has(kGivenStrengths)) return Verdict::NoStrength;
    if (!(positive(ply.E1) && positive(ply.E2) && positive(ply.G12) && std::isfinite(ply.nu12) &&
          ply.alpha0 >= 45.0 && ply.alpha0 < 90.0 && ply.G12 > ply.Xc))
        return Verdict::NoData;
    out.Lambda22 = 2.0 * (1.0 / ply.E2 - ply.nu12 * ply.nu12 / ply.E1);
    if (!(out.Lambda22 > 0.0)) return Verdict::NoData;

    bool const alone = ply.site == PlySite::Unidirectional;
    if (!alone && !(positive(ply.t) && positive(ply.mmPerLength))) return Verdict::NoData;
    out.thin = !alone && ply.t * ply.mmPerLength < kThinPlyMm;
    bool const toughness = ply.has(kGivenGIc | kGivenGIIc);
    if (out.thin && !toughness) return Verdict::NoData;

    double const Yt = ply.Yt, S = ply.S12, t = ply.t, L = out.Lambda22;
    if (alone) {
        out.YtIs = Yt;
        out.SLis = S;
    } else if (!out.thin) {
        out.YtIs = 1.12 * std::sqrt(2.0) * Yt;
        out.SLis = std::sqrt(2.0) * S;
    } else if (ply.site == PlySite::Embedded) {
        out.YtIs = std::sqrt(8.0 * ply.GIc / (kPi * t * L));
        out.SLis = std::sqrt(8.0 * ply.G12 * ply.GIIc / (kPi * t));
    } else {
        out.YtIs = 1.79 * std::sqrt(ply.GIc / (kPi * t * L));
        out.SLis = std::sqrt(4.0 * ply.G12 * ply.GIIc / (kPi * t));
    }
    out.g = toughness ? ply.GIc / ply.GIIc : 1.12 * 1.12 * L * ply.G12 * Yt * Yt / (S * S);

    double const a0 = ply.alpha0 * kDegree;
    double const c0 = std::cos(a0), s0 = std::sin(a0), t2 = std::tan(2.0 * a0);
    out.ST = ply.Yc * c0 * (s0 + c0 / t2);
    out.etaT = -1.0 / t2;
    out.etaL = -S * std::cos(2.0 * a0) / (ply.Yc * c0 * c0);

    double const q = out.SLis / ply.Xc, sum = q + out.etaL;
    double const disc = 1.0 - 4.0 * sum * q;
    if (!(disc >= 0.0 && sum > 0.0 && out.ST > 0.0)) return Verdict::NoData;
    out.phiC = std::atan((1.0 - std::sqrt(disc)) / (2.0 * sum));
    return Verdict::Ok;
}

namespace {

Verdict prepareCriterion(CriterionPly const& ply, double const*, PreparedCriterion& out)
{
    Larc03Constants c;
    Verdict const v = larc03Constants(ply, c);
    if (v != Verdict::Ok) return v;
    double* k = out.k;
    k[kXt] = ply.Xt;
    k[kXc] = ply.Xc;
    k[kYt] = ply.Yt;
    k[kYc] = ply.Yc;
    k[kS] = ply.S12;
    k[kG12] = ply.G12;
    k[kYtIs] = c.YtIs;
    k[kSLis] = c.SLis;
    k[kG] = c.g;
    k[kST] = c.ST;
    k[kEtaT] = c.etaT;
    k[kEtaL] = c.etaL;
    k[kK0] = (ply.G12 - ply.Xc) * c.phiC;
    k[kInvST] = 1.0 / c.ST;
    k[kInvSL] = 1.0 / c.SLis;
    double const y = 1.0 / c.YtIs, sl = k[kInvSL], st = 0.5 * k[kInvST];
    storeQuad(k + kMT, Quad{0, c.g * y * y, sl * sl, 0, 0, (1.0 - c.g) * y, 0, 1});
    storeQuad(k + kMCup, Quad{0, st * st, sl * sl, 0, 0, 0, 0, 1});
    return Verdict::Ok;
}

double matrixTension(double const* k, double s2, double t12)
{
    double const r = s2 / k[kYtIs], q = t12 / k[kSLis];
    return (1.0 - k[kG]) * r + k[kG] * r * r + q * q;
}

// The matrix compression index on the plane at sin(alpha) = sa.
double plane(double const* k, double s2, double at, double sa)
{
    double const ca = std::sqrt(std::max(0.0, 1.0 - sa * sa));
    double const R2 = s2 * s2 * sa * sa + at * at;
    double cth = 1.0, sth = 0.0;
    if (R2 > 0.0) {
        double const iR = 1.0 / std::sqrt(R2);
        cth = std::fabs(s2) * sa * iR;
        sth = (s2 < 0.0 ? at : -at) * iR;
    }
    double const tT = std::max(0.0, -s2 * ca * (sa - k[kEtaT] * ca * cth)) * k[kInvST];
    double const tL = std::max(0.0, ca * (at + k[kEtaL] * s2 * ca * sth)) * k[kInvSL];
    return tT * tT + tL * tL;
}

// The largest value of f on [a, b], where f is unimodal: Brent's method
// (parabolic steps through the best three points, golden-section steps where
// a parabola does not help), started from x inside with value fx, and from
// the ends' values fa and fb where they are known (the first step is then a
// parabola's).  x becomes the maximiser, to kAngleTolerance.
template <class F>
double refineMaximum(F const& f, double a, double b, double& x, double fx, double fa = -1.0,
                     double fb = -1.0)
{
    const double kGolden = 0.3819660112501051;
    double w = x, v = x, fw = fx, fv = fx;  // the second and third best points
    double d = 0.0, e = 0.0;                // the last step and the one before
    if (fa >= 0.0 && fb >= 0.0) {
        w = fa >= fb ? a : b;
        fw = std::max(fa, fb);
        v = fa >= fb ? b : a;
        fv = std::min(fa, fb);
        e = d = b - a;
    }
    for (int i = 0; i < 100; i++) {
        double const m = 0.5 * (a + b), tol = kAngleTolerance;
        if (std::fabs(x - m) <= 2.0 * tol - 0.5 * (b - a)) break;
        bool golden = true;
        if (std::fabs(e) > tol) {
            // The top of the parabola through x, w and v.
            double r = (x - w) * (fx - fv), q = (x - v) * (fx - fw);
            double p = (x - v) * q - (x - w) * r;
            q = 2.0 * (q - r);
            if (q > 0.0)
                p = -p;
            else
                q = -q;
            double const before = e;
            e = d;
            if (std::fabs(p) < std::fabs(0.5 * q * before) && p > q * (a - x) && p < q * (b - x)) {
                d = p / q;
                // The parabola through the three best points tops out within
                // the tolerance of x: x is the maximiser.
                if (std::fabs(d) < 0.5 * tol) break;
                double const u = x + d;
                if (u - a < 2.0 * tol || b - u < 2.0 * tol) d = x < m ? tol : -tol;
                golden = false;
            }
        }
        if (golden) {
            e = x >= m ? a - x : b - x;
            d = kGolden * e;
        }
        double const u = x + (std::fabs(d) >= tol ? d : d > 0.0 ? tol : -tol);
        double const fu = f(u);
        if (fu >= fx) {
            (u >= x ? a : b) = x;
            v = w;
            fv = fw;
            w = x;
            fw = fx;
            x = u;
            fx = fu;
        } else {
            (u < x ? a : b) = u;
            if (fu >= fw || w == x) {
                v = w;
                fv = fw;
                w = u;
                fw = fu;
            } else if (fu >= fv || v == x || v == w) {
                v = u;
                fv = fu;
            }
        }
    }
    return fx;
}

// Where the last search found the largest plane index: sin(alpha), or -1
// before any; and the width of the bracket to try around it next, from how
// far the plane moved last time.
struct PlaneGuess {
    double sa = -1.0;
    double span = kWarmStep;
};

// The matrix compression index: the largest over the fracture planes.
// guess: where the search of a nearby state found the largest, or none; on
// return where this one found it.
double matrixCompression(double const* k, double s2, double t12, PlaneGuess& guess)
{
    double const at = std::fabs(t12);
    auto f = [k, s2, at](double x) { return plane(k, s2, at, x); };
    double const edge = f(0.0);
    double& sa = guess.sa;
    double const was = sa;
    if (s2 < 0.0 && at > 0.0) {
        // Near alpha = 0 the index is edge + Q sin^2(alpha) + ..., so Q < 0
        // puts the largest at alpha = 0 (the index being unimodal there).
        double const sg = -s2, u = sg / at;
        double const gT = std::max(0.0, 1.0 - k[kEtaT] * u) * sg * k[kInvST];
        double const g0 = 1.0 - k[kEtaL] * u;
        double const L = at * k[kInvSL];
        double const Q =
            gT * gT + (g0 > 0.0 ? L * L * g0 * (k[kEtaL] * u * (1.0 + u * u) - g0) : 0.0);
        if (Q < 0.0) {
            sa = 0.0;
            guess.span = kWarmStep;
            return edge;
        }
    }
    // Brent's search of [a, b] from its middle; the plane alpha = 0, which
    // the search only approaches, counted as well.
    auto search = [&f, &sa, edge](double a, double b) {
        sa = 0.5 * (a + b);
        double const best = refineMaximum(f, a, b, sa, f(sa));
        if (best > edge) return best;
        sa = 0.0;
        return edge;
    };
    if (sa >= 0.0) {
        // Near the given plane: a bracket whose middle rises above both ends
        // holds the largest (the index is unimodal in the plane angle), and
        // so does [0, span] when the search finds a value above 0 short of
        // its far end.
        double const a = std::max(0.0, sa - guess.span), b = std::min(1.0, sa + guess.span);
        double best = -1.0;
        if (sa == 0.0) {
            best = search(0.0, b);
            if (best == 0.0 || sa > b - 2.0 * kAngleTolerance) best = -1.0;
        } else if (sa < b) {
            double const fa = a == 0.0 ? edge : f(a), fx = f(sa), fb = f(b);
            if (fx > fa && fx > fb) {
                best = refineMaximum(f, a, b, sa, fx, fa, fb);
                if (edge >= best) {
                    best = edge;
                    sa = 0.0;
                }
            }
        }
        if (best >= 0.0) {
            guess.span =
                std::min(kWarmStep, std::max(100.0 * kAngleTolerance, 4.0 * std::fabs(sa - was)));
            return best;
        }
    }
    guess.span = kWarmStep;
    // Cold: the planes at sin(alpha) = 0, 1/4, 1/2 and 3/4 (the plane at 90
    // degrees carries nothing), then around the best of them.
    double const grid[5] = {0.0, 0.25, 0.5, 0.75, 1.0};
    double v[5] = {edge, f(0.25), f(0.5), f(0.75), 0.0};
    int i = 0;
    for (int n = 1; n < 4; n++)
        if (v[n] > v[i]) i = n;
    if (i == 0 && edge > 0.0) return search(0.0, grid[1]);
    if (i > 0 && v[i] > v[i + 1]) {
        sa = grid[i];
        return refineMaximum(f, grid[i - 1], grid[i + 1], sa, v[i], v[i - 1], v[i + 1]);
    }
    // A tie between samples (the index is 0 on a stretch of planes): search
    // the whole range.
    return search(0.0, 1.0);
}

// The same from no guess, with the plane's angle in degrees into alpha.
double matrixCompression(double const* k, double s2, double t12, double* alpha)
{
    PlaneGuess guess;
    double const best = matrixCompression(k, s2, t12, guess);
    *alpha = std::asin(std::min(1.0, guess.sa)) / kDegree;
    return best;
}

// A state in the misalignment frame.  stiff: the fibres keep shear
// stiffness (G12 + s1 - s2 > 0); valid: besides, the angle stays below its
// limit, where the model holds.
struct Misalignment {
    double s2m, t12m, phi;
    bool stiff, valid;
};

// True where a compressed state lies inside the misalignment model (see
// Misalignment::valid).
bool inModel(double const* k, PlyStress const& s)
{
    double const D = k[kG12] + s.s1 - s.s2;
    return D > 0.0 && (std::fabs(s.t12) + k[kK0]) / D < kPhiLimit;
}

Misalignment misaligned(double const* k, PlyStress const& s)
{
    Misalignment m;
    double const at = std::fabs(s.t12);
    double const D = k[kG12] + s.s1 - s.s2;
    m.stiff = D > 0.0;
    m.phi = m.stiff ? (at + k[kK0]) / D : kPhiLimit;
    m.valid = m.stiff && m.phi < kPhiLimit;
    double const c = std::cos(m.phi), sn = std::sin(m.phi);
    m.s2m = s.s1 * sn * sn + s.s2 * c * c - 2.0 * at * sn * c;
    m.t12m = -(s.s1 - s.s2) * sn * c + at * (c * c - sn * sn);
    return m;
}

double fibreCompression(double const* k, Misalignment const& m, int& mode)
{
    if (m.s2m < 0.0) {
        mode = kModeFK;
        return std::max(0.0, (std::fabs(m.t12m) + k[kEtaL] * m.s2m) / k[kSLis]);
    }
    mode = kModeFS;
    return matrixTension(k, m.s2m, m.t12m);
}

Assessment assessState(PreparedCriterion const& p, PlyStress const& s)
{
    double const* k = p.k;
    Assessment a{Verdict::Ok, 0.0, -1, {0.0, 0.0}, 0u};
    Misalignment const m = s.s1 < 0.0 ? misaligned(k, s) : Misalignment{0, 0, 0, true, true};
    // Matrix modes (alpha = 0 in matrix tension); none where a compressed
    // ply has left the misalignment model, whose fibre mode then holds.
    if (s.s2 >= 0.0) {
        a.index = matrixTension(k, s.s2, s.t12);
        a.mode = kModeMT;
    } else if (s.s1 >= -k[kYc]) {
        a.index = matrixCompression(k, s.s2, s.t12, &a.extra[0]);
        a.mode = kModeMC;
    } else if (m.valid) {
        a.index = matrixCompression(k, m.s2m, m.t12m, &a.extra[0]);
        a.mode = kModeMCm;
    }
    if (a.mode >= 0) a.extraValid = 1u;
    // Fibre modes.
    int mode = kModeFT;
    double f;
    if (s.s1 >= 0.0) {
        f = s.s1 / k[kXt];
    } else {
        f = fibreCompression(k, m, mode);
        if (!m.valid) {
            f = std::max(1.0, f);
            mode = kModeFK;
        }
        if (m.stiff) {
            a.extra[1] = m.phi / kDegree;
            a.extraValid |= 2u;
        }
    }
    if (a.mode < 0 || f > a.index) {
        a.index = f;
        a.mode = mode;
    }
    return a;
}

// One numeric mode along the path, on a scale that is close to linear in
// the stresses: the square root of the quadratic indices (matrix
// compression, splitting), the kinking index itself.  Both reach 1 where the
// index does, and where kinking turns into splitting (s2m = 0) the two are
// equal.
struct ModeAlong {
    double const* k;
    PlyStress const* res;
    PlyStress const* mech;
    int mode;
    PlaneGuess* guess;  // from the last state searched, not owned

    double operator()(double r) const
    {
        PlyStress const s = along(*res, *mech, r);
        if (mode == kModeMC) return std::sqrt(matrixCompression(k, s.s2, s.t12, *guess));
        Misalignment const m = misaligned(k, s);
        if (mode == kModeMCm) return std::sqrt(matrixCompression(k, m.s2m, m.t12m, *guess));
        int which;
        double const f = fibreCompression(k, m, which);
        return which == kModeFK ? f : std::sqrt(f);
    }
};

Rating ratePath(PreparedCriterion const& p, PlyStress const& res, PlyStress const& mech)
{
    double const* k = p.k;
    double const ratio = stressRatio(mech, k[kXt], k[kXc], k[kYt], k[kYc], k[kS]);
    // The residual state itself, where the path holds still or the state sits
    // on a boundary between modes (elsewhere the first piece's modes are its
    // own).
    if (ratio == 0.0 || res.s1 == 0.0 || res.s1 == -k[kYc] || res.s2 == 0.0) {
        Assessment const start = assessState(p, res);
        if (start.index >= 1.0) return rating(Crossing{0.0, start.mode});
    }
    if (ratio == 0.0) return rating(Crossing{kInf, -1});
    double const step = 1.0 / ratio;
    double const far = 1e6 * (1.0 + stressRatio(res, k[kXt], k[kXc], k[kYt], k[kYc], k[kS])) * step;
    bool const noResidual = res.s1 == 0.0 && res.s2 == 0.0 && res.t12 == 0.0;

    // The fracture planes found last, carried from piece to piece: the state
    // is continuous across a piece's end.
    PlaneGuess planeMC, planeMCm;
    Breaks b;
    b.add(res.s1, mech.s1);
    b.add(res.s1 + k[kYc], mech.s1);
    b.add(res.s2, mech.s2);
    b.add(res.t12, mech.t12);
    // Where phi reaches its limit: |t12| + K0 = limit (G12 + s1 - s2), for
    // either sign of t12.
    for (double sign : {1.0, -1.0})
        b.add(kPhiLimit * (k[kG12] + res.s1 - res.s2) - sign * res.t12 - k[kK0],
              kPhiLimit * (mech.s1 - mech.s2) - sign * mech.t12);
    b.finish();

    for (int i = 0; i < b.pieces(); i++) {
        double const lo = b.lo(i), hi = b.hi(i);
        PlyStress const in = along(res, mech, b.inside(i));
        Crossing best{kInf, -1};
        auto offer = [&best](double r, int mode) {
            if (r < best.r) best = Crossing{r, mode};
        };
        if (in.s2 >= 0.0) offer(quadCrossing(loadQuad(k + kMT), res, mech, lo, hi), kModeMT);
        if (in.s1 >= 0.0)
            offer(quadCrossing(linear(1.0 / k[kXt], 0.0, 0.0), res, mech, lo, hi), kModeFT);

        bool const valid = in.s1 < 0.0 && inModel(k, in);
        if (in.s1 < 0.0 && !valid) offer(lo, kModeFK);  // beyond the misalignment model

        // A numeric mode searched from "from" (at least lo) up to below
        // (at most hi) or the best crossing so far.
        auto numeric = [&](int mode, double from, double below) {
            double const top = std::min(below, best.r);
            ModeAlong const g{k, &res, &mech, mode, mode == kModeMC ? &planeMC : &planeMCm};
            if (mode == kModeMC && noResidual && lo == 0.0) {
                // Degree 1 on its scale: the crossing is direct.
                double const f = g(1.0);
                if (f > 0.0) {
                    double const r = 1.0 / f;
                    if (r <= top) offer(r, mode);
                }
                return;
            }
            // Matrix compression crosses 1 once on a piece; the modes of the
            // turning misalignment frame may fall back below 1 after a crossing,
            // so their bracket is walked from the piece's start.
            bool const walk = mode != kModeMC;
            offer(numericCrossing(IndexAlong(g), from, top, g(from), walk ? step / 2.0 : step, far,
                                  walk),
                  mode);
        };
        // Matrix compression lies between two bounds: below the quadratic
        // (s2/(2 ST))^2 + (t12/SLis)^2, above the planes alpha0 and 0, where
        // it is at least (s2/Yc)^2 and ((|t12| + etaL s2)/SLis)^2.  It
        // reaches 1 between their crossings, and nothing else need be
        // searched beyond the second.
        bool const mc = in.s2 < 0.0 && in.s1 >= -k[kYc];
        double mcFrom = kInf, mcBy = kInf;
        if (mc) {
            double const sign = in.t12 >= 0.0 ? 1.0 : -1.0;
            mcFrom = quadCrossing(loadQuad(k + kMCup), res, mech, lo, std::min(hi, best.r));
            mcBy = std::min(quadCrossing(linear(0.0, -1.0 / k[kYc], 0.0), res, mech, lo, hi),
                            quadCrossing(linear(0.0, k[kEtaL] * k[kInvSL], sign * k[kInvSL]), res,
                                         mech, lo, hi));
        }
        double const by = std::min(hi, mcBy);
        // The cheap fibre mode first: matrix compression need only be
        // searched up to its crossing.
        if (valid) numeric(kModeFK, lo, by);
        if (mc && mcFrom < best.r) {
            numeric(kModeMC, mcFrom, by);
            offer(mcBy, kModeMC);  // reached by then, should rounding have hidden it
        }
        if (valid && in.s2 < 0.0 && in.s1 < -k[kYc]) numeric(kModeMCm, lo, hi);
        if (best.r < kInf) {
            if (best.mode == kModeFK) {
                // Kinking or splitting: the side of s2m = 0 at the crossing.
                if (valid && misaligned(k, along(res, mech, best.r)).s2m >= 0.0)
                    best.mode = kModeFS;
            }
            return rating(best);
        }
    }
    return rating(Crossing{kInf, -1});
}

// A bound on every mode over a segment from the largest stresses on it
// (each stress is linear along it, so its extremes are at the ends):
//  - matrix tension (1 - g) x + g x^2 + (t12/SLis)^2 is convex in x = s2/YtIs;
//  - on every fracture plane the effective shear stresses are at most the
//    tractions, |s2|/2 and |t12| where s2 < 0; where s2 >= 0 (the misaligned
//    frame's s2m) the transverse one is at most etaT s2;
//  - the misalignment angle stays within [0, (|t12| + K0) / (G12 + s1 - s2)],
//    which bounds s2m and t12m (sin x <= x); kinking keeps s2m < 0, where
//    etaL s2m does not add.
// Where s1 < 0 on the segment, the ends must lie inside the misalignment
// model with room (|t12| + K0 - limit (G12 + s1 - s2) is convex along it),
// or nothing is said.
bool indexBelow(PreparedCriterion const& p, PlyStress const& a, PlyStress const& b)
{
    double const* k = p.k;
    double const S1 = std::max(std::fabs(a.s1), std::fabs(b.s1));
    double const S2 = std::max(std::fabs(a.s2), std::fabs(b.s2));
    double const T = std::max(std::fabs(a.t12), std::fabs(b.t12));
    double const g = k[kG];
    auto tension = [g](double x) { return std::max(0.0, ((1.0 - g) + g * x) * x); };
    double const shear = T * k[kInvSL];
    double worst = std::max(a.s1, b.s1) * (1.0 / k[kXt]);
    worst = std::max(worst, tension(std::max(0.0, std::max(a.s2, b.s2)) / k[kYtIs]) + shear * shear);
    double const c = 0.5 * std::max(0.0, -std::min(a.s2, b.s2)) * k[kInvST];
    worst = std::max(worst, c * c + shear * shear);
    if (a.s1 < 0.0 || b.s1 < 0.0) {
        double const Da = k[kG12] + a.s1 - a.s2, Db = k[kG12] + b.s1 - b.s2;
        if (!(std::fabs(a.t12) + k[kK0] < kPhiLimit * Da &&
              std::fabs(b.t12) + k[kK0] < kPhiLimit * Db))
            return false;
        double const phi = (T + k[kK0]) / std::min(Da, Db);
        double const d12 = std::max(std::fabs(a.s1 - a.s2), std::fabs(b.s1 - b.s2));
        double const s2m = S1 * phi * phi + S2 + T * std::min(1.0, 2.0 * phi);
        double const t12m = d12 * std::min(0.5, phi) + T;
        double const shearM = t12m * k[kInvSL];
        double const kink = (t12m + std::max(0.0, -k[kEtaL]) * s2m) * k[kInvSL];
        double const cm = s2m * std::max(0.5, k[kEtaT]) * k[kInvST];
        worst = std::max(worst, kink);
        worst = std::max(worst, tension(s2m / k[kYtIs]) + shearM * shearM);
        worst = std::max(worst, cm * cm + shearM * shearM);
    }
    return under(worst);
}

}  // namespace

extern CriterionInfo const kLarc03 = {"larc03", kModes,           kExtras,     nullptr,
                                      0,        prepareCriterion, assessState, ratePath,
                                      indexBelow};

}  // namespace laminate::analysis
