// Dense real matrices.
//
// Row-major; elements (r, c) counted from 1: element (r, c) lives at
// data[(r-1)*ncols + (c-1)].  Every misuse (zero size, shape mismatch, a
// singular inverse ...) is fatal: the message goes through errorwriter and the
// process ends with exit status 2.  Element access checks nothing.
#ifndef LAMINATE_LINALG_MATRIU_H
#define LAMINATE_LINALG_MATRIU_H

#include <cstdio>
#include <iosfwd>

namespace vantrel {

class Matriu;
class MatriuT;
class Transpose;
class ReaVec;
class ReaVecV;

class Matriu {
public:
    Matriu();                             // 0 x 0, no storage
    Matriu(int nr, int nc);               // uninitialised; negative counts are fatal
    Matriu(Matriu const& m);              // deep copy
    Matriu(MatriuT& m);                   // takes m's buffer, leaves m empty
    explicit Matriu(ReaVec const& v);     // column matrix
    explicit Matriu(ReaVecV const& v);    // column matrix
    ~Matriu();

    // Same size: the array is reused even when the shape differs.
    Matriu& operator=(Matriu const& m);
    // Takes m's buffer and leaves m empty; no self check.
    Matriu& operator=(MatriuT& m);
    // Sets every element; fatal on a zero-size matrix.
    Matriu& operator=(double v);
    void fill(double v);

    double& operator()(int r, int c) { return data[(r - 1) * ncols + (c - 1)]; }
    double operator()(int r, int c) const { return data[(r - 1) * ncols + (c - 1)]; }

    // New shape; contents are neither kept in order nor cleared.  Negative
    // counts are fatal.
    void redimension(int nr, int nc);
    // False for a zero-size matrix.
    bool isZero() const;
    // Rows r1..r2 and columns c1..c2, inclusive; a block outside is fatal.
    Matriu subMatriu(int r1, int r2, int c1, int c2) const;
    // Overwrites with S from (r, c) on, growing (zero-filled) when S does not
    // fit.  Unchecked.
    void AddSubmatriu(int r, int c, Matriu& S);
    // This matrix becomes A transposed.  A must not be this matrix.
    void transpose(Matriu& A);
    // Column c, top to bottom; at most 3 rows.  Unchecked.
    ReaVec GiveColumn(int c);
    // Flushes every |a(i,j)| <= tol to exactly 0.0; fatal on zero size.
    void scorn(double tol);

    int nrows;      // rows
    int ncols;      // columns
    int size;       // nrows * ncols
    double* data;   // owned, array-new; null for a matrix that never had storage
};

// A result carrier: constructing or assigning a Matriu from it takes its array
// over and leaves it empty, so a result reaches its destination uncopied.
class MatriuT {
public:
    MatriuT();
    MatriuT(int nr, int nc);
    MatriuT(MatriuT const&) = delete;
    MatriuT(MatriuT&& m);                 // takes m's buffer, leaves m empty
    ~MatriuT();

    MatriuT& operator=(Matriu const& m);  // deep copy
    MatriuT& operator=(MatriuT& m);       // take-over, self-assignment is a no-op
    MatriuT& operator=(double v);         // fill; fatal on zero size

    double& operator()(int r, int c) { return data[(r - 1) * ncols + (c - 1)]; }
    double operator()(int r, int c) const { return data[(r - 1) * ncols + (c - 1)]; }

    int nrows;
    int ncols;
    int size;
    double* data;   // owned, array-new
};

// The transpose of a held matrix.  Made from a Matriu it borrows that
// matrix's array (owner clear); it owns an array only after i().
class Transpose {
public:
    explicit Transpose(Matriu const& m);  // borrowing view
    Transpose(Transpose const&) = delete;
    Transpose& operator=(Transpose const&) = delete;
    ~Transpose();

    // Materialises the transpose; the view is unchanged.
    operator MatriuT();
    // The held (untransposed) matrix, as a deep copy.
    Matriu t();
    // Replaces the held matrix by its inverse, which the view then owns.
    void i();

    // Held element (r, c) of the untransposed matrix.
    double held(int r, int c) const { return data[(r - 1) * ncols + (c - 1)]; }

    int nrows;      // rows of the held matrix
    int ncols;      // columns of the held matrix
    int size;       // nrows * ncols
    int owner;      // non-zero when data is owned
    double* data;   // held matrix, row-major
};

bool operator==(Matriu const& A, Matriu const& B);
// Same shape and every |a - b| <= tol.
bool AreVeryEqual(Matriu const& A, Matriu const& B, double tol);
// n x n identity; n < 1 is fatal.
Matriu I(int n);
// [A B]; an empty A starts a chain, an empty B is fatal.
Matriu operator&(Matriu const& A, Matriu const& B);
// A above B; an empty A starts a chain, an empty B is fatal.
Matriu operator|(Matriu const& A, Matriu const& B);

}  // namespace vantrel

#endif
