// Inverse, determinant, reductions and the linear solvers of Matriu.
//
// The inverse has no tolerance anywhere: only an exactly zero determinant or
// pivot is singular.  Its order of operations is fixed, because the laminate
// stiffness inverses are compared bit for bit with stored results.
#include "laminate/linalg/matriu.h"

#include <cmath>
#include <cstring>
#include <utility>

#include "laminate/linalg/reavec.h"
#include "laminate/linalg/reavecv.h"
#include "laminate/util/errorwriter.h"

namespace vantrel {

namespace {

[[noreturn]] void Fatal()
{
    errorwriter.WriteErrorAndQuit();
}

void CheckSquare(int nrows, int ncols, int size, char const* what)
{
    if (size == 0) {
        *errorwriter.error_stream << "Can't compute the " << what << " of a zero size Matriu";
        Fatal();
    }
    if (nrows != ncols) {
        *errorwriter.error_stream << "Can't compute the " << what << " of a rectangular Matriu\n"
                                  << "\tnrows =" << nrows << ", ncols =" << ncols;
        Fatal();
    }
}

void CheckNotEmpty(int size, char const* what)
{
    if (size == 0) {
        *errorwriter.error_stream << "Can't compute the " << what << " of a zero size Matriu";
        Fatal();
    }
}

[[noreturn]] void Singular(int n)
{
    *errorwriter.error_stream << "Inverse of a singular Matriu. Size = (" << n << " X " << n << ")";
    Fatal();
}

// Row-major n x n access, 1-based, over a raw array.
struct Square {
    double const* a;
    int n;
    double operator()(int r, int c) const { return a[(r - 1) * n + (c - 1)]; }
};

// 2 x 2 determinant |p q; r s|.
inline double Det2(double p, double q, double r, double s)
{
    return p * s - r * q;
}

// 3 x 3 determinant of rows (r1, r2, r3) and columns (c1, c2, c3) of m,
// expanded along its first column.
double Minor3(Square const& m, int r1, int r2, int r3, int c1, int c2, int c3)
{
    return m(r1, c1) * Det2(m(r2, c2), m(r2, c3), m(r3, c2), m(r3, c3))
         - m(r2, c1) * Det2(m(r1, c2), m(r1, c3), m(r3, c2), m(r3, c3))
         + m(r3, c1) * Det2(m(r1, c2), m(r1, c3), m(r2, c2), m(r2, c3));
}

// Cofactor C(r, c) of a 3 x 3 matrix.
double Cofactor3(Square const& m, int r, int c)
{
    int const r1 = r == 1 ? 2 : 1, r2 = r == 3 ? 2 : 3;
    int const c1 = c == 1 ? 2 : 1, c2 = c == 3 ? 2 : 3;
    double const minor = Det2(m(r1, c1), m(r1, c2), m(r2, c1), m(r2, c2));
    return (r + c) % 2 == 0 ? minor : -minor;
}

// Cofactor C(r, c) of a 4 x 4 matrix.
double Cofactor4(Square const& m, int r, int c)
{
    int rows[3], cols[3];
    for (int k = 1, i = 0; k <= 4; ++k)
        if (k != r) rows[i++] = k;
    for (int k = 1, i = 0; k <= 4; ++k)
        if (k != c) cols[i++] = k;
    double const minor = Minor3(m, rows[0], rows[1], rows[2], cols[0], cols[1], cols[2]);
    return (r + c) % 2 == 0 ? minor : -minor;
}

double Cofactor(Square const& m, int r, int c)
{
    return m.n == 3 ? Cofactor3(m, r, c) : Cofactor4(m, r, c);
}

// Determinant of order 3 or 4 by expansion along the first column.  cof
// receives the first-column cofactors C(i, 1), which are also the first row
// of the adjugate.
double FirstColumnExpansion(Square const& m, double* cof)
{
    double det = 0.0;
    for (int i = 1; i <= m.n; ++i) {
        cof[i - 1] = Cofactor(m, i, 1);
        det += m(i, 1) * cof[i - 1];
    }
    return det;
}

// Inverts the n x n row-major matrix a into inv (n * n doubles, distinct from
// a).  Returns false, with inv partly written, when the matrix is exactly
// singular.
bool Invert(int n, double const* a, double* inv)
{
    Square const m{a, n};
    if (n == 1) {
        if (a[0] == 0.0) return false;
        inv[0] = 1.0 / a[0];
        return true;
    }
    if (n == 2) {
        double const det = Det2(a[0], a[1], a[2], a[3]);
        if (det == 0.0) return false;
        double const r = 1.0 / det;
        inv[0] = a[3] * r;
        inv[1] = -a[1] * r;
        inv[2] = -a[2] * r;
        inv[3] = a[0] * r;
        return true;
    }
    if (n <= 4) {
        double cof[4];
        double const det = FirstColumnExpansion(m, cof);
        if (det == 0.0) return false;
        double const r = 1.0 / det;
        // inverse(i, j) = C(j, i) / det; its first row is the cofactors above.
        for (int i = 1; i <= n; ++i)
            for (int j = 1; j <= n; ++j) {
                double const c = i == 1 ? cof[j - 1] : Cofactor(m, j, i);
                inv[(i - 1) * n + (j - 1)] = c * r;
            }
        return true;
    }

    // Gauss-Jordan in place, without row exchange.
    std::memcpy(inv, a, sizeof(double) * n * n);
    for (int k = 0; k < n; ++k) {
        double* const rowk = inv + k * n;
        double const p = rowk[k];
        if (p == 0.0) return false;
        for (int j = 0; j < n; ++j) rowk[j] /= -p;
        for (int i = 0; i < n; ++i) {
            if (i == k) continue;
            double* const rowi = inv + i * n;
            for (int j = 0; j < n; ++j)
                if (j != k) rowi[j] += rowi[k] * rowk[j];
            rowi[k] /= p;
        }
        rowk[k] = 1.0 / p;
    }
    return true;
}

// Pivots smaller than this in magnitude are unusable for elimination.
double const kPivotTolerance = 1e-15;
// Crout diagonals smaller than this in magnitude are unusable; far below the
// elimination threshold on purpose.
double const kCroutTolerance = 1e-30;

// Gaussian elimination with threshold pivoting on the n x n row-major array
// a, right-hand side b and solution x.  a and b are overwritten.
int Eliminate(int n, double* a, double* b, double* x)
{
    if (n < 1) return 1;
    auto at = [a, n](int r, int c) -> double& { return a[(r - 1) * n + (c - 1)]; };
    if (n == 1) {
        if (std::fabs(a[0]) < kPivotTolerance) return 1;
        x[0] = b[0] / a[0];
        return 0;
    }
    for (int k = 1; k < n; ++k) {
        if (std::fabs(at(k, k)) < kPivotTolerance) {
            // The first acceptable row below, not the largest.
            int r = k + 1;
            while (r <= n && std::fabs(at(r, k)) < kPivotTolerance) ++r;
            if (r > n) return 1;
            for (int j = 1; j <= n; ++j) std::swap(at(k, j), at(r, j));
            std::swap(b[k - 1], b[r - 1]);
        }
        for (int i = k + 1; i <= n; ++i) {
            double const f = at(i, k) / at(k, k);
            for (int j = k + 1; j <= n; ++j) at(i, j) -= at(k, j) * f;
            b[i - 1] -= f * b[k - 1];
        }
    }
    if (std::fabs(at(n, n)) < kPivotTolerance) return 1;
    x[n - 1] = b[n - 1] / at(n, n);
    for (int i = n - 1; i >= 1; --i) {
        double s = 0.0;
        for (int j = i + 1; j <= n; ++j) s += at(i, j) * x[j - 1];
        x[i - 1] = (b[i - 1] - s) / at(i, i);
    }
    return 0;
}

}  // namespace

Matriu Matriu::i() const
{
    CheckSquare(nrows, ncols, size, "inverse");
    Matriu inv(nrows, nrows);
    if (!Invert(nrows, data, inv.data)) Singular(nrows);
    return inv;
}

int Matriu::inverse(Matriu& out) const
{
    if (size == 0 || nrows != ncols) return 1;
    Matriu inv(nrows, nrows);
    if (!Invert(nrows, data, inv.data)) return 1;
    out = inv;
    return 0;
}

void Transpose::i()
{
    // The inverse of the held matrix; the view then stands for its transpose,
    // which is the inverse of the transpose.
    CheckSquare(nrows, ncols, size, "inverse");
    Matriu inv(nrows, nrows);
    if (!Invert(nrows, data, inv.data)) Singular(nrows);
    if (owner && data) delete[] data;
    data = inv.data;
    owner = 1;
    inv.data = nullptr;
    inv.nrows = inv.ncols = inv.size = 0;
}

double Matriu::det() const
{
    CheckSquare(nrows, ncols, size, "determinant");
    if (nrows > 4) {
        *errorwriter.error_stream << "Not implemented yet determinant for a Matriu greater than 4";
        Fatal();
    }
    if (nrows == 1) return data[0];
    if (nrows == 2) return Det2(data[0], data[1], data[2], data[3]);
    double cof[4];
    return FirstColumnExpansion(Square{data, nrows}, cof);
}

double Matriu::trace() const
{
    if (size == 0) {
        *errorwriter.error_stream << "Can't compute the trace of a zero size Matriu";
        Fatal();
    }
    if (nrows != ncols) {
        *errorwriter.error_stream << "Can't compute the trace of a non square Matriu";
        Fatal();
    }
    double t = 0.0;
    for (int i = 0; i < nrows; ++i) t += data[i * ncols + i];
    return t;
}

// The row and column "norms" are the largest plain signed sums, floored at
// 0.0; callers rely on the sign being kept.
double Matriu::rowNorm() const
{
    CheckNotEmpty(size, "rowNorm");
    double best = 0.0;
    for (int i = 0; i < nrows; ++i) {
        double s = 0.0;
        for (int j = 0; j < ncols; ++j) s += data[i * ncols + j];
        if (s > best) best = s;
    }
    return best;
}

double Matriu::colNorm() const
{
    CheckNotEmpty(size, "colNorm");
    double best = 0.0;
    for (int j = 0; j < ncols; ++j) {
        double s = 0.0;
        for (int i = 0; i < nrows; ++i) s += data[i * ncols + j];
        if (s > best) best = s;
    }
    return best;
}

double Matriu::sumSquare() const
{
    CheckNotEmpty(size, "sumSquare");
    double s = 0.0;
    for (int k = 0; k < size; ++k) s += data[k] * data[k];
    return s;
}

double Matriu::sumAbsVal() const
{
    CheckNotEmpty(size, "sumAbsVal");
    double s = 0.0;
    for (int k = 0; k < size; ++k) s += std::fabs(data[k]);
    return s;
}

double Matriu::maxAbsVal() const
{
    CheckNotEmpty(size, "maxAbsVal");
    double best = 0.0;
    for (int k = 0; k < size; ++k)
        if (std::fabs(data[k]) > best) best = std::fabs(data[k]);
    return best;
}

int Matriu::LinSolve(ReaVecV& b, ReaVecV& x)
{
    return Eliminate(nrows, data, b.data, x.data);
}

int Matriu::LinSolve(ReaVec& b, ReaVec& x)
{
    return Eliminate(nrows, data, b.elements, x.elements);
}

Matriu Matriu::LU() const
{
    CheckSquare(nrows, ncols, size, "crout decomposition");
    int const n = nrows;
    Matriu f(n, n);
    // L on and below the diagonal, U (unit diagonal, not stored) above it.
    auto a = [this](int r, int c) { return data[(r - 1) * ncols + (c - 1)]; };
    for (int i = 1; i <= n; ++i) f(i, 1) = a(i, 1);
    for (int j = 2; j <= n; ++j) f(1, j) = a(1, j) / f(1, 1);
    for (int m = 2; m <= n; ++m) {
        for (int i = 2; i < m; ++i) {
            double s = 0.0;
            for (int k = 1; k < i; ++k) s += f(i, k) * f(k, m);
            f(i, m) = (a(i, m) - s) / f(i, i);
        }
        for (int c = 2; c <= m; ++c) {
            double s = 0.0;
            for (int k = 1; k < c; ++k) s += f(m, k) * f(k, c);
            f(m, c) = a(m, c) - s;
        }
    }
    return f;
}

int LULinSolve(Matriu& LU, ReaVecV& b)
{
    int const n = LU.nrows;
    double* const x = b.data;
    for (int i = 1; i <= n; ++i) {
        double const d = LU(i, i);
        if (std::fabs(d) < kCroutTolerance) return 1;
        double s = 0.0;
        for (int k = 1; k < i; ++k) s += LU(i, k) * x[k - 1];
        x[i - 1] = (x[i - 1] - s) / d;
    }
    for (int i = n - 1; i >= 1; --i) {
        double s = 0.0;
        for (int k = i + 1; k <= n; ++k) s += LU(i, k) * x[k - 1];
        x[i - 1] -= s;
    }
    return 0;
}

}  // namespace vantrel
