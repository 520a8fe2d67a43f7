// Sorting and searching of int and double arrays.
//
// Raw-array forms take 0-based bounds and trust them.  Sorts take the index
// of the first element and the element count (the run is
// a[first .. first+count-1]); searches take an inclusive run a[lo .. hi] and
// return a 0-based index, or -1 when the value is absent.  A sort that
// carries a second array applies every move of the keys to it as well, so
// pairs (keys[k], b[k]) stay together.  Sorts are ascending and not stable.
//
// The container forms take the array from operator[](0) and the length from
// the container; a carried container shorter than the keys, or a run outside
// the containers, is fatal (message through errorwriter, exit status 2).
#ifndef LAMINATE_INTVEC_SORT_H
#define LAMINATE_INTVEC_SORT_H

class IntVec;
namespace vantrel {
class ReaVec;
}

// For the C library's qsort/bsearch: -1, 0 or 1 as *a is below, equal to or
// above *b.  compare_real answers -1 whenever *b <= *a is false, which
// includes every comparison with a NaN.
int compare_int(void const* a, void const* b);
int compare_real(void const* a, void const* b);

// Bisection over a sorted run.  With several equal elements, the first one
// the bisection meets is returned.  An empty run (hi < lo) reads nothing.
int BSearch(double x, double* a, int lo, int hi);
int BSearch(int x, int* a, int lo, int hi);
int BSearch(vantrel::ReaVec& v, double x);
int BSearch(IntVec& v, int x);

// Scan from lo upward; the first equal element wins.
int LSearch(double x, double* a, int lo, int hi);
int LSearch(int x, int* a, int lo, int hi);
int LSearch(vantrel::ReaVec& v, double x);
int LSearch(IntVec& v, int x);

void QSort(double* a, int first, int count);
void QSort(int* a, int first, int count);
void QSort(int* keys, double* b, int first, int count);
void QSort(double* keys, double* b, int first, int count);
void QSort(int* keys, int* b, int first, int count);
void QSort(vantrel::ReaVec& a);
void QSort(IntVec& a);
void QSort(IntVec& keys, vantrel::ReaVec& b);
void QSort(IntVec& keys, vantrel::ReaVec& b, int first, int count);
void QSort(vantrel::ReaVec& keys, vantrel::ReaVec& b);
void QSort(IntVec& keys, IntVec& b);

#endif
