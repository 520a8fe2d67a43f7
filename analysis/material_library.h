// A material library: the text of a file of ply materials, read whole and
// accepted or refused as one.
//
// Format, line by line (UTF-8):
//   # ...            a comment; "#" starts a comment anywhere on a line
//   [NAME]           starts the material NAME (blanks around NAME dropped)
//   KEY VALUE        one property of the current material; VALUE is the rest
//                    of the line, blanks around it dropped
//   (blank)          ignored
// Every KEY is a PlyMaterial key and its value is checked as PlyMaterial
// checks it; a name may appear once per file.  Lines are counted from 1.
#ifndef LAMINATE_ANALYSIS_MATERIAL_LIBRARY_H
#define LAMINATE_ANALYSIS_MATERIAL_LIBRARY_H

#include <cstddef>
#include <string>
#include <vector>

#include "laminate/analysis/ply_material.h"

namespace laminate::analysis {

class MaterialLibrary {
public:
    struct Entry {
        std::string name;
        int line;  // of its [NAME] header
        PlyMaterial material;
    };

    struct Refusal {
        int line = 0;       // 1-based
        std::string rule;   // SYNTAX, NAME, a PlyMaterial rule word, or DUPLICATE
        std::string key;    // the key concerned, empty for SYNTAX and NAME
        std::string text;   // "material AS4, E1: must be > 0, got -5" and the like
    };

    // Reads the library text (n bytes).  True when every line and every
    // material is good; entries() then holds the materials in file order.
    // Otherwise refusal() names the first bad line and entries() is empty.
    bool parse(char const* text, size_t n);
    bool parse(std::string const& text) { return parse(text.data(), text.size()); }

    std::vector<Entry> const& entries() const { return entries_; }
    Refusal const& refusal() const { return refusal_; }

private:
    bool refuse(int line, std::string const& rule, std::string const& key, std::string const& text);
    bool finish(std::string const& name, int header,
                std::vector<std::pair<std::string, std::string>> const& pairs,
                std::vector<int> const& lines);

    std::vector<Entry> entries_;
    Refusal refusal_;
};

}  // namespace laminate::analysis

#endif
