// Integer values that remember where they came from.
//
// Entry k (counted from 0) is the pair (val[k], pos[k]): a value and its
// 1-based place of origin.  Sorting permutes the pairs together by value;
// lookups by value answer the place of origin.  Both arrays come from the
// malloc family so that resize can use realloc.
#ifndef LAMINATE_INTVEC_SORTVEC_H
#define LAMINATE_INTVEC_SORTVEC_H

#include <iosfwd>

class IntVec;

class SortVec {
public:
    // n entries with places 1..n and values 0, not sorted.
    explicit SortVec(unsigned int n = 0);
    // Copies the entries; the copy counts as unsorted, so its first lookup
    // sorts again.
    SortVec(SortVec const& s);
    ~SortVec();

    // Copies the entries and the sorted state; nothing on self-assignment.
    SortVec& operator=(SortVec const& s);
    // Entry k becomes (v[k], k+1), then the entries are sorted.
    SortVec& operator=(IntVec const& v);

    // Places 1..n, values 0; the sorted state is left as it was.
    void start();
    // New length; all contents are discarded as by start() and the entries
    // count as unsorted.  Fatal when the heap is exhausted (or n < 0).
    void resize(int n);
    // Sorts the entries by value.
    void Qsort();
    // Copies the first n values of v into val, keeping the places and the
    // sorted state.  A v shorter than n entries is fatal.
    void set_val(IntVec& v);

    // 0-based entry index holding x, or -1; sorts first when unsorted.
    int Bsearch(int x);
    // The same entry index (not a truth value).
    int Exist(int x);
    // Place of origin of value x; an absent x is fatal.
    int operator()(int x);
    // Place of origin of value x, or -1 when absent.
    int operator[](int x);

    unsigned int n;     // number of entries
    int* pos;           // owned, malloc'd: places of origin, 1-based
    int* val;           // owned, malloc'd: the values, the sort keys
    int sorted;         // 1 once sorted, 0 after construction or resize
};

// "A(place)= value  " for each entry in stored order on one line, the value
// right-aligned in the stream's precision + width + 2 columns; an empty one
// writes "\n\t(Zero size vector)\n".
std::ostream& operator<<(std::ostream& os, SortVec const& s);

#endif
