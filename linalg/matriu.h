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
class ReaVecVT;

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

    // Inverse, determinant, reductions and solves (matriu_solve.cpp).
    // Inverse: closed forms up to order 4, Gauss-Jordan without row exchange
    // above.  Zero size, a rectangular matrix and an exactly zero determinant
    // or pivot are fatal; a tiny pivot passes huge entries through.
    Matriu i() const;
    // The same inverse without the fatal end: returns 1 and leaves out as it
    // was when this matrix is empty, rectangular or exactly singular;
    // otherwise out takes the shape and the values i() gives, bit for bit,
    // and 0 is returned.
    int inverse(Matriu& out) const;
    // Orders 1 to 4 only; zero size, rectangular or larger are fatal.
    double det() const;
    // Fatal on zero size or a non-square matrix.
    double trace() const;
    // Largest signed row sum, never below 0.0; fatal on zero size.
    double rowNorm() const;
    // Largest signed column sum, never below 0.0; fatal on zero size.
    double colNorm() const;
    // Sum of the squared elements; fatal on zero size.
    double sumSquare() const;
    // Sum of the absolute values; fatal on zero size.
    double sumAbsVal() const;
    // Largest absolute value; fatal on zero size.
    double maxAbsVal() const;
    // Solves this * x = b by elimination with threshold pivoting; this matrix
    // and b are overwritten, x must hold nrows entries.  Returns 1 when no
    // pivot reaches 1e-15 in magnitude, 0 otherwise.  Shapes are unchecked.
    int LinSolve(ReaVecV& b, ReaVecV& x);
    int LinSolve(ReaVec& b, ReaVec& x);
    // Crout factors without pivoting: L on and below the diagonal, unit-upper
    // U above it.  Fatal on zero size or rectangular; a zero L(i,i) passes
    // inf/NaN through.
    Matriu LU() const;

    // In-place element-wise arithmetic (matriu_arith.cpp).  Fatal on a
    // zero-size matrix, division by 0.0 and on shape mismatch.
    Matriu& operator+=(double s);
    Matriu& operator-=(double s);
    Matriu& operator*=(double s);
    Matriu& operator/=(double s);
    Matriu& operator+=(Matriu const& B);
    Matriu& operator-=(Matriu const& B);
    // The negated matrix; fatal on zero size.
    Matriu operator-() const;

    // Accumulating products into this matrix C, which must already have the
    // result's shape: nothing is checked and nothing allocated, so a shape
    // mismatch reads and writes out of bounds.  The two-factor forms apply f
    // to each finished sum only when f != 1.0.
    void product(Matriu const& A, double f);                      // C = f A
    void add_product(Matriu const& A, double f);                  // C += f A
    void sub_product(Matriu const& A, double f);                  // C -= f A
    void trans_product(Matriu const& A, double f);                // C = f At
    void add_trans_product(Matriu const& A, double f);            // C += f At
    void sub_trans_product(Matriu const& A, double f);            // C -= f At
    void product(Matriu const& A, Matriu const& B, double f);               // C = f A B
    void add_product(Matriu const& A, Matriu const& B, double f);           // C += f A B
    void sub_product(Matriu const& A, Matriu const& B, double f);           // C -= f A B
    void trans_product(Matriu const& A, Matriu const& B, double f);         // C = f At B
    void add_trans_product(Matriu const& A, Matriu const& B, double f);     // C += f At B
    void sub_trans_product(Matriu const& A, Matriu const& B, double f);     // C -= f At B
    void product_trans(Matriu const& A, Matriu const& B, double f);         // C = f A Bt
    void add_product_trans(Matriu const& A, Matriu const& B, double f);     // C += f A Bt
    void sub_product_trans(Matriu const& A, Matriu const& B, double f);     // C -= f A Bt
    void trans_product_trans(Matriu const& A, Matriu const& B, double f);   // C = f At Bt
    void add_trans_product_trans(Matriu const& A, Matriu const& B, double f); // C += f At Bt
    void sub_trans_product_trans(Matriu const& A, Matriu const& B, double f); // C -= f At Bt

    // Element files (matriu_io.cpp): the elements only, row-major, no shape.
    // Native 8-byte doubles; fatal on zero size.  The write is not checked.
    void WriteBinary(FILE* f);
    // Always fatal: the binary form is written, never read back.
    void ReadBinary(FILE* f);
    // One line per row, "%lf  " per element; fatal on zero size.
    void WriteAscii(FILE* f);
    // size numbers in storage order, any white space between them; fatal on
    // zero size.  Elements past the end of the input keep their values.
    void ReadAscii(FILE* f);

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

    // As the Matriu forms, on this carrier's array: fatal on zero size,
    // division by 0.0 and shape mismatch.
    MatriuT& operator+=(double s);
    MatriuT& operator-=(double s);
    MatriuT& operator*=(double s);
    MatriuT& operator/=(double s);
    MatriuT& operator+=(Matriu const& B);
    MatriuT& operator-=(Matriu const& B);
    MatriuT& operator+=(Transpose const& B);   // += B transposed
    MatriuT& operator-=(Transpose const& B);   // -= B transposed
    // The negated matrix; fatal on zero size.
    Matriu operator-() const;

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
    // Fatal as Matriu::i().
    void i();
    // The negated transpose; fatal on zero size.
    Matriu operator-() const;

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

// Solves in place with Crout factors from Matriu::LU(): b becomes x.  Returns
// 1 (b partly overwritten) when a diagonal of L is below 1e-30 in magnitude.
int LULinSolve(Matriu& LU, ReaVecV& b);

// Element-wise with a scalar: fatal on a zero-size matrix; the divisions are
// fatal on s == 0.0 first.  A Transpose operand is materialised first.
Matriu operator+(Matriu const& A, double s);
Matriu operator-(Matriu const& A, double s);
Matriu operator*(Matriu const& A, double s);
Matriu operator/(Matriu const& A, double s);
Matriu operator+(Transpose& A, double s);
Matriu operator-(Transpose& A, double s);
Matriu operator*(Transpose& A, double s);
Matriu operator/(Transpose& A, double s);

// Sums and differences; a Transpose stands for its transposed shape.  Two
// empty operands or different shapes are fatal.
Matriu operator+(Matriu const& A, Matriu const& B);
Matriu operator+(Matriu const& A, Transpose const& B);
Matriu operator+(Transpose& A, Transpose& B);
Matriu operator-(Matriu const& A, Matriu const& B);
Matriu operator-(Matriu const& A, MatriuT& B);
Matriu operator-(Matriu const& A, Transpose const& B);
Matriu operator-(Transpose const& A, Matriu const& B);
Matriu operator-(Transpose const& A, MatriuT& B);
Matriu operator-(Transpose& A, Transpose& B);

// Matrix products; two empty operands or unequal inner dimensions are fatal.
Matriu operator*(Matriu const& A, Matriu const& B);
Matriu operator*(Transpose const& A, Matriu const& B);
Matriu operator*(Matriu const& A, Transpose const& B);
Matriu operator*(Transpose const& A, Transpose const& B);

// Matrix times vector.  A 4 x 4 matrix times a 3-vector is the affine
// transform of a point (rotation block plus column 4; row 4 unused);
// otherwise a length other than ncols is fatal.
ReaVecVT operator*(Matriu const& M, ReaVecV const& v);
// As above; also fatal when the result would exceed 3 elements.
ReaVec operator*(Matriu const& M, ReaVec const& v);

// Labelled table: column numbers, then each row after its number.
std::ostream& operator<<(std::ostream& os, Matriu const& A);

}  // namespace vantrel

#endif
