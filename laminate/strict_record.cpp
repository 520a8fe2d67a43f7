// The strict reader of the material record: tokens, field rules and the
// stiffness check, each refusal naming the place and the rule broken.
#include "laminate/laminate/strict_record.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <sstream>

#include "laminate/laminate/decimal.h"
#include "laminate/laminate/lamina1.h"
#include "laminate/linalg/matriu.h"

using vantrel::Matriu;

char const* const StrictRecord::kFieldNames[kFields] = {
    "E1", "E2", "nu12", "G12", "G13", "G23", "Xc", "Yc", "Xt",
    "Yt", "S12", "S23", "S13", "spare", "angle", "t", "sw", "flag"};

namespace {

// What each field must satisfy beyond being a finite decimal real.
enum Kind {
    POSITIVE_REAL,     // moduli, thickness
    NONNEGATIVE_REAL,  // strengths, specific weight
    ANY_REAL,          // spare, angle
    POISSON_RATIO,     // checked against E1 and E2 of its layer
    FLAG_WORD          // 0 or 1
};

Kind const kKinds[StrictRecord::kFields] = {
    POSITIVE_REAL,    POSITIVE_REAL,    POISSON_RATIO,    POSITIVE_REAL,
    POSITIVE_REAL,    POSITIVE_REAL,    NONNEGATIVE_REAL, NONNEGATIVE_REAL,
    NONNEGATIVE_REAL, NONNEGATIVE_REAL, NONNEGATIVE_REAL, NONNEGATIVE_REAL,
    NONNEGATIVE_REAL, ANY_REAL,         ANY_REAL,         POSITIVE_REAL,
    NONNEGATIVE_REAL, FLAG_WORD};

size_t const kShownChars = 40;  // longest text quoted back in a refusal

// The span of magnitudes a modulus, a strength or the thickness may take.
// Within it every constant the failure criteria form from them (products of
// up to four, square roots and quotients of those) is a normal finite
// number, so no criterion overflows or underflows on the record alone.
double const kSmallest = 1e-30;
double const kLargest = 1e30;
int const kSpecificWeight = 16;  // a field no criterion reads: no bound

// A modulus, a strength or the thickness within the span; v > 0.
bool sized(double v, int f)
{
    return f == kSpecificWeight || (v >= kSmallest && v <= kLargest);
}

// The separators sscanf skips in the C locale.
bool blank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

bool digit(char c) { return c >= '0' && c <= '9'; }

// Moves p past white space, then returns the length of the token there.
size_t nextToken(char const*& p, char const* end)
{
    while (p < end && blank(*p)) ++p;
    char const* q = p;
    while (q < end && !blank(*q)) ++q;
    return static_cast<size_t>(q - p);
}

// A token quoted back: at most kShownChars bytes, cut before a UTF-8
// continuation byte, with "..." when cut.
std::string shown(char const* tok, size_t n)
{
    if (n <= kShownChars) return std::string(tok, n);
    size_t cut = kShownChars;
    while (cut > 0 && (static_cast<unsigned char>(tok[cut]) & 0xC0) == 0x80) --cut;
    return std::string(tok, cut) + "...";
}

std::string number(double v)
{
    // A NaN's sign bit depends on how it arose (and on the build): it means
    // nothing, so every NaN reads the same.
    if (std::isnan(v)) return "nan";
    std::ostringstream os;
    os.precision(17);
    os << v;
    return os.str();
}

}  // namespace

bool StrictRecord::refuse(Rule rule, int layer, std::string const& field,
                          std::string const& value)
{
    refusal_.rule = rule;
    refusal_.layer = layer;
    refusal_.field = field;
    refusal_.value = value;
    return false;
}

bool StrictRecord::read(char const* text, size_t len)
{
    refusal_ = Refusal();
    outOfSpan_ = Refusal();
    layers_ = 0;
    values_.clear();
    text_.clear();

    char const* p = text;
    char const* const end = text + len;
    if (!readCount(p, end)) return false;
    for (int k = 1; k <= layers_; ++k) {
        if (!readLayer(p, end, k)) return false;
    }
    size_t const n = nextToken(p, end);
    if (n > 0) return refuse(TRAILING, layers_, "end", shown(p, n));

    text_.assign(text, len);
    if (!checkStiffness()) return false;
    // The span of magnitudes is the last rule, so that a stiffness that
    // cannot be inverted is named as such whatever its moduli.
    if (outOfSpan_.rule != NONE) {
        refusal_ = outOfSpan_;
        return false;
    }
    return true;
}

void StrictRecord::outOfSpan(int layer, char const* field, std::string const& value)
{
    if (outOfSpan_.rule != NONE) return;  // the first one is named
    outOfSpan_.rule = MAGNITUDE;
    outOfSpan_.layer = layer;
    outOfSpan_.field = field;
    outOfSpan_.value = value;
}

bool StrictRecord::readCount(char const*& p, char const* end)
{
    size_t const n = nextToken(p, end);
    if (n == 0) return refuse(MISSING, 0, "count", "");
    for (size_t i = 0; i < n; ++i) {
        if (!digit(p[i])) return refuse(COUNT, 0, "count", shown(p, n));
    }
    // Leading zeros do not count towards the size of the number.
    size_t first = 0;
    while (first + 1 < n && p[first] == '0') ++first;
    long count = 0;
    if (n - first <= 6) count = std::strtol(std::string(p + first, n - first).c_str(), nullptr, 10);
    if (n - first > 6 || count < 1 || count > kMaxLayers)
        return refuse(RANGE, 0, "count", shown(p, n));
    layers_ = static_cast<int>(count);
    p += n;
    return true;
}

bool StrictRecord::readLayer(char const*& p, char const* end, int k)
{
    for (int f = 0; f < kFields; ++f) {
        size_t const n = nextToken(p, end);
        if (n == 0) return refuse(MISSING, k, kFieldNames[f], "");
        if (!checkField(k, f, p, n)) return false;
        p += n;
    }
    return true;
}

// Checks token tok (n bytes) as field f of layer k and stores its value.
bool StrictRecord::checkField(int k, int f, char const* tok, size_t n)
{
    char const* const name = kFieldNames[f];
    if (kKinds[f] == FLAG_WORD) {
        if (n != 1 || (tok[0] != '0' && tok[0] != '1'))
            return refuse(FLAG, k, name, shown(tok, n));
        values_.push_back(tok[0] == '1' ? 1.0 : 0.0);
        return true;
    }
    double v = 0.0;
    switch (laminate_model::readDecimal(tok, n, v)) {
    case laminate_model::DecimalRead::NotDecimal: return refuse(NUMBER, k, name, shown(tok, n));
    case laminate_model::DecimalRead::NotFinite: return refuse(FINITE, k, name, shown(tok, n));
    case laminate_model::DecimalRead::Ok: break;
    }

    switch (kKinds[f]) {
    case POSITIVE_REAL:
        if (!(v > 0.0)) return refuse(POSITIVE, k, name, shown(tok, n));
        if (!sized(v, f)) outOfSpan(k, name, shown(tok, n));
        break;
    case NONNEGATIVE_REAL:
        if (!(v >= 0.0)) return refuse(NONNEGATIVE, k, name, shown(tok, n));
        if (v != 0.0 && !sized(v, f)) outOfSpan(k, name, shown(tok, n));
        break;
    case POISSON_RATIO: {
        // E1 and E2 are the layer's first two fields, already checked > 0.
        // nu21 and the determinant as the ply stiffness computes them.
        double const e1 = values_[values_.size() - 2];
        double const e2 = values_[values_.size() - 1];
        double const nu21 = (v / e1) * e2;
        if (!(1 - v * nu21 > 0.0)) return refuse(POISSON, k, name, shown(tok, n));
        break;
    }
    default:
        break;
    }
    values_.push_back(v);
    return true;
}

// Builds the laminate stiffness in a scratch model, in the order a definition
// and then a stress recovery build it, and tries the inverse every recovery
// takes: finite entries, invertible, finite inverse.
bool StrictRecord::checkStiffness()
{
    lamina1 lam;
    if (lam.LeerCampoMater(text(), 1.0, 1.0, 1.0) != 0)
        return refuse(NUMBER, 0, "count", "");  // cannot happen after the checks above
    lam.calcDefinition();
    lam.calcK();

    Matriu const& K = lam.K;
    for (int r = 1; r <= K.nrows; ++r) {
        for (int c = 1; c <= K.ncols; ++c) {
            if (!std::isfinite(K(r, c))) {
                return refuse(FINITE, 0, "K",
                              number(K(r, c)) + " at (" + std::to_string(r) + "," +
                                  std::to_string(c) + ")");
            }
        }
    }
    Matriu inv;
    if (K.inverse(inv) != 0) return refuse(SINGULAR, 0, "K", "a singular matrix");
    for (int i = 0; i < inv.size; ++i) {
        if (!std::isfinite(inv.data[i])) return refuse(SINGULAR, 0, "K", "an inverse entry " + number(inv.data[i]));
    }
    return true;
}

char const* StrictRecord::Refusal::ruleWord() const
{
    static char const* const words[] = {"NONE",   "COUNT",       "RANGE",   "MISSING",
                                        "NUMBER", "FINITE",      "POSITIVE", "NONNEGATIVE",
                                        "FLAG",   "TRAILING",    "POISSON", "SINGULAR",
                                        "MAGNITUDE"};
    return words[rule];
}

std::string StrictRecord::Refusal::message() const
{
    std::string where;
    if (field == "count") {
        where = "layer count";
    } else if (field == "end") {
        where = "after layer " + std::to_string(layer);
    } else if (field == "K") {
        where = "stiffness K";
    } else {
        where = "layer " + std::to_string(layer) + ", " + field;
    }
    std::string rule_text;
    switch (rule) {
    case NONE: return "";
    case COUNT: rule_text = "must be a positive decimal integer"; break;
    case RANGE: rule_text = "must be from 1 to " + std::to_string(kMaxLayers); break;
    case MISSING: rule_text = "missing"; break;
    case NUMBER: rule_text = "must be a decimal number"; break;
    case FINITE: rule_text = "must be finite"; break;
    case POSITIVE: rule_text = "must be > 0"; break;
    case NONNEGATIVE: rule_text = "must be >= 0"; break;
    case FLAG: rule_text = "must be 0 or 1"; break;
    case TRAILING: rule_text = "must be the end of the record"; break;
    case POISSON:
        rule_text = "must keep the ply stiffness positive definite (1 - nu12 nu21 > 0)";
        break;
    case SINGULAR: rule_text = "must be invertible with a finite inverse"; break;
    case MAGNITUDE: rule_text = "must be from 1e-30 to 1e30 (a strength may also be 0)"; break;
    }
    return where + ": " + rule_text + (value.empty() ? "" : ", got " + value);
}
