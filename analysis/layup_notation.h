// Stacking-sequence notation: "[0/±45/90]s" and its relatives read into the
// ply angles they stand for, layer 1 (the lowest z) first.
//
// Grammar (blanks may stand between any two tokens, not inside a number):
//   layup  := "[" seq "]" tail
//   seq    := item ("/" item)*
//   item   := "(" seq ")" count?          a group, repeated count times
//           | angle ("_" digits)?         a ply, repeated digits times
//           | pair number                 a pair of plies
//           | angle "_m"                  the mid-plane ply of an odd
//                                         symmetric layup
//   angle  := ("+" | "-")? number         number: digits[.digits] or .digits
//   pair   := "±" | "+-"                  +θ then -θ
//           | "∓" | "-+"                  -θ then +θ
//   count  := "_"? digits                 1 to kMaxPlies
//   tail   := ("_"? digits)? ("s" | "S" | "T")?
// The tail repeats the bracket count times (1 if no count), then "s" adds
// the mirror image of all of it (symmetric), "T" or nothing keeps it as
// written.  The mid-plane ply "θ_m" is the last ply written, outside any
// group, and only with a plain "s": [0/45/90_m]s is 0 45 90 45 0.  A count
// on a pair (±45_2) is refused as ambiguous: write (±45)2 or +45_2/-45_2.
//
// Text is UTF-8; columns count characters from 1.  Nothing here ends the
// process: bad text is refused with the column and what was expected there.
#ifndef LAMINATE_ANALYSIS_LAYUP_NOTATION_H
#define LAMINATE_ANALYSIS_LAYUP_NOTATION_H

#include <cstddef>
#include <string>
#include <vector>

namespace laminate::analysis {

class LayupNotation {
public:
    // The most plies a layup may expand to: the record's largest layer count.
    static const int kMaxPlies = 10000;
    // The deepest nesting of groups: the reader recurses once per level.
    static const int kMaxDepth = 100;

    struct Refusal {
        int column = 0;        // counted in characters from 1; 0 when accepted
        std::string expected;  // what the grammar allows there
        std::string found;     // the character found, or empty at the end
        std::string note;      // why, when the grammar alone does not say

        // "column 5: expected an angle or \"(\", got \"x\"", then the note
        // in parentheses.
        std::string message() const;
    };

    // True when text is meant as notation: its first non-blank character
    // is "[".
    static bool looksLikeNotation(char const* text, size_t n);

    // Reads text (n bytes, UTF-8).  True when it is a layup of the grammar
    // above; its angles are then in angles(), layer 1 first.  Otherwise
    // refusal() says where and why, and angles() is empty.
    bool parse(char const* text, size_t n);
    bool parse(std::string const& text) { return parse(text.data(), text.size()); }

    std::vector<double> const& angles() const { return angles_; }
    Refusal const& refusal() const { return refusal_; }

private:
    struct Cursor;  // position in the text, in bytes and in characters

    bool refuse(Cursor const& at, std::string const& expected, std::string const& note = "");
    void skipBlanks(Cursor& at);
    bool readSeq(Cursor& at, std::vector<double>& out, int depth);
    bool readItem(Cursor& at, std::vector<double>& out, int depth);
    bool readNumber(Cursor& at, double& value, char const* expected);
    bool readCount(Cursor& at, int& count);
    bool repeat(Cursor const& at, std::vector<double>& seq, int count);

    char const* text_ = nullptr;
    size_t size_ = 0;
    bool midPlyEnded_ = false;  // the "_m" ply has been read: only "]" may follow
    std::vector<double> angles_;
    Refusal refusal_;
};

}  // namespace laminate::analysis

#endif
