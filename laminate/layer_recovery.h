// The strain and stress state of one layer under one load case, recovered
// from the laminate's generalized strains.  Shared by CalcTD and by the
// analysis floor, so that both give the same numbers to the last bit.
//
// Arrays are row-major; in-plane vectors are (normal 1, normal 2, in-plane
// shear) with engineering shear strain.  The "top" face of a layer is its
// face nearer layer 1 (lower z), the "bas" (bottom) face lies one layer
// thickness further.
#ifndef LAMINATE_LAMINATE_LAYER_RECOVERY_H
#define LAMINATE_LAMINATE_LAYER_RECOVERY_H

namespace laminate_model {

// What the recovery of one layer reads besides the generalized strains.
struct LayerFrame {
    double const* Qbar;  // 3 x 3 transformed in-plane stiffness, laminate axes; not owned
    double const* T;     // 3 x 3 stress transformation, laminate to layer axes; not owned
    double const* Qst;   // 2 x 2 transverse shear strains to layer-axes stresses; not owned
    double c, s;         // cosine and sine of the layer angle, shortened factor, snapped
    double zTop, zBas;   // z of the top and bottom faces
};

struct LayerState {
    double strainsTop[3], strainsTopLam[3], stressesTop[3], stressesTopLam[3];
    double strainsBas[3], strainsBasLam[3], stressesBas[3], stressesBasLam[3];
    double shearStressesLam[2];  // layer axes, constant through the layer
    double shearStrainsLam[2];   // layer axes
    double stressesLam[3];       // layer axes, mid-thickness
    double strainsLam[3];        // layer axes, mid-thickness
};

// g: the 8 generalized strains (membrane strains, curvatures, transverse
// shear strains in laminate axes).
void recoverLayer(double const g[8], LayerFrame const& frame, LayerState& out);

// out = M * v for an N x N row-major M, each entry summed from 0.0 in column
// order.
template <int N>
inline void product(double const* M, double const* v, double* out)
{
    for (int i = 0; i < N; i++, M += N) {
        double sum = 0.0;
        for (int j = 0; j < N; j++) {
            sum += M[j] * v[j];
        }
        out[i] = sum;
    }
}

}  // namespace laminate_model

#endif
