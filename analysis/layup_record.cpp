// The record of a layup: every ply's material looked up, one unit system,
// thicknesses resolved, and the 18 fields written so that they read back to
// the same doubles.
#include "laminate/analysis/layup_record.h"

#include <cstdio>

namespace laminate::analysis {

namespace {

// %.17g: the shortest fixed precision that reads back every double exactly.
void field(std::string& out, double v)
{
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.17g", v);
    out += buf;
    out += ' ';
}

}  // namespace

bool LayupRecord::refuse(Rule rule, int layer, std::string const& material,
                         std::string const& detail)
{
    refusal_.rule = rule;
    refusal_.layer = layer;
    refusal_.material = material;
    refusal_.detail = detail;
    text_.clear();
    plies_.clear();
    return false;
}

bool LayupRecord::build(std::vector<LayupPly> const& plies, Lookup const& lookup,
                        double defaultThickness)
{
    refusal_ = Refusal();
    text_.clear();
    plies_.clear();
    if (plies.empty()) return refuse(EMPTY, 0, "", "");
    if (plies.size() > static_cast<size_t>(kMaxPlies))
        return refuse(RANGE, 0, "", std::to_string(plies.size()));

    std::vector<LayupPly> resolved(plies);
    std::vector<PlyMaterial const*> materials;
    for (size_t i = 0; i < resolved.size(); ++i) {
        int const layer = static_cast<int>(i) + 1;
        LayupPly& ply = resolved[i];
        PlyMaterial const* m = lookup(ply.material);
        if (m == nullptr) return refuse(MATERIAL, layer, ply.material, "");
        if (!materials.empty() && m->unitSystem() != materials[0]->unitSystem()) {
            return refuse(UNITS, layer, ply.material,
                          "material '" + ply.material + "' is in " + unitName(m->unitSystem()) +
                              ", layer 1's material '" + resolved[0].material + "' in " +
                              unitName(materials[0]->unitSystem()) +
                              ": a layup takes one unit system");
        }
        if (!(ply.thickness > 0)) ply.thickness = defaultThickness;
        if (!(ply.thickness > 0)) ply.thickness = m->number(PlyMaterial::t);
        if (!(ply.thickness > 0)) return refuse(THICKNESS, layer, ply.material, "");
        if (ply.thickness <= kThinPly) {
            for (PlyMaterial::Key k : {PlyMaterial::GIc, PlyMaterial::GIIc}) {
                if (!m->has(k)) return refuse(TOUGHNESS, layer, ply.material, PlyMaterial::kKeys[k].name);
            }
        }
        materials.push_back(m);
    }

    std::string text = std::to_string(resolved.size()) + "\n";
    for (size_t i = 0; i < resolved.size(); ++i) {
        PlyMaterial const& m = *materials[i];
        LayupPly const& ply = resolved[i];
        bool const thin = ply.thickness <= kThinPly;
        using K = PlyMaterial;
        for (K::Key k : {K::E1, K::E2, K::nu12, K::G12, K::G13, K::G23, K::Xc, K::Yc, K::Xt, K::Yt, K::S12})
            field(text, m.number(k));
        field(text, m.number(thin ? K::GIc : K::S23));
        field(text, m.number(thin ? K::GIIc : K::S13));
        field(text, 0.0);  // spare
        field(text, ply.angle);
        field(text, ply.thickness);
        field(text, m.number(K::sw));
        text += m.number(K::assess) != 0 ? "1\n" : "0\n";
    }
    text_ = text;
    plies_ = resolved;
    units_ = materials[0]->unitSystem();
    return true;
}

char const* LayupRecord::Refusal::ruleWord() const
{
    static char const* const words[] = {"NONE",  "EMPTY",     "RANGE",    "MATERIAL",
                                        "UNITS", "THICKNESS", "TOUGHNESS"};
    return words[rule];
}

std::string LayupRecord::Refusal::message() const
{
    std::string const where = "layer " + std::to_string(layer) + ": ";
    switch (rule) {
    case NONE: return "";
    case EMPTY: return "a layup needs at least one ply";
    case RANGE:
        return "a layup has at most " + std::to_string(kMaxPlies) + " plies, got " + detail;
    case MATERIAL: return where + "ply material not found '" + material + "'";
    case UNITS: return where + detail;
    case THICKNESS:
        return where + "no thickness: material '" + material +
               "' gives no t; give -thickness or a thickness with the ply";
    case TOUGHNESS:
        return where + "the ply is thin (thickness <= 0.0007), where LaRC04 reads fields 12 and 13 "
                       "of the record as GIc and GIIc, but material '" + material + "' gives no " +
               detail;
    }
    return "";
}

}  // namespace laminate::analysis
