// Interlaminar shear by equilibrium: the parabola of a homogeneous plate,
// the beam formula of laminates that bend as beams (with and without
// coupling), and the identities every laminate must satisfy.
#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "laminate/analysis/interlaminar_shear.h"
#include "laminate/lamina_build.h"

using laminate::analysis::InterlaminarShear;
using laminate::analysis::LaminateAnalysis;
using laminate::analysis::ShearPoint;
using lamtest::near;

namespace {

// The integrals of both stresses over the thickness.  The profile holds each
// layer's faces and middle and the stresses are quadratic within a layer, so
// Simpson's rule on each layer is the exact integral.
void resultants(std::vector<ShearPoint> const& pts, double& xz, double& yz)
{
    xz = yz = 0;
    for (size_t i = 0; i + 2 < pts.size(); i += 2) {
        double const w = (pts[i + 2].z - pts[i].z) / 6;
        xz += w * (pts[i].xz + 4 * pts[i + 1].xz + pts[i + 2].xz);
        yz += w * (pts[i].yz + 4 * pts[i + 1].yz + pts[i + 2].yz);
    }
}

std::vector<ShearPoint> profile(lamtest::Lam& lam, double const loads[8])
{
    std::vector<ShearPoint> pts;
    InterlaminarShear(LaminateAnalysis(lam)).profile(loads, pts);
    return pts;
}

}  // namespace

TEST(InterlaminarShear, HomogeneousPlateGivesTheParabola)
{
    // Five equal 0 degree plies, h = 1: tau = 1.5 Q (1 - 4 z^2), zero at the
    // faces, peak 1.5 Q at the mid-plane, integral Q.  N and M change nothing.
    lamtest::Lam lam(std::vector<lamtest::Ply>(5, lamtest::ply(0, 0.2)));
    for (int q : {0, 1}) {
        double loads[8] = {300, -50, 20, 4, -3, 1, 0, 0};
        double const Q = loads[6 + q] = q == 0 ? 6.0 : -5.0;
        std::vector<ShearPoint> const pts = profile(lam, loads);
        ASSERT_EQ(pts.size(), 11u);
        for (int i = 0; i < 11; i++) {
            double const z = pts[i].z;
            double const along = q == 0 ? pts[i].xz : pts[i].yz;
            EXPECT_TRUE(near(z, -0.5 + 0.1 * i, 1e-12)) << i;
            EXPECT_TRUE(near(along, 1.5 * Q * (1 - 4 * z * z), 1e-12, std::fabs(Q))) << i;
            EXPECT_NEAR(q == 0 ? pts[i].yz : pts[i].xz, 0.0, 1e-12) << i;
        }
        EXPECT_TRUE(near(q == 0 ? pts[5].xz : pts[5].yz, 1.5 * Q, 1e-12));
        double xz, yz;
        resultants(pts, xz, yz);
        EXPECT_TRUE(near(q == 0 ? xz : yz, Q, 1e-9));
    }
}

TEST(InterlaminarShear, LaminatesThatBendAsBeamsGiveTheBeamFormula)
{
    // 0 degree plies without Poisson coupling bend along x as a beam of
    // modulus E1(z): tau_xz(z) = -Q1 / EI * integral from the lowest face of
    // E1 (z' - zn), zn the modulus-weighted neutral axis, EI the bending
    // stiffness about it.  Symmetric: zn = 0; unsymmetric: zn != 0, which
    // only the coupling stiffness B brings in.
    lamtest::Ply soft = lamtest::ply(0, 0.3), stiff = lamtest::ply(0, 0.15);
    soft.nu12 = stiff.nu12 = 0, soft.E1 = 10000, stiff.E1 = 180000;
    for (auto const& stack : {std::vector<lamtest::Ply>{stiff, soft, stiff}, {stiff, soft}}) {
        lamtest::Lam lam(stack);
        double const loads[8] = {0, 0, 0, 0, 0, 0, 7, 0};
        std::vector<ShearPoint> const pts = profile(lam, loads);
        ASSERT_EQ(pts.size(), 2 * stack.size() + 1);
        std::vector<double> z = {0};  // the faces, from the thicknesses alone
        for (lamtest::Ply const& p : stack) z.push_back(z.back() + p.t);
        for (double& v : z) v -= z.back() / 2;
        double EA = 0, S = 0, EI = 0;
        for (size_t k = 0; k < stack.size(); k++) {
            double const E = stack[k].E1, a = z[k], b = z[k + 1];
            EA += E * (b - a), S += E * (b * b - a * a) / 2, EI += E * (b * b * b - a * a * a) / 3;
        }
        double const zn = S / EA;
        EI -= EA * zn * zn;
        EXPECT_EQ(zn == 0.0, stack.size() == 3);
        for (size_t i = 0; i < pts.size(); i++) {
            double moment = 0;  // integral of E (z' - zn) up to the point
            for (size_t k = 0; k < stack.size() && z[k] < pts[i].z; k++) {
                double const a = z[k], b = std::fmin(z[k + 1], pts[i].z);
                moment += stack[k].E1 * ((b * b - a * a) / 2 - zn * (b - a));
            }
            EXPECT_TRUE(near(pts[i].xz, -7 * moment / EI, 1e-10, 10)) << i;
            EXPECT_NEAR(pts[i].yz, 0.0, 1e-12) << i;
        }
    }
}

TEST(InterlaminarShear, AnyLaminateIsContinuousClosesAndCarriesQ)
{
    // Random materials, angles and thicknesses, unsymmetric: the stresses
    // agree from both sides of every interface, vanish at both faces and
    // integrate to Q1 and Q2.
    std::mt19937 gen(22);
    std::uniform_real_distribution<double> u(0.0, 1.0);
    for (int m = 0; m < 60; m++) {
        std::vector<lamtest::Ply> stack(2 + static_cast<int>(u(gen) * 11));
        for (lamtest::Ply& p : stack) {
            p.E1 = 40000 + 160000 * u(gen), p.E2 = 5000 + 10000 * u(gen);
            p.nu12 = 0.2 + 0.15 * u(gen), p.G12 = 3000 + 3000 * u(gen);
            p.angle = -90 + 180 * u(gen), p.t = 0.05 + 0.5 * u(gen);
        }
        lamtest::Lam lam(stack);
        LaminateAnalysis an(lam);
        InterlaminarShear const shear(an);
        ASSERT_EQ(shear.status(), InterlaminarShear::Ok);
        double loads[8];
        for (double& v : loads) v = -10 + 20 * u(gen);
        std::vector<ShearPoint> pts;
        shear.profile(loads, pts);
        int const n = an.layers();
        ASSERT_EQ(static_cast<int>(pts.size()), 2 * n + 1);
        double const Q = std::hypot(loads[6], loads[7]), scale = Q / an.thickness();

        EXPECT_EQ(pts.front().xz, 0.0);
        EXPECT_EQ(pts.front().yz, 0.0);
        EXPECT_NEAR(pts.back().xz, 0.0, 1e-12 * scale) << m;
        EXPECT_NEAR(pts.back().yz, 0.0, 1e-12 * scale) << m;
        double xz, yz;
        resultants(pts, xz, yz);
        EXPECT_TRUE(near(xz, loads[6], 1e-9, Q)) << m;
        EXPECT_TRUE(near(yz, loads[7], 1e-9, Q)) << m;
        for (int k = 1; k <= n; k++) {
            ShearPoint const& face = pts[2 * k - 2];
            EXPECT_EQ(face.z, an.zLow(k));
            EXPECT_TRUE(near(pts[2 * k - 1].z, 0.5 * (an.zLow(k) + an.zHigh(k)), 1e-14, 1));
            // Just below and just above the face, from both layers' polynomials.
            double const dz = 1e-9 * an.thickness();
            ShearPoint const below = shear.at(face.z - dz, loads), above = shear.at(face.z + dz, loads);
            EXPECT_TRUE(near(below.xz, face.xz, 1e-7, scale)) << m << " layer " << k;
            EXPECT_TRUE(near(below.yz, face.yz, 1e-7, scale)) << m << " layer " << k;
            EXPECT_TRUE(near(above.xz, face.xz, 1e-7, scale)) << m << " layer " << k;
            EXPECT_TRUE(near(above.yz, face.yz, 1e-7, scale)) << m << " layer " << k;
        }
    }
}

TEST(InterlaminarShear, UnpreparedGivesNothingAndOutsideIsZero)
{
    double const loads[8] = {0, 0, 0, 0, 0, 0, 5, 5};
    std::vector<ShearPoint> pts(3);
    InterlaminarShear none;
    EXPECT_EQ(none.status(), InterlaminarShear::NotPrepared);
    none.profile(loads, pts);
    EXPECT_TRUE(pts.empty());
    EXPECT_EQ(none.at(0.0, loads).xz, 0.0);

    lamtest::Lam lam({lamtest::ply(0, 0.125)});
    InterlaminarShear const one{LaminateAnalysis(lam)};
    EXPECT_TRUE(near(one.at(0.0, loads).xz, 1.5 * 5 / 0.125, 1e-12));
    for (double z : {-0.07, 0.07, std::nan("")}) {
        EXPECT_EQ(one.at(z, loads).xz, 0.0);
        EXPECT_EQ(one.at(z, loads).yz, 0.0);
    }
}
