// A strict reader of the material record, for callers that take records from
// users and must refuse bad data with a reason instead of storing it.
//
// The record is the one lamina1::LeerCampoMater reads: the layer count, then
// per layer 17 reals and the failure flag, separated by white space.  Where
// LeerCampoMater takes whatever sscanf can convert and ignores what follows,
// this reader accepts only (numbers in the grammar of laminate/decimal.h):
//   - a layer count written as decimal digits, from 1 to kMaxLayers;
//   - per layer, exactly 18 fields: 17 decimal reals ([+-]digits[.digits]
//     [e[+-]digits], no hexadecimal, no inf or nan) that are finite, and a flag
//     written 0 or 1;
//   - nothing after the last layer but white space;
//   - moduli E1 E2 G12 G13 G23 and the thickness t > 0; strengths Xc Yc Xt Yt
//     S12 S23 S13 and the specific weight sw >= 0; spare and angle any finite
//     value;
//   - moduli, thickness and the strengths other than 0 from 1e-30 to 1e30
//     (checked last, after the stiffness):
//     within that span every constant the failure criteria form from them is
//     a normal finite number (Xt Xc, 8 G12 S13 / (pi t), the fibre-kinking
//     angle, ...), so no criterion overflows or underflows on the record
//     alone (strengths of 1e308 would make the Tsai-Wu coefficients 0 and the
//     in-situ LaRC04 strengths infinite);
//   - a Poisson ratio that keeps the ply stiffness positive definite:
//     1 - nu12 * nu21 > 0 with nu21 = nu12 * E2 / E1;
//   - an assembled 8 x 8 laminate stiffness K, built as the model builds it,
//     that is finite, invertible, and has a finite inverse.
// A strength of 0 is accepted and stands for a strength not given: the
// criteria divide by it, so an index that uses it is infinite or NaN, and the
// simple Tsai-Wu factor answers -1.
//
// Whatever this reader accepts, LeerCampoMater reads to the same values, and
// the stiffness a definition builds from it can be inverted: no result
// operation on it reaches the fatal paths of the linear-algebra layer.
#ifndef LAMINATE_LAMINATE_STRICT_RECORD_H
#define LAMINATE_LAMINATE_STRICT_RECORD_H

#include <cstddef>
#include <string>
#include <vector>

class StrictRecord {
public:
    // The largest layer count accepted.  No laminate comes near it; the bound
    // keeps a mistyped count from sizing millions of layers.
    static const int kMaxLayers = 10000;
    static const int kFields = 18;  // per layer: 17 reals and the flag

    // Field names in record order, as refusals name them.
    static char const* const kFieldNames[kFields];

    // What a refusal breaks.  The order is that of the words in ruleWord().
    enum Rule {
        NONE,         // nothing refused
        COUNT,        // layer count not decimal digits
        RANGE,        // layer count outside 1..kMaxLayers
        MISSING,      // the record ends before this field
        NUMBER,       // not a decimal real
        FINITE,       // infinite or not a number (also for entries of K)
        POSITIVE,     // must be > 0
        NONNEGATIVE,  // must be >= 0
        FLAG,         // flag other than 0 or 1
        TRAILING,     // text after the last layer
        POISSON,      // ply stiffness not positive definite
        SINGULAR,     // K singular, or its inverse not finite
        MAGNITUDE     // a modulus, strength or thickness outside 1e-30..1e30
    };

    // Why a record was refused: where, which rule, and what was found there.
    struct Refusal {
        Rule rule = NONE;
        int layer = 0;              // 1-based; 0 for the count and for K
        std::string field;          // a kFieldNames entry, "count", "end" or "K"
        std::string value;          // the text or number found (cut to 40 chars)

        // "layer 3, G13: must be > 0, got 0" and the like.
        std::string message() const;
        // One upper-case word per rule (COUNT, RANGE, ... MAGNITUDE), for
        // error codes a script can switch on.
        char const* ruleWord() const;
    };

    // Reads and checks the record: text of len bytes (need not end in a
    // zero).  Returns true when every rule holds, stiffness included;
    // otherwise refusal() says why.  Allocates only for what was read.
    bool read(char const* text, size_t len);
    bool read(std::string const& text) { return read(text.data(), text.size()); }

    Refusal const& refusal() const { return refusal_; }

    // After an accepted read: the layer count and field f (0..17, record
    // order) of layer k (1-based).  The flag is given as 0.0 or 1.0.
    int layers() const { return layers_; }
    double field(int k, int f) const { return values_[(k - 1) * kFields + f]; }

    // The accepted record as a zero-terminated text for LeerCampoMater.
    char* text() { return &text_[0]; }

private:
    bool refuse(Rule rule, int layer, std::string const& field, std::string const& value);
    bool readCount(char const*& p, char const* end);
    bool readLayer(char const*& p, char const* end, int k);
    bool checkField(int k, int f, char const* tok, size_t n);
    bool checkStiffness();
    void outOfSpan(int layer, char const* field, std::string const& value);

    Refusal refusal_;
    Refusal outOfSpan_;           // the first field outside its span, checked last
    int layers_ = 0;
    std::vector<double> values_;  // kFields per layer, layer 1 first
    std::string text_;            // copy of the accepted record
};

#endif
