// Stacking-sequence notation: a recursive-descent reader over UTF-8 text that
// expands groups, counts and symmetry as it goes.
#include "laminate/analysis/layup_notation.h"

#include <algorithm>

#include "laminate/analysis/ply_material.h"

namespace laminate::analysis {

namespace {

int const kEnd = -1;
int const kPlusMinus = 0x00B1;   // ±
int const kMinusPlus = 0x2213;   // ∓
int const kBadByte = 0xFFFD;     // a byte that starts no UTF-8 character

bool digit(int c) { return c >= '0' && c <= '9'; }
bool blank(int c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

std::string quoted(char const* text) { return std::string("\"") + text + "\""; }

std::string const kMax = std::to_string(LayupNotation::kMaxPlies);

}  // namespace

struct LayupNotation::Cursor {
    size_t pos;  // byte offset
    int column;  // character count from 1
};

// The character at the cursor and its length in bytes; kEnd at the end.
static int decode(char const* text, size_t size, size_t pos, size_t& len)
{
    len = 1;
    if (pos >= size) return kEnd;
    unsigned char const b = static_cast<unsigned char>(text[pos]);
    if (b < 0x80) return b;
    size_t n = b >= 0xF0 ? 4 : b >= 0xE0 ? 3 : b >= 0xC0 ? 2 : 0;
    if (n == 0 || pos + n > size) return kBadByte;
    int c = b & (0x7F >> n);
    for (size_t i = 1; i < n; ++i) {
        unsigned char const cont = static_cast<unsigned char>(text[pos + i]);
        if ((cont & 0xC0) != 0x80) return kBadByte;
        c = (c << 6) | (cont & 0x3F);
    }
    len = n;
    return c;
}

bool LayupNotation::looksLikeNotation(char const* text, size_t n)
{
    size_t i = 0;
    while (i < n && blank(static_cast<unsigned char>(text[i]))) ++i;
    return i < n && text[i] == '[';
}

bool LayupNotation::refuse(Cursor const& at, std::string const& expected, std::string const& note)
{
    size_t len = 0;
    int const c = decode(text_, size_, at.pos, len);
    refusal_.column = at.column;
    refusal_.expected = expected;
    refusal_.note = note;
    refusal_.found = c == kEnd ? std::string() : std::string(text_ + at.pos, len);
    angles_.clear();
    return false;
}

std::string LayupNotation::Refusal::message() const
{
    return "column " + std::to_string(column) + ": expected " + expected + ", got " +
           (found.empty() ? std::string("the end") : "\"" + found + "\"") +
           (note.empty() ? std::string() : " (" + note + ")");
}

void LayupNotation::skipBlanks(Cursor& at)
{
    size_t len = 0;
    while (blank(decode(text_, size_, at.pos, len))) {
        at.pos += len;
        ++at.column;
    }
}

bool LayupNotation::parse(char const* text, size_t n)
{
    text_ = text;
    size_ = n;
    midPlyEnded_ = false;
    angles_.clear();
    refusal_ = Refusal();

    size_t len = 0;
    auto peek = [&](Cursor const& at) { return decode(text_, size_, at.pos, len); };
    auto advance = [&](Cursor& at) {
        peek(at);
        at.pos += len;
        ++at.column;
    };

    Cursor at{0, 1};
    skipBlanks(at);
    if (peek(at) != '[') return refuse(at, quoted("["));
    advance(at);
    std::vector<double> seq;
    if (!readSeq(at, seq, 0)) return false;
    skipBlanks(at);
    if (peek(at) != ']') return refuse(at, midPlyEnded_ ? quoted("]") : "\"/\" or \"]\"");
    advance(at);

    // The tail: a count, then "s" or "T".
    skipBlanks(at);
    Cursor const tailAt = at;
    int count = 1;
    bool const counted = peek(at) == '_' || digit(peek(at));
    if (counted && !readCount(at, count)) return false;
    skipBlanks(at);
    bool symmetric = false;
    bool lettered = false;
    int const c = peek(at);
    if (c == 's' || c == 'S' || c == 'T') {
        symmetric = c != 'T';
        lettered = true;
        advance(at);
        skipBlanks(at);
    }
    if (peek(at) != kEnd) {
        if (lettered) return refuse(at, "the end of the layup");
        if (counted) return refuse(at, "\"s\", \"T\" or the end of the layup");
        return refuse(at, "a count, \"s\", \"T\" or the end of the layup");
    }

    if (midPlyEnded_) {
        if (!symmetric || counted)
            return refuse(tailAt, quoted("s"), "a layup with a mid-plane ply _m is symmetric, without a count");
        // The half below the mid-plane, the mid-plane ply, the half mirrored.
        std::vector<double> all(seq);
        all.insert(all.end(), seq.rbegin() + 1, seq.rend());
        if (all.size() > static_cast<size_t>(kMaxPlies))
            return refuse(tailAt, "a layup of at most " + kMax + " plies");
        angles_ = all;
        return true;
    }
    if (!repeat(tailAt, seq, count)) return false;
    if (symmetric) {
        if (2 * seq.size() > static_cast<size_t>(kMaxPlies))
            return refuse(tailAt, "a layup of at most " + kMax + " plies");
        seq.insert(seq.end(), seq.rbegin(), seq.rend());
    }
    angles_ = seq;
    return true;
}

// item ("/" item)*, appended to out.
bool LayupNotation::readSeq(Cursor& at, std::vector<double>& out, int depth)
{
    size_t len = 0;
    for (;;) {
        skipBlanks(at);
        Cursor const itemAt = at;
        if (!readItem(at, out, depth)) return false;
        if (out.size() > static_cast<size_t>(kMaxPlies))
            return refuse(itemAt, "a layup of at most " + kMax + " plies");
        skipBlanks(at);
        if (decode(text_, size_, at.pos, len) != '/') return true;
        if (midPlyEnded_)
            return refuse(at, quoted("]"), "the mid-plane ply _m is the last ply written");
        at.pos += len;
        ++at.column;
    }
}

bool LayupNotation::readItem(Cursor& at, std::vector<double>& out, int depth)
{
    size_t len = 0;
    auto peek = [&](Cursor const& c) { return decode(text_, size_, c.pos, len); };
    auto advance = [&](Cursor& c) {
        peek(c);
        c.pos += len;
        ++c.column;
    };

    int const c = peek(at);
    if (c == '(') {
        if (depth >= kMaxDepth)
            return refuse(at, "an angle", "groups nest at most " + std::to_string(kMaxDepth) + " deep");
        advance(at);
        std::vector<double> inner;
        if (!readSeq(at, inner, depth + 1)) return false;
        skipBlanks(at);
        if (peek(at) != ')') return refuse(at, "\"/\" or \")\"");
        advance(at);
        skipBlanks(at);
        Cursor const countAt = at;
        int count = 1;
        if ((peek(at) == '_' || digit(peek(at))) && !readCount(at, count)) return false;
        if (!repeat(countAt, inner, count)) return false;
        out.insert(out.end(), inner.begin(), inner.end());
        return true;
    }

    // A pair: ± ∓ +- -+.
    int pair = 0;  // +1: +θ first, -1: -θ first
    Cursor next = at;
    advance(next);
    int const after = peek(next);
    if (c == kPlusMinus || (c == '+' && after == '-')) pair = 1;
    if (c == kMinusPlus || (c == '-' && after == '+')) pair = -1;
    if (pair != 0) {
        at = next;
        if (c == '+' || c == '-') advance(at);
        skipBlanks(at);
        double v = 0;
        if (!readNumber(at, v, "a number")) return false;
        skipBlanks(at);
        if (peek(at) == '_')
            return refuse(at, depth > 0 ? "\"/\" or \")\"" : "\"/\" or \"]\"",
                          "a count after a pair is ambiguous: write (±45)2 or +45_2/-45_2");
        out.push_back(pair * v);
        out.push_back(-pair * v);
        return true;
    }

    // One angle, with a sign, a count or the mid-plane mark.
    bool negative = false;
    if (c == '+' || c == '-') {
        negative = c == '-';
        advance(at);
        skipBlanks(at);
    }
    double v = 0;
    if (!readNumber(at, v, c == '+' || c == '-' ? "a number" : "an angle or \"(\"")) return false;
    if (negative) v = -v;
    skipBlanks(at);
    if (peek(at) != '_') {
        out.push_back(v);
        return true;
    }
    Cursor mark = at;
    advance(mark);
    skipBlanks(mark);
    if (peek(mark) == 'm') {
        if (depth > 0) return refuse(mark, "a ply count", "the mid-plane ply _m stands outside groups");
        midPlyEnded_ = true;
        advance(mark);
        at = mark;
        out.push_back(v);
        return true;
    }
    Cursor const countAt = at;
    int count = 1;
    if (!readCount(at, count)) return false;
    std::vector<double> plies(1, v);
    if (!repeat(countAt, plies, count)) return false;
    out.insert(out.end(), plies.begin(), plies.end());
    return true;
}

// digits [. digits*] | . digits, read with the record's number grammar.
bool LayupNotation::readNumber(Cursor& at, double& value, char const* expected)
{
    size_t const start = at.pos;
    size_t p = at.pos;
    size_t digits = 0;
    while (p < size_ && digit(static_cast<unsigned char>(text_[p]))) ++p, ++digits;
    if (p < size_ && text_[p] == '.') {
        ++p;
        while (p < size_ && digit(static_cast<unsigned char>(text_[p]))) ++p, ++digits;
    }
    if (digits == 0) return refuse(at, expected);
    if (readDecimal(text_ + start, p - start, value) != DecimalRead::Ok)
        return refuse(at, "a finite angle");
    at.column += static_cast<int>(p - start);
    at.pos = p;
    return true;
}

// "_"? digits, from 1 to kMaxPlies.
bool LayupNotation::readCount(Cursor& at, int& count)
{
    if (at.pos < size_ && text_[at.pos] == '_') {
        ++at.pos;
        ++at.column;
        skipBlanks(at);
    }
    Cursor const start = at;
    size_t p = at.pos;
    long value = 0;
    while (p < size_ && digit(static_cast<unsigned char>(text_[p]))) {
        if (value <= kMaxPlies) value = value * 10 + (text_[p] - '0');
        ++p;
    }
    if (p == start.pos) return refuse(start, "a count");
    if (value < 1 || value > kMaxPlies) return refuse(start, "a count from 1 to " + kMax);
    count = static_cast<int>(value);
    at.column += static_cast<int>(p - start.pos);
    at.pos = p;
    return true;
}

// seq repeated count times in place, refused at `at` beyond kMaxPlies.
bool LayupNotation::repeat(Cursor const& at, std::vector<double>& seq, int count)
{
    if (seq.size() * static_cast<size_t>(count) > static_cast<size_t>(kMaxPlies))
        return refuse(at, "a count that keeps the layup within " + kMax + " plies");
    std::vector<double> once(seq);
    for (int i = 1; i < count; ++i) seq.insert(seq.end(), once.begin(), once.end());
    return true;
}

}  // namespace laminate::analysis
