// A laminate of the Python module: the model read from its record, and
// everything prepared from it once (the analysis, the interlaminar shear,
// what the record does not hold), never changed afterwards, so that any
// number of threads may evaluate it at once.
//
// It is made as laminate::define and laminate::layup make theirs: a layup
// becomes the record text a user would type for it (LayupRecord), every
// record passes the strict reader, and the model reads the accepted record
// with its own parser.  The same laminate therefore gives the same numbers,
// bit for bit, here and in the Tcl commands.
#ifndef LAMINATE_PYTHON_PREPARED_LAMINATE_H
#define LAMINATE_PYTHON_PREPARED_LAMINATE_H

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "laminate/analysis/engineering_constants.h"
#include "laminate/analysis/interlaminar_shear.h"
#include "laminate/analysis/laminate_analysis.h"
#include "laminate/analysis/laminate_rating.h"
#include "laminate/analysis/layup_record.h"
#include "laminate/analysis/ply_material.h"
#include "laminate/laminate/lamina1.h"

namespace pylaminate {

// A named ply material, as laminate::material defines one.
struct Material {
    std::string name;  // may be empty
    laminate::analysis::PlyMaterial material;

    // Reads pairs in the order given; throws MaterialError with the message
    // and code of laminate::material.
    Material(std::string name, std::vector<std::pair<std::string, std::string>> const& pairs);
    Material(std::string name, laminate::analysis::PlyMaterial const& m) : name(std::move(name)), material(m) {}
};
using MaterialRef = std::shared_ptr<Material const>;

// One ply of a layup given in Python.
struct Ply {
    MaterialRef material;
    double angle;
    double thickness;  // 0: the layup's default, else the material's t
};

class PreparedLaminate {
public:
    // From a record (layer count, then 18 fields per layer); throws
    // RecordError as laminate::define refuses.
    static std::shared_ptr<PreparedLaminate const> fromRecord(std::string const& text);
    // From plies, layer 1 first; defaultThickness 0 leaves it to each ply and
    // its material.  Throws LayupError or RecordError as laminate::layup does.
    static std::shared_ptr<PreparedLaminate const> fromPlies(std::vector<Ply> const& plies,
                                                             double defaultThickness,
                                                             std::string const& notation);

    PreparedLaminate(PreparedLaminate const&) = delete;
    PreparedLaminate& operator=(PreparedLaminate const&) = delete;

    laminate::analysis::LaminateAnalysis const& analysis() const { return analysis_; }
    laminate::analysis::InterlaminarShear const& shear() const { return shear_; }
    // The catalogue's criteria and the residual stresses per unit dT, dM.
    laminate::analysis::LaminateRating const& rating() const { return rating_; }
    // The expansion coefficients the rating was made with, layers() pairs,
    // or null when some layer lacks them.
    double const* alpha() const { return alpha_.empty() ? nullptr : alpha_.data(); }
    double const* beta() const { return beta_.empty() ? nullptr : beta_.data(); }
    std::string const& record() const { return record_; }
    std::string const& notation() const { return notation_; }
    // Per layer, layer 1 first: the plies of a layup (empty for a record).
    std::vector<laminate::analysis::LayupPly> const& plies() const { return plies_; }
    std::vector<MaterialRef> const& plyMaterials() const { return plyMaterials_; }
    // The engineering constants as laminate::abd gives them.
    laminate::analysis::EngineeringConstants engineering() const;

private:
    PreparedLaminate() = default;
    void prepare(std::string const& text);
    // The catalogue's criteria, as the Tcl commands prepare them: each
    // layer's data from its ply material for a layup, else from the record;
    // the expansion coefficients only when every layer's material has them.
    void prepareRating();

    std::unique_ptr<lamina1> lam_;
    laminate::analysis::LaminateAnalysis analysis_;
    laminate::analysis::InterlaminarShear shear_;
    laminate::analysis::LaminateRating rating_;
    std::vector<double> specificWeight_;
    std::vector<double> alpha_, beta_;  // empty unless every layer has them
    std::vector<MaterialRef> plyMaterials_;
    std::vector<laminate::analysis::LayupPly> plies_;
    std::string record_;
    std::string notation_;
};

}  // namespace pylaminate

#endif
