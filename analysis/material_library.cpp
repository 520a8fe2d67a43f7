// Material libraries: lines, headers and key-value pairs, each material read
// by PlyMaterial with its refusal traced back to a line.
#include "laminate/analysis/material_library.h"

namespace laminate::analysis {

namespace {

bool blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f'; }

std::string trimmed(std::string const& s)
{
    size_t a = 0, b = s.size();
    while (a < b && blank(s[a])) ++a;
    while (b > a && blank(s[b - 1])) --b;
    return s.substr(a, b - a);
}

std::string shown(std::string const& s)
{
    if (s.size() <= 40) return s;
    size_t cut = 40;
    while (cut > 0 && (static_cast<unsigned char>(s[cut]) & 0xC0) == 0x80) --cut;
    return s.substr(0, cut) + "...";
}

}  // namespace

bool MaterialLibrary::refuse(int line, std::string const& rule, std::string const& key,
                             std::string const& text)
{
    refusal_.line = line;
    refusal_.rule = rule;
    refusal_.key = key;
    refusal_.text = text;
    entries_.clear();
    return false;
}

bool MaterialLibrary::parse(char const* text, size_t n)
{
    entries_.clear();
    refusal_ = Refusal();

    std::string name;
    int header = 0;  // line of the current header; 0 before the first
    std::vector<std::pair<std::string, std::string>> pairs;
    std::vector<int> lines;  // line of each pair

    size_t p = 0;
    int line = 0;
    while (p < n) {
        size_t end = p;
        while (end < n && text[end] != '\n') ++end;
        ++line;
        std::string raw(text + p, end - p);
        p = end + 1;
        size_t const hash = raw.find('#');
        if (hash != std::string::npos) raw.erase(hash);
        std::string const content = trimmed(raw);
        if (content.empty()) continue;

        if (content[0] == '[') {
            if (content.back() != ']')
                return refuse(line, "SYNTAX", "", "expected [NAME], got " + shown(content));
            if (header > 0 && !finish(name, header, pairs, lines)) return false;
            name = trimmed(content.substr(1, content.size() - 2));
            if (name.empty()) return refuse(line, "NAME", "", "a material needs a name, got []");
            for (Entry const& e : entries_) {
                if (e.name == name)
                    return refuse(line, "DUPLICATE", "",
                                  "material " + name + " is defined twice (first at line " +
                                      std::to_string(e.line) + ")");
            }
            header = line;
            pairs.clear();
            lines.clear();
            continue;
        }
        size_t k = 0;
        while (k < content.size() && !blank(content[k])) ++k;
        std::string const key = content.substr(0, k);
        std::string const value = trimmed(content.substr(k));
        if (header == 0)
            return refuse(line, "SYNTAX", key, "expected [NAME] before the first property, got " + shown(content));
        if (value.empty())
            return refuse(line, "SYNTAX", key, "expected KEY VALUE, got " + shown(content));
        pairs.emplace_back(key, value);
        lines.push_back(line);
    }
    if (header > 0 && !finish(name, header, pairs, lines)) return false;
    return true;
}

// Reads the material that starts at line header from its pairs.
bool MaterialLibrary::finish(std::string const& name, int header,
                             std::vector<std::pair<std::string, std::string>> const& pairs,
                             std::vector<int> const& lines)
{
    Entry e;
    e.name = name;
    e.line = header;
    if (!e.material.read(pairs)) {
        PlyMaterial::Refusal const& why = e.material.refusal();
        int const at = why.pair >= 0 ? lines[why.pair] : header;
        return refuse(at, why.ruleWord(), why.key, "material " + name + ", " + why.message());
    }
    entries_.push_back(e);
    return true;
}

}  // namespace laminate::analysis
