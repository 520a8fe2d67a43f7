#include "prepared_laminate.h"

#include <map>

#include "errors.h"
#include "laminate/laminate/strict_record.h"

using laminate::analysis::LaminateAnalysis;
using laminate::analysis::LayupPly;
using laminate::analysis::LayupRecord;
using laminate::analysis::PlyMaterial;

namespace pylaminate {

Material::Material(std::string n, std::vector<std::pair<std::string, std::string>> const& pairs)
    : name(std::move(n))
{
    if (!material.read(pairs)) {
        PlyMaterial::Refusal const& why = material.refusal();
        std::string const message =
            name.empty() ? "material: " + why.message() : "material " + name + ", " + why.message();
        throw Error(ErrorKind::Material, message, {"MATERIAL", why.ruleWord(), why.key});
    }
}

void PreparedLaminate::prepare(std::string const& text)
{
    StrictRecord record;
    if (!record.read(text)) {
        StrictRecord::Refusal const& why = record.refusal();
        throw Error(ErrorKind::Record, why.message(),
                    {"RECORD", why.ruleWord(), std::to_string(why.layer), why.field});
    }
    // The record was accepted, so the model's own parser reads it, and the
    // stiffness is computed as a definition computes it.
    lam_.reset(new lamina1);
    lam_->LeerCampoMater(record.text(), 1.0, 1.0, 1.0);
    lam_->calcDefinition();
    record_ = text;
    vantrel::ReaVecV const& sw = lam_->layerSpecificWeight;
    for (int k = 0; k < lam_->nlayers && k < sw.length(); k++) specificWeight_.push_back(sw.data[k]);
    switch (analysis_.prepare(*lam_)) {
    case LaminateAnalysis::Ok: break;
    case LaminateAnalysis::Singular:
        throw Error(ErrorKind::Laminate, "laminate has a singular stiffness", {"MATERIAL", "SINGULAR", ""});
    default: throw Error(ErrorKind::Laminate, "laminate has no layers", {"MATERIAL", "EMPTY", ""});
    }
    shear_.prepare(analysis_);
}

std::shared_ptr<PreparedLaminate const> PreparedLaminate::fromRecord(std::string const& text)
{
    std::shared_ptr<PreparedLaminate> p(new PreparedLaminate);
    p->prepare(text);
    p->prepareRating();
    return p;
}

std::shared_ptr<PreparedLaminate const> PreparedLaminate::fromPlies(std::vector<Ply> const& plies,
                                                                    double defaultThickness,
                                                                    std::string const& notation)
{
    // Each material object gets a name of its own for the record builder:
    // its name, unless another object took it first (then name#k).
    std::map<Material const*, std::string> keys;
    std::map<std::string, PlyMaterial const*> byKey;
    std::map<std::string, MaterialRef> refs;
    std::vector<LayupPly> layup;
    for (Ply const& ply : plies) {
        auto it = keys.find(ply.material.get());
        if (it == keys.end()) {
            std::string key = ply.material->name;
            for (int k = 2; byKey.count(key) != 0; k++) key = ply.material->name + "#" + std::to_string(k);
            it = keys.emplace(ply.material.get(), key).first;
            byKey[key] = &ply.material->material;
            refs[key] = ply.material;
        }
        LayupPly p;
        p.material = it->second;
        p.angle = ply.angle;
        p.thickness = ply.thickness;
        layup.push_back(p);
    }
    LayupRecord record;
    auto lookup = [&byKey](std::string const& name) -> PlyMaterial const* {
        auto it = byKey.find(name);
        return it == byKey.end() ? nullptr : it->second;
    };
    if (!record.build(layup, lookup, defaultThickness)) {
        LayupRecord::Refusal const& why = record.refusal();
        throw Error(ErrorKind::Layup, why.message(),
                    {"LAYUP", why.ruleWord(), std::to_string(why.layer), why.material});
    }
    std::shared_ptr<PreparedLaminate> p(new PreparedLaminate);
    p->prepare(record.text());
    p->plies_ = record.plies();
    for (LayupPly const& ply : p->plies_) p->plyMaterials_.push_back(refs[ply.material]);
    p->notation_ = notation;
    p->prepareRating();
    return p;
}

void PreparedLaminate::prepareRating()
{
    int const n = analysis_.layers();
    bool const layup = static_cast<int>(plyMaterials_.size()) == n;
    bool hasAlpha = layup, hasBeta = layup;
    std::vector<laminate::analysis::CriterionPly> plies;
    std::vector<double> alpha, beta;
    for (int k = 1; k <= n; k++) {
        LaminateAnalysis::Ply const& p = analysis_.plies()[k - 1];
        laminate::analysis::PlySite const site = laminate::analysis::plySite(k, n);
        if (!layup) {
            plies.push_back(laminate::analysis::criterionPly(p.data, site));
            continue;
        }
        PlyMaterial const& m = plyMaterials_[k - 1]->material;
        plies.push_back(laminate::analysis::criterionPly(m, p.data.t, site));
        hasAlpha = hasAlpha && m.has(PlyMaterial::alpha1) && m.has(PlyMaterial::alpha2);
        hasBeta = hasBeta && m.has(PlyMaterial::beta1) && m.has(PlyMaterial::beta2);
        alpha.insert(alpha.end(), {m.number(PlyMaterial::alpha1), m.number(PlyMaterial::alpha2)});
        beta.insert(beta.end(), {m.number(PlyMaterial::beta1), m.number(PlyMaterial::beta2)});
    }
    if (hasAlpha) alpha_ = alpha;
    if (hasBeta) beta_ = beta;
    rating_ = laminate::analysis::LaminateRating(analysis_, plies, this->alpha(), this->beta());
}

laminate::analysis::EngineeringConstants PreparedLaminate::engineering() const
{
    // As laminate::abd: the areal weight when every ply has a specific
    // weight (0 stands for none), the expansion when every ply's material
    // has its coefficients.
    size_t const n = specificWeight_.size();
    std::vector<double> alpha, beta;
    bool hasAlpha = plyMaterials_.size() == n && n > 0, hasBeta = hasAlpha;
    for (MaterialRef const& ref : plyMaterials_) {
        PlyMaterial const& m = ref->material;
        hasAlpha = hasAlpha && m.has(PlyMaterial::alpha1) && m.has(PlyMaterial::alpha2);
        hasBeta = hasBeta && m.has(PlyMaterial::beta1) && m.has(PlyMaterial::beta2);
        alpha.insert(alpha.end(), {m.number(PlyMaterial::alpha1), m.number(PlyMaterial::alpha2)});
        beta.insert(beta.end(), {m.number(PlyMaterial::beta1), m.number(PlyMaterial::beta2)});
    }
    bool hasWeight = n > 0;
    for (double sw : specificWeight_) hasWeight = hasWeight && sw > 0.0;
    laminate::analysis::PlyProperties props;
    props.sw = hasWeight ? specificWeight_.data() : nullptr;
    props.alpha = hasAlpha ? alpha.data() : nullptr;
    props.beta = hasBeta ? beta.data() : nullptr;
    return laminate::analysis::engineeringConstants(analysis_, props);
}

}  // namespace pylaminate
