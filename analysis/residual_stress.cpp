#include "laminate/analysis/residual_stress.h"

#include "laminate/analysis/engineering_constants.h"

namespace laminate::analysis {

ResidualStress::ResidualStress(LaminateAnalysis const& an, double const* alpha,
                               double const* beta)
    : faces_(2 * an.plies().size(), FaceUnit{})
{
    if (an.status() != LaminateAnalysis::Ok) return;
    double c[36];
    if (!abdCompliance(an, c)) {
        status_ = Singular;
        return;
    }
    status_ = Ok;
    hasAlpha_ = alpha != nullptr;
    hasBeta_ = beta != nullptr;
    std::vector<LaminateAnalysis::Ply> const& plies = an.plies();
    size_t const n = plies.size();
    // Per layer and per kind of change, the laminate-axes free strains.
    std::vector<double> freeLam(6 * n, 0.0);
    double const* coeff[2] = {alpha, beta};
    for (int kind = 0; kind < 2; kind++) {
        if (coeff[kind] == nullptr) continue;
        double NM[6] = {0, 0, 0, 0, 0, 0};
        for (size_t k = 0; k < n; k++) {
            LaminateAnalysis::Ply const& p = plies[k];
            double* e = &freeLam[6 * k + 3 * kind];
            layerFreeStrains(p, coeff[kind][2 * k], coeff[kind][2 * k + 1], e);
            double s[3];
            laminate_model::product<3>(p.Qbar, e, s);
            double const z0 = p.zTop, z1 = p.zBas;
            for (int i = 0; i < 3; i++) {
                NM[i] += s[i] * (z1 - z0);
                NM[i + 3] += 0.5 * s[i] * ((z1 - z0) * (z1 + z0));
            }
        }
        for (int i = 0; i < 6; i++) resultant_[kind][i] = NM[i];
        laminate_model::product<6>(c, NM, free_[kind]);
    }
    for (size_t k = 0; k < n; k++) {
        LaminateAnalysis::Ply const& p = plies[k];
        double const z[2] = {p.zTop, p.zBas};
        for (int f = 0; f < 2; f++) {
            FaceUnit& u = faces_[2 * k + f];
            for (int kind = 0; kind < 2; kind++) {
                double const* g = free_[kind];
                double const* e = &freeLam[6 * k + 3 * kind];
                double const mech[3] = {g[0] + z[f] * g[3] - e[0], g[1] + z[f] * g[4] - e[1],
                                        g[2] + z[f] * g[5] - e[2]};
                laminate_model::product<3>(p.Qbar, mech, u.lam + 3 * kind);
                laminate_model::product<3>(p.T, u.lam + 3 * kind, u.ply + 3 * kind);
            }
        }
    }
}

void ResidualStress::resultants(double dT, double dM, double out[6]) const
{
    for (int i = 0; i < 6; i++) out[i] = resultant_[0][i] * dT + resultant_[1][i] * dM;
}

void ResidualStress::freeStrains(double dT, double dM, double out[6]) const
{
    for (int i = 0; i < 6; i++) out[i] = free_[0][i] * dT + free_[1][i] * dM;
}

void ResidualStress::stressLaminateAxes(int layer, Face face, double dT, double dM,
                                        double out[3]) const
{
    FaceUnit const& f = faces_[index(layer, face)];
    for (int i = 0; i < 3; i++) out[i] = f.lam[i] * dT + f.lam[i + 3] * dM;
}

}  // namespace laminate::analysis
