#include "laminate/analysis/envelope.h"

#include <cmath>
#include <limits>

namespace laminate::analysis {

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();

// cos and sin of a multiple of pi/2 come out near 1e-16, not 0.
double direction(double v)
{
    return std::fabs(v) < 1e-12 ? 0.0 : v;
}

double along(double factor, double d)
{
    return d == 0.0 ? 0.0 : factor * d;
}

}  // namespace

std::vector<EnvelopePoint> envelope(LaminateAnalysis const& an, int i, int j, Criterion c,
                                    int points)
{
    std::vector<EnvelopePoint> out;
    if (i < 1 || i > 8 || j < 1 || j > 8 || i == j || points <= 0) return out;
    out.reserve(points);
    double const pi = std::acos(-1.0);
    for (int r = 0; r < points; r++) {
        double const theta = 2.0 * pi * r / points;
        double const dx = direction(std::cos(theta)), dy = direction(std::sin(theta));
        double loads[8] = {0, 0, 0, 0, 0, 0, 0, 0};
        loads[i - 1] = dx;
        loads[j - 1] = dy;
        PlyFailure const f = an.firstPlyFailure(loads, c);
        if (f.outcome == Outcome::Undefined || f.outcome == Outcome::Overflow)
            out.push_back(EnvelopePoint{kNaN, kNaN, f});
        else
            out.push_back(EnvelopePoint{along(f.factor, dx), along(f.factor, dy), f});
    }
    return out;
}

}  // namespace laminate::analysis
