// Arithmetic of Matriu, MatriuT and Transpose: element-wise operators with
// scalars and matrices, matrix products, matrix times vector and the
// accumulating products that write into an existing matrix.
//
// Every product sums over the inner index in increasing order from 0.0, so
// that results are reproducible to the last bit.
#include "laminate/linalg/matriu.h"

#include "laminate/linalg/reavec.h"
#include "laminate/linalg/reavecv.h"
#include "laminate/util/errorwriter.h"

namespace vantrel {

namespace {

[[noreturn]] void Fatal()
{
    errorwriter.WriteErrorAndQuit();
}

// A read-only operand seen with the shape of the value it stands for: a plain
// matrix, or a held matrix read transposed in place.
struct Operand {
    int nrows;          // rows of the value
    int ncols;          // columns of the value
    int size;
    double const* data; // not owned
    bool transposed;    // data holds the value transposed (ncols x nrows)

    // Element (i, j) of the value, counted from 0.
    double at(int i, int j) const
    {
        return transposed ? data[j * nrows + i] : data[i * ncols + j];
    }
};

Operand Plain(Matriu const& m) { return {m.nrows, m.ncols, m.size, m.data, false}; }
Operand Plain(MatriuT const& m) { return {m.nrows, m.ncols, m.size, m.data, false}; }
Operand Transposed(Transpose const& t) { return {t.ncols, t.nrows, t.size, t.data, true}; }
Operand Transposed(Matriu const& m) { return {m.ncols, m.nrows, m.size, m.data, true}; }

void ShapeLines(Operand const& a, Operand const& b)
{
    *errorwriter.error_stream << "\tMatriu 1 : nrows=" << a.nrows << ", ncols=" << a.ncols << "\n"
                              << "\tMatriu 2 : nrows=" << b.nrows << ", ncols=" << b.ncols;
}

// ------------------------------------------------ element-wise, with a scalar

enum class ScalarOp { Add, Subtract, SubtractTransposed, Multiply, Divide };

void CheckScalar(ScalarOp op, int size, double s)
{
    std::ostream& es = *errorwriter.error_stream;
    if (op == ScalarOp::Divide && s == 0.0) {
        es << "Matriu division by zero scalar error";
        Fatal();
    }
    if (size != 0) return;
    switch (op) {
    case ScalarOp::Add: es << "Can't add " << s << " to a zero size Matriu"; break;
    case ScalarOp::Subtract: es << "Can't subtract " << s << " from a zero size Matriu"; break;
    case ScalarOp::SubtractTransposed: es << "Can't substract " << s << " to a zero size Matriu"; break;
    case ScalarOp::Multiply: es << "Can't multiply by " << s << " a zero size Matriu"; break;
    case ScalarOp::Divide: es << "Can't divide by " << s << " a zero size Matriu"; break;
    }
    Fatal();
}

// Applies op with s to the n elements of d, after the checks.
void ApplyScalar(ScalarOp op, double* d, int n, double s)
{
    CheckScalar(op, n, s);
    switch (op) {
    case ScalarOp::Add:
        for (int k = 0; k < n; ++k) d[k] += s;
        break;
    case ScalarOp::Subtract:
    case ScalarOp::SubtractTransposed:
        for (int k = 0; k < n; ++k) d[k] -= s;
        break;
    case ScalarOp::Multiply:
        for (int k = 0; k < n; ++k) d[k] *= s;
        break;
    case ScalarOp::Divide:
        for (int k = 0; k < n; ++k) d[k] /= s;
        break;
    }
}

Matriu WithScalar(ScalarOp op, Matriu const& A, double s)
{
    CheckScalar(op, A.size, s);
    Matriu r(A);
    ApplyScalar(op, r.data, r.size, s);
    return r;
}

Matriu WithScalar(ScalarOp op, Transpose& A, double s)
{
    CheckScalar(op, A.size, s);
    MatriuT t = A;
    Matriu r(t);
    ApplyScalar(op, r.data, r.size, s);
    return r;
}

Matriu Negated(Operand const& a)
{
    if (a.size == 0) {
        *errorwriter.error_stream << "Can't change sign a zero size Matriu";
        Fatal();
    }
    Matriu r(a.nrows, a.ncols);
    for (int i = 0; i < a.nrows; ++i)
        for (int j = 0; j < a.ncols; ++j) r.data[i * a.ncols + j] = -a.at(i, j);
    return r;
}

// ---------------------------------------------- element-wise, between matrices

enum class SumOp { Add, Subtract };

void CheckSum(SumOp op, Operand const& a, Operand const& b)
{
    bool const add = op == SumOp::Add;
    if (a.size == 0 && b.size == 0) {
        *errorwriter.error_stream << (add ? "Can't add zero sized matrices"
                                          : "Can't subtract zero sized matrices");
        Fatal();
    }
    if (a.nrows != b.nrows || a.ncols != b.ncols) {
        *errorwriter.error_stream << (add ? "Can't add two Matriu with diferent sizes\n"
                                          : "Can't subtract two Matriu with diferent sizes\n");
        ShapeLines(a, b);
        Fatal();
    }
}

// d (with b's shape, row-major) op= b; checks nothing.
void AddInto(SumOp op, double* d, Operand const& b)
{
    bool const add = op == SumOp::Add;
    for (int i = 0; i < b.nrows; ++i)
        for (int j = 0; j < b.ncols; ++j) {
            double& e = d[i * b.ncols + j];
            e = add ? e + b.at(i, j) : e - b.at(i, j);
        }
}

// The in-place forms: a's array op= b.
void SumInto(SumOp op, Operand const& a, Operand const& b, double* d)
{
    CheckSum(op, a, b);
    AddInto(op, d, b);
}

Matriu Sum(SumOp op, Operand const& a, Operand const& b)
{
    CheckSum(op, a, b);
    Matriu r(a.nrows, a.ncols);
    for (int i = 0; i < a.nrows; ++i)
        for (int j = 0; j < a.ncols; ++j) r.data[i * a.ncols + j] = a.at(i, j);
    AddInto(op, r.data, b);
    return r;
}

// ------------------------------------------------------------------ products

enum class Accumulate { Store, Add, Subtract };

// C op= f (a b) over C's shape and a's inner dimension; checks nothing.  The
// factor is applied to each finished sum only when it is not exactly 1.0.
void ProductInto(double* c, int nrows, int ncols, Operand const& a, Operand const& b, double f,
                 Accumulate mode)
{
    int const inner = a.ncols;
    for (int i = 0; i < nrows; ++i)
        for (int j = 0; j < ncols; ++j) {
            double s = 0.0;
            for (int k = 0; k < inner; ++k) s += a.at(i, k) * b.at(k, j);
            if (f != 1.0) s *= f;
            double& e = c[i * ncols + j];
            switch (mode) {
            case Accumulate::Store: e = s; break;
            case Accumulate::Add: e += s; break;
            case Accumulate::Subtract: e -= s; break;
            }
        }
}

// The one-factor forms: C op= f a, always multiplying by f.
void ScaledInto(Matriu& C, Operand const& a, double f, Accumulate mode)
{
    for (int i = 0; i < C.nrows; ++i)
        for (int j = 0; j < C.ncols; ++j) {
            double const s = f * a.at(i, j);
            double& e = C.data[i * C.ncols + j];
            switch (mode) {
            case Accumulate::Store: e = s; break;
            case Accumulate::Add: e += s; break;
            case Accumulate::Subtract: e -= s; break;
            }
        }
}

Matriu Product(Operand const& a, Operand const& b, char tag)
{
    if (a.size == 0 && b.size == 0) {
        *errorwriter.error_stream << "Can't multiply zero sized matrices";
        Fatal();
    }
    if (a.ncols != b.nrows) {
        *errorwriter.error_stream << "Incompatible dimensions for multiply -" << tag << "-\n";
        ShapeLines(a, b);
        Fatal();
    }
    Matriu r(a.nrows, b.ncols);
    ProductInto(r.data, r.nrows, r.ncols, a, b, 1.0, Accumulate::Store);
    return r;
}

}  // namespace

// ------------------------------------------------------------ scalar operators

Matriu operator+(Matriu const& A, double s) { return WithScalar(ScalarOp::Add, A, s); }
Matriu operator-(Matriu const& A, double s) { return WithScalar(ScalarOp::Subtract, A, s); }
Matriu operator*(Matriu const& A, double s) { return WithScalar(ScalarOp::Multiply, A, s); }
Matriu operator/(Matriu const& A, double s) { return WithScalar(ScalarOp::Divide, A, s); }

Matriu operator+(Transpose& A, double s) { return WithScalar(ScalarOp::Add, A, s); }
Matriu operator-(Transpose& A, double s)
{
    return WithScalar(ScalarOp::SubtractTransposed, A, s);
}
Matriu operator*(Transpose& A, double s) { return WithScalar(ScalarOp::Multiply, A, s); }
Matriu operator/(Transpose& A, double s) { return WithScalar(ScalarOp::Divide, A, s); }

Matriu& Matriu::operator+=(double s)
{
    ApplyScalar(ScalarOp::Add, data, size, s);
    return *this;
}

Matriu& Matriu::operator-=(double s)
{
    ApplyScalar(ScalarOp::Subtract, data, size, s);
    return *this;
}

Matriu& Matriu::operator*=(double s)
{
    ApplyScalar(ScalarOp::Multiply, data, size, s);
    return *this;
}

Matriu& Matriu::operator/=(double s)
{
    ApplyScalar(ScalarOp::Divide, data, size, s);
    return *this;
}

MatriuT& MatriuT::operator+=(double s)
{
    ApplyScalar(ScalarOp::Add, data, size, s);
    return *this;
}

MatriuT& MatriuT::operator-=(double s)
{
    ApplyScalar(ScalarOp::Subtract, data, size, s);
    return *this;
}

MatriuT& MatriuT::operator*=(double s)
{
    ApplyScalar(ScalarOp::Multiply, data, size, s);
    return *this;
}

MatriuT& MatriuT::operator/=(double s)
{
    ApplyScalar(ScalarOp::Divide, data, size, s);
    return *this;
}

// ----------------------------------------------------------------- unary minus

Matriu Matriu::operator-() const { return Negated(Plain(*this)); }
Matriu MatriuT::operator-() const { return Negated(Plain(*this)); }
Matriu Transpose::operator-() const { return Negated(Transposed(*this)); }

// ---------------------------------------------------- sums and differences

Matriu operator+(Matriu const& A, Matriu const& B) { return Sum(SumOp::Add, Plain(A), Plain(B)); }

Matriu operator+(Matriu const& A, Transpose const& B)
{
    return Sum(SumOp::Add, Plain(A), Transposed(B));
}

Matriu operator+(Transpose& A, Transpose& B)
{
    MatriuT ta = A, tb = B;
    Matriu a(ta), b(tb);
    return Sum(SumOp::Add, Plain(a), Plain(b));
}

Matriu operator-(Matriu const& A, Matriu const& B)
{
    return Sum(SumOp::Subtract, Plain(A), Plain(B));
}

Matriu operator-(Matriu const& A, MatriuT& B) { return Sum(SumOp::Subtract, Plain(A), Plain(B)); }

Matriu operator-(Matriu const& A, Transpose const& B)
{
    return Sum(SumOp::Subtract, Plain(A), Transposed(B));
}

Matriu operator-(Transpose const& A, Matriu const& B)
{
    return Sum(SumOp::Subtract, Transposed(A), Plain(B));
}

Matriu operator-(Transpose const& A, MatriuT& B)
{
    return Sum(SumOp::Subtract, Transposed(A), Plain(B));
}

Matriu operator-(Transpose& A, Transpose& B)
{
    MatriuT ta = A, tb = B;
    Matriu a(ta), b(tb);
    return Sum(SumOp::Subtract, Plain(a), Plain(b));
}

Matriu& Matriu::operator+=(Matriu const& B)
{
    SumInto(SumOp::Add, Plain(*this), Plain(B), data);
    return *this;
}

Matriu& Matriu::operator-=(Matriu const& B)
{
    SumInto(SumOp::Subtract, Plain(*this), Plain(B), data);
    return *this;
}

MatriuT& MatriuT::operator+=(Matriu const& B)
{
    SumInto(SumOp::Add, Plain(*this), Plain(B), data);
    return *this;
}

MatriuT& MatriuT::operator-=(Matriu const& B)
{
    SumInto(SumOp::Subtract, Plain(*this), Plain(B), data);
    return *this;
}

MatriuT& MatriuT::operator+=(Transpose const& B)
{
    SumInto(SumOp::Add, Plain(*this), Transposed(B), data);
    return *this;
}

MatriuT& MatriuT::operator-=(Transpose const& B)
{
    SumInto(SumOp::Subtract, Plain(*this), Transposed(B), data);
    return *this;
}

// ------------------------------------------------------------ matrix products

Matriu operator*(Matriu const& A, Matriu const& B) { return Product(Plain(A), Plain(B), 'A'); }

Matriu operator*(Transpose const& A, Matriu const& B)
{
    return Product(Transposed(A), Plain(B), 'B');
}

Matriu operator*(Matriu const& A, Transpose const& B)
{
    return Product(Plain(A), Transposed(B), 'C');
}

Matriu operator*(Transpose const& A, Transpose const& B)
{
    return Product(Transposed(A), Transposed(B), 'D');
}

// ------------------------------------------------------ matrix times vector

namespace {

// r = M v over M's rows, or, for a 4 x 4 matrix and a 3-vector, the affine
// transform of the point v: rows 1 to 3 of M v extended by a 1.  Nothing is
// divided by the fourth row.
void MatrixVector(Matriu const& M, double const* v, double* r, bool affine)
{
    int const inner = affine ? 3 : M.ncols;
    int const rows = affine ? 3 : M.nrows;
    for (int i = 1; i <= rows; ++i) {
        double s = 0.0;
        for (int k = 1; k <= inner; ++k) s += M(i, k) * v[k - 1];
        r[i - 1] = affine ? s + M(i, 4) : s;
    }
}

bool IsAffine(Matriu const& M, int length)
{
    return M.nrows == 4 && M.ncols == 4 && length == 3;
}

}  // namespace

ReaVecVT operator*(Matriu const& M, ReaVecV const& v)
{
    bool const affine = IsAffine(M, v.length());
    if (!affine && v.length() != M.ncols) {
        *errorwriter.error_stream
            << "error in ReaVecT  operator *. No correct size(file Matriu B)\n";
        Fatal();
    }
    ReaVecVT r(affine ? 3 : M.nrows);
    MatrixVector(M, v.data, r.data, affine);
    return r;
}

ReaVec operator*(Matriu const& M, ReaVec const& v)
{
    bool const affine = IsAffine(M, v.length());
    if (!affine && (v.length() != M.ncols || M.nrows > 3)) {
        *errorwriter.error_stream
            << "error in ReaVecT  operator *. No correct size (file Matriu A)\n";
        Fatal();
    }
    ReaVec r(affine ? 3 : M.nrows);
    MatrixVector(M, v.elements, r.elements, affine);
    return r;
}

// ------------------------------------------------------ accumulating products

void Matriu::product(Matriu const& A, double f)
{
    for (int k = 0; k < size; ++k) data[k] = f * A.data[k];
}

void Matriu::add_product(Matriu const& A, double f)
{
    for (int k = 0; k < size; ++k) data[k] += f * A.data[k];
}

void Matriu::sub_product(Matriu const& A, double f)
{
    for (int k = 0; k < size; ++k) data[k] -= f * A.data[k];
}

void Matriu::trans_product(Matriu const& A, double f)
{
    ScaledInto(*this, Transposed(A), f, Accumulate::Store);
}

void Matriu::add_trans_product(Matriu const& A, double f)
{
    ScaledInto(*this, Transposed(A), f, Accumulate::Add);
}

void Matriu::sub_trans_product(Matriu const& A, double f)
{
    ScaledInto(*this, Transposed(A), f, Accumulate::Subtract);
}

void Matriu::product(Matriu const& A, Matriu const& B, double f)
{
    ProductInto(data, nrows, ncols, Plain(A), Plain(B), f, Accumulate::Store);
}

void Matriu::add_product(Matriu const& A, Matriu const& B, double f)
{
    ProductInto(data, nrows, ncols, Plain(A), Plain(B), f, Accumulate::Add);
}

void Matriu::sub_product(Matriu const& A, Matriu const& B, double f)
{
    ProductInto(data, nrows, ncols, Plain(A), Plain(B), f, Accumulate::Subtract);
}

void Matriu::trans_product(Matriu const& A, Matriu const& B, double f)
{
    ProductInto(data, nrows, ncols, Transposed(A), Plain(B), f, Accumulate::Store);
}

void Matriu::add_trans_product(Matriu const& A, Matriu const& B, double f)
{
    ProductInto(data, nrows, ncols, Transposed(A), Plain(B), f, Accumulate::Add);
}

void Matriu::sub_trans_product(Matriu const& A, Matriu const& B, double f)
{
    ProductInto(data, nrows, ncols, Transposed(A), Plain(B), f, Accumulate::Subtract);
}

void Matriu::product_trans(Matriu const& A, Matriu const& B, double f)
{
    ProductInto(data, nrows, ncols, Plain(A), Transposed(B), f, Accumulate::Store);
}

void Matriu::add_product_trans(Matriu const& A, Matriu const& B, double f)
{
    ProductInto(data, nrows, ncols, Plain(A), Transposed(B), f, Accumulate::Add);
}

void Matriu::sub_product_trans(Matriu const& A, Matriu const& B, double f)
{
    ProductInto(data, nrows, ncols, Plain(A), Transposed(B), f, Accumulate::Subtract);
}

void Matriu::trans_product_trans(Matriu const& A, Matriu const& B, double f)
{
    ProductInto(data, nrows, ncols, Transposed(A), Transposed(B), f, Accumulate::Store);
}

void Matriu::add_trans_product_trans(Matriu const& A, Matriu const& B, double f)
{
    ProductInto(data, nrows, ncols, Transposed(A), Transposed(B), f, Accumulate::Add);
}

void Matriu::sub_trans_product_trans(Matriu const& A, Matriu const& B, double f)
{
    ProductInto(data, nrows, ncols, Transposed(A), Transposed(B), f, Accumulate::Subtract);
}

}  // namespace vantrel
