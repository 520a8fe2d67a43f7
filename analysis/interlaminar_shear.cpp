#include "laminate/analysis/interlaminar_shear.h"

#include <algorithm>
#include <cmath>

#include "laminate/analysis/engineering_constants.h"

namespace laminate::analysis {

namespace {

// tau at z of one case of one layer.
inline double value(double base, double p, double q, double z0, double z)
{
    return base - (z - z0) * (p + q * (0.5 * (z + z0)));
}

}  // namespace

InterlaminarShear::InterlaminarShear() : status_(NotPrepared) {}

InterlaminarShear::InterlaminarShear(LaminateAnalysis const& an) : InterlaminarShear()
{
    prepare(an);
}

InterlaminarShear::Status InterlaminarShear::prepare(LaminateAnalysis const& an)
{
    layers_.clear();
    z_.clear();
    unit_.clear();
    if (an.status() != LaminateAnalysis::Ok) return status_ = NotPrepared;
    double c[36];
    if (!abdCompliance(an, c)) return status_ = Singular;

    // Generalized strain gradients (de, dk) along x under unit dM1/dx (column
    // 4 of the compliance) and along y under unit dM2/dy (column 5).
    double gx[6], gy[6];
    for (int i = 0; i < 6; i++) {
        gx[i] = c[i * 6 + 3];
        gy[i] = c[i * 6 + 4];
    }

    std::vector<LaminateAnalysis::Ply> const& plies = an.plies();
    size_t const n = plies.size();
    layers_.resize(n);
    double running[4] = {0, 0, 0, 0};  // zero at the lowest face
    for (size_t k = 0; k < n; k++) {
        LaminateAnalysis::Ply const& ply = plies[k];
        Layer& L = layers_[k];
        // The faces are the model's interfaces: the next layer's lower face
        // closes this one, so the layers tile the thickness without gaps.
        L.z0 = ply.zTop;
        L.z1 = k + 1 < n ? plies[k + 1].zTop : ply.zBas;

        // Stress gradients Qbar (de + z dk): constant part s0, slope s1.
        double sx0[3], sx1[3], sy0[3], sy1[3];
        laminate_model::product<3>(ply.Qbar, gx, sx0);
        laminate_model::product<3>(ply.Qbar, gx + 3, sx1);
        laminate_model::product<3>(ply.Qbar, gy, sy0);
        laminate_model::product<3>(ply.Qbar, gy + 3, sy1);
        // Under Q1 (x gradients): d(tau_xz)/dz = -d(sigma_x)/dx,
        // d(tau_yz)/dz = -d(tau_xy)/dx.  Under Q2 (y gradients):
        // d(tau_xz)/dz = -d(tau_xy)/dy, d(tau_yz)/dz = -d(sigma_y)/dy.
        double const p[4] = {sx0[0], sx0[2], sy0[2], sy0[1]};
        double const q[4] = {sx1[0], sx1[2], sy1[2], sy1[1]};
        for (int i = 0; i < 4; i++) {
            L.base[i] = running[i];
            L.p[i] = p[i];
            L.q[i] = q[i];
            running[i] = value(L.base[i], p[i], q[i], L.z0, L.z1);
        }
    }

    z_.reserve(2 * n + 1);
    unit_.reserve(4 * (2 * n + 1));
    auto add = [&](Layer const& L, double z) {
        z_.push_back(z);
        for (int i = 0; i < 4; i++) unit_.push_back(value(L.base[i], L.p[i], L.q[i], L.z0, z));
    };
    for (Layer const& L : layers_) {
        // The lower face's value is the base itself, carried from the layer below.
        z_.push_back(L.z0);
        unit_.insert(unit_.end(), L.base, L.base + 4);
        add(L, 0.5 * (L.z0 + L.z1));
    }
    add(layers_.back(), layers_.back().z1);
    return status_ = Ok;
}

void InterlaminarShear::profile(double const loads[8], std::vector<ShearPoint>& out) const
{
    if (out.size() != z_.size()) out.resize(z_.size());
    double const q1 = loads[6], q2 = loads[7];
    for (size_t i = 0; i < z_.size(); i++) {
        double const* u = &unit_[4 * i];
        out[i].z = z_[i];
        out[i].xz = q1 * u[0] + q2 * u[2];
        out[i].yz = q1 * u[1] + q2 * u[3];
    }
}

ShearPoint InterlaminarShear::at(double z, double const loads[8]) const
{
    ShearPoint r = {z, 0.0, 0.0};
    if (layers_.empty() || !(z >= layers_.front().z0 && z <= layers_.back().z1)) return r;
    // The last layer whose lower face is at or below z.
    auto it = std::upper_bound(layers_.begin(), layers_.end(), z,
                               [](double v, Layer const& L) { return v < L.z0; });
    Layer const& L = *(it - 1);
    double u[4];
    for (int i = 0; i < 4; i++) u[i] = value(L.base[i], L.p[i], L.q[i], L.z0, z);
    double const q1 = loads[6], q2 = loads[7];
    r.xz = q1 * u[0] + q2 * u[2];
    r.yz = q1 * u[1] + q2 * u[3];
    return r;
}

}  // namespace laminate::analysis
