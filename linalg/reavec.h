// Small real vectors for 2-D and 3-D points and directions.
//
// At most 3 elements, stored inside the object (no heap traffic); operator[]
// counts from 0, every other position from 1, as for ReaVecV.  Nothing is
// checked: a length above 3, mismatched lengths, a run outside the vector and
// division by zero are the caller's responsibility, and no operation reports
// anything (an empty vector prints a note, that is all).
#ifndef LAMINATE_LINALG_REAVEC_H
#define LAMINATE_LINALG_REAVEC_H

#include <iosfwd>

namespace vantrel {

class Matriu;
class MatriuT;

class ReaVec {
public:
    ReaVec() : n(0) {}
    // len elements (at most 3), left unset.
    explicit ReaVec(int len) : n(len) {}
    ReaVec(ReaVec const& v);              // copies n and the first n elements
    // The first nrows values of the matrix array; the column count is ignored.
    explicit ReaVec(Matriu const& m);
    explicit ReaVec(MatriuT const& m);

    ReaVec& operator=(ReaVec const& v);
    ReaVec& operator=(Matriu const& m);
    ReaVec& operator=(MatriuT const& m);
    // Every element becomes v; an empty vector stays empty.
    ReaVec& operator=(double v);

    // Element i counted from 0, unchecked.
    virtual double& operator[](unsigned int i) { return elements[i]; }
    double const& operator[](unsigned int i) const { return elements[i]; }
    int length() const { return n; }

    // New length n (at most 3); new positions are set to v, existing ones
    // kept.
    void resize(int n, double v = 0.0);
    // Run addressing as for ReaVecV (1-based start, negative from the end,
    // count 0 to the end), unchecked.
    void fill(double v, int start = 1, int count = 0);
    ReaVec subVec(int start, int count) const;
    // 1-based position of the first element equal to v; 0 when there is none.
    int index(double v) const;
    ReaVec& reverse();                    // in place
    double reduce(double (*f)(double, double), double init) const;
    void apply(void (*f)(double)) const;  // f on each element in order
    bool operator==(double v) const;      // true for an empty vector

    ReaVec operator-() const;

    // In place over this vector's length; unchecked.
    ReaVec& operator+=(ReaVec const& v);
    ReaVec& operator-=(ReaVec const& v);
    ReaVec& add(ReaVec const& v);         // same as +=
    ReaVec& product(ReaVec const& v);     // *=
    ReaVec& quotient(ReaVec const& v);    // /=
    ReaVec& operator+=(double s);
    ReaVec& operator-=(double s);
    ReaVec& operator*=(double s);
    ReaVec& operator/=(double s);
    ReaVec& product(double s);
    ReaVec& quotient(double s);

    // Empty gives 0.0 / 0; ties keep the earliest; indices 1-based.
    double max_val() const;
    int max_index() const;
    double min_val() const;
    int min_index() const;
    double sum() const;
    double sumsq() const;
    double modul() const;                 // sqrt(sumsq())

    // This = / += / -= M v, over M's rows and columns; this vector's length is
    // not changed.
    void product(Matriu const& M, ReaVec const& v);
    void add_product(Matriu const& M, ReaVec const& v);
    void sub_product(Matriu const& M, ReaVec const& v);
    // This = / += / -= M^T v.
    void tproduct(Matriu const& M, ReaVec const& v);
    void add_tproduct(Matriu const& M, ReaVec const& v);
    void sub_tproduct(Matriu const& M, ReaVec const& v);

    int n;                  // elements in use, at most 3
    double elements[3];     // the values; only the first n are meaningful

private:
    void copyFrom(double const* src, int len);
};

bool operator==(ReaVec const& a, ReaVec const& b);
ReaVec operator&(ReaVec const& a, ReaVec const& b);   // a then b
ReaVec merge(ReaVec const& a, ReaVec const& b, int (*cmp)(double, double));
ReaVec reverse(ReaVec const& a);
ReaVec map(double (*f)(double), ReaVec const& a);
ReaVec combine(double (*f)(double, double), ReaVec const& a, ReaVec const& b);

// Element by element over the first operand's length; unchecked.
ReaVec operator+(ReaVec const& a, ReaVec const& b);
ReaVec operator-(ReaVec const& a, ReaVec const& b);
ReaVec add(ReaVec const& a, ReaVec const& b);         // same as +
ReaVec product(ReaVec const& a, ReaVec const& b);
ReaVec quotient(ReaVec const& a, ReaVec const& b);
ReaVec operator+(ReaVec const& a, double s);
ReaVec operator-(ReaVec const& a, double s);
ReaVec operator*(ReaVec const& a, double s);
ReaVec operator/(ReaVec const& a, double s);
// Scalar product over a's length.
double operator*(ReaVec const& a, ReaVec const& b);

// Cross product, always 3 elements; an operand of exactly 2 elements has a
// third component of 0.
ReaVec VectorProd(ReaVec const& a, ReaVec const& b);
// Projection of v onto the coordinate plane normal to axis (1, 2 or 3).
ReaVec ProjectionPlane(ReaVec const& v, int axis);
// (normal x v) x normal: the projection onto the plane normal to a unit
// normal; a longer normal scales the result by its squared length.
ReaVec ProjectionPlane(ReaVec const& v, ReaVec const& normal);
// Scalar projection of a on b: (a . b) / |b|.
double ProjectionAxis(ReaVec const& a, ReaVec const& b);
// Cosine of the angle between a and b, clamped to [-1, 1]; a zero operand
// (NaN quotient) gives 1.
double Cos_Angle(ReaVec const& a, ReaVec const& b);
// Squared distance over a's length.
double distance2(ReaVec const& a, ReaVec const& b);
// Scalar product over a's length.
double scalarproduct(ReaVec const& a, ReaVec const& b);

// All elements on one line, in scientific format, no newline.  The stream is
// left in scientific format.
std::ostream& operator<<(std::ostream& os, ReaVec const& v);
// Reads exactly n values.
std::istream& operator>>(std::istream& is, ReaVec& v);

}  // namespace vantrel

#endif
