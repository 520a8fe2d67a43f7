// The first-ply-failure envelope of a laminate in the plane of two load
// components.
#ifndef LAMINATE_ANALYSIS_ENVELOPE_H
#define LAMINATE_ANALYSIS_ENVELOPE_H

#include <vector>

#include "laminate/analysis/laminate_analysis.h"

namespace laminate::analysis {

struct EnvelopePoint {
    double x, y;         // the failure load: factor times the ray's direction
    PlyFailure failure;  // where and how the ray's load first fails a ply
};

// points rays through the origin, ray r at the angle 2 pi r / points from
// the axis of component i, in the plane of load components i and j (counted
// 1..8 in the order N1 N2 N12 M1 M2 M12 Q1 Q2; every other component 0).
// Each point lies at its ray's first-ply-failure load.  A ray that never
// fails gives infinite coordinates, and 0 where its direction has no
// component.  A ray whose failure is Undefined (an index NaN and nothing else
// failing) or Overflow has no point: x and y are NaN, and failure.outcome
// says why; never read them as a load.  Returns nothing unless
// 1 <= i, j <= 8, i != j and points > 0.
std::vector<EnvelopePoint> envelope(LaminateAnalysis const& an, int i, int j, Criterion c,
                                    int points);

}  // namespace laminate::analysis

#endif
