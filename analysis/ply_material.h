// A ply material with named properties: the unidirectional ply a layup is
// made of, written once as key-value pairs instead of 17 positional numbers
// per layer.
//
// Every key has a row in PlyMaterial::kKeys (name, kind, bounds), whose order
// is the order get-style listings use.  Numbers are read with the record's
// grammar (decimal only, finite) and its rules (moduli and thickness > 0,
// strengths >= 0, nu12 keeping the ply stiffness positive definite), so a
// material that is accepted always makes records the strict reader accepts.
// A definition is accepted or refused as a whole: read() leaves the object
// as it was when it refuses.
//
// Defaults, applied after the given values are checked:
//   G13 = G12; G23 = E2 / (2 (1 + nu23)) with nu23 = 0.4 unless given;
//   p12t p12c p23t p23c (Puck's inclinations) from the fibre kind, carbon or
//   glass (none for aramid or an unspecified fibre);
//   S13 = S12 (transverse isotropy) when S12 is given;
//   S23 = Yc / (2 (1 + p23c)) when Yc and p23c are known (Puck's fracture
//   resistance of the action plane against transverse shear);
//   alpha0 = 53 degrees; assess = 1; units N-mm-MPa.
// Every other key stays "not given": strengths, toughnesses, expansion
// coefficients, strain allowables, the thickness, the specific weight.
#ifndef LAMINATE_ANALYSIS_PLY_MATERIAL_H
#define LAMINATE_ANALYSIS_PLY_MATERIAL_H

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "laminate/laminate/decimal.h"

namespace laminate::analysis {

// Values are read with the record's number grammar (laminate/decimal.h).
using laminate_model::DecimalRead;
using laminate_model::readDecimal;

// The unit systems a material may declare.  Nothing is converted: a material
// holds its numbers in its own system, and a layup takes one system only.
enum class UnitSystem { NmmMPa, NmPa };
char const* unitName(UnitSystem u);  // "N-mm-MPa", "N-m-Pa"

enum class Fibre { Unspecified, Carbon, Glass, Aramid };

class PlyMaterial {
public:
    // The keys, in listing order.
    enum Key {
        E1, E2, nu12, G12, G13, G23, nu23,        // elastic constants
        Xt, Xc, Yt, Yc, S12, S23, S13,            // strengths
        t, sw,                                    // thickness, specific weight
        GIc, GIIc,                                // fracture toughnesses
        alpha1, alpha2, beta1, beta2,             // thermal and moisture expansion
        e1t, e1c, e2t, e2c, g12u,                 // strain allowables
        p12t, p12c, p23t, p23c, alpha0,           // criterion parameters
        assess, fibre, units, source, note,       // words and free text
        kKeyCount
    };

    // What a value must be.
    enum Kind {
        POSITIVE_REAL,     // > 0
        NONNEGATIVE_REAL,  // >= 0; 0 stands for "not given", as in the record
        ANY_REAL,          // any finite number
        POISSON_RATIO,     // nu12: 1 - nu12 nu21 > 0 with nu21 = nu12 E2 / E1
        BOUNDED_REAL,      // inside the row's bounds
        ONE_OF,            // one of the row's words
        FREE_TEXT          // anything
    };

    struct KeyRow {
        char const* name;
        Kind kind;
        double low, high;           // BOUNDED_REAL only
        bool lowIncluded, highIncluded;
        char const* const* words;   // ONE_OF only: NULL-terminated
    };
    static KeyRow const kKeys[kKeyCount];

    // Index of the key named name, or kKeyCount.
    static Key find(std::string const& name);
    // "E1, E2, nu12, ..., note": the known keys for messages.
    static std::string keyList();

    // What a refusal breaks.  The order is that of the words in ruleWord().
    enum Rule {
        NONE,
        UNKNOWN,      // a key not in kKeys
        DUPLICATE,    // a key given twice
        MISSING,      // a required key (E1 E2 nu12 G12) not given
        NUMBER,       // not a decimal number
        FINITE,       // infinite
        POSITIVE,     // must be > 0
        NONNEGATIVE,  // must be >= 0
        RANGE,        // outside the key's bounds
        POISSON,      // nu12 leaves the ply stiffness not positive definite
        WORD          // not one of the key's words
    };

    struct Refusal {
        Rule rule = NONE;
        std::string key;    // the key concerned
        std::string value;  // the text found (cut to 40 characters)
        int pair = -1;      // index of the pair refused (nu12's for POISSON);
                            // -1 for a key missing or a derived value

        // "E1: must be > 0, got -5" and the like.
        std::string message() const;
        char const* ruleWord() const;
    };

    // Reads a definition given as key-value pairs, in the order written.
    // Returns true and replaces the material's values when every rule
    // holds; otherwise returns false, leaves the material as it was and
    // refusal() says why: the first bad pair in the order written, then the
    // first required key missing, then the Poisson rule.
    bool read(std::vector<std::pair<std::string, std::string>> const& pairs);

    Refusal const& refusal() const { return refusal_; }

    // After an accepted read.  has(): given or set by a default.
    bool has(Key k) const { return state_[k] != ABSENT; }
    bool given(Key k) const { return state_[k] == GIVEN; }
    // The value of a number key; 0 when it has none.
    double number(Key k) const { return number_[k]; }
    // The text of a key as written (also of a number); empty for a default
    // of a number key.
    std::string const& text(Key k) const { return text_[k]; }

    UnitSystem unitSystem() const { return units_; }
    Fibre fibreKind() const { return fibre_; }

private:
    enum State { ABSENT, GIVEN, DEFAULT };

    bool refuse(Rule rule, std::string const& key, std::string const& value);
    bool readValue(Key k, std::string const& value);
    void setDefault(Key k, double v);
    void applyDefaults();

    State state_[kKeyCount] = {};
    double number_[kKeyCount] = {};
    std::string text_[kKeyCount];
    UnitSystem units_ = UnitSystem::NmmMPa;
    Fibre fibre_ = Fibre::Unspecified;
    Refusal refusal_;
};

}  // namespace laminate::analysis

#endif
