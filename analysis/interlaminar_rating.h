// The interlaminar shear rating ("ilss"): the transverse shear stresses
// that equilibrium gives through the thickness (InterlaminarShear), in each
// ply's axes, against the ply's transverse shear strengths S13 and S23.
//
// At a point of a ply the index is the quadratic interaction
//     (t13 / S13)^2 + (t23 / S23)^2,
// with t13 = c txz + s tyz and t23 = -s txz + c tyz turned by the ply's
// angle (the cosine and sine the stress recovery uses).  The stresses are
// linear in the loads, so the reserve factor is RF = 1 / sqrt(index), and
// +inf (verdict never) where the index is 0.  Thermal and moisture changes
// give no transverse shear: a rating holds no residual stresses.
//
// A ply is rated at its two faces and its middle, the points of the shear
// profile.  The stresses are continuous across an interface, but the
// allowables and the axes change: there the worse of the two plies' indices
// counts, for both plies.  A ply is rated by its worst point.
//
// Layers are counted from 1; layer 1 lies at the lowest z and its "top"
// face is its face at the lower z.
//
// Misuse: nothing here ends the process.  A ply without S13 or S23 is rated
// nostrength; a layer out of range is the caller's to avoid.  Loads whose
// stresses are not finite give nonfinite, never NaN.
#ifndef LAMINATE_ANALYSIS_INTERLAMINAR_RATING_H
#define LAMINATE_ANALYSIS_INTERLAMINAR_RATING_H

#include <vector>

#include "laminate/analysis/criterion.h"
#include "laminate/analysis/interlaminar_shear.h"
#include "laminate/analysis/laminate_analysis.h"

namespace laminate::analysis {

// Where in a ply a rating falls.
enum class PlyPoint { None, Top, Middle, Bottom };

// Words of a PlyPoint: none top middle bottom.
char const* plyPointWord(PlyPoint p);

// One ply, or the laminate's first failure.  verdict ok: 0 < rf < inf;
// never: rf = +inf (no transverse shear); nostrength, nonfinite: rf = 0 and
// index 0.  index: at the loads given.
struct ShearRating {
    Verdict verdict;
    double rf;
    double index;
    int ply;
    PlyPoint point;
};

class InterlaminarRating {
public:
    enum Status { Ok = 0, NotPrepared };

    InterlaminarRating() = default;
    // allowables: 2 per layer (S13, S23), layer 1 first; a value that is
    // not finite and above 0 is not given.  Copied.
    InterlaminarRating(LaminateAnalysis const& an, double const* allowables);

    Status status() const { return status_; }
    int layers() const { return static_cast<int>(plies_.size()); }

    ShearRating ratePly(int layer, double const loads[8]) const;
    // The smallest RF of every ply; a ply that cannot be rated comes first
    // (the first such ply, rf 0), as LaminateRating::firstPlyFailure does.
    ShearRating firstPlyFailure(double const loads[8]) const;

private:
    struct Ply {
        double c, s;
        double S13, S23;  // 0 when not given
        double z[3];      // lower face, middle, upper face
    };
    // The index of ply k (0-based) at the stresses txz, tyz; false when the
    // ply has no allowables.
    bool index(int k, double txz, double tyz, double& out) const;

    Status status_ = NotPrepared;
    InterlaminarShear shear_;
    std::vector<Ply> plies_;
};

}  // namespace laminate::analysis

#endif
