#include "laminate/linalg/reavecv.h"
#include "laminate/linalg/reductions.h"

#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <ostream>
#include <istream>

#include "laminate/linalg/matriu.h"
#include "laminate/linalg/reavec.h"
#include "laminate/util/errorwriter.h"

namespace vantrel {

namespace {

// The only place vector storage is obtained.  A negative length has no
// meaningful size, so it becomes a request larger than any allocator can
// grant and the allocator's own failure (std::bad_alloc) ends the operation.
double* allocate(int k)
{
    std::size_t count = k < 0 ? std::numeric_limits<std::size_t>::max()
                              : static_cast<std::size_t>(k);
    return new double[count];
}

// One block move; a zero count never touches the pointers (either may be
// null then).
void copyElements(double* dst, double const* src, int k)
{
    if (k > 0) std::memcpy(dst, src, static_cast<std::size_t>(k) * sizeof(double));
}

[[noreturn]] void negativeSize(int k)
{
    *errorwriter.error_stream << "Can't create a vector of size " << k;
    errorwriter.WriteErrorAndQuit();
}

void checkSameLength(int a, int b)
{
    if (a == b) return;
    *errorwriter.error_stream << "Different lenght vectors " << a << " != " << b;
    errorwriter.WriteErrorAndQuit();
}

void checkOneColumn(int ncols)
{
    if (ncols == 1) return;
    *errorwriter.error_stream << "error: Assigning Vector=Matriu where M(num cols)="
                              << ncols << "\n";
    errorwriter.WriteErrorAndQuit();
}

// Resolves a (start, count) run to 0-based [first, last]; a run that is empty
// or reaches outside the vector is fatal.
void resolveRun(int n, int start, int count, int& first, int& last)
{
    first = start < 0 ? n + start : start - 1;
    if (count == 0) count = n - first;
    last = first + count - 1;
    int bad = 0;
    bool outside = false;
    if (last < first || last >= n) {
        bad = last;
        outside = true;
    } else if (first < 0) {
        // A start of 0, or a negative start reaching before the first
        // element, would address memory in front of the array.
        bad = first;
        outside = true;
    }
    if (!outside) return;
    *errorwriter.error_stream << "Index " << bad << " out of range.";
    errorwriter.WriteErrorAndQuit();
}

}  // namespace

// ---------------------------------------------------------------------------
// Storage

ReaVecV::ReaVecV(int len) : data(nullptr), n(0)
{
    if (len < 0) negativeSize(len);
    data = allocate(len);
    n = len;
}

ReaVecV::ReaVecV(ReaVecV const& v) : data(allocate(v.n)), n(v.n)
{
    copyElements(data, v.data, n);
}

ReaVecV::ReaVecV(ReaVecVT& t) : data(t.data), n(t.n)
{
    t.data = nullptr;
    t.n = 0;
}

ReaVecV::ReaVecV(ReaVecVT&& t) : ReaVecV(t) {}

ReaVecV::ReaVecV(ReaVec const& v) : data(allocate(v.n)), n(v.n)
{
    copyElements(data, v.elements, n);
}

ReaVecV::ReaVecV(Matriu const& m) : data(nullptr), n(0)
{
    checkOneColumn(m.ncols);
    data = allocate(m.nrows);
    n = m.nrows;
    copyElements(data, m.data, n);
}

ReaVecV::ReaVecV(MatriuT& m) : data(nullptr), n(0)
{
    takeOver(m);
}

ReaVecV::ReaVecV(MatriuT&& m) : ReaVecV(m) {}

ReaVecV::~ReaVecV()
{
    delete[] data;
}

void ReaVecV::takeOver(ReaVecV& t)
{
    if (&t == this) return;
    double* old = data;
    n = t.n;
    data = t.data;
    delete[] old;
    t.data = nullptr;
    t.n = 0;
}

void ReaVecV::takeOver(MatriuT& m)
{
    checkOneColumn(m.ncols);
    double* old = data;
    n = m.nrows;
    data = m.data;
    delete[] old;
    m.nrows = 0;
    m.ncols = 0;
    m.size = 0;
    m.data = nullptr;
}

void ReaVecV::assign(double const* src, int len)
{
    if (len != n) {
        double* fresh = allocate(len);
        delete[] data;
        data = fresh;
        n = len;
    }
    copyElements(data, src, len);
}

ReaVecV& ReaVecV::operator=(ReaVecV const& v)
{
    if (&v != this) assign(v.data, v.n);
    return *this;
}

ReaVecV& ReaVecV::operator=(ReaVecVT& t)
{
    takeOver(t);
    return *this;
}

ReaVecV& ReaVecV::operator=(ReaVecVT&& t)
{
    takeOver(t);
    return *this;
}

ReaVecV& ReaVecV::operator=(ReaVec const& v)
{
    assign(v.elements, v.n);
    return *this;
}

ReaVecV& ReaVecV::operator=(Matriu const& m)
{
    checkOneColumn(m.ncols);
    assign(m.data, m.nrows);
    return *this;
}

ReaVecV& ReaVecV::operator=(MatriuT& m)
{
    takeOver(m);
    return *this;
}

ReaVecV& ReaVecV::operator=(MatriuT&& m)
{
    takeOver(m);
    return *this;
}

ReaVecV& ReaVecV::operator=(double v)
{
    if (n == 0) {
        *errorwriter.error_stream << "Can't fill with " << v << " a zero length vector.";
        errorwriter.WriteErrorAndQuit();
    }
    for (int i = 0; i < n; ++i) data[i] = v;
    return *this;
}

void ReaVecV::resize(int len, double v)
{
    if (len == 0) {
        delete[] data;
        data = nullptr;
        n = 0;
        return;
    }
    int old = n;
    if (data == nullptr) {
        data = allocate(len);
        old = 0;
    } else if (len != n) {
        double* fresh = allocate(len);
        copyElements(fresh, data, len < n ? len : n);
        delete[] data;
        data = fresh;
    }
    for (int i = old; i < len; ++i) data[i] = v;
    n = len;
}

// ---------------------------------------------------------------------------
// Whole-vector operations

void ReaVecV::fill(double v, int start, int count)
{
    int first, last;
    resolveRun(n, start, count, first, last);
    for (int i = first; i <= last; ++i) data[i] = v;
}

ReaVecVT ReaVecV::subVec(int start, int count) const
{
    int first, last;
    resolveRun(n, start, count, first, last);
    ReaVecVT r(last - first + 1);
    copyElements(r.data, data + first, r.n);
    return r;
}

int ReaVecV::index(double v) const
{
    for (int i = 0; i < n; ++i)
        if (data[i] == v) return i + 1;
    return 0;
}

ReaVecV& ReaVecV::reverse()
{
    for (int i = 0, j = n - 1; i < j; ++i, --j) {
        double t = data[i];
        data[i] = data[j];
        data[j] = t;
    }
    return *this;
}

double ReaVecV::reduce(double (*f)(double, double), double init) const
{
    double acc = init;
    for (int i = 0; i < n; ++i) acc = f(acc, data[i]);
    return acc;
}

bool ReaVecV::operator==(double v) const
{
    for (int i = 0; i < n; ++i)
        if (data[i] != v) return false;
    return true;
}

void ReaVecV::apply(void (*f)(double)) const
{
    for (int i = 0; i < n; ++i) f(data[i]);
}

void ReaVecV::apply(void (*f)(double), ReaVecV const& a)
{
    for (int i = 0; i < n; ++i) {
        data[i] = a.data[i];
        f(data[i]);
    }
}

void ReaVecV::apply(double (*f)(double)) const
{
    if (n == 0) return;
    for (int i = 0; i + 1 < n; ++i) data[i] = f(data[i + 1]);
    data[n - 1] = f(data[n - 1]);
}

void ReaVecV::apply(double (*f)(double), ReaVecV const& a)
{
    for (int i = 0; i < n; ++i) data[i] = f(a.data[i]);
}

void ReaVecV::apply(double (*f)(double, double), ReaVecV const& a, ReaVecV const& b)
{
    for (int i = 0; i < n; ++i) data[i] = f(a.data[i], b.data[i]);
}

void ReaVecV::apply(double (*f)(double, double, double), ReaVecV const& a,
                    ReaVecV const& b, ReaVecV const& c)
{
    for (int i = 0; i < n; ++i) data[i] = f(a.data[i], b.data[i], c.data[i]);
}

void ReaVecV::apply(double (*f)(double, double, double, double), ReaVecV const& a,
                    ReaVecV const& b, ReaVecV const& c, ReaVecV const& d)
{
    for (int i = 0; i < n; ++i)
        data[i] = f(a.data[i], b.data[i], c.data[i], d.data[i]);
}

void ReaVecV::apply(double (*f)(double, double, double, double, double),
                    ReaVecV const& a, ReaVecV const& b, ReaVecV const& c,
                    ReaVecV const& d, ReaVecV const& e)
{
    for (int i = 0; i < n; ++i)
        data[i] = f(a.data[i], b.data[i], c.data[i], d.data[i], e.data[i]);
}

void ReaVecV::apply(double (*f)(double, double), ReaVecV const& a, double s)
{
    for (int i = 0; i < n; ++i) data[i] = f(a.data[i], s);
}

void ReaVecV::apply(double (*f)(double, double, double), ReaVecV const& a,
                    ReaVecV const& b, double s)
{
    for (int i = 0; i < n; ++i) data[i] = f(a.data[i], b.data[i], s);
}

void ReaVecV::apply(double (*f)(double, double, double, double), ReaVecV const& a,
                    ReaVecV const& b, ReaVecV const& c, double s)
{
    for (int i = 0; i < n; ++i) data[i] = f(a.data[i], b.data[i], c.data[i], s);
}

void ReaVecV::apply(double (*f)(double, double, double, double, double),
                    ReaVecV const& a, ReaVecV const& b, ReaVecV const& c,
                    ReaVecV const& d, double s)
{
    for (int i = 0; i < n; ++i)
        data[i] = f(a.data[i], b.data[i], c.data[i], d.data[i], s);
}

void ReaVecV::apply(double (*f)(double, double, double, double, double, double),
                    ReaVecV const& a, ReaVecV const& b, ReaVecV const& c,
                    ReaVecV const& d, ReaVecV const& e, double s)
{
    for (int i = 0; i < n; ++i)
        data[i] = f(a.data[i], b.data[i], c.data[i], d.data[i], e.data[i], s);
}

void ReaVecV::prod_row_add(int i, int j, double d)
{
    data[j - 1] += d * data[i - 1];
}

bool operator==(ReaVecV const& a, ReaVecV const& b)
{
    if (a.n != b.n) return false;
    for (int i = 0; i < a.n; ++i)
        if (a.data[i] != b.data[i]) return false;
    return true;
}

ReaVecVT operator&(ReaVecV const& a, ReaVecV const& b)
{
    ReaVecVT r(a.n + b.n);
    copyElements(r.data, a.data, a.n);
    copyElements(r.data + a.n, b.data, b.n);
    return r;
}

ReaVecVT merge(ReaVecV const& a, ReaVecV const& b, int (*cmp)(double, double))
{
    ReaVecVT r(a.n + b.n);
    int i = 0, j = 0, k = 0;
    while (i < a.n && j < b.n)
        r.data[k++] = cmp(a.data[i], b.data[j]) <= 0 ? a.data[i++] : b.data[j++];
    while (i < a.n) r.data[k++] = a.data[i++];
    while (j < b.n) r.data[k++] = b.data[j++];
    return r;
}

ReaVecVT reverse(ReaVecV const& a)
{
    ReaVecVT r(a.n);
    for (int i = 0; i < a.n; ++i) r.data[i] = a.data[a.n - 1 - i];
    return r;
}

ReaVecVT map(double (*f)(double), ReaVecV const& a)
{
    ReaVecVT r(a.n);
    for (int i = 0; i < a.n; ++i) r.data[i] = f(a.data[i]);
    return r;
}

ReaVecVT combine(double (*f)(double, double), ReaVecV const& a, ReaVecV const& b)
{
    checkSameLength(a.n, b.n);
    ReaVecVT r(a.n);
    for (int i = 0; i < a.n; ++i) r.data[i] = f(a.data[i], b.data[i]);
    return r;
}

// ---------------------------------------------------------------------------
// Arithmetic

ReaVecVT ReaVecV::operator-() const
{
    ReaVecVT r(n);
    for (int i = 0; i < n; ++i) r.data[i] = -data[i];
    return r;
}

ReaVecV& ReaVecV::operator+=(ReaVecV const& v)
{
    checkSameLength(n, v.n);
    for (int i = 0; i < n; ++i) data[i] += v.data[i];
    return *this;
}

ReaVecV& ReaVecV::operator-=(ReaVecV const& v)
{
    checkSameLength(n, v.n);
    for (int i = 0; i < n; ++i) data[i] -= v.data[i];
    return *this;
}

ReaVecV& ReaVecV::product(ReaVecV const& v)
{
    checkSameLength(n, v.n);
    for (int i = 0; i < n; ++i) data[i] *= v.data[i];
    return *this;
}

ReaVecV& ReaVecV::quotient(ReaVecV const& v)
{
    checkSameLength(n, v.n);
    for (int i = 0; i < n; ++i) data[i] /= v.data[i];
    return *this;
}

ReaVecV& ReaVecV::operator+=(double s)
{
    for (int i = 0; i < n; ++i) data[i] += s;
    return *this;
}

ReaVecV& ReaVecV::operator-=(double s)
{
    for (int i = 0; i < n; ++i) data[i] -= s;
    return *this;
}

ReaVecV& ReaVecV::operator*=(double s)
{
    for (int i = 0; i < n; ++i) data[i] *= s;
    return *this;
}

ReaVecV& ReaVecV::product(double s)
{
    return *this *= s;
}

ReaVecV& ReaVecV::operator/=(double s)
{
    if (s == 0.0) {
        *errorwriter.error_stream << "Division by zero.";
        errorwriter.WriteErrorAndQuit();
    }
    for (int i = 0; i < n; ++i) data[i] /= s;
    return *this;
}

ReaVecV& ReaVecV::quotient(double s)
{
    return *this /= s;
}

ReaVecVT operator+(ReaVecV const& a, ReaVecV const& b)
{
    checkSameLength(a.n, b.n);
    ReaVecVT r(a.n);
    for (int i = 0; i < a.n; ++i) r.data[i] = a.data[i] + b.data[i];
    return r;
}

ReaVecVT operator-(ReaVecV const& a, ReaVecV const& b)
{
    checkSameLength(a.n, b.n);
    ReaVecVT r(a.n);
    for (int i = 0; i < a.n; ++i) r.data[i] = a.data[i] - b.data[i];
    return r;
}

ReaVecVT product(ReaVecV const& a, ReaVecV const& b)
{
    checkSameLength(a.n, b.n);
    ReaVecVT r(a.n);
    for (int i = 0; i < a.n; ++i) r.data[i] = a.data[i] * b.data[i];
    return r;
}

ReaVecVT quotient(ReaVecV const& a, ReaVecV const& b)
{
    checkSameLength(a.n, b.n);
    ReaVecVT r(a.n);
    for (int i = 0; i < a.n; ++i) r.data[i] = a.data[i] / b.data[i];
    return r;
}

ReaVecVT operator+(ReaVecV const& a, double s)
{
    ReaVecVT r(a.n);
    for (int i = 0; i < a.n; ++i) r.data[i] = a.data[i] + s;
    return r;
}

ReaVecVT operator-(ReaVecV const& a, double s)
{
    ReaVecVT r(a.n);
    for (int i = 0; i < a.n; ++i) r.data[i] = a.data[i] - s;
    return r;
}

ReaVecVT operator*(ReaVecV const& a, double s)
{
    ReaVecVT r(a.n);
    for (int i = 0; i < a.n; ++i) r.data[i] = a.data[i] * s;
    return r;
}

ReaVecVT operator/(ReaVecV const& a, double s)
{
    ReaVecVT r(a.n);
    for (int i = 0; i < a.n; ++i) r.data[i] = a.data[i] / s;
    return r;
}

// ---------------------------------------------------------------------------
// Reductions and products

double ReaVecV::max_val() const { return reduce::maxVal(data, n); }
int ReaVecV::max_index() const { return reduce::maxIndex(data, n); }
double ReaVecV::min_val() const { return reduce::minVal(data, n); }
int ReaVecV::min_index() const { return reduce::minIndex(data, n); }
double ReaVecV::sum() const { return reduce::sum(data, n); }
double ReaVecV::sumsq() const { return reduce::sumsq(data, n); }

double ReaVecV::norm() const
{
    return std::sqrt(sumsq());
}

double ReaVecV::modul() const
{
    return std::sqrt(sumsq());
}

double dot(ReaVecV const& a, ReaVecV const& b)
{
    double s = 0.0;
    for (int i = 0; i < a.n; ++i) s += a.data[i] * b.data[i];
    return s;
}

double operator*(ReaVecV const& a, ReaVecV const& b)
{
    checkSameLength(a.n, b.n);
    return dot(a, b);
}

namespace {

// Row i (0-based) of M times v.
double rowTimes(Matriu const& M, int i, double const* v)
{
    double const* row = M.data + static_cast<std::ptrdiff_t>(i) * M.ncols;
    double s = 0.0;
    for (int j = 0; j < M.ncols; ++j) s += row[j] * v[j];
    return s;
}

// out[j] += sign * (M^T v)[j], walking M row by row.
void addTransposed(Matriu const& M, double const* v, double* out, double sign)
{
    for (int i = 0; i < M.nrows; ++i) {
        double const* row = M.data + static_cast<std::ptrdiff_t>(i) * M.ncols;
        double f = sign * v[i];
        for (int j = 0; j < M.ncols; ++j) out[j] += row[j] * f;
    }
}

}  // namespace

void ReaVecV::product(Matriu const& M, ReaVecV const& v)
{
    for (int i = 0; i < M.nrows; ++i) data[i] = rowTimes(M, i, v.data);
}

void ReaVecV::add_product(Matriu const& M, ReaVecV const& v)
{
    for (int i = 0; i < M.nrows; ++i) data[i] += rowTimes(M, i, v.data);
}

void ReaVecV::sub_product(Matriu const& M, ReaVecV const& v)
{
    for (int i = 0; i < M.nrows; ++i) data[i] -= rowTimes(M, i, v.data);
}

void ReaVecV::add_tproduct(Matriu const& M, ReaVecV const& v)
{
    addTransposed(M, v.data, data, 1.0);
}

void ReaVecV::sub_tproduct(Matriu const& M, ReaVecV const& v)
{
    addTransposed(M, v.data, data, -1.0);
}

// ---------------------------------------------------------------------------
// The temporary

ReaVecVT::ReaVecVT(int len)
{
    if (len < 0) negativeSize(len);
    data = allocate(len);
    n = len;
}

ReaVecVT::ReaVecVT(ReaVecV const& v) : ReaVecV()
{
    assign(v.data, v.n);
}

ReaVecVT::ReaVecVT(ReaVecVT& t) : ReaVecV()
{
    takeOver(t);
}

ReaVecVT::ReaVecVT(ReaVecVT&& t) : ReaVecV()
{
    takeOver(t);
}

ReaVecVT& ReaVecVT::operator=(ReaVecV const& v)
{
    ReaVecV::operator=(v);
    return *this;
}

ReaVecVT& ReaVecVT::operator=(ReaVecVT& t)
{
    takeOver(t);
    return *this;
}

ReaVecVT& ReaVecVT::operator=(ReaVecVT&& t)
{
    takeOver(t);
    return *this;
}

ReaVecVT& ReaVecVT::operator=(Matriu const& m)
{
    ReaVecV::operator=(m);
    return *this;
}

ReaVecVT& ReaVecVT::operator=(MatriuT& m)
{
    takeOver(m);
    return *this;
}

ReaVecVT& ReaVecVT::operator=(MatriuT&& m)
{
    takeOver(m);
    return *this;
}

ReaVecVT& ReaVecVT::operator=(double v)
{
    ReaVecV::operator=(v);
    return *this;
}

ReaVecVT& ReaVecVT::operator-()
{
    for (int i = 0; i < n; ++i) data[i] = -data[i];
    return *this;
}

ReaVecVT& ReaVecVT::operator+=(ReaVecV const& v)
{
    ReaVecV::operator+=(v);
    return *this;
}

ReaVecVT& ReaVecVT::operator-=(ReaVecV const& v)
{
    ReaVecV::operator-=(v);
    return *this;
}

// ---------------------------------------------------------------------------
// Streams

std::ostream& operator<<(std::ostream& os, ReaVecV const& v)
{
    if (v.n == 0) {
        os << "\n\t(Zero size vector)\n";
        return os;
    }
    os.setf(std::ios::scientific, std::ios::floatfield);
    int w = static_cast<int>(os.precision() + os.width() + 7);
    // The caller's width only widens the value field; the index text is
    // written as it is.
    os.width(0);
    std::ios::fmtflags adjust = os.flags() & std::ios::adjustfield;
    os.setf(std::ios::right, std::ios::adjustfield);
    os.put('\n');
    os.flush();
    for (int i = 0; i < v.n; ++i) {
        os << "  " << i + 1 << "  ";
        os.width(w);
        os << v.data[i];
        os.put('\n');
        os.flush();
    }
    os.setf(adjust, std::ios::adjustfield);
    return os;
}

std::istream& operator>>(std::istream& is, ReaVecV& v)
{
    if (v.n == 0) {
        *errorwriter.error_stream << "\t(Zero size vector)\n";
        errorwriter.WriteErrorAndQuit();
    }
    for (int i = 0; i < v.n; ++i) is >> v.data[i];
    return is;
}

}  // namespace vantrel
