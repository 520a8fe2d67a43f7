// Builds material records and defined laminates for the laminate tests.
#ifndef LAMINATE_TESTS_LAMINATE_LAMINA_BUILD_H
#define LAMINATE_TESTS_LAMINATE_LAMINA_BUILD_H

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "laminate/lamina1.h"

namespace lamtest {

// One layer of a record; defaults are a plausible carbon/epoxy-like ply.
struct Ply {
    double E1 = 100.0, E2 = 10.0, nu12 = 0.3, G12 = 5.0, G13 = 4.0, G23 = 3.0;
    double strength[8] = {1, 2, 3, 4, 5, 6, 7, 0.5};
    double angle = 0.0;
    double t = 0.2;
    double sw = 1.5;
    int flag = 1;
};

inline Ply ply(double angle, double t = 0.2)
{
    Ply p;
    p.angle = angle;
    p.t = t;
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
        for (double s : p.strength) {
            os << ' ' << s;
        }
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
    lam.calcNu21();
    lam.calcQI();
    lam.calcA();
    lam.calcB();
    lam.calcD();
    lam.calcH();
}

// |a - b| <= tol * max(|a|, |b|, scale): relative, with an absolute floor
// for values that should vanish.
inline ::testing::AssertionResult near(double a, double b, double tol = 1e-12,
                                       double scale = 1.0)
{
    double const ref = std::fmax(std::fmax(std::fabs(a), std::fabs(b)), scale);
    if (std::fabs(a - b) <= tol * ref) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << a << " differs from " << b << " (tolerance " << tol * ref << ")";
}

// The in-plane stiffness of a 0 degree ply, written from the ply constants.
struct OnAxis {
    double Q11, Q12, Q22, Q66;
    explicit OnAxis(Ply const& p)
    {
        double const nu21 = p.nu12 * p.E2 / p.E1;
        double const d = 1.0 - p.nu12 * nu21;
        Q11 = p.E1 / d;
        Q12 = p.nu12 * p.E2 / d;
        Q22 = p.E2 / d;
        Q66 = p.G12;
    }
};

inline vantrel::ReaVecV loads(double N1, double N2, double N12, double M1,
                              double M2, double M12, double Q1, double Q2)
{
    vantrel::ReaVecV v(8);
    double const all[8] = {N1, N2, N12, M1, M2, M12, Q1, Q2};
    for (int i = 0; i < 8; i++) {
        v[i] = all[i];
    }
    return v;
}

}  // namespace lamtest

#endif
