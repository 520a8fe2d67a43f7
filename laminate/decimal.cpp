#include "laminate/laminate/decimal.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>
#include <strings.h>

namespace laminate_model {

namespace {

bool digit(char c) { return c >= '0' && c <= '9'; }

// The grammar, without the value.
bool grammar(char const* t, size_t n)
{
    size_t i = 0;
    if (i < n && (t[i] == '+' || t[i] == '-')) ++i;
    size_t digits = 0;
    while (i < n && digit(t[i])) ++i, ++digits;
    if (i < n && t[i] == '.') {
        ++i;
        while (i < n && digit(t[i])) ++i, ++digits;
    }
    if (digits == 0) return false;
    if (i < n && (t[i] == 'e' || t[i] == 'E')) {
        ++i;
        if (i < n && (t[i] == '+' || t[i] == '-')) ++i;
        size_t expDigits = 0;
        while (i < n && digit(t[i])) ++i, ++expDigits;
        if (expDigits == 0) return false;
    }
    return i == n;
}

// The spellings of infinity and not-a-number that strtod would read, so that
// they are refused as not finite rather than as not a number.
bool nonFiniteWord(char const* t, size_t n)
{
    if (n > 0 && (t[0] == '+' || t[0] == '-')) ++t, --n;
    auto is = [t, n](char const* w) {
        return n >= std::strlen(w) && strncasecmp(t, w, std::strlen(w)) == 0;
    };
    return (n == 3 && is("inf")) || (n == 8 && is("infinity")) ||
           (is("nan") && (n == 3 || (t[3] == '(' && t[n - 1] == ')')));
}

}  // namespace

bool isDecimal(char const* text, size_t n)
{
    return grammar(text, n);
}

DecimalRead readDecimal(char const* text, size_t n, double& value)
{
    if (nonFiniteWord(text, n)) return DecimalRead::NotFinite;
    if (!grammar(text, n)) return DecimalRead::NotDecimal;
    // strtod wants a terminated string; most numbers fit on the stack.
    char small[64];
    std::string large;
    char const* z = small;
    if (n < sizeof small) {
        std::memcpy(small, text, n);
        small[n] = '\0';
    } else {
        large.assign(text, n);
        z = large.c_str();
    }
    double const v = std::strtod(z, nullptr);
    if (!std::isfinite(v)) return DecimalRead::NotFinite;
    value = v;
    return DecimalRead::Ok;
}

}  // namespace laminate_model
