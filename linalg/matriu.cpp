// Storage and shape operations of Matriu, MatriuT and Transpose.
#include "laminate/linalg/matriu.h"

#include <cmath>
#include <cstring>

#include "laminate/util/errorwriter.h"

namespace vantrel {

namespace {

// Every array of the three classes comes from here and goes back through
// release(), so array-new and array-delete always pair up.
double* allocate(int nr, int nc)
{
    if (nr < 0 || nc < 0) {
        *errorwriter.error_stream << "Can't create a Matriu of size " << nr << "," << nc;
        errorwriter.WriteErrorAndQuit();
    }
    return new double[static_cast<size_t>(nr) * static_cast<size_t>(nc)];
}

void release(double*& p)
{
    delete[] p;
    p = nullptr;
}

void copyElements(double* to, const double* from, int n)
{
    if (n > 0) memcpy(to, from, static_cast<size_t>(n) * sizeof(double));
}

// Deep copy of m into a Matriu or a MatriuT: the array is replaced only when
// the element count differs, so equal sizes of another shape reuse it.
template <class To>
void copyInto(To& to, Matriu const& m)
{
    if (to.size != m.size) {
        release(to.data);
        to.data = allocate(m.nrows, m.ncols);
    }
    to.nrows = m.nrows;
    to.ncols = m.ncols;
    to.size = m.size;
    copyElements(to.data, m.data, to.size);
}

// Hands m's array over to a Matriu or a MatriuT and leaves m empty.
template <class To>
void takeOver(To& to, MatriuT& m)
{
    to.nrows = m.nrows;
    to.ncols = m.ncols;
    to.size = m.size;
    release(to.data);
    to.data = m.data;
    m.nrows = m.ncols = m.size = 0;
    m.data = nullptr;
}

void fatalFill(double v)
{
    *errorwriter.error_stream << "Can't fill with " << v << " a zero size Matriu";
    errorwriter.WriteErrorAndQuit();
}

void fatalShapes(const char* what, Matriu const& A, Matriu const& B)
{
    *errorwriter.error_stream << what << "\tMatriu 1 : nrows=" << A.nrows << ", ncols=" << A.ncols
                              << "\n" << "\tMatriu 2 : nrows=" << B.nrows << ", ncols=" << B.ncols;
    errorwriter.WriteErrorAndQuit();
}

void fatalZeroConcatenation()
{
    *errorwriter.error_stream << "Can't concatenate a zero size Matriu";
    errorwriter.WriteErrorAndQuit();
}

}  // namespace

// ---------------------------------------------------------------- Matriu

Matriu::Matriu() : nrows(0), ncols(0), size(0), data(nullptr) {}

Matriu::Matriu(int nr, int nc) : nrows(nr), ncols(nc), size(nr * nc), data(allocate(nr, nc)) {}

Matriu::Matriu(Matriu const& m)
    : nrows(m.nrows), ncols(m.ncols), size(m.nrows * m.ncols), data(allocate(m.nrows, m.ncols))
{
    copyElements(data, m.data, size);
}

Matriu::Matriu(MatriuT& m)
    : nrows(m.nrows), ncols(m.ncols), size(m.nrows * m.ncols), data(m.data)
{
    m.nrows = m.ncols = m.size = 0;
    m.data = nullptr;
}

Matriu::~Matriu()
{
    release(data);
}

Matriu& Matriu::operator=(Matriu const& m)
{
    if (this != &m) copyInto(*this, m);
    return *this;
}

Matriu& Matriu::operator=(MatriuT& m)
{
    takeOver(*this, m);
    return *this;
}

Matriu& Matriu::operator=(double v)
{
    fill(v);
    return *this;
}

void Matriu::fill(double v)
{
    if (size == 0) fatalFill(v);
    for (int k = 0; k < size; k++) data[k] = v;
}

void Matriu::redimension(int nr, int nc)
{
    if (nr < 0 || nc < 0) {
        *errorwriter.error_stream << "Can't redimension to a negative values";
        errorwriter.WriteErrorAndQuit();
    }
    if (nr * nc != size) {
        release(data);
        data = allocate(nr, nc);
    }
    nrows = nr;
    ncols = nc;
    size = nr * nc;
}

bool Matriu::isZero() const
{
    if (size == 0) return false;
    for (int k = 0; k < size; k++)
        if (!(data[k] == 0.0)) return false;
    return true;
}

Matriu Matriu::subMatriu(int r1, int r2, int c1, int c2) const
{
    if (r1 < 1 || c1 < 1 || r2 > nrows || c2 > ncols || r2 < r1 || c2 < c1) {
        *errorwriter.error_stream << "subMatriu incorrect size :\n"
                                  << "\tMatriu size nrows=" << nrows << ", ncols=" << ncols << "\n"
                                  << "\tsubMatriu start: row=" << r1 << ", col=" << c1
                                  << ", end: row=" << r2 << ", col=" << c2;
        errorwriter.WriteErrorAndQuit();
    }
    Matriu block(r2 - r1 + 1, c2 - c1 + 1);
    for (int r = r1; r <= r2; r++)
        copyElements(block.data + (r - r1) * block.ncols, data + (r - 1) * ncols + (c1 - 1),
                     block.ncols);
    return block;
}

void Matriu::AddSubmatriu(int r, int c, Matriu& S)
{
    if (&S == this) {
        Matriu copy(S);
        AddSubmatriu(r, c, copy);
        return;
    }
    int nr = nrows > r + S.nrows - 1 ? nrows : r + S.nrows - 1;
    int nc = ncols > c + S.ncols - 1 ? ncols : c + S.ncols - 1;
    if (nr != nrows || nc != ncols) {
        // Grow: old elements keep their (row, column), new ones are 0.
        double* grown = allocate(nr, nc);
        for (int k = 0; k < nr * nc; k++) grown[k] = 0.0;
        for (int i = 0; i < nrows; i++)
            copyElements(grown + i * nc, data + i * ncols, ncols);
        release(data);
        data = grown;
        nrows = nr;
        ncols = nc;
        size = nr * nc;
    }
    for (int i = 1; i <= S.nrows; i++)
        for (int j = 1; j <= S.ncols; j++)
            (*this)(r + i - 1, c + j - 1) = S(i, j);
}

void Matriu::transpose(Matriu& A)
{
    if (size == A.size) {
        nrows = A.ncols;
        ncols = A.nrows;
    } else {
        redimension(A.ncols, A.nrows);
    }
    for (int i = 1; i <= nrows; i++)
        for (int j = 1; j <= ncols; j++)
            (*this)(i, j) = A(j, i);
}

void Matriu::scorn(double tol)
{
    if (size == 0) {
        *errorwriter.error_stream << "Can't scorn a zero size Matriu";
        errorwriter.WriteErrorAndQuit();
    }
    for (int k = 0; k < size; k++)
        if (fabs(data[k]) <= tol) data[k] = 0.0;
}

// ---------------------------------------------------------------- MatriuT

MatriuT::MatriuT() : nrows(0), ncols(0), size(0), data(nullptr) {}

MatriuT::MatriuT(int nr, int nc) : nrows(nr), ncols(nc), size(nr * nc), data(allocate(nr, nc)) {}

MatriuT::MatriuT(MatriuT&& m) : nrows(m.nrows), ncols(m.ncols), size(m.size), data(m.data)
{
    m.nrows = m.ncols = m.size = 0;
    m.data = nullptr;
}

MatriuT::~MatriuT()
{
    release(data);
}

MatriuT& MatriuT::operator=(Matriu const& m)
{
    copyInto(*this, m);
    return *this;
}

MatriuT& MatriuT::operator=(MatriuT& m)
{
    if (this != &m) takeOver(*this, m);
    return *this;
}

MatriuT& MatriuT::operator=(double v)
{
    if (size == 0) fatalFill(v);
    for (int k = 0; k < size; k++) data[k] = v;
    return *this;
}

// ---------------------------------------------------------------- Transpose

Transpose::Transpose(Matriu const& m)
    : nrows(m.nrows), ncols(m.ncols), size(m.size), owner(0), data(m.data)
{
}

Transpose::~Transpose()
{
    if (owner && data) release(data);
}

Transpose::operator MatriuT()
{
    MatriuT r(ncols, nrows);
    for (int i = 1; i <= ncols; i++)
        for (int j = 1; j <= nrows; j++)
            r(i, j) = held(j, i);
    return r;
}

Matriu Transpose::t()
{
    Matriu r(nrows, ncols);
    copyElements(r.data, data, size);
    return r;
}

// ---------------------------------------------------------------- free functions

bool operator==(Matriu const& A, Matriu const& B)
{
    if (A.nrows != B.nrows || A.ncols != B.ncols) return false;
    for (int k = 0; k < A.size; k++)
        if (A.data[k] != B.data[k]) return false;
    return true;
}

bool AreVeryEqual(Matriu const& A, Matriu const& B, double tol)
{
    if (A.nrows != B.nrows || A.ncols != B.ncols) return false;
    for (int k = 0; k < A.size; k++)
        if (fabs(A.data[k] - B.data[k]) > tol) return false;
    return true;
}

Matriu I(int n)
{
    if (n < 1) {
        *errorwriter.error_stream << "Can't construct an identity Matriu of size " << n;
        errorwriter.WriteErrorAndQuit();
    }
    Matriu r(n, n);
    r.fill(0.0);
    for (int i = 1; i <= n; i++) r(i, i) = 1.0;
    return r;
}

Matriu operator&(Matriu const& A, Matriu const& B)
{
    if (B.size == 0) fatalZeroConcatenation();
    if (A.nrows != 0 && A.nrows != B.nrows)
        fatalShapes("Horizontal concatenation with diferent number of rows\n", A, B);
    // An A without rows contributes no elements; its columns, if it claims
    // any, are zero.
    int nr = A.nrows != 0 ? A.nrows : B.nrows;
    Matriu r(nr, A.ncols + B.ncols);
    for (int i = 0; i < nr; i++) {
        double* row = r.data + i * r.ncols;
        if (A.nrows != 0)
            copyElements(row, A.data + i * A.ncols, A.ncols);
        else
            for (int j = 0; j < A.ncols; j++) row[j] = 0.0;
        copyElements(row + A.ncols, B.data + i * B.ncols, B.ncols);
    }
    return r;
}

Matriu operator|(Matriu const& A, Matriu const& B)
{
    if (B.size == 0) fatalZeroConcatenation();
    if (A.ncols != 0 && A.ncols != B.ncols)
        fatalShapes("Vertical concatenation with diferent number of columns\n", A, B);
    int nc = A.ncols != 0 ? A.ncols : B.ncols;
    Matriu r(A.nrows + B.nrows, nc);
    copyElements(r.data, A.data, A.size);
    copyElements(r.data + A.size, B.data, B.size);
    // An A without columns contributes no elements; its rows, if it claims
    // any, are zero at the end.
    for (int k = A.size + B.size; k < r.size; k++) r.data[k] = 0.0;
    return r;
}

}  // namespace vantrel
