// Interlaminar (transverse) shear stresses through the thickness, recovered
// from the equilibrium of the in-plane stresses rather than from the
// transverse shear strains.
//
// The in-plane equilibrium of a slice of the plate,
//     d(sigma_x)/dx + d(tau_xy)/dy + d(tau_xz)/dz = 0,
//     d(tau_xy)/dx + d(sigma_y)/dy + d(tau_yz)/dz = 0,
// gives tau_xz and tau_yz by integration over z from the lowest face, where
// they vanish.  The in-plane stress gradients come from the gradients of the
// resultants that carry Q1 and Q2, taken as two cylindrical bendings: the
// membrane forces do not vary over the plate, and
//     dM1/dx = Q1, dM2/dy = Q2, dM2/dx = dM12/dx = dM1/dy = dM12/dy = 0.
// The generalized strain gradients are the membrane-bending compliance times
// these resultant gradients, so an unsymmetric laminate's coupling B counts;
// in layer k the stress gradient is Qbar_k (de + z dk), linear in z, and the
// shear stresses are quadratic in z within each layer and continuous across
// every interface.  Because the membrane forces do not vary, the stresses
// vanish again at the upper face (up to rounding), and their integrals over
// the thickness are Q1 and Q2.
//
// Only Q1 and Q2 (loads 7 and 8) enter; the other loads produce no gradient.
// The stresses are in laminate axes, x-z and y-z.  Layer 1 is the lowest z.
// This is beside, and does not change, the transverse shear values each
// layer's recovery gives (G gamma, constant through a layer).
//
// Misuse: an object whose status() is not Ok gives no points and zero
// stresses; nothing here ends the process.
#ifndef LAMINATE_ANALYSIS_INTERLAMINAR_SHEAR_H
#define LAMINATE_ANALYSIS_INTERLAMINAR_SHEAR_H

#include <vector>

#include "laminate/analysis/laminate_analysis.h"

namespace laminate::analysis {

struct ShearPoint {
    double z;
    double xz, yz;  // tau_xz, tau_yz
};

class InterlaminarShear {
public:
    enum Status {
        Ok = 0,
        NotPrepared,  // default-constructed, or the analysis' status() is not Ok
        Singular      // the membrane-bending stiffness has no finite inverse
    };

    InterlaminarShear();
    // Prepares from an at once; see status().
    explicit InterlaminarShear(LaminateAnalysis const& an);

    // Keeps, per layer, the shear stress polynomials under unit Q1 and unit
    // Q2.  Nothing of an is referenced afterwards.
    Status prepare(LaminateAnalysis const& an);
    Status status() const { return status_; }

    // 2 layers + 1 when prepared, else 0.
    int points() const { return static_cast<int>(z_.size()); }

    // The stresses at every layer face and every layer's mid-thickness,
    // lowest face first: z of layer 1's lower face, its middle, the interface
    // with layer 2 (one point: the stresses are continuous), ... the upper
    // face of the last layer.  out is resized only when its size differs, so
    // reusing out allocates nothing.
    void profile(double const loads[8], std::vector<ShearPoint>& out) const;

    // The stresses at any z; zero outside the laminate (or for a z that is
    // not a number).  At an interface, the layer above answers.
    ShearPoint at(double z, double const loads[8]) const;

private:
    // One layer: its faces, and for each of the 4 cases (tau_xz under unit
    // Q1, tau_yz under unit Q1, tau_xz under unit Q2, tau_yz under unit Q2)
    // the value at the lower face and the equilibrium gradient
    // d(tau)/dz = -(p + q z), so that
    //     tau(z) = base - (z - z0) (p + q (z + z0) / 2).
    struct Layer {
        double z0, z1;
        double base[4], p[4], q[4];
    };

    Status status_;
    std::vector<Layer> layers_;
    std::vector<double> z_;     // the points of profile()
    std::vector<double> unit_;  // 4 values per point, in the order of Layer::base
};

}  // namespace laminate::analysis

#endif
