#include "laminate/intvec/sortvec.h"

#include <cstdlib>
#include <cstring>
#include <iomanip>
#include <new>
#include <ostream>

#include "laminate/intvec/intvec.h"
#include "laminate/intvec/sort.h"
#include "laminate/util/errorwriter.h"

namespace {

// Both arrays stay in the malloc family because resize reallocates them.
int* Allocate(unsigned int n)
{
    if (n == 0) return nullptr;
    int* p = static_cast<int*>(std::malloc(sizeof(int) * static_cast<size_t>(n)));
    if (!p) throw std::bad_alloc();
    return p;
}

void Copy(int* to, int const* from, unsigned int n)
{
    if (n) std::memcpy(to, from, sizeof(int) * static_cast<size_t>(n));
}

[[noreturn]] void HeapExhausted()
{
    *errorwriter.error_stream << "Not space available on heap";
    errorwriter.WriteErrorAndQuit();
}

}  // namespace

SortVec::SortVec(unsigned int len)
    : n(len), pos(Allocate(len)), val(Allocate(len)), sorted(0)
{
    start();
}

SortVec::SortVec(SortVec const& s)
    : n(s.n), pos(Allocate(s.n)), val(Allocate(s.n)), sorted(0)
{
    Copy(pos, s.pos, n);
    Copy(val, s.val, n);
}

SortVec::~SortVec()
{
    std::free(pos);
    std::free(val);
}

SortVec& SortVec::operator=(SortVec const& s)
{
    if (this == &s) return *this;
    if (n != s.n) {
        std::free(pos);
        std::free(val);
        pos = nullptr;
        val = nullptr;
        n = 0;
        pos = Allocate(s.n);
        val = Allocate(s.n);
        n = s.n;
    }
    Copy(pos, s.pos, n);
    Copy(val, s.val, n);
    sorted = s.sorted;
    return *this;
}

SortVec& SortVec::operator=(IntVec const& v)
{
    const unsigned int len = v.length();
    if (n != len) {
        std::free(pos);
        std::free(val);
        pos = nullptr;
        val = nullptr;
        n = 0;
        pos = Allocate(len);
        val = Allocate(len);
        n = len;
    }
    for (unsigned int k = 0; k < n; ++k) {
        pos[k] = static_cast<int>(k) + 1;
        val[k] = v[k];
    }
    Qsort();
    return *this;
}

void SortVec::start()
{
    for (unsigned int k = 0; k < n; ++k) {
        pos[k] = static_cast<int>(k) + 1;
        val[k] = 0;
    }
}

void SortVec::resize(int len)
{
    // A negative length is a request no heap can meet.
    if (len < 0) HeapExhausted();
    if (len == 0) {
        std::free(pos);
        std::free(val);
        pos = nullptr;
        val = nullptr;
    } else {
        // realloc of a null array is a fresh allocation.
        const size_t bytes = sizeof(int) * static_cast<size_t>(len);
        void* p = std::realloc(pos, bytes);
        if (!p) HeapExhausted();
        pos = static_cast<int*>(p);
        p = std::realloc(val, bytes);
        if (!p) HeapExhausted();
        val = static_cast<int*>(p);
    }
    n = static_cast<unsigned int>(len);
    sorted = 0;
    start();
}

void SortVec::Qsort()
{
    QSort(val, pos, 0, static_cast<int>(n));
    sorted = 1;
}

void SortVec::set_val(IntVec& v)
{
    if (v.length() < n) {
        *errorwriter.error_stream << "Different lenght vectors " << n << " != " << v.length();
        errorwriter.WriteErrorAndQuit();
    }
    for (unsigned int k = 0; k < n; ++k) val[k] = v[k];
}

int SortVec::Bsearch(int x)
{
    if (!sorted) Qsort();
    return BSearch(x, val, 0, static_cast<int>(n) - 1);
}

int SortVec::Exist(int x) { return Bsearch(x); }

int SortVec::operator()(int x)
{
    const int k = Bsearch(x);
    if (k < 0) {
        *errorwriter.error_stream << "SortVec::Bsearch Element " << x << " not found";
        errorwriter.WriteErrorAndQuit();
    }
    return pos[k];
}

int SortVec::operator[](int x)
{
    const int k = Bsearch(x);
    return k < 0 ? -1 : pos[k];
}

std::ostream& operator<<(std::ostream& os, SortVec const& s)
{
    if (s.n == 0) return os << "\n\t(Zero size vector)\n";
    const int w = static_cast<int>(os.precision() + os.width() + 2);
    os.width(0);    // the caller's width sizes the values, not the first label
    for (unsigned int k = 0; k < s.n; ++k)
        os << "A(" << s.pos[k] << ")= " << std::setw(w) << s.val[k] << "  ";
    return os << std::flush;
}
