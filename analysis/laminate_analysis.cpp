#include "laminate/analysis/laminate_analysis.h"

#include <cstring>

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

}  // namespace laminate::analysis
