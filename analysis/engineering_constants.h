// The engineering constants of a prepared laminate: its membrane-bending
// compliance, the membrane and flexural moduli and Poisson ratios an
// equivalent homogeneous plate would have, its areal weight and its free
// thermal and moisture expansion.
//
// Everything is read from the stiffness the stress recovery uses (the upper
// 6 x 6 block [[A B][B D]] of K) and from each layer's Qbar and T, so a
// layer's expansion is turned into laminate axes exactly as its stiffness
// and its recovered strains are.  Arrays are row-major; the generalized
// vectors are (N1 N2 N12 M1 M2 M12) and (ex ey gxy kx ky kxy), shear strains
// engineering (gamma).  Layer 1 is the lowest z.
//
// Misuse: nothing here ends the process.  An analysis that is not prepared, a
// singular or non-finite compliance and a stiffness that is not positive
// definite are reported in EngineeringConstants::status; non-finite
// per-layer inputs (weights, coefficients) pass NaN or inf through.
#ifndef LAMINATE_ANALYSIS_ENGINEERING_CONSTANTS_H
#define LAMINATE_ANALYSIS_ENGINEERING_CONSTANTS_H

#include "laminate/analysis/laminate_analysis.h"

namespace laminate::analysis {

// What the laminate stiffness does not hold about its layers, layer 1 first.
// Each pointer is null when the data are not known; otherwise it points to
// layers() values (sw) or layers() pairs (alpha, beta).  Not owned.
struct PlyProperties {
    double const* sw = nullptr;     // specific weight (weight per volume), record field sw
    double const* alpha = nullptr;  // alpha1 alpha2: thermal expansion, layer axes
    double const* beta = nullptr;   // beta1 beta2: moisture expansion, layer axes
};

struct EngineeringConstants {
    enum Status {
        Ok = 0,
        NotPrepared,  // the analysis' status() is not Ok
        Singular,     // [[A B][B D]] has no finite inverse
        NotPositive   // the stiffness is not positive definite, or the
                      // thickness not > 0: moduli would be negative or infinite
    };

    // Ok: every field below.  NotPositive: thickness and compliance only.
    // Otherwise every number is 0 and every has* flag false.
    Status status;
    double thickness;       // total thickness t
    double compliance[36];  // inverse of [[A B][B D]]: (ex..kxy) = compliance (N1..M12)
    // Membrane: 1/(t a11), 1/(t a22), 1/(t a66), -a12/a11, -a12/a22, with a
    // the upper-left 3 x 3 block of the compliance.
    double Ex, Ey, Gxy, nuxy, nuyx;
    // Flexural: 12/(t^3 d11), 12/(t^3 d22), 12/(t^3 d66), -d12/d11,
    // -d12/d22, with d the lower-right block.
    double Exb, Eyb, Gxyb, nuxyb, nuyxb;
    bool hasWeight;         // specific weights were given
    double weight;          // areal weight, sum of sw t over the layers
    // Free expansion per unit temperature (thermal) and per unit moisture
    // (moisture): mid-plane ex ey gxy, then curvatures kx ky kxy.
    bool hasThermal;
    double thermal[6];
    bool hasMoisture;
    double moisture[6];
};

// c = inverse of the 6 x 6 block [[A B][B D]] of an's K, by Gauss-Jordan
// elimination with partial pivoting.  Returns false, and c all zero, when an
// is not prepared, a pivot is zero or not a number, or an entry of the
// inverse is not finite.
bool abdCompliance(LaminateAnalysis const& an, double c[36]);

// The laminate-axes free strains (ex ey gxy) of a layer whose layer-axes
// free strains are e1 along and e2 across the fibres, without shear: the
// strains that the layer's own T turns into (e1, e2, 0), as the recovery
// turns strains (tensor shear through T).  A T that cannot be inverted (a
// non-finite angle) gives NaN.
void layerFreeStrains(LaminateAnalysis::Ply const& p, double e1, double e2, double out[3]);

// The free expansion (ex ey gxy kx ky kxy) of the laminate whose compliance is
// c, its layers expanding by coeff (layers() pairs, layer axes) per unit
// change: c times the resultants N = sum Qbar e (z1 - z0) and
// M = 1/2 sum Qbar e (z1^2 - z0^2), e each layer's laminate-axes free strains.
void freeExpansion(LaminateAnalysis const& an, double const c[36], double const* coeff,
                   double out[6]);

// Everything above at once.  props may leave any array out.
EngineeringConstants engineeringConstants(LaminateAnalysis const& an,
                                          PlyProperties const& props = PlyProperties());

}  // namespace laminate::analysis

#endif
