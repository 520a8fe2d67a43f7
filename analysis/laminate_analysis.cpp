#include "laminate/analysis/laminate_analysis.h"

#include <cmath>
#include <cstring>
#include <utility>

using laminate_model::LayerState;
using laminate_model::PlyData;

namespace laminate::analysis {

LaminateAnalysis::LaminateAnalysis() : status_(NotPrepared), thickness_(0.0) {}

LaminateAnalysis::LaminateAnalysis(lamina1& lam) : LaminateAnalysis()
{
    prepare(lam);
}

// The record data and layer stiffness a recovery reads, as one list of
// numbers compared bit for bit.
std::vector<double> LaminateAnalysis::fingerprint(lamina1 const& lam) const
{
    std::vector<double> f;
    int const n = lam.nlayers;
    f.reserve(2 + static_cast<size_t>(n > 0 ? n : 0) * 35);
    f.push_back(n);
    f.push_back(lam.Qbar != nullptr && lam.Tmat != nullptr ? 1.0 : 0.0);
    for (int i = 0; i < n; i++) {
        vantrel::ReaVecV const* const fields[] = {
            &lam.E1, &lam.E2, &lam.nu12, &lam.G12, &lam.G13, &lam.G23, &lam.strength1,
            &lam.strength2, &lam.strength3, &lam.strength4, &lam.strength5, &lam.strength6,
            &lam.strength7, &lam.angleDeg, &lam.layerThickness};
        for (vantrel::ReaVecV const* v : fields) f.push_back(i < v->length() ? v->data[i] : 0.0);
        f.push_back(i < static_cast<int>(lam.layerFlag.n) ? lam.layerFlag.data[i] : 0);
        if (lam.Qbar != nullptr && lam.Tmat != nullptr) {
            f.insert(f.end(), lam.Qbar[i].data, lam.Qbar[i].data + lam.Qbar[i].size);
            f.insert(f.end(), lam.Tmat[i].data, lam.Tmat[i].data + lam.Tmat[i].size);
        }
    }
    return f;
}

bool LaminateAnalysis::preparedFrom(lamina1 const& lam) const
{
    if (status_ == NotPrepared) return false;
    std::vector<double> const now = fingerprint(lam);
    return now.size() == source_.size() &&
           std::memcmp(now.data(), source_.data(), now.size() * sizeof(double)) == 0;
}

LaminateAnalysis::Status LaminateAnalysis::prepare(lamina1& lam)
{
    plies_.clear();
    thickness_ = 0.0;
    rank_ = 8;
    source_ = fingerprint(lam);
    if (lam.nlayers <= 0) return status_ = NoLayers;

    // The stiffness exactly as the recovery builds it on every call.
    if (lam.Qbar == nullptr || lam.Tmat == nullptr) lam.calcQI();
    lam.calcK();
    if (lam.K.inverse(Kinv_) != 0) return status_ = Singular;
    source_ = fingerprint(lam);
    A_ = lam.A;
    B_ = lam.B;
    D_ = lam.D;
    H_ = lam.H;
    K_ = lam.K;
    thickness_ = lam.totalThickness;

    plies_.resize(lam.nlayers);
    for (int k = 1; k <= lam.nlayers; k++) {
        Ply& p = plies_[k - 1];
        p.data = laminate_model::plyData(lam, k);
        p.angle = lam.angleDeg[k - 1];
        std::memcpy(p.Qbar, lam.Qbar[k - 1].data, sizeof p.Qbar);
        std::memcpy(p.T, lam.Tmat[k - 1].data, sizeof p.T);
        lam.calcQ_st(k);
        std::memcpy(p.Qst, lam.Q_st.data, sizeof p.Qst);
        lam.recoveryCosSin(k, p.c, p.s);
        p.zTop = lam.zInterface[k - 1];
        p.zBas = p.zTop + lam.layerThickness[k - 1];
    }
    return status_ = Ok;
}

void LaminateAnalysis::strains(double const loads[8], double g[8]) const
{
    if (status_ != Ok) {
        for (int i = 0; i < 8; i++) g[i] = 0.0;
        return;
    }
    laminate_model::product<8>(Kinv_.data, loads, g);
}

namespace {

// The worse of two face values, as lamina1's criteria choose it.
inline double worse(double top, double bottom)
{
    return top > bottom ? top : bottom;
}

void ratePly(PlyData const& p, PlyResult& r)
{
    LayerState const& st = r.state;
    double const ta = st.shearStressesLam[0], tb = st.shearStressesLam[1];

    double A, B, R;
    r.tsaiWuSimple = -1.0;
    if (laminate_model::tsaiWuSimple(p, st.stressesLam, st.stressesTopLam, A, B, R))
        r.tsaiWuSimple = R >= 200.0 ? 200.0 : R;

    if (laminate_model::notAssessed(p, st.stressesLam, st.shearStressesLam)) {
        r.tsaiWu = r.hashinMatrix = r.hashinFibre = kNotAssessed;
        for (double& v : r.larc04) v = kNotAssessed;
        return;
    }
    r.tsaiWu = worse(laminate_model::tsaiWuComplete(p, st.stressesTopLam, ta, tb),
                     laminate_model::tsaiWuComplete(p, st.stressesBasLam, ta, tb));
    double const* const top = st.stressesTopLam;
    double const* const bas = st.stressesBasLam;
    r.hashinMatrix = worse(laminate_model::hashinMatrix(p, top[1], top[2], ta, tb),
                           laminate_model::hashinMatrix(p, bas[1], bas[2], ta, tb));
    r.hashinFibre = worse(laminate_model::hashinFibre(p, top[0], bas[2], tb),
                          laminate_model::hashinFibre(p, bas[0], bas[2], tb));
    // The bottom face first: a thick ply may clear its compliance term there.
    laminate_model::LaRC04 larc(p, ta, tb);
    double bottom[6], upper[6];
    larc.face(bas[0], bas[1], bas[2], bottom);
    larc.face(top[0], top[1], top[2], upper);
    for (int m = 0; m < 6; m++) r.larc04[m] = worse(upper[m], bottom[m]);
}

}  // namespace

void LaminateAnalysis::evaluate(double const loads[8], Evaluation& out) const
{
    strains(loads, out.strains);
    if (out.plies.size() != plies_.size()) out.plies.resize(plies_.size());
    for (size_t i = 0; i < plies_.size(); i++) {
        laminate_model::recoverLayer(out.strains, plies_[i].frame(), out.plies[i].state);
        ratePly(plies_[i].data, out.plies[i]);
    }
}

namespace {

// The transformed in-plane stiffness of a ply of stiffness Q11 Q12 Q22 Q66
// whose stress transformation is T (T11 = c^2, T12 = s^2, T13 = 2 s c):
// the closed form of T^-1 Q R T R^-1.
void transformedStiffness(double const T[9], double q11, double q12, double q22, double q66,
                          double out[9])
{
    double const c2 = T[0], s2 = T[1], sc = 0.5 * T[2];
    double const c4 = c2 * c2, s4 = s2 * s2, s2c2 = s2 * c2;
    double const c3s = c2 * sc, s3c = s2 * sc;
    double const a = q11 - q12 - 2.0 * q66, b = q12 - q22 + 2.0 * q66;
    double const q16 = a * c3s + b * s3c;
    double const q26 = a * s3c + b * c3s;
    double const q12b = (q11 + q22 - 4.0 * q66) * s2c2 + q12 * (s4 + c4);
    out[0] = q11 * c4 + 2.0 * (q12 + 2.0 * q66) * s2c2 + q22 * s4;
    out[1] = q12b;
    out[2] = q16;
    out[3] = q12b;
    out[4] = q11 * s4 + 2.0 * (q12 + 2.0 * q66) * s2c2 + q22 * c4;
    out[5] = q26;
    out[6] = q16;
    out[7] = q26;
    out[8] = (q11 + q22 - 2.0 * q12 - 2.0 * q66) * s2c2 + q66 * (s4 + c4);
}

// A pivot of the scaled stiffness below this counts as 0.
const double kPivotFloor = 1e-12;

}  // namespace

LaminateAnalysis::Status LaminateAnalysis::prepareScaled(LaminateAnalysis const& intact,
                                                         double const* factors)
{
    if (intact.status_ != Ok) {
        plies_.clear();
        return status_ = NotPrepared;
    }
    // Only the in-plane stiffness of a ply differs from intact's.
    bool const same = status_ == Ok && plies_.size() == intact.plies_.size() &&
                      source_ == intact.source_;
    if (!same) {
        plies_ = intact.plies_;
        source_ = intact.source_;
    }
    thickness_ = intact.thickness_;
    H_ = intact.H_;
    int const n = layers();
    for (int k = 0; k < n; k++) {
        double const* f = factors + 3 * k;
        if (f[0] == 1.0 && f[1] == 1.0 && f[2] == 1.0) {
            if (same) std::memcpy(plies_[k].Qbar, intact.plies_[k].Qbar, sizeof plies_[k].Qbar);
            continue;
        }
        PlyData const& d = plies_[k].data;
        // As calcNu21 and calcQI form them, with nu12 and nu21 scaled by the
        // factors of E1 and E2.
        double const nu12 = d.nu12 * f[0];
        double const nu21 = ((d.nu12 / d.E1) * d.E2) * f[1];
        double const den = 1 - nu12 * nu21;
        double const e1 = d.E1 * f[0], e2 = d.E2 * f[1];
        transformedStiffness(plies_[k].T, e1 / den, e2 * nu12 / den, e2 / den, d.G12 * f[2],
                             plies_[k].Qbar);
    }

    // A, B and D in the order calcA and calcBDH sum them.
    double a[9] = {}, b[9] = {}, dd[9] = {};
    for (int k = 0; k < n; k++) {
        double const zl = plies_[k].zTop, zu = plies_[k].zBas;
        double const dz = intact.plies_[k].zBas - intact.plies_[k].zTop;
        double const d2 = zu * zu - zl * zl;
        double const d3 = zu * zu * zu - zl * zl * zl;
        double const* q = plies_[k].Qbar;
        for (int e = 0; e < 9; e++) {
            a[e] += dz * q[e];
            b[e] += q[e] * 0.5 * d2;
            dd[e] += (q[e] * d3) / 3.0;
        }
    }
    if (A_.nrows != 3 || A_.ncols != 3) A_.redimension(3, 3);
    if (B_.nrows != 3 || B_.ncols != 3) B_.redimension(3, 3);
    if (D_.nrows != 3 || D_.ncols != 3) D_.redimension(3, 3);
    K_ = intact.K_;
    Kinv_ = intact.Kinv_;
    for (int i = 0; i < 3; i++)
        for (int j = 0; j < 3; j++) {
            A_.data[3 * i + j] = a[3 * i + j];
            B_.data[3 * i + j] = b[3 * i + j];
            D_.data[3 * i + j] = dd[3 * i + j];
            K_.data[8 * i + j] = a[3 * i + j];
            K_.data[8 * i + j + 3] = b[3 * i + j];
            K_.data[8 * (i + 3) + j] = b[3 * i + j];
            K_.data[8 * (i + 3) + j + 3] = dd[3 * i + j];
        }

    // The membrane-bending block, scaled by intact's diagonal so that every
    // pivot compares with 1, factored by Cholesky with diagonal pivoting;
    // the factorisation stops at the first pivot below the floor.
    double m[36], L[36] = {};
    int perm[6];
    for (int i = 0; i < 6; i++) {
        double const kii = intact.K_.data[9 * i];
        scale_[i] = kii > 0.0 ? 1.0 / std::sqrt(kii) : 1.0;
        perm[i] = i;
    }
    for (int i = 0; i < 6; i++)
        for (int j = 0; j < 6; j++) m[6 * i + j] = scale_[i] * K_.data[8 * i + j] * scale_[j];
    int rank = 0;
    double inv[6];  // 1 / the pivots
    for (int k = 0; k < 6; k++) {
        int p = k;
        for (int i = k + 1; i < 6; i++)
            if (m[6 * i + i] > m[6 * p + p]) p = i;
        if (!(m[6 * p + p] > kPivotFloor)) break;
        if (p != k) {
            std::swap(perm[k], perm[p]);
            for (int j = 0; j < 6; j++) std::swap(m[6 * k + j], m[6 * p + j]);
            for (int i = 0; i < 6; i++) std::swap(m[6 * i + k], m[6 * i + p]);
            for (int j = 0; j < k; j++) std::swap(L[6 * k + j], L[6 * p + j]);
        }
        double const lkk = std::sqrt(m[6 * k + k]);
        L[6 * k + k] = lkk;
        inv[k] = 1.0 / lkk;
        for (int i = k + 1; i < 6; i++) L[6 * i + k] = m[6 * i + k] * inv[k];
        for (int i = k + 1; i < 6; i++)
            for (int j = k + 1; j <= i; j++) {
                m[6 * i + j] -= L[6 * i + k] * L[6 * j + k];
                m[6 * j + i] = m[6 * i + j];
            }
        rank++;
    }
    // W = L^-1 on the leading rank pivots (lower triangular); the
    // (generalized) inverse of the scaled block in pivot order is W^T W,
    // the rest of the permuted unknowns 0.
    double W[36] = {};
    for (int c = 0; c < rank; c++) {
        W[6 * c + c] = inv[c];
        for (int i = c + 1; i < rank; i++) {
            double v = 0.0;
            for (int j = c; j < i; j++) v -= L[6 * i + j] * W[6 * j + c];
            W[6 * i + c] = v * inv[i];
        }
    }
    for (int r = 0; r < 6; r++)
        for (int c = 0; c < 6; c++) Kinv_.data[8 * r + c] = 0.0;
    for (int a = 0; a < rank; a++)
        for (int b = 0; b <= a; b++) {
            double v = 0.0;
            for (int i = a; i < rank; i++) v += W[6 * i + a] * W[6 * i + b];
            int const r = perm[a], c = perm[b];
            Kinv_.data[8 * r + c] = scale_[r] * v * scale_[c];
            Kinv_.data[8 * c + r] = Kinv_.data[8 * r + c];
        }
    rank_ = rank + 2;
    return status_ = Ok;
}

bool LaminateAnalysis::carries(double const loads[8]) const
{
    if (status_ != Ok) return false;
    if (rank_ == 8) return true;
    double g[8], back[8];
    strains(loads, g);
    laminate_model::product<8>(K_.data, g, back);
    double miss = 0.0, size = 0.0;
    for (int i = 0; i < 6; i++) {
        double const r = (back[i] - loads[i]) * scale_[i];
        double const l = loads[i] * scale_[i];
        miss += r * r;
        size += l * l;
    }
    return miss <= 1e-16 * size;
}

}  // namespace laminate::analysis
