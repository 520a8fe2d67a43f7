#include "laminate/intvec/intvec.h"

#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <iomanip>
#include <new>
#include <ostream>

#include "laminate/intvec/sort.h"
#include "laminate/util/errorwriter.h"

namespace {

// Every IntVec buffer lives in the malloc family: resize grows it with
// realloc, so it must never come from array-new.
int* Allocate(unsigned int n)
{
    if (n == 0) return nullptr;
    int* p = static_cast<int*>(std::malloc(sizeof(int) * static_cast<size_t>(n)));
    if (!p) throw std::bad_alloc();
    return p;
}

int* Duplicate(int const* src, unsigned int n)
{
    int* p = Allocate(n);
    if (n) std::memcpy(p, src, sizeof(int) * static_cast<size_t>(n));
    return p;
}

// 32-bit arithmetic with wrap-around: done on unsigned values, whose overflow
// is defined, and converted back.
inline int Add(int a, int b) { return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b)); }
inline int Sub(int a, int b) { return static_cast<int>(static_cast<unsigned>(a) - static_cast<unsigned>(b)); }
inline int Mul(int a, int b) { return static_cast<int>(static_cast<unsigned>(a) * static_cast<unsigned>(b)); }
inline int Neg(int a) { return static_cast<int>(0u - static_cast<unsigned>(a)); }

// Division truncating toward zero.  A zero divisor is not a reported error
// here: it ends the process with the arithmetic fault signal, raised
// explicitly so that the outcome does not depend on the optimiser.
inline int Div(int a, int b)
{
    if (b == 0) {
        std::raise(SIGFPE);
        std::abort();
    }
    if (b == -1) return Neg(a);     // INT_MIN / -1 wraps to INT_MIN
    return a / b;
}

void CheckLengths(unsigned int a, unsigned int b)
{
    if (a == b) return;
    *errorwriter.error_stream << "Different lenght vectors " << a << " != " << b;
    errorwriter.WriteErrorAndQuit();
}

// Resolves a (start, count) run of an n-element vector to its first 0-based
// position and its element count.  The arithmetic is unsigned on purpose: a
// start of 0 or a run past the end wraps and fails the same test.
void ResolveRun(unsigned int n, unsigned int start, unsigned int count,
                unsigned int* first, unsigned int* len)
{
    unsigned int f = start - 1;
    if (count == 0) count = n - f;
    unsigned int last = f + count - 1;
    if (last < f || last >= n) {
        *errorwriter.error_stream << "Index " << last << " out of range.";
        errorwriter.WriteErrorAndQuit();
    }
    *first = f;
    *len = count;
}

void FillError(int v, char const* tail)
{
    *errorwriter.error_stream << "Can't fill with " << v << tail;
    errorwriter.WriteErrorAndQuit();
}

}  // namespace

// ---------------------------------------------------------------- IntVec

IntVec::IntVec(unsigned int len) : n(len), data(Allocate(len))
{
    if (n) std::memset(data, 0, sizeof(int) * static_cast<size_t>(n));
}

IntVec::IntVec(IntVec const& v) : n(v.n), data(Duplicate(v.data, v.n)) {}

IntVec::IntVec(IntVecT& t) : n(t.n), data(t.data)
{
    t.data = nullptr;
    t.n = 0;
}

IntVec::IntVec(IntVecT&& t) : IntVec(static_cast<IntVecT&>(t)) {}

IntVec::~IntVec() { std::free(data); }

IntVec& IntVec::operator=(IntVec const& v)
{
    if (this == &v) return *this;
    if (n != v.n) {
        int* p = Allocate(v.n);
        std::free(data);
        data = p;
        n = v.n;
    }
    if (n) std::memcpy(data, v.data, sizeof(int) * static_cast<size_t>(n));
    return *this;
}

IntVec& IntVec::operator=(IntVecT& t)
{
    if (this == &t) return *this;
    n = t.n;
    std::free(data);
    data = t.data;
    t.data = nullptr;
    t.n = 0;
    return *this;
}

IntVec& IntVec::operator=(IntVecT&& t) { return *this = static_cast<IntVecT&>(t); }

IntVec& IntVec::operator=(int v)
{
    if (n == 0) FillError(v, " a zero length vector.");
    for (unsigned int i = 0; i < n; ++i) data[i] = v;
    return *this;
}

void IntVec::resize(unsigned int len, int v)
{
    if (len == 0) {
        std::free(data);
        data = nullptr;
        n = 0;
        return;
    }
    // realloc of a null buffer is a fresh allocation, so the first sizing
    // and every later one take the same path.
    void* p = std::realloc(data, sizeof(int) * static_cast<size_t>(len));
    if (!p) {
        *errorwriter.error_stream << "Not space available on heap";
        errorwriter.WriteErrorAndQuit();
    }
    data = static_cast<int*>(p);
    for (unsigned int i = n; i < len; ++i) data[i] = v;
    n = len;
}

void IntVec::fill(int v, unsigned int start, unsigned int count)
{
    unsigned int first, len;
    ResolveRun(n, start, count, &first, &len);
    for (unsigned int i = 0; i < len; ++i) data[first + i] = v;
}

IntVecT IntVec::subVec(unsigned int start, unsigned int count) const
{
    unsigned int first, len;
    ResolveRun(n, start, count, &first, &len);
    IntVecT r(len);
    std::memcpy(r.data, data + first, sizeof(int) * static_cast<size_t>(len));
    return r;
}

unsigned int IntVec::index(int v) const
{
    for (unsigned int i = 0; i < n; ++i)
        if (data[i] == v) return i + 1;
    return 0;
}

IntVec& IntVec::reverse()
{
    for (unsigned int i = 0, j = n; i + 1 < j; ++i, --j) {
        int t = data[i];
        data[i] = data[j - 1];
        data[j - 1] = t;
    }
    return *this;
}

int IntVec::reduce(int (*f)(int, int), int init) const
{
    int acc = init;
    for (unsigned int i = 0; i < n; ++i) acc = f(acc, data[i]);
    return acc;
}

void IntVec::apply(void (*f)(int)) const
{
    for (unsigned int i = 0; i < n; ++i) f(data[i]);
}

bool IntVec::operator==(int v) const
{
    for (unsigned int i = 0; i < n; ++i)
        if (data[i] != v) return false;
    return true;
}

void IntVec::Qsort() { QSort(data, 0, static_cast<int>(n)); }

int IntVec::Bsearch(int x) const { return BSearch(x, data, 0, static_cast<int>(n) - 1); }

IntVecT IntVec::operator-() const
{
    IntVecT r(n);
    for (unsigned int i = 0; i < n; ++i) r.data[i] = Neg(data[i]);
    return r;
}

IntVec& IntVec::operator+=(IntVec const& v)
{
    CheckLengths(n, v.n);
    for (unsigned int i = 0; i < n; ++i) data[i] = Add(data[i], v.data[i]);
    return *this;
}

IntVec& IntVec::operator-=(IntVec const& v)
{
    CheckLengths(n, v.n);
    for (unsigned int i = 0; i < n; ++i) data[i] = Sub(data[i], v.data[i]);
    return *this;
}

IntVec& IntVec::product(IntVec const& v)
{
    CheckLengths(n, v.n);
    for (unsigned int i = 0; i < n; ++i) data[i] = Mul(data[i], v.data[i]);
    return *this;
}

IntVec& IntVec::quotient(IntVec const& v)
{
    CheckLengths(n, v.n);
    for (unsigned int i = 0; i < n; ++i) data[i] = Div(data[i], v.data[i]);
    return *this;
}

IntVec& IntVec::operator+=(int d)
{
    for (unsigned int i = 0; i < n; ++i) data[i] = Add(data[i], d);
    return *this;
}

IntVec& IntVec::operator-=(int d)
{
    for (unsigned int i = 0; i < n; ++i) data[i] = Sub(data[i], d);
    return *this;
}

IntVec& IntVec::operator*=(int d)
{
    for (unsigned int i = 0; i < n; ++i) data[i] = Mul(data[i], d);
    return *this;
}

IntVec& IntVec::product(int d) { return *this *= d; }

IntVec& IntVec::operator/=(int d)
{
    if (d == 0) {
        *errorwriter.error_stream << "Division by zero.";
        errorwriter.WriteErrorAndQuit();
    }
    for (unsigned int i = 0; i < n; ++i) data[i] = Div(data[i], d);
    return *this;
}

IntVec& IntVec::quotient(int d) { return *this /= d; }

int IntVec::max_val() const
{
    if (n == 0) return 0;
    return data[max_index() - 1];
}

int IntVec::min_val() const
{
    if (n == 0) return 0;
    return data[min_index() - 1];
}

unsigned int IntVec::max_index() const
{
    if (n == 0) return 0;
    unsigned int best = 0;
    for (unsigned int i = 1; i < n; ++i)
        if (data[i] > data[best]) best = i;     // strict: ties keep the earliest
    return best + 1;
}

unsigned int IntVec::min_index() const
{
    if (n == 0) return 0;
    unsigned int best = 0;
    for (unsigned int i = 1; i < n; ++i)
        if (data[i] < data[best]) best = i;
    return best + 1;
}

int IntVec::sum() const
{
    int s = 0;
    for (unsigned int i = 0; i < n; ++i) s = Add(s, data[i]);
    return s;
}

int IntVec::sumsq() const
{
    int s = 0;
    for (unsigned int i = 0; i < n; ++i) s = Add(s, Mul(data[i], data[i]));
    return s;
}

// ---------------------------------------------------------------- IntVecT

IntVecT::IntVecT(IntVecT&& t) : IntVec(static_cast<IntVecT&>(t)) {}

IntVecT& IntVecT::operator=(IntVec const& v)
{
    IntVec::operator=(v);
    return *this;
}

IntVecT& IntVecT::operator=(IntVecT const& v)
{
    IntVec::operator=(static_cast<IntVec const&>(v));
    return *this;
}

IntVecT& IntVecT::operator=(IntVecT& t)
{
    IntVec::operator=(t);
    return *this;
}

IntVecT& IntVecT::operator=(IntVecT&& t)
{
    IntVec::operator=(static_cast<IntVecT&>(t));
    return *this;
}

IntVecT& IntVecT::operator=(int v)
{
    // The temporary's message is spelt differently from the vector's; both
    // texts are kept as they are because callers match on them.
    if (n == 0) FillError(v, " a zero lenght vector.");
    for (unsigned int i = 0; i < n; ++i) data[i] = v;
    return *this;
}

IntVecT& IntVecT::operator-()
{
    for (unsigned int i = 0; i < n; ++i) data[i] = Neg(data[i]);
    return *this;
}

IntVecT& IntVecT::operator+=(IntVec const& v)
{
    IntVec::operator+=(v);
    return *this;
}

IntVecT& IntVecT::operator-=(IntVec const& v)
{
    IntVec::operator-=(v);
    return *this;
}

// ---------------------------------------------------------------- free

namespace {

IntVecT Elementwise(IntVec const& a, IntVec const& b, int (*op)(int, int))
{
    CheckLengths(a.n, b.n);
    IntVecT r(a.n);
    for (unsigned int i = 0; i < a.n; ++i) r.data[i] = op(a.data[i], b.data[i]);
    return r;
}

IntVecT WithScalar(IntVec const& a, int d, int (*op)(int, int))
{
    IntVecT r(a.n);
    for (unsigned int i = 0; i < a.n; ++i) r.data[i] = op(a.data[i], d);
    return r;
}

}  // namespace

IntVecT operator+(IntVec const& a, IntVec const& b) { return Elementwise(a, b, Add); }
IntVecT operator-(IntVec const& a, IntVec const& b) { return Elementwise(a, b, Sub); }
IntVecT product(IntVec const& a, IntVec const& b) { return Elementwise(a, b, Mul); }
IntVecT quotient(IntVec const& a, IntVec const& b) { return Elementwise(a, b, Div); }
IntVecT operator+(IntVec const& a, int d) { return WithScalar(a, d, Add); }
IntVecT operator-(IntVec const& a, int d) { return WithScalar(a, d, Sub); }
IntVecT operator*(IntVec const& a, int d) { return WithScalar(a, d, Mul); }
IntVecT operator/(IntVec const& a, int d) { return WithScalar(a, d, Div); }

int operator*(IntVec const& a, IntVec const& b)
{
    CheckLengths(a.n, b.n);
    int s = 0;
    for (unsigned int i = 0; i < a.n; ++i) s = Add(s, Mul(a.data[i], b.data[i]));
    return s;
}

bool operator==(IntVec const& a, IntVec const& b)
{
    if (a.n != b.n) return false;
    for (unsigned int i = 0; i < a.n; ++i)
        if (a.data[i] != b.data[i]) return false;
    return true;
}

IntVecT operator&(IntVec const& a, IntVec const& b)
{
    IntVecT r(a.n + b.n);
    if (a.n) std::memcpy(r.data, a.data, sizeof(int) * static_cast<size_t>(a.n));
    if (b.n) std::memcpy(r.data + a.n, b.data, sizeof(int) * static_cast<size_t>(b.n));
    return r;
}

IntVecT merge(IntVec const& a, IntVec const& b, int (*cmp)(int, int))
{
    IntVecT r(a.n + b.n);
    unsigned int i = 0, j = 0, k = 0;
    while (i < a.n && j < b.n)
        r.data[k++] = cmp(a.data[i], b.data[j]) <= 0 ? a.data[i++] : b.data[j++];
    while (i < a.n) r.data[k++] = a.data[i++];
    while (j < b.n) r.data[k++] = b.data[j++];
    return r;
}

IntVecT reverse(IntVec const& a)
{
    IntVecT r(a.n);
    for (unsigned int i = 0; i < a.n; ++i) r.data[i] = a.data[a.n - 1 - i];
    return r;
}

IntVecT map(int (*f)(int), IntVec const& a)
{
    IntVecT r(a.n);
    for (unsigned int i = 0; i < a.n; ++i) r.data[i] = f(a.data[i]);
    return r;
}

IntVecT combine(int (*f)(int, int), IntVec const& a, IntVec const& b)
{
    return Elementwise(a, b, f);
}

std::ostream& operator<<(std::ostream& os, IntVec const& v)
{
    if (v.n == 0) return os << "\n\t(Zero size vector)\n";
    for (unsigned int i = 0; i < v.n; ++i) os << std::setw(5) << v.data[i];
    return os << std::flush;
}
