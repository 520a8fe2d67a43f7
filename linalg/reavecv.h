// Variable-length real vectors.
//
// A heap array of exactly n doubles (array-new / array-delete, no spare
// capacity); operator[] counts from 0, every other position (fill, subVec,
// index, max_index, min_index, prod_row_add) from 1.  Every misuse (a negative
// length, mismatched lengths, a run outside the vector, division by zero) is
// fatal: the message goes through errorwriter and the process ends with exit
// status 2.  operator[], prod_row_add and the matrix products check nothing.
//
// ReaVecVT is the result carrier: every operation that makes a new vector
// returns one, and a ReaVecV constructed or assigned from it takes its array
// over and leaves it empty, so a result reaches its destination uncopied.
#ifndef LAMINATE_LINALG_REAVECV_H
#define LAMINATE_LINALG_REAVECV_H

#include <iosfwd>

namespace vantrel {

class Matriu;
class MatriuT;
class ReaVec;
class ReaVecVT;

class ReaVecV {
public:
    ReaVecV() : data(nullptr), n(0) {}    // empty, no storage
    // n uninitialised elements; n < 0 is fatal.
    explicit ReaVecV(int n);
    ReaVecV(ReaVecV const& v);            // deep copy
    ReaVecV(ReaVecVT& t);                 // takes t's array, leaves t empty
    ReaVecV(ReaVecVT&& t);                // the same for an unnamed temporary
    explicit ReaVecV(ReaVec const& v);    // copy of the small vector
    // One-column matrix; any other column count is fatal.
    explicit ReaVecV(Matriu const& m);
    // One-column temporary, whose array is taken over (m is left 0 x 0).
    ReaVecV(MatriuT& m);
    ReaVecV(MatriuT&& m);
    ~ReaVecV();

    // Reallocates only when the lengths differ.
    ReaVecV& operator=(ReaVecV const& v);
    ReaVecV& operator=(ReaVecVT& t);      // take-over
    ReaVecV& operator=(ReaVecVT&& t);     // take-over
    ReaVecV& operator=(ReaVec const& v);
    ReaVecV& operator=(Matriu const& m);  // one column, else fatal
    ReaVecV& operator=(MatriuT& m);       // one column, else fatal; take-over
    ReaVecV& operator=(MatriuT&& m);
    // Every element becomes v; fatal on an empty vector.
    ReaVecV& operator=(double v);

    // Element i counted from 0, unchecked.
    virtual double& operator[](unsigned int i) { return data[i]; }
    double const& operator[](unsigned int i) const { return data[i]; }
    int length() const { return n; }

    // New length n; the old elements are kept (up to n) and the new ones set
    // to v.  Any change of length reallocates.
    void resize(int n, double v = 0.0);
    // Sets a run to v.  start is 1-based, or counted from the end when
    // negative (-1 is the last element); count 0 runs to the end.  A run
    // outside the vector is fatal.
    void fill(double v, int start = 1, int count = 0);
    // Copy of a run addressed as in fill; a run outside the vector is fatal.
    ReaVecVT subVec(int start, int count) const;
    // 1-based position of the first element equal to v; 0 when there is none.
    int index(double v) const;
    ReaVecV& reverse();                   // in place
    // Left fold from init, in element order.
    double reduce(double (*f)(double, double), double init) const;
    // True when every element equals v (also for an empty vector).
    bool operator==(double v) const;

    // Calls f on each element in order.
    void apply(void (*f)(double)) const;
    // Copies a's elements into this vector in order, calling f on each.
    // a must be at least as long as this vector.
    void apply(void (*f)(double), ReaVecV const& a);
    // Element i becomes f(element i + 1): the results are shifted one place
    // towards the front.  The last element, which has no successor, becomes
    // f of itself.
    void apply(double (*f)(double)) const;
    // Element i becomes f of element i of each argument (then the trailing
    // scalar, if any).  The arguments are not checked: each must be at least
    // as long as this vector.
    void apply(double (*f)(double), ReaVecV const& a);
    void apply(double (*f)(double, double), ReaVecV const& a, ReaVecV const& b);
    void apply(double (*f)(double, double, double), ReaVecV const& a,
               ReaVecV const& b, ReaVecV const& c);
    void apply(double (*f)(double, double, double, double), ReaVecV const& a,
               ReaVecV const& b, ReaVecV const& c, ReaVecV const& d);
    void apply(double (*f)(double, double, double, double, double),
               ReaVecV const& a, ReaVecV const& b, ReaVecV const& c,
               ReaVecV const& d, ReaVecV const& e);
    void apply(double (*f)(double, double), ReaVecV const& a, double s);
    void apply(double (*f)(double, double, double), ReaVecV const& a,
               ReaVecV const& b, double s);
    void apply(double (*f)(double, double, double, double), ReaVecV const& a,
               ReaVecV const& b, ReaVecV const& c, double s);
    void apply(double (*f)(double, double, double, double, double),
               ReaVecV const& a, ReaVecV const& b, ReaVecV const& c,
               ReaVecV const& d, double s);
    void apply(double (*f)(double, double, double, double, double, double),
               ReaVecV const& a, ReaVecV const& b, ReaVecV const& c,
               ReaVecV const& d, ReaVecV const& e, double s);

    // Element j (1-based) += d * element i (1-based); unchecked.
    void prod_row_add(int i, int j, double d);

    ReaVecVT operator-() const;           // negated copy

    // In place, element by element; different lengths are fatal.
    ReaVecV& operator+=(ReaVecV const& v);
    ReaVecV& operator-=(ReaVecV const& v);
    ReaVecV& product(ReaVecV const& v);   // *=
    ReaVecV& quotient(ReaVecV const& v);  // /=
    // In place with a scalar; unchecked.
    ReaVecV& operator+=(double s);
    ReaVecV& operator-=(double s);
    ReaVecV& operator*=(double s);
    ReaVecV& product(double s);           // same as *=
    // Division by exactly 0.0 is fatal.
    ReaVecV& operator/=(double s);
    ReaVecV& quotient(double s);          // same as /=

    // Empty vectors give 0.0 and index 0.  Only a strictly greater (smaller)
    // element replaces the current best, so ties keep the earliest; indices
    // are 1-based.
    double max_val() const;
    int max_index() const;
    double min_val() const;
    int min_index() const;
    double sum() const;
    double sumsq() const;
    double norm() const;                  // sqrt(sumsq())
    double modul() const;                 // sqrt(sumsq()), the same as norm()

    // This vector = / += / -= M v, or += / -= M^T v, written into the existing
    // array.  No size check and no reallocation: this vector must already be
    // as long as the result, and v as long as M's inner dimension.
    void product(Matriu const& M, ReaVecV const& v);
    void add_product(Matriu const& M, ReaVecV const& v);
    void sub_product(Matriu const& M, ReaVecV const& v);
    void add_tproduct(Matriu const& M, ReaVecV const& v);
    void sub_tproduct(Matriu const& M, ReaVecV const& v);

    double* data;   // owned, array-new; null when empty or taken over
    int n;          // number of elements in data

protected:
    // Takes t's array (after releasing this one's) and leaves t empty.
    void takeOver(ReaVecV& t);
    void takeOver(MatriuT& m);
    // Copies len elements from src, reallocating only when len differs.
    void assign(double const* src, int len);
};

// A result carrier: construction and assignment from one take its array over.
class ReaVecVT : public ReaVecV {
public:
    ReaVecVT() {}
    explicit ReaVecVT(int n);             // n < 0 is fatal
    explicit ReaVecVT(ReaVecV const& v);  // deep copy
    ReaVecVT(ReaVecVT& t);                // take-over
    ReaVecVT(ReaVecVT&& t);               // take-over

    ReaVecVT& operator=(ReaVecV const& v);
    ReaVecVT& operator=(ReaVecVT& t);     // take-over
    ReaVecVT& operator=(ReaVecVT&& t);    // take-over
    ReaVecVT& operator=(Matriu const& m); // one column, else fatal
    ReaVecVT& operator=(MatriuT& m);      // one column, else fatal; take-over
    ReaVecVT& operator=(MatriuT&& m);
    ReaVecVT& operator=(double v);        // fatal on an empty vector

    using ReaVecV::operator-;
    // Negates this temporary in place and returns it.
    ReaVecVT& operator-();

    using ReaVecV::operator+=;
    using ReaVecV::operator-=;
    // In place; different lengths are fatal.
    ReaVecVT& operator+=(ReaVecV const& v);
    ReaVecVT& operator-=(ReaVecV const& v);
};

// False for different lengths; exact element comparison otherwise.
bool operator==(ReaVecV const& a, ReaVecV const& b);
// Concatenation: a followed by b.
ReaVecVT operator&(ReaVecV const& a, ReaVecV const& b);
// Two-way merge; cmp(x, y) <= 0 takes x from a, so ties take from a first.
ReaVecVT merge(ReaVecV const& a, ReaVecV const& b, int (*cmp)(double, double));
ReaVecVT reverse(ReaVecV const& a);
// f(a[i]) for every element of a.
ReaVecVT map(double (*f)(double), ReaVecV const& a);
// f(a[i], b[i]); different lengths are fatal.
ReaVecVT combine(double (*f)(double, double), ReaVecV const& a, ReaVecV const& b);

// Element by element, with the first operand's length; different lengths
// are fatal.
ReaVecVT operator+(ReaVecV const& a, ReaVecV const& b);
ReaVecVT operator-(ReaVecV const& a, ReaVecV const& b);
ReaVecVT product(ReaVecV const& a, ReaVecV const& b);
ReaVecVT quotient(ReaVecV const& a, ReaVecV const& b);
// With a scalar, unchecked: a zero divisor gives infinities or NaN.
ReaVecVT operator+(ReaVecV const& a, double s);
ReaVecVT operator-(ReaVecV const& a, double s);
ReaVecVT operator*(ReaVecV const& a, double s);
ReaVecVT operator/(ReaVecV const& a, double s);

// Scalar product over a's length; b is not checked.
double dot(ReaVecV const& a, ReaVecV const& b);
// Scalar product; different lengths are fatal.
double operator*(ReaVecV const& a, ReaVecV const& b);

// Cross product of two 2- or 3-element vectors (a missing third component
// counts as 0), always 3 elements; any other length is fatal.
ReaVecVT VectorProd(ReaVecV const& a, ReaVecV const& b);

// One line per element: index, then the value in scientific format.  The
// stream is left in scientific format.
std::ostream& operator<<(std::ostream& os, ReaVecV const& v);
// Reads exactly length() values; an empty vector is fatal.  Stream failures
// are left for the caller to inspect.
std::istream& operator>>(std::istream& is, ReaVecV& v);

}  // namespace vantrel

#endif
