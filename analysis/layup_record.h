// The record of a layup: the text a user would type for a stack of plies of
// named materials (the layer count, then per layer 17 numbers and the flag in
// record order), for the strict path of a material definition.
//
// Layer 1 is the first ply given and lies at the lowest z.  A ply's thickness
// is its own when the layup gives one, else the layup's default thickness,
// else its material's t.  Numbers are written with 17 significant digits, so
// the reader gets back every double exactly: a layup and the record typed by
// hand with the same values define the same laminate, bit for bit.
//
// Record fields from a material, in record order: E1 E2 nu12 G12 G13 G23,
// Xc Yc Xt Yt S12, then fields 12 and 13, spare 0, the ply angle, the ply
// thickness, sw, and the flag (the material's assess).  Strengths not given
// are written 0, the record's "not given".  Fields 12 and 13 are read by the
// criteria as S23 and S13, and by LaRC04 for a thin ply (thickness at most
// kThinPly in the length unit) as GIc and GIIc.  They therefore carry S23 and
// S13 for a thick ply and GIc and GIIc for a thin one; a thin ply whose
// material gives no GIc or GIIc is refused.
#ifndef LAMINATE_ANALYSIS_LAYUP_RECORD_H
#define LAMINATE_ANALYSIS_LAYUP_RECORD_H

#include <functional>
#include <string>
#include <vector>

#include "laminate/analysis/ply_material.h"

namespace laminate::analysis {

// One ply of a layup.
struct LayupPly {
    std::string material;  // a ply material's name
    double angle = 0;      // degrees
    double thickness = 0;  // 0: not given with the ply
};

class LayupRecord {
public:
    // The thickness at or below which LaRC04 takes a ply as thin, in the
    // length unit of the thicknesses (the model's own limit).
    static constexpr double kThinPly = 0.0007;
    // The record's largest layer count.
    static const int kMaxPlies = 10000;

    // The material of a name, or null when there is none.
    using Lookup = std::function<PlyMaterial const*(std::string const&)>;

    enum Rule {
        NONE,
        EMPTY,      // no plies
        RANGE,      // more than kMaxPlies plies
        MATERIAL,   // a material name unknown
        UNITS,      // plies of different unit systems
        THICKNESS,  // a ply without thickness
        TOUGHNESS   // a thin ply whose material lacks GIc or GIIc
    };

    struct Refusal {
        Rule rule = NONE;
        int layer = 0;         // 1-based; 0 for EMPTY and RANGE
        std::string material;  // the layer's material
        std::string detail;    // what the message says besides

        // "layer 3: ply material not found 'x'" and the like.
        std::string message() const;
        char const* ruleWord() const;
    };

    // Builds the record of plies, layer 1 first.  defaultThickness > 0 is
    // the thickness of every ply that gives none; 0 leaves it to the
    // materials.  True on success; otherwise refusal() says why.
    bool build(std::vector<LayupPly> const& plies, Lookup const& lookup,
               double defaultThickness);

    // After a successful build.
    std::string const& text() const { return text_; }
    std::vector<LayupPly> const& plies() const { return plies_; }  // thicknesses set
    UnitSystem unitSystem() const { return units_; }
    Refusal const& refusal() const { return refusal_; }

private:
    bool refuse(Rule rule, int layer, std::string const& material, std::string const& detail);

    std::string text_;
    std::vector<LayupPly> plies_;
    UnitSystem units_ = UnitSystem::NmmMPa;
    Refusal refusal_;
};

}  // namespace laminate::analysis

#endif
