// The one grammar of the numbers a user writes to this library: in a
// material record and in a load case alike.
//
// A number is [+-] digits [. [digits]] | [+-] . digits, then optionally
// e|E [+-] digits, with nothing before or after it: no blanks, no
// hexadecimal, no inf or nan, no octal reading of leading zeros ("010" is
// ten).  Its value is the one strtod gives (and the record reader's sscanf
// %lf), and it must be finite: "1e999" is refused.  A value too small for a
// double reads as 0 or a subnormal, as strtod reads it.
#ifndef LAMINATE_LAMINATE_DECIMAL_H
#define LAMINATE_LAMINATE_DECIMAL_H

#include <cstddef>

namespace laminate_model {

enum class DecimalRead {
    Ok,          // value set
    NotDecimal,  // not of the grammar above (value untouched)
    NotFinite    // a spelling of inf or nan, or beyond the largest double (value untouched)
};

// Reads the n bytes at text (need not end in a zero) as one number.
DecimalRead readDecimal(char const* text, size_t n, double& value);

// Whether the n bytes at text are of the grammar (finite or not).  A caller
// with a correctly rounded reader of its own may convert such text with it
// and get readDecimal's value, except for integers written with a leading
// zero ("010"), which some readers take for octal.
bool isDecimal(char const* text, size_t n);

}  // namespace laminate_model

#endif
