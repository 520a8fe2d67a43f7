// Builds material records and defined laminates for the laminate tests.
#ifndef LAMINATE_TESTS_LAMINATE_LAMINA_BUILD_H
#define LAMINATE_TESTS_LAMINATE_LAMINA_BUILD_H

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "laminate/laminate/lamina1.h"

namespace lamtest {

// One layer of a record; defaults are a plausible carbon/epoxy-like ply.
struct Ply {
    double E1 = 100.0, E2 = 10.0, nu12 = 0.3, G12 = 5.0, G13 = 4.0, G23 = 3.0;
    double strength[8] = {1, 2, 3, 4, 5, 6, 7, 0.5};
    double angle = 0.0, t = 0.2, sw = 1.5;
    int flag = 1;
};

inline Ply ply(double angle, double t = 0.2)
{
    Ply p;
    p.angle = angle;
    p.t = t;
    return p;
}

// 0 degrees, zero Poisson ratio, power-of-two moduli: sigma = N / t exactly
// under membrane loads, N -/+ 6 M at the top/bottom face for t = 1, and
// transverse shear stresses -2.4 Q / t.  Xc 1024, Yc 256, Xt 2048, Yt 64,
// S12 64, then the two fields f6 and f7.
inline Ply clean(double t = 1.0, double f6 = 64, double f7 = 32)
{
    Ply p;
    p.E1 = 131072, p.E2 = 8192, p.nu12 = 0, p.G12 = 4096, p.G13 = p.G23 = 2048, p.t = t;
    double const s[8] = {1024, 256, 2048, 64, 64, f6, f7, 0};
    for (int i = 0; i < 8; i++) p.strength[i] = s[i];
    return p;
}

// The record text: count, then 18 fields per layer.
inline std::string record(std::vector<Ply> const& plies)
{
    std::ostringstream os;
    os.precision(17);
    os << plies.size();
    for (Ply const& p : plies) {
        os << "\n " << p.E1 << ' ' << p.E2 << ' ' << p.nu12 << ' ' << p.G12
           << ' ' << p.G13 << ' ' << p.G23;
        for (double s : p.strength) os << ' ' << s;
        os << ' ' << p.angle << ' ' << p.t << ' ' << p.sw << ' ' << p.flag;
    }
    return os.str();
}

inline int parse(lamina1& lam, std::string text, double force = 1.0,
                 double length = 1.0)
{
    return lam.LeerCampoMater(&text[0], force, length, 1.0);
}

// Parses and computes the stiffness in the order a material definition does.
inline void define(lamina1& lam, std::vector<Ply> const& plies)
{
    ASSERT_EQ(parse(lam, record(plies)), 0);
    lam.calcDefinition();
}

struct Lam : lamina1 {
    explicit Lam(std::vector<Ply> const& plies) { define(*this, plies); }
};

// |a - b| <= tol * max(|a|, |b|, scale): relative, with an absolute floor
// for values that should vanish.
inline ::testing::AssertionResult near(double a, double b, double tol = 1e-12,
                                       double scale = 1.0)
{
    double const ref = std::fmax(std::fmax(std::fabs(a), std::fabs(b)), scale);
    if (std::fabs(a - b) <= tol * ref) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << a << " differs from " << b << " (tolerance " << tol * ref << ")";
}

// N1, N2, N12, M1, M2, M12, Q1, Q2; missing trailing entries are 0.
inline vantrel::ReaVecV loads(std::vector<double> const& given)
{
    vantrel::ReaVecV v(8);
    for (int i = 0; i < 8; i++) v[i] = i < static_cast<int>(given.size()) ? given[i] : 0.0;
    return v;
}

}  // namespace lamtest

#endif
