// Ply materials: the key table, the checks of each value, and the defaults.
#include "laminate/analysis/ply_material.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <strings.h>

namespace laminate::analysis {

namespace {

size_t const kShownChars = 40;  // longest text quoted back in a refusal

// A value quoted back: at most kShownChars bytes, cut before a UTF-8
// continuation byte, with "..." when cut.
std::string shown(std::string const& s)
{
    if (s.size() <= kShownChars) return s;
    size_t cut = kShownChars;
    while (cut > 0 && (static_cast<unsigned char>(s[cut]) & 0xC0) == 0x80) --cut;
    return s.substr(0, cut) + "...";
}

char const* const kUnitWords[] = {"N-mm-MPa", "N-m-Pa", nullptr};
char const* const kFibreWords[] = {"carbon", "glass", "aramid", nullptr};
char const* const kFlagWords[] = {"0", "1", nullptr};

double const kDefaultNu23 = 0.4;
double const kFractureAngle = 53.0;  // degrees, the angle LaRC04 uses

// Puck's inclinations p12t p12c p23t p23c by fibre kind, as recommended for
// epoxy matrices; p23 is the middle of the recommended range.
struct Inclinations {
    Fibre fibre;
    double p12t, p12c, p23t, p23c;
};
Inclinations const kInclinations[] = {
    {Fibre::Carbon, 0.35, 0.30, 0.275, 0.275},
    {Fibre::Glass, 0.30, 0.25, 0.225, 0.225},
};

}  // namespace

char const* unitName(UnitSystem u)
{
    return kUnitWords[u == UnitSystem::NmmMPa ? 0 : 1];
}

PlyMaterial::KeyRow const PlyMaterial::kKeys[kKeyCount] = {
    {"E1", POSITIVE_REAL, 0, 0, false, false, nullptr},
    {"E2", POSITIVE_REAL, 0, 0, false, false, nullptr},
    {"nu12", POISSON_RATIO, 0, 0, false, false, nullptr},
    {"G12", POSITIVE_REAL, 0, 0, false, false, nullptr},
    {"G13", POSITIVE_REAL, 0, 0, false, false, nullptr},
    {"G23", POSITIVE_REAL, 0, 0, false, false, nullptr},
    {"nu23", BOUNDED_REAL, -1, 1, false, false, nullptr},
    {"Xt", NONNEGATIVE_REAL, 0, 0, false, false, nullptr},
    {"Xc", NONNEGATIVE_REAL, 0, 0, false, false, nullptr},
    {"Yt", NONNEGATIVE_REAL, 0, 0, false, false, nullptr},
    {"Yc", NONNEGATIVE_REAL, 0, 0, false, false, nullptr},
    {"S12", NONNEGATIVE_REAL, 0, 0, false, false, nullptr},
    {"S23", NONNEGATIVE_REAL, 0, 0, false, false, nullptr},
    {"S13", NONNEGATIVE_REAL, 0, 0, false, false, nullptr},
    {"t", POSITIVE_REAL, 0, 0, false, false, nullptr},
    {"sw", NONNEGATIVE_REAL, 0, 0, false, false, nullptr},
    {"GIc", NONNEGATIVE_REAL, 0, 0, false, false, nullptr},
    {"GIIc", NONNEGATIVE_REAL, 0, 0, false, false, nullptr},
    {"alpha1", ANY_REAL, 0, 0, false, false, nullptr},
    {"alpha2", ANY_REAL, 0, 0, false, false, nullptr},
    {"beta1", ANY_REAL, 0, 0, false, false, nullptr},
    {"beta2", ANY_REAL, 0, 0, false, false, nullptr},
    {"e1t", NONNEGATIVE_REAL, 0, 0, false, false, nullptr},
    {"e1c", NONNEGATIVE_REAL, 0, 0, false, false, nullptr},
    {"e2t", NONNEGATIVE_REAL, 0, 0, false, false, nullptr},
    {"e2c", NONNEGATIVE_REAL, 0, 0, false, false, nullptr},
    {"g12u", NONNEGATIVE_REAL, 0, 0, false, false, nullptr},
    {"p12t", BOUNDED_REAL, 0, 1, true, false, nullptr},
    {"p12c", BOUNDED_REAL, 0, 1, true, false, nullptr},
    {"p23t", BOUNDED_REAL, 0, 1, true, false, nullptr},
    {"p23c", BOUNDED_REAL, 0, 1, true, false, nullptr},
    {"alpha0", BOUNDED_REAL, 0, 90, false, false, nullptr},
    {"assess", ONE_OF, 0, 0, false, false, kFlagWords},
    {"fibre", ONE_OF, 0, 0, false, false, kFibreWords},
    {"units", ONE_OF, 0, 0, false, false, kUnitWords},
    {"source", FREE_TEXT, 0, 0, false, false, nullptr},
    {"note", FREE_TEXT, 0, 0, false, false, nullptr},
};

PlyMaterial::Key PlyMaterial::find(std::string const& name)
{
    for (int k = 0; k < kKeyCount; ++k) {
        if (name == kKeys[k].name) return static_cast<Key>(k);
    }
    return kKeyCount;
}

std::string PlyMaterial::keyList()
{
    std::string list;
    for (int k = 0; k < kKeyCount; ++k) {
        if (k > 0) list += ", ";
        list += kKeys[k].name;
    }
    return list;
}

bool PlyMaterial::refuse(Rule rule, std::string const& key, std::string const& value)
{
    refusal_.rule = rule;
    refusal_.key = key;
    refusal_.value = shown(value);
    refusal_.pair = -1;
    return false;
}

bool PlyMaterial::read(std::vector<std::pair<std::string, std::string>> const& pairs)
{
    // Everything goes into a fresh material first: a refusal leaves this one
    // untouched.
    PlyMaterial next;
    bool ok = true;
    int nu12Pair = -1;
    for (size_t i = 0; ok && i < pairs.size(); ++i) {
        std::pair<std::string, std::string> const& pair = pairs[i];
        Key const k = find(pair.first);
        if (k == kKeyCount) {
            ok = next.refuse(UNKNOWN, pair.first, pair.first);
        } else if (next.state_[k] == GIVEN) {
            ok = next.refuse(DUPLICATE, pair.first, pair.second);
        } else {
            ok = next.readValue(k, pair.second);
        }
        if (!ok) next.refusal_.pair = static_cast<int>(i);
        if (k == nu12) nu12Pair = static_cast<int>(i);
    }
    for (Key k : {E1, E2, nu12, G12}) {
        if (!ok) break;
        if (next.state_[k] != GIVEN) ok = next.refuse(MISSING, kKeys[k].name, "");
    }
    if (ok) {
        // nu21 and the determinant as the ply stiffness computes them.
        double const v = next.number_[nu12];
        double const nu21 = (v / next.number_[E1]) * next.number_[E2];
        if (!(1 - v * nu21 > 0.0)) {
            ok = next.refuse(POISSON, "nu12", next.text_[nu12]);
            next.refusal_.pair = nu12Pair;
        }
    }
    if (ok) {
        next.applyDefaults();
        // A derived modulus can only vanish by underflow; the record needs it > 0.
        if (!(next.number_[G23] > 0.0)) ok = next.refuse(POSITIVE, "G23", "0 (derived)");
    }
    if (!ok) {
        refusal_ = next.refusal_;
        return false;
    }
    next.refusal_ = Refusal();
    *this = next;
    return true;
}

// Checks value as key k and stores it.  Numbers keep their text as well, so
// a refusal that comes later (POISSON) can quote what was written.
bool PlyMaterial::readValue(Key k, std::string const& value)
{
    KeyRow const& row = kKeys[k];
    if (row.kind == FREE_TEXT) {
        text_[k] = value;
        state_[k] = GIVEN;
        return true;
    }
    if (row.kind == ONE_OF) {
        for (int w = 0; row.words[w] != nullptr; ++w) {
            if (value == row.words[w]) {
                text_[k] = value;
                state_[k] = GIVEN;
                if (k == units) units_ = w == 0 ? UnitSystem::NmmMPa : UnitSystem::NmPa;
                if (k == fibre) fibre_ = static_cast<Fibre>(w + 1);
                if (k == assess) number_[k] = w;
                return true;
            }
        }
        return refuse(WORD, row.name, value);
    }
    double v = 0;
    switch (readDecimal(value.data(), value.size(), v)) {
    case DecimalRead::NotDecimal: return refuse(NUMBER, row.name, value);
    case DecimalRead::NotFinite: return refuse(FINITE, row.name, value);
    case DecimalRead::Ok: break;
    }
    switch (row.kind) {
    case POSITIVE_REAL:
        if (!(v > 0.0)) return refuse(POSITIVE, row.name, value);
        break;
    case NONNEGATIVE_REAL:
        if (!(v >= 0.0)) return refuse(NONNEGATIVE, row.name, value);
        break;
    case BOUNDED_REAL: {
        bool const above = row.lowIncluded ? v >= row.low : v > row.low;
        bool const below = row.highIncluded ? v <= row.high : v < row.high;
        if (!above || !below) return refuse(RANGE, row.name, value);
        break;
    }
    default:
        break;
    }
    number_[k] = v;
    text_[k] = value;
    state_[k] = GIVEN;
    return true;
}

void PlyMaterial::setDefault(Key k, double v)
{
    if (state_[k] != ABSENT) return;
    number_[k] = v;
    state_[k] = DEFAULT;
}

void PlyMaterial::applyDefaults()
{
    setDefault(G13, number_[G12]);
    setDefault(nu23, kDefaultNu23);
    setDefault(G23, number_[E2] / (2.0 * (1.0 + number_[nu23])));
    for (Inclinations const& p : kInclinations) {
        if (p.fibre != fibre_) continue;
        setDefault(p12t, p.p12t);
        setDefault(p12c, p.p12c);
        setDefault(p23t, p.p23t);
        setDefault(p23c, p.p23c);
    }
    if (has(S12)) setDefault(S13, number_[S12]);
    if (has(Yc) && has(p23c)) setDefault(S23, number_[Yc] / (2.0 * (1.0 + number_[p23c])));
    setDefault(alpha0, kFractureAngle);
    if (state_[assess] == ABSENT) {
        number_[assess] = 1;
        text_[assess] = "1";
        state_[assess] = DEFAULT;
    }
    if (state_[units] == ABSENT) {
        text_[units] = unitName(UnitSystem::NmmMPa);
        state_[units] = DEFAULT;
    }
}

char const* PlyMaterial::Refusal::ruleWord() const
{
    static char const* const words[] = {"NONE",     "UNKNOWN",     "DUPLICATE", "MISSING",
                                        "NUMBER",   "FINITE",      "POSITIVE",  "NONNEGATIVE",
                                        "RANGE",    "POISSON",     "WORD"};
    return words[rule];
}

std::string PlyMaterial::Refusal::message() const
{
    std::string what;
    Key const k = find(key);
    switch (rule) {
    case NONE: return "";
    case UNKNOWN: return key + ": unknown key, must be one of " + keyList();
    case DUPLICATE: what = "given twice"; break;
    case MISSING: return key + ": missing (E1, E2, nu12 and G12 are required)";
    case NUMBER: what = "must be a decimal number"; break;
    case FINITE: what = "must be finite"; break;
    case POSITIVE: what = "must be > 0"; break;
    case NONNEGATIVE: what = "must be >= 0"; break;
    case RANGE: {
        KeyRow const& s = kKeys[k];
        auto num = [](double v) {
            std::string t = std::to_string(v);
            t.erase(t.find_last_not_of('0') + 1);
            if (t.back() == '.') t.pop_back();
            return t;
        };
        what = std::string("must be ") + (s.lowIncluded ? ">= " : "> ") + num(s.low) + " and " +
               (s.highIncluded ? "<= " : "< ") + num(s.high);
        break;
    }
    case POISSON:
        what = "must keep the ply stiffness positive definite (1 - nu12 nu21 > 0)";
        break;
    case WORD: {
        KeyRow const& s = kKeys[k];
        what = "must be ";
        for (int w = 0; s.words[w] != nullptr; ++w) {
            if (w > 0) what += s.words[w + 1] == nullptr ? " or " : ", ";
            what += s.words[w];
        }
        break;
    }
    }
    return key + ": " + what + ", got " + value;
}

}  // namespace laminate::analysis
