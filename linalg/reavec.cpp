#include "laminate/linalg/reavec.h"
#include "laminate/linalg/reductions.h"

#include <cmath>
#include <istream>
#include <ostream>

#include "laminate/linalg/matriu.h"
#include "laminate/linalg/reavecv.h"
#include "laminate/util/errorwriter.h"

namespace vantrel {

// ---------------------------------------------------------------------------
// Storage

void ReaVec::copyFrom(double const* src, int len)
{
    n = len;
    for (int i = 0; i < len; ++i) elements[i] = src[i];
}

ReaVec::ReaVec(ReaVec const& v)
{
    copyFrom(v.elements, v.n);
}

ReaVec::ReaVec(Matriu const& m)
{
    copyFrom(m.data, m.nrows);
}

ReaVec::ReaVec(MatriuT const& m)
{
    copyFrom(m.data, m.nrows);
}

ReaVec& ReaVec::operator=(ReaVec const& v)
{
    if (&v != this) copyFrom(v.elements, v.n);
    return *this;
}

ReaVec& ReaVec::operator=(Matriu const& m)
{
    copyFrom(m.data, m.nrows);
    return *this;
}

ReaVec& ReaVec::operator=(MatriuT const& m)
{
    copyFrom(m.data, m.nrows);
    return *this;
}

ReaVec& ReaVec::operator=(double v)
{
    for (int i = 0; i < n; ++i) elements[i] = v;
    return *this;
}

void ReaVec::resize(int len, double v)
{
    for (int i = n; i < len; ++i) elements[i] = v;
    n = len;
}

// ---------------------------------------------------------------------------
// Whole-vector operations

namespace {

// The run addressing of ReaVecV, without its range check.
void resolveRun(int n, int start, int& count, int& first)
{
    first = start < 0 ? n + start : start - 1;
    if (count == 0) count = n - first;
}

}  // namespace

void ReaVec::fill(double v, int start, int count)
{
    int first;
    resolveRun(n, start, count, first);
    for (int i = first; i < first + count; ++i) elements[i] = v;
}

ReaVec ReaVec::subVec(int start, int count) const
{
    int first;
    resolveRun(n, start, count, first);
    ReaVec r(count);
    for (int i = 0; i < count; ++i) r.elements[i] = elements[first + i];
    return r;
}

int ReaVec::index(double v) const
{
    for (int i = 0; i < n; ++i)
        if (elements[i] == v) return i + 1;
    return 0;
}

ReaVec& ReaVec::reverse()
{
    for (int i = 0, j = n - 1; i < j; ++i, --j) {
        double t = elements[i];
        elements[i] = elements[j];
        elements[j] = t;
    }
    return *this;
}

double ReaVec::reduce(double (*f)(double, double), double init) const
{
    double acc = init;
    for (int i = 0; i < n; ++i) acc = f(acc, elements[i]);
    return acc;
}

void ReaVec::apply(void (*f)(double)) const
{
    for (int i = 0; i < n; ++i) f(elements[i]);
}

bool ReaVec::operator==(double v) const
{
    for (int i = 0; i < n; ++i)
        if (elements[i] != v) return false;
    return true;
}

bool operator==(ReaVec const& a, ReaVec const& b)
{
    if (a.n != b.n) return false;
    for (int i = 0; i < a.n; ++i)
        if (a.elements[i] != b.elements[i]) return false;
    return true;
}

ReaVec operator&(ReaVec const& a, ReaVec const& b)
{
    ReaVec r(a.n + b.n);
    for (int i = 0; i < a.n; ++i) r.elements[i] = a.elements[i];
    for (int i = 0; i < b.n; ++i) r.elements[a.n + i] = b.elements[i];
    return r;
}

ReaVec merge(ReaVec const& a, ReaVec const& b, int (*cmp)(double, double))
{
    ReaVec r(a.n + b.n);
    int i = 0, j = 0, k = 0;
    while (i < a.n && j < b.n)
        r.elements[k++] = cmp(a.elements[i], b.elements[j]) <= 0 ? a.elements[i++]
                                                                  : b.elements[j++];
    while (i < a.n) r.elements[k++] = a.elements[i++];
    while (j < b.n) r.elements[k++] = b.elements[j++];
    return r;
}

ReaVec reverse(ReaVec const& a)
{
    ReaVec r(a.n);
    for (int i = 0; i < a.n; ++i) r.elements[i] = a.elements[a.n - 1 - i];
    return r;
}

ReaVec map(double (*f)(double), ReaVec const& a)
{
    ReaVec r(a.n);
    for (int i = 0; i < a.n; ++i) r.elements[i] = f(a.elements[i]);
    return r;
}

ReaVec combine(double (*f)(double, double), ReaVec const& a, ReaVec const& b)
{
    ReaVec r(a.n);
    for (int i = 0; i < a.n; ++i) r.elements[i] = f(a.elements[i], b.elements[i]);
    return r;
}

// ---------------------------------------------------------------------------
// Arithmetic

ReaVec ReaVec::operator-() const
{
    ReaVec r(n);
    for (int i = 0; i < n; ++i) r.elements[i] = -elements[i];
    return r;
}

ReaVec& ReaVec::operator+=(ReaVec const& v)
{
    for (int i = 0; i < n; ++i) elements[i] += v.elements[i];
    return *this;
}

ReaVec& ReaVec::operator-=(ReaVec const& v)
{
    for (int i = 0; i < n; ++i) elements[i] -= v.elements[i];
    return *this;
}

ReaVec& ReaVec::add(ReaVec const& v)
{
    return *this += v;
}

ReaVec& ReaVec::product(ReaVec const& v)
{
    for (int i = 0; i < n; ++i) elements[i] *= v.elements[i];
    return *this;
}

ReaVec& ReaVec::quotient(ReaVec const& v)
{
    for (int i = 0; i < n; ++i) elements[i] /= v.elements[i];
    return *this;
}

ReaVec& ReaVec::operator+=(double s)
{
    for (int i = 0; i < n; ++i) elements[i] += s;
    return *this;
}

ReaVec& ReaVec::operator-=(double s)
{
    for (int i = 0; i < n; ++i) elements[i] -= s;
    return *this;
}

ReaVec& ReaVec::operator*=(double s)
{
    for (int i = 0; i < n; ++i) elements[i] *= s;
    return *this;
}

ReaVec& ReaVec::operator/=(double s)
{
    for (int i = 0; i < n; ++i) elements[i] /= s;
    return *this;
}

ReaVec& ReaVec::product(double s)
{
    return *this *= s;
}

ReaVec& ReaVec::quotient(double s)
{
    return *this /= s;
}

ReaVec operator+(ReaVec const& a, ReaVec const& b)
{
    ReaVec r(a);
    return r += b;
}

ReaVec operator-(ReaVec const& a, ReaVec const& b)
{
    ReaVec r(a);
    return r -= b;
}

ReaVec add(ReaVec const& a, ReaVec const& b)
{
    return a + b;
}

ReaVec product(ReaVec const& a, ReaVec const& b)
{
    ReaVec r(a);
    return r.product(b);
}

ReaVec quotient(ReaVec const& a, ReaVec const& b)
{
    ReaVec r(a);
    return r.quotient(b);
}

ReaVec operator+(ReaVec const& a, double s)
{
    ReaVec r(a);
    return r += s;
}

ReaVec operator-(ReaVec const& a, double s)
{
    ReaVec r(a);
    return r -= s;
}

ReaVec operator*(ReaVec const& a, double s)
{
    ReaVec r(a);
    return r *= s;
}

ReaVec operator/(ReaVec const& a, double s)
{
    ReaVec r(a);
    return r /= s;
}

// ---------------------------------------------------------------------------
// Reductions and products

double ReaVec::max_val() const { return reduce::maxVal(elements, n); }
int ReaVec::max_index() const { return reduce::maxIndex(elements, n); }
double ReaVec::min_val() const { return reduce::minVal(elements, n); }
int ReaVec::min_index() const { return reduce::minIndex(elements, n); }
double ReaVec::sum() const { return reduce::sum(elements, n); }
double ReaVec::sumsq() const { return reduce::sumsq(elements, n); }

double ReaVec::modul() const
{
    return std::sqrt(sumsq());
}

double operator*(ReaVec const& a, ReaVec const& b)
{
    double s = 0.0;
    for (int i = 0; i < a.n; ++i) s += a.elements[i] * b.elements[i];
    return s;
}

// The matrix products work on a copy of v (three doubles, no allocation), so
// that a point can be transformed in place: p.product(R, p).
namespace {

double rowTimes(Matriu const& M, int i, ReaVec const& v)
{
    double s = 0.0;
    for (int j = 1; j <= M.ncols; ++j) s += M(i, j) * v.elements[j - 1];
    return s;
}

void addTransposed(Matriu const& M, ReaVec const& v, double* out, double sign)
{
    for (int i = 1; i <= M.nrows; ++i)
        for (int j = 1; j <= M.ncols; ++j)
            out[j - 1] += sign * (M(i, j) * v.elements[i - 1]);
}

}  // namespace

void ReaVec::product(Matriu const& M, ReaVec const& v)
{
    ReaVec x(v);
    for (int i = 1; i <= M.nrows; ++i) elements[i - 1] = rowTimes(M, i, x);
}

void ReaVec::add_product(Matriu const& M, ReaVec const& v)
{
    ReaVec x(v);
    for (int i = 1; i <= M.nrows; ++i) elements[i - 1] += rowTimes(M, i, x);
}

void ReaVec::sub_product(Matriu const& M, ReaVec const& v)
{
    ReaVec x(v);
    for (int i = 1; i <= M.nrows; ++i) elements[i - 1] -= rowTimes(M, i, x);
}

void ReaVec::tproduct(Matriu const& M, ReaVec const& v)
{
    ReaVec x(v);
    for (int j = 0; j < M.ncols; ++j) elements[j] = 0.0;
    addTransposed(M, x, elements, 1.0);
}

void ReaVec::add_tproduct(Matriu const& M, ReaVec const& v)
{
    ReaVec x(v);
    addTransposed(M, x, elements, 1.0);
}

void ReaVec::sub_tproduct(Matriu const& M, ReaVec const& v)
{
    ReaVec x(v);
    addTransposed(M, x, elements, -1.0);
}

// ---------------------------------------------------------------------------
// Geometry

namespace {

// Cross product of (a0, a1, a2) and (b0, b1, b2).
void cross(double const* a, double const* b, double* r)
{
    r[0] = a[1] * b[2] - b[1] * a[2];
    r[1] = a[2] * b[0] - b[2] * a[0];
    r[2] = a[0] * b[1] - b[0] * a[1];
}

// A plane vector (exactly 2 elements) lies at z = 0.
void asSpatial(double const* src, int len, double* out)
{
    out[0] = src[0];
    out[1] = src[1];
    out[2] = len == 2 ? 0.0 : src[2];
}

}  // namespace

ReaVec VectorProd(ReaVec const& a, ReaVec const& b)
{
    double a3[3], b3[3];
    asSpatial(a.elements, a.n, a3);
    asSpatial(b.elements, b.n, b3);
    ReaVec r(3);
    cross(a3, b3, r.elements);
    return r;
}

ReaVecVT VectorProd(ReaVecV const& a, ReaVecV const& b)
{
    if (a.n < 2 || a.n > 3 || b.n < 2 || b.n > 3) {
        *errorwriter.error_stream << "VectorProd can only be made in 2D or 3D\n";
        errorwriter.WriteErrorAndQuit();
    }
    double a3[3], b3[3];
    asSpatial(a.data, a.n, a3);
    asSpatial(b.data, b.n, b3);
    ReaVecVT r(3);
    cross(a3, b3, r.data);
    return r;
}

ReaVec ProjectionPlane(ReaVec const& v, int axis)
{
    ReaVec e(3);
    e = 0.0;
    e[axis - 1] = 1.0;
    return VectorProd(VectorProd(e, v), e);
}

ReaVec ProjectionPlane(ReaVec const& v, ReaVec const& normal)
{
    return VectorProd(VectorProd(normal, v), normal);
}

double ProjectionAxis(ReaVec const& a, ReaVec const& b)
{
    return (a * b) / b.modul();
}

double Cos_Angle(ReaVec const& a, ReaVec const& b)
{
    double c = (a * b) / (a.modul() * b.modul());
    // Rounding can carry parallel vectors just past +-1; a zero operand gives
    // NaN, which fails both comparisons and is reported as 1.
    if (c <= 1.0 && c >= -1.0) return c;
    return c < -1.0 ? -1.0 : 1.0;
}

double distance2(ReaVec const& a, ReaVec const& b)
{
    double s = 0.0;
    for (int i = 0; i < a.n; ++i) {
        double d = a.elements[i] - b.elements[i];
        s += d * d;
    }
    return s;
}

double scalarproduct(ReaVec const& a, ReaVec const& b)
{
    return a * b;
}

// ---------------------------------------------------------------------------
// Streams

std::ostream& operator<<(std::ostream& os, ReaVec const& v)
{
    if (v.n == 0) {
        os << "\n\t(Zero size vector)\n";
        return os;
    }
    os.setf(std::ios::scientific, std::ios::floatfield);
    int w = static_cast<int>(os.precision() + os.width() + 7);
    os.width(0);
    std::ios::fmtflags adjust = os.flags() & std::ios::adjustfield;
    os.setf(std::ios::right, std::ios::adjustfield);
    for (int i = 0; i < v.n; ++i) {
        os << "  ";
        os.width(w);
        os << v.elements[i];
    }
    os.setf(adjust, std::ios::adjustfield);
    os.flush();
    return os;
}

std::istream& operator>>(std::istream& is, ReaVec& v)
{
    for (int i = 0; i < v.n; ++i) is >> v.elements[i];
    return is;
}

}  // namespace vantrel
