// Integer vectors.
//
// operator[] counts from 0, operator() and every other position (fill,
// subVec, index, max_index, min_index) from 1.  Neither accessor checks its
// index.  Misuse that is checked (empty fill, bad run, length mismatch,
// division of the whole vector by 0) is fatal: the message goes through
// errorwriter and the process ends with exit status 2.
//
// The buffer always comes from malloc/realloc and goes back through free, so
// resize can grow or shrink it in place and keep its contents.
//
// Sums and products are 32-bit int arithmetic that wraps around on overflow;
// comparisons are signed.
#ifndef LAMINATE_INTVEC_INTVEC_H
#define LAMINATE_INTVEC_INTVEC_H

#include <iosfwd>

class IntVecT;

class IntVec {
public:
    IntVec() : n(0), data(nullptr) {}
    // n elements, all 0.
    explicit IntVec(unsigned int n);
    IntVec(IntVec const& v);               // deep copy
    IntVec(IntVecT& t);                    // takes t's buffer, leaves t empty
    IntVec(IntVecT&& t);                   // the same for an unnamed result
    ~IntVec();                             // not virtual

    // Nothing on self-assignment; reallocates only when the lengths differ.
    IntVec& operator=(IntVec const& v);
    // Releases the own buffer, takes t's and leaves t empty.
    IntVec& operator=(IntVecT& t);
    IntVec& operator=(IntVecT&& t);
    // Every element becomes v; fatal on an empty vector.
    IntVec& operator=(int v);

    // The only virtual operations, in this order.
    virtual unsigned int length() const { return n; }
    virtual int& operator()(unsigned int i) { return data[i - 1]; }   // from 1
    virtual int& operator[](unsigned int i) { return data[i]; }       // from 0
    int operator()(unsigned int i) const { return data[i - 1]; }
    int operator[](unsigned int i) const { return data[i]; }

    // New length; the first min(old, n) elements are kept and new positions
    // get v.  Length 0 releases the buffer.  Fatal when the heap is exhausted.
    void resize(unsigned int n, int v = 0);

    // Run addressing of fill and subVec: start counts from 1, count 0 means
    // "to the end".  A run that is empty or leaves the vector is fatal.
    void fill(int v, unsigned int start = 1, unsigned int count = 0);
    IntVecT subVec(unsigned int start, unsigned int count = 0) const;

    // 1-based position of the first element equal to v; 0 when absent.
    unsigned int index(int v) const;
    IntVec& reverse();
    // Left fold: acc = f(acc, x) over the elements in order, from init.
    int reduce(int (*f)(int, int), int init) const;
    // Calls f on each element in order.
    void apply(void (*f)(int)) const;

    // True when every element equals v (and for an empty vector).
    bool operator==(int v) const;

    // Sorts ascending in place.
    void Qsort();
    // 0-based index of an element equal to x in a vector already sorted
    // ascending, or -1.  Does not sort first.
    int Bsearch(int x) const;

    IntVecT operator-() const;

    // Element-wise, in place; a length mismatch is fatal.  quotient truncates
    // toward zero and does not guard a zero element (the platform's
    // arithmetic fault ends the process).
    IntVec& operator+=(IntVec const& v);
    IntVec& operator-=(IntVec const& v);
    IntVec& product(IntVec const& v);
    IntVec& quotient(IntVec const& v);

    // With a scalar, in place, unchecked except that dividing by 0 is fatal.
    IntVec& operator+=(int d);
    IntVec& operator-=(int d);
    IntVec& operator*=(int d);
    IntVec& product(int d);                // the same as *=
    IntVec& operator/=(int d);             // truncates toward zero
    IntVec& quotient(int d);               // the same as /=

    // Extremes: 0 for an empty vector.  Indices are 1-based; ties keep the
    // earliest position.
    int max_val() const;
    int min_val() const;
    unsigned int max_index() const;
    unsigned int min_index() const;
    int sum() const;                       // 0 when empty
    int sumsq() const;                     // 0 when empty

    unsigned int n;     // number of elements
    int* data;          // owned, malloc'd; null when empty
};

// A result carrier: every value-producing operation returns one, and an
// IntVec constructed or assigned from it takes its buffer instead of copying.
class IntVecT : public IntVec {
public:
    IntVecT() {}
    explicit IntVecT(unsigned int n) : IntVec(n) {}
    IntVecT(IntVecT&& t);                  // take-over
    IntVecT(IntVecT const&) = delete;

    IntVecT& operator=(IntVec const& v);   // deep copy
    IntVecT& operator=(IntVecT const& v);  // deep copy
    IntVecT& operator=(IntVecT& t);        // take-over; nothing on self
    IntVecT& operator=(IntVecT&& t);       // take-over
    // Every element becomes v; fatal on an empty vector (with the
    // temporary's own wording of the message).
    IntVecT& operator=(int v);

    // Negates in place and hands itself on.
    IntVecT& operator-();
    // Element-wise, in place; a length mismatch is fatal.  The scalar forms
    // are IntVec's.
    using IntVec::operator+=;
    using IntVec::operator-=;
    IntVecT& operator+=(IntVec const& v);
    IntVecT& operator-=(IntVec const& v);
};

// Length mismatches in the vector-vector forms are fatal.  quotient and the
// division by a scalar truncate toward zero and do not guard zero divisors.
IntVecT operator+(IntVec const& a, IntVec const& b);
IntVecT operator-(IntVec const& a, IntVec const& b);
IntVecT product(IntVec const& a, IntVec const& b);
IntVecT quotient(IntVec const& a, IntVec const& b);
IntVecT operator+(IntVec const& a, int d);
IntVecT operator-(IntVec const& a, int d);
IntVecT operator*(IntVec const& a, int d);
IntVecT operator/(IntVec const& a, int d);
// Scalar product; fatal on a length mismatch.
int operator*(IntVec const& a, IntVec const& b);

// Equal lengths and equal elements; two empty vectors are equal.
bool operator==(IntVec const& a, IntVec const& b);
// a followed by b.
IntVecT operator&(IntVec const& a, IntVec const& b);
// Two-way merge: cmp(x, y) <= 0 takes x from a first, so ties favour a and
// two inputs sorted by cmp give a sorted result.
IntVecT merge(IntVec const& a, IntVec const& b, int (*cmp)(int, int));
IntVecT reverse(IntVec const& a);
// f(a[i]) for every element.
IntVecT map(int (*f)(int), IntVec const& a);
// f(a[i], b[i]) for every element; fatal on a length mismatch.
IntVecT combine(int (*f)(int, int), IntVec const& a, IntVec const& b);

// Every element right-aligned in width 5, no separator and no newline;
// an empty vector writes "\n\t(Zero size vector)\n".
std::ostream& operator<<(std::ostream& os, IntVec const& v);

#endif
