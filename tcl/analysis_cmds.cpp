// The commands of laminate::analysis: the stiffness of a material, every
// layer's results under one load case, first-ply failure of one or many load
// cases, and the failure envelope.
//
// A material is looked up as laminate_results looks it up (the cursor node
// when it carries the name, else the first node of that name), but without
// moving the cursor.  Each material name keeps one prepared analysis, used
// only while the name resolves to the node it was prepared from and that
// node still holds the same data.
//
// Threads: the registry and the cache of prepared analyses are shared by
// every interpreter of the process and guarded by the registry lock; the
// evaluation itself runs outside the lock on an analysis nothing changes.
// The Tcl objects a command keeps from call to call are per thread.

#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <unordered_map>

#include "laminate/analysis/engineering_constants.h"
#include "laminate/analysis/envelope.h"
#include "laminate/analysis/interlaminar_rating.h"
#include "laminate/analysis/interlaminar_shear.h"
#include "laminate/analysis/laminate_analysis.h"
#include "laminate/analysis/laminate_rating.h"
#include "laminate/laminate/decimal.h"
#include "laminate/tcl/analysis_cmds.h"
#include "laminate/tcl/commands.h"
#include "laminate/tcl/material_cmds.h"
#include "laminate/tcl/registry.h"

using laminate::analysis::Criterion;
using laminate::analysis::Face;
using laminate::analysis::LaminateAnalysis;
using laminate::analysis::PlyFailure;
using laminate::analysis::PlyResult;

namespace {

const double kLoadSnap = 1e-6;  // load values this small count as 0, as in laminate_results

// ---- errors ----------------------------------------------------------------

// Sets the message and the -errorcode {LAMINATE a b ?c?}; returns TCL_ERROR.
int fail(Tcl_Interp* interp, Tcl_Obj* message, const char* a, const char* b,
         const char* c = nullptr, const char* d = nullptr)
{
    Tcl_SetObjResult(interp, message);
    Tcl_SetErrorCode(interp, "LAMINATE", a, b, c, c ? d : nullptr, static_cast<char*>(nullptr));
    return TCL_ERROR;
}

int fail(Tcl_Interp* interp, const char* message, const char* a, const char* b,
         const char* c = nullptr)
{
    return fail(interp, Tcl_NewStringObj(message, -1), a, b, c);
}

// ---- materials -------------------------------------------------------------

// What the commands keep of a material between calls: the prepared
// analysis and what the model's record does not hold or the analysis does
// not need for the failure criteria.  Never changed once made.
struct PreparedMaterial {
    LaminateAnalysis analysis;
    std::vector<double> specificWeight;               // per layer, layer 1 first
    std::vector<laminate::analysis::PlyMaterial> plyMaterials;  // per layer; empty unless a layup
    laminate::analysis::InterlaminarShear shear;
    // Expansion coefficients, layers() pairs each; empty unless every layer
    // has them (a layup of materials that give them).
    std::vector<double> alpha, beta;
    laminate::analysis::LaminateRating rating;  // the catalogue's criteria, residual stresses
    laminate::analysis::InterlaminarRating ilss;  // the interlaminar shear rating

    PreparedMaterial(lamina1& lam, char const* name) : analysis(lam)
    {
        vantrel::ReaVecV const& sw = lam.layerSpecificWeight;
        for (int k = 0; k < lam.nlayers && k < sw.length(); k++)
            specificWeight.push_back(sw.data[k]);
        layup_ply_materials(name, plyMaterials);
        if (analysis.status() != LaminateAnalysis::Ok) return;
        shear.prepare(analysis);
        prepareRating();
    }

private:
    // Each layer's criterion data from its ply material when the laminate
    // is a layup, else from the record; the coefficients only when every
    // layer has them.
    void prepareRating()
    {
        using K = laminate::analysis::PlyMaterial;
        int const n = analysis.layers();
        bool const layup = static_cast<int>(plyMaterials.size()) == n;
        bool hasAlpha = layup, hasBeta = layup;
        std::vector<laminate::analysis::CriterionPly> plies;
        for (int k = 1; k <= n; k++) {
            LaminateAnalysis::Ply const& p = analysis.plies()[k - 1];
            laminate::analysis::PlySite const site = laminate::analysis::plySite(k, n);
            if (!layup) {
                plies.push_back(laminate::analysis::criterionPly(p.data, site));
                continue;
            }
            K const& m = plyMaterials[k - 1];
            plies.push_back(laminate::analysis::criterionPly(m, p.data.t, site));
            hasAlpha = hasAlpha && m.has(K::alpha1) && m.has(K::alpha2);
            hasBeta = hasBeta && m.has(K::beta1) && m.has(K::beta2);
            alpha.insert(alpha.end(), {m.number(K::alpha1), m.number(K::alpha2)});
            beta.insert(beta.end(), {m.number(K::beta1), m.number(K::beta2)});
        }
        // The transverse shear strengths: a layup's ply materials give them
        // (or their defaults); a record's fields 6 and 7 hold them.
        std::vector<double> allowables;
        for (int k = 1; k <= n; k++) {
            laminate_model::PlyData const& d = analysis.plies()[k - 1].data;
            if (!layup) {
                allowables.insert(allowables.end(), {d.S13, d.S23});
                continue;
            }
            K const& m = plyMaterials[k - 1];
            allowables.insert(allowables.end(), {m.has(K::S13) ? m.number(K::S13) : 0.0,
                                                 m.has(K::S23) ? m.number(K::S23) : 0.0});
        }
        ilss = laminate::analysis::InterlaminarRating(analysis, allowables.data());
        if (!hasAlpha) alpha.clear();
        if (!hasBeta) beta.clear();
        rating = laminate::analysis::LaminateRating(analysis, plies, hasAlpha ? alpha.data() : nullptr,
                                          hasBeta ? beta.data() : nullptr);
    }
};
using PreparedRef = std::shared_ptr<PreparedMaterial const>;

// A prepared material per name: the node it was prepared from and the
// preparation, shared with the commands still using it.  Looking a name up
// again replaces the entry when the name now resolves to another node, so
// the cache holds one preparation per name at most, never one per
// definition.  Guarded by the registry lock.
struct Prepared {
    lam_mat const* node = nullptr;
    PreparedRef data;
};

std::unordered_map<std::string, Prepared>& prepared()
{
    static std::unordered_map<std::string, Prepared> cache;
    return cache;
}

using AnalysisRef = std::shared_ptr<LaminateAnalysis const>;

// The prepared analysis of the material named by nameObj, or null with an
// error in interp: no such material, no layers, or a singular stiffness.
// The material is prepared under the registry lock (preparing rewrites the
// model's working members, as laminate_results does) and then used without
// it: it is never changed once prepared, and the caller's reference keeps it
// alive through a redefinition in another thread.  *full, when asked for,
// receives the whole preparation.
AnalysisRef material(Tcl_Interp* interp, Tcl_Obj* nameObj, PreparedRef* full = nullptr)
{
    const char* name = Tcl_GetString(nameObj);
    PreparedRef data;
    {
        RegistryLock lock;
        lam_mat* node = peek_material(name);
        if (node == nullptr) {
            prepared().erase(name);
            Tcl_Obj* msg = Tcl_ObjPrintf("material not found '%s'", name);
            fail(interp, msg, "MATERIAL", "NOTFOUND", name);
            return nullptr;
        }
        Prepared& entry = prepared()[name];
        if (entry.node != node || !entry.data->analysis.preparedFrom(*node->lamina)) {
            entry.node = node;
            entry.data = std::make_shared<PreparedMaterial const>(*node->lamina, name);
        }
        data = entry.data;
    }
    AnalysisRef an(data, &data->analysis);
    if (full != nullptr) *full = data;
    switch (an->status()) {
    case LaminateAnalysis::Ok:
        return an;
    case LaminateAnalysis::Singular:
        fail(interp, Tcl_ObjPrintf("material '%s' has a singular stiffness", name), "MATERIAL",
             "SINGULAR", name);
        return nullptr;
    default:
        fail(interp, Tcl_ObjPrintf("material '%s' has no layers", name), "MATERIAL", "EMPTY",
             name);
        return nullptr;
    }
}

// ---- loads -----------------------------------------------------------------

// Reads one number.  A value written as text must be of the grammar of the
// material record (laminate/decimal.h: decimal, finite, "010" is ten, no
// hexadecimal, inf or nan) and reads to the value that grammar gives; a
// number a script computed and never turned into text is taken as it is,
// when finite.  False when it is not such a number.
bool readNumber(Tcl_Obj* item, double& v)
{
    v = 0.0;
    bool read;
    if (item->bytes == nullptr) {
        read = Tcl_GetDoubleFromObj(nullptr, item, &v) == TCL_OK;
    } else {
        int length;
        const char* text = Tcl_GetStringFromObj(item, &length);
        size_t const len = static_cast<size_t>(length);
        // Tcl reads a decimal number to the same (correctly rounded)
        // value, and keeps it, but takes "010" for octal: an integer
        // with a leading zero is read by the grammar's own reader.
        size_t const sign = len > 0 && (text[0] == '+' || text[0] == '-') ? 1 : 0;
        bool octalLooking = len > sign + 1 && text[sign] == '0';
        for (size_t k = sign; octalLooking && k < len; k++)
            octalLooking = text[k] != '.' && text[k] != 'e' && text[k] != 'E';
        if (!laminate_model::isDecimal(text, len))
            read = false;
        else if (octalLooking)
            read = laminate_model::readDecimal(text, len, v) == laminate_model::DecimalRead::Ok;
        else
            read = Tcl_GetDoubleFromObj(nullptr, item, &v) == TCL_OK;
    }
    return read && std::isfinite(v);
}

// Reads exactly 8 finite numbers from list into loads (readNumber), snapping
// tiny values to 0.  what names the list in messages ("loads", "case 3").
int readLoads(Tcl_Interp* interp, Tcl_Obj* list, double loads[8], const char* what)
{
    int n;
    Tcl_Obj** items;
    if (Tcl_ListObjGetElements(nullptr, list, &n, &items) != TCL_OK || n != 8) {
        Tcl_Obj* msg = Tcl_ObjPrintf(
            "%s: expected a list of 8 load values N1 N2 N12 M1 M2 M12 Q1 Q2, got \"%s\"", what,
            Tcl_GetString(list));
        return fail(interp, msg, "LOADS", "COUNT");
    }
    for (int i = 0; i < 8; i++) {
        double v;
        if (!readNumber(items[i], v)) {
            Tcl_Obj* msg = Tcl_ObjPrintf("%s: load value %d is not a finite number: \"%s\"", what,
                                         i + 1, Tcl_GetString(items[i]));
            return fail(interp, msg, "LOADS", "VALUE");
        }
        loads[i] = std::fabs(v) <= kLoadSnap ? 0.0 : v;
    }
    return TCL_OK;
}

// ---- options -----------------------------------------------------------------

// The criteria a command may name: the model's three first (answered by
// LaminateAnalysis::firstPlyFailure, as laminate_results computes them),
// then the catalogue's, in the order of laminate::analysis::kCriteria.  One name per
// meaning: tsaiwu and hashin are the model's indices, tsaiwu2d and hashin2d
// the published plane-stress forms.
const char* const criterion_names[] = {"tsaiwu",   "hashin",    "larc04",   "maxstress",
                                       "maxstrain", "tsaihill", "hoffman",  "tsaiwu2d",
                                       "hashin2d", "puck",      "larc03",   nullptr};
const int kModelCriteria = 3;
const int kCriterionNames = 11;
const int kCatalogue = kCriterionNames - kModelCriteria;
const Criterion criteria_in_order[] = {Criterion::TsaiWu, Criterion::Hashin, Criterion::LaRC04};

// laminate::rate's criteria where none are named: an interactive criterion,
// the physically based one for inter-fibre failure, and the allowables
// check.
const char* const kDefaultRating[] = {"tsaiwu2d", "puck", "maxstrain"};

// The position in laminate::analysis::kCriteria of the criterion named
// criterion_names[id], id >= kModelCriteria.
int catalogueIndex(int id)
{
    for (int c = 0; laminate::analysis::kCriteria[c]; c++)
        if (std::strcmp(laminate::analysis::kCriteria[c]->name, criterion_names[id]) == 0) return c;
    return -1;
}

int readCriterion(Tcl_Interp* interp, Tcl_Obj* word, int& index)
{
    if (Tcl_GetIndexFromObj(interp, word, criterion_names, "criterion", 0, &index) != TCL_OK) {
        Tcl_SetErrorCode(interp, "LAMINATE", "CRITERION", Tcl_GetString(word),
                         static_cast<char*>(nullptr));
        return TCL_ERROR;
    }
    return TCL_OK;
}

enum Option { OPT_CRITERION, OPT_PLANE, OPT_POINTS, OPT_CRITERIA, OPT_DT, OPT_DM, OPT_FOS,
              OPT_PARAMS, OPT_COUNT };

// The options a command takes: names for Tcl_GetIndexFromObj, and what each
// one is.
struct OptionTable {
    const char* const* names;  // NULL-terminated
    const Option* ids;
};
const char* const fpf_options[] = {"-criterion", "-dT", "-dM", "-fos", "-params", nullptr};
const Option fpf_option_ids[] = {OPT_CRITERION, OPT_DT, OPT_DM, OPT_FOS, OPT_PARAMS};
const OptionTable kFpfOptions = {fpf_options, fpf_option_ids};
const char* const envelope_options[] = {"-plane", "-criterion", "-points", "-dT",
                                        "-dM",    "-fos",       "-params", nullptr};
const Option envelope_option_ids[] = {OPT_PLANE, OPT_CRITERION, OPT_POINTS, OPT_DT,
                                      OPT_DM,    OPT_FOS,       OPT_PARAMS};
const OptionTable kEnvelopeOptions = {envelope_options, envelope_option_ids};
const char* const rate_options[] = {"-criteria", "-dT", "-dM", "-fos", "-params", nullptr};
const Option rate_option_ids[] = {OPT_CRITERIA, OPT_DT, OPT_DM, OPT_FOS, OPT_PARAMS};
const OptionTable kRateOptions = {rate_options, rate_option_ids};
const char* const evaluate_options[] = {"-dT", "-dM", nullptr};
const Option evaluate_option_ids[] = {OPT_DT, OPT_DM};
const OptionTable kEvaluateOptions = {evaluate_options, evaluate_option_ids};

// Parses "-option value" pairs from objv[first..objc-1]; the value of each
// option lands in values[its Option] (the last one given counts).
int readOptions(Tcl_Interp* interp, int objc, Tcl_Obj* const objv[], int first,
                OptionTable const& table, Tcl_Obj* values[OPT_COUNT])
{
    for (int i = 0; i < OPT_COUNT; i++) values[i] = nullptr;
    for (int i = first; i < objc; i += 2) {
        int index;
        if (Tcl_GetIndexFromObj(interp, objv[i], table.names, "option", 0, &index) != TCL_OK) {
            Tcl_SetErrorCode(interp, "LAMINATE", "OPTION", Tcl_GetString(objv[i]),
                             static_cast<char*>(nullptr));
            return TCL_ERROR;
        }
        if (i + 1 >= objc) {
            Tcl_Obj* msg = Tcl_ObjPrintf("option \"%s\" needs a value", table.names[index]);
            return fail(interp, msg, "OPTION", table.names[index]);
        }
        values[table.ids[index]] = objv[i + 1];
    }
    return TCL_OK;
}

// The criteria a command answers, as positions in criterion_names, each
// once, in the order named.
struct Chosen {
    int n = 0;
    int id[kCriterionNames];

    void add(int c)
    {
        for (int i = 0; i < n; i++)
            if (id[i] == c) return;
        id[n++] = c;
    }
};

// A list of criterion names (one name is a list of one).  catalogueOnly:
// the model's three are refused, with a message naming their published
// counterparts.
int readCriterionList(Tcl_Interp* interp, Tcl_Obj* value, const char* option, bool catalogueOnly,
                      Chosen& out)
{
    int n;
    Tcl_Obj** items;
    if (Tcl_ListObjGetElements(nullptr, value, &n, &items) != TCL_OK || n == 0) {
        Tcl_Obj* msg = Tcl_ObjPrintf("%s: expected a list of criteria, got \"%s\"", option,
                                     Tcl_GetString(value));
        return fail(interp, msg, "CRITERION", "LIST");
    }
    for (int i = 0; i < n; i++) {
        int c;
        if (readCriterion(interp, items[i], c) != TCL_OK) return TCL_ERROR;
        if (catalogueOnly && c < kModelCriteria) {
            Tcl_Obj* msg = Tcl_ObjPrintf(
                "criterion \"%s\" is the model's own index, without reserve factors or residual "
                "stresses: rate with tsaiwu2d, hashin2d, larc03 or another criterion of the "
                "catalogue",
                criterion_names[c]);
            return fail(interp, msg, "CRITERION", "MODEL", criterion_names[c]);
        }
        out.add(c);
    }
    return TCL_OK;
}

// Which criteria laminate::fpf and laminate::batch answer: the model's
// three, or those of -criterion.
int readCriteria(Tcl_Interp* interp, Tcl_Obj* value, Chosen& out)
{
    if (value != nullptr) return readCriterionList(interp, value, "-criterion", false, out);
    for (int c = 0; c < kModelCriteria; c++) out.add(c);
    return TCL_OK;
}

// The thermal and moisture changes of a load case, the factor of safety
// and the criteria's parameters.
struct Conditions {
    double dT = 0.0, dM = 0.0;
    double fos = 1.0;
    bool fosGiven = false;
    bool changeGiven = false;  // -dT or -dM was given (even as 0)
    Tcl_Obj* params = nullptr;  // -params, read by checkConditions
    // The catalogue's criteria prepared with -params, when given.
    std::shared_ptr<laminate::analysis::LaminateRating> tuned;

    bool residual() const { return dT != 0.0 || dM != 0.0; }
    laminate::analysis::LaminateRating const& rating(PreparedMaterial const& pm) const
    {
        return tuned ? *tuned : pm.rating;
    }
};

int readConditions(Tcl_Interp* interp, Tcl_Obj* const values[OPT_COUNT], Conditions& out)
{
    struct Field {
        Option option;
        const char* name;
        double* value;
    };
    Field const fields[] = {{OPT_DT, "-dT", &out.dT}, {OPT_DM, "-dM", &out.dM},
                            {OPT_FOS, "-fos", &out.fos}};
    for (Field const& f : fields) {
        Tcl_Obj* v = values[f.option];
        if (v == nullptr) continue;
        if (!readNumber(v, *f.value) || (f.option == OPT_FOS && !(*f.value > 0.0))) {
            Tcl_Obj* msg = Tcl_ObjPrintf("%s: expected a finite number%s, got \"%s\"", f.name,
                                         f.option == OPT_FOS ? " above 0" : "",
                                         Tcl_GetString(v));
            return fail(interp, msg, "OPTION", f.name);
        }
    }
    out.params = values[OPT_PARAMS];
    out.fosGiven = values[OPT_FOS] != nullptr;
    out.changeGiven = values[OPT_DT] != nullptr || values[OPT_DM] != nullptr;
    return TCL_OK;
}

// -params {CRITERION {NAME VALUE ...} ...}: the parameters of criteria of
// the catalogue (Puck's weakening, the published Tsai-Wu's F12*), each from
// its default; cond.tuned becomes the laminate's criteria prepared with them.
int readParams(Tcl_Interp* interp, PreparedMaterial const& pm, Conditions& cond)
{
    using laminate::analysis::CriterionInfo;
    Tcl_Obj* value = cond.params;
    int n;
    Tcl_Obj** items;
    if (Tcl_ListObjGetElements(nullptr, value, &n, &items) != TCL_OK || n % 2 != 0) {
        Tcl_Obj* msg = Tcl_ObjPrintf(
            "-params: expected a dict of criteria and their {name value ...}, got \"%s\"",
            Tcl_GetString(value));
        return fail(interp, msg, "PARAMS", "SHAPE");
    }
    auto tuned = std::make_shared<laminate::analysis::LaminateRating>(pm.rating);
    for (int i = 0; i < n; i += 2) {
        char const* cname = Tcl_GetString(items[i]);
        CriterionInfo const* info = laminate::analysis::findCriterion(cname);
        if (info == nullptr || info->nparams == 0) {
            std::string known;
            for (int c = 0; laminate::analysis::kCriteria[c] != nullptr; c++)
                if (laminate::analysis::kCriteria[c]->nparams > 0)
                    known += std::string(known.empty() ? "" : ", ") + laminate::analysis::kCriteria[c]->name;
            Tcl_Obj* msg = Tcl_ObjPrintf("-params: \"%s\" is not a criterion with parameters (%s)",
                                         cname, known.c_str());
            return fail(interp, msg, "PARAMS", "CRITERION", cname);
        }
        int c = 0;
        while (laminate::analysis::kCriteria[c] != info) c++;
        double params[laminate::analysis::kMaxCriterionParams];
        laminate::analysis::defaultParams(*info, params);
        int m;
        Tcl_Obj** pairs;
        if (Tcl_ListObjGetElements(nullptr, items[i + 1], &m, &pairs) != TCL_OK || m % 2 != 0) {
            Tcl_Obj* msg = Tcl_ObjPrintf("-params: %s: expected {name value ...}, got \"%s\"",
                                         cname, Tcl_GetString(items[i + 1]));
            return fail(interp, msg, "PARAMS", "SHAPE");
        }
        for (int j = 0; j < m; j += 2) {
            char const* pname = Tcl_GetString(pairs[j]);
            int at = -1;
            for (int q = 0; q < info->nparams; q++)
                if (std::strcmp(info->params[q].name, pname) == 0) at = q;
            if (at < 0) {
                std::string known;
                for (int q = 0; q < info->nparams; q++)
                    known += std::string(q ? ", " : "") + info->params[q].name;
                Tcl_Obj* msg = Tcl_ObjPrintf("-params: %s has no parameter \"%s\" (%s)", cname,
                                             pname, known.c_str());
                return fail(interp, msg, "PARAMS", "NAME", cname, pname);
            }
            laminate::analysis::CriterionParam const& p = info->params[at];
            double v;
            if (!readNumber(pairs[j + 1], v) || v < p.min || v > p.max) {
                Tcl_Obj* msg = Tcl_ObjPrintf("-params: %s %s: expected a number from %g to %g, got \"%s\"",
                                             cname, pname, p.min, p.max, Tcl_GetString(pairs[j + 1]));
                return fail(interp, msg, "PARAMS", "VALUE", cname, pname);
            }
            params[at] = v;
        }
        tuned->setParams(c, params);
    }
    cond.tuned = std::move(tuned);
    return TCL_OK;
}

// A temperature or moisture change needs every layer's coefficients, and
// the catalogue's criteria: the model's indices hold no residual stresses.
int checkConditions(Tcl_Interp* interp, Tcl_Obj* nameObj, PreparedMaterial const& pm,
                    Conditions& cond, Chosen const& chosen)
{
    const char* name = Tcl_GetString(nameObj);
    laminate::analysis::ResidualStress const& r = pm.rating.residual();
    if (cond.dT != 0.0 && !r.hasThermal()) {
        Tcl_Obj* msg = Tcl_ObjPrintf(
            "material '%s' has no thermal expansion coefficients: -dT needs alpha1 and alpha2 "
            "of every ply (a laminate::layup of materials that give them)",
            name);
        return fail(interp, msg, "THERMAL", "NOALPHA", name);
    }
    if (cond.dM != 0.0 && !r.hasMoisture()) {
        Tcl_Obj* msg = Tcl_ObjPrintf(
            "material '%s' has no moisture expansion coefficients: -dM needs beta1 and beta2 "
            "of every ply (a laminate::layup of materials that give them)",
            name);
        return fail(interp, msg, "THERMAL", "NOBETA", name);
    }
    if (cond.params != nullptr && readParams(interp, pm, cond) != TCL_OK) return TCL_ERROR;
    if (!cond.residual()) return TCL_OK;
    for (int i = 0; i < chosen.n; i++) {
        if (chosen.id[i] >= kModelCriteria) continue;
        Tcl_Obj* msg = Tcl_ObjPrintf(
            "criterion \"%s\" is the model's own index and holds no residual stresses: with "
            "-dT or -dM name criteria of the catalogue (tsaiwu2d, hashin2d, puck, larc03 ...)",
            criterion_names[chosen.id[i]]);
        return fail(interp, msg, "THERMAL", "MODELCRITERION", criterion_names[chosen.id[i]]);
    }
    return TCL_OK;
}

// ---- results -----------------------------------------------------------------

Tcl_Obj* doubles(double const* v, int n)
{
    Tcl_Obj* list = Tcl_NewListObj(0, nullptr);
    for (int i = 0; i < n; i++) Tcl_ListObjAppendElement(nullptr, list, Tcl_NewDoubleObj(v[i]));
    return list;
}

Tcl_Obj* rows(vantrel::Matriu const& m)
{
    Tcl_Obj* list = Tcl_NewListObj(0, nullptr);
    for (int r = 0; r < m.nrows; r++)
        Tcl_ListObjAppendElement(nullptr, list, doubles(m.data + r * m.ncols, m.ncols));
    return list;
}

void put(Tcl_Obj* dict, const char* key, Tcl_Obj* value)
{
    Tcl_DictObjPut(nullptr, dict, Tcl_NewStringObj(key, -1), value);
}

// A criterion value as laminate_results shows it: not assessed as 0.
Tcl_Obj* factor(double v)
{
    return Tcl_NewDoubleObj(v == laminate::analysis::kNotAssessed ? 0.0 : v);
}

// The value laminate_results gives for result type `type` of this layer.
Tcl_Obj* resultValue(int type, PlyResult const& r)
{
    laminate_model::LayerState const& s = r.state;
    switch (type) {
    case 0: return factor(r.tsaiWu);
    case 1: return doubles(s.stressesLam, 3);
    case 2: return doubles(s.strainsLam, 3);
    case 3: return doubles(s.stressesTopLam, 3);
    case 4: return doubles(s.stressesBasLam, 3);
    case 5: {
        double const v[3] = {s.shearStressesLam[0], s.shearStressesLam[1], s.stressesLam[2]};
        return doubles(v, 3);
    }
    case 6: {
        double const v[3] = {s.shearStrainsLam[0], s.shearStrainsLam[1], s.strainsLam[2]};
        return doubles(v, 3);
    }
    case 7: case 8: case 9: case 10: case 11: case 12:
        return factor(r.larc04[type - 7]);
    case 13: case 14: case 15: return Tcl_NewDoubleObj(s.stressesLam[type - 13]);
    case 16: case 17: case 18: return Tcl_NewDoubleObj(s.strainsLam[type - 16]);
    case 19: case 20: case 21: return Tcl_NewDoubleObj(s.stressesTopLam[type - 19]);
    case 22: case 23: case 24: return Tcl_NewDoubleObj(s.stressesBasLam[type - 22]);
    case 25: case 26: return Tcl_NewDoubleObj(s.shearStressesLam[type - 25]);
    case 27: case 28: return Tcl_NewDoubleObj(s.shearStrainsLam[type - 27]);
    default: return factor(r.tsaiWuSimple);
    }
}

// Mean of the two faces, as the layer-axes middle values are formed.
Tcl_Obj* middle(double const* top, double const* bas)
{
    double const v[3] = {0.5 * (top[0] + bas[0]), 0.5 * (top[1] + bas[1]),
                         0.5 * (top[2] + bas[2])};
    return doubles(v, 3);
}

Tcl_Obj* plyDict(LaminateAnalysis const& an, int layer, PlyResult const& r)
{
    Tcl_Obj* d = Tcl_NewDictObj();
    for (int t = 0; result_types[t] != nullptr; t++) put(d, result_types[t], resultValue(t, r));
    laminate_model::LayerState const& s = r.state;
    put(d, "hashin_matrix", factor(r.hashinMatrix));
    put(d, "hashin_fibre", factor(r.hashinFibre));
    put(d, "angle", Tcl_NewDoubleObj(an.angle(layer)));
    double const z[2] = {an.zLow(layer), an.zHigh(layer)};
    put(d, "z", doubles(z, 2));
    put(d, "flag", Tcl_NewIntObj(an.plies()[layer - 1].data.flag));
    put(d, "xy_stresstop", doubles(s.stressesTop, 3));
    put(d, "xy_stressbas", doubles(s.stressesBas, 3));
    put(d, "xy_stresses", middle(s.stressesTop, s.stressesBas));
    put(d, "xy_straintop", doubles(s.strainsTop, 3));
    put(d, "xy_strainbas", doubles(s.strainsBas, 3));
    put(d, "xy_strains", middle(s.strainsTop, s.strainsBas));
    return d;
}

// The words of a first-ply failure and a rating, made once per thread and
// shared by every answer: a batch of many cases builds only the numbers.
const int kMaxModes = 8;
const int kVerdicts = 8;
struct FailureWords {
    Tcl_Obj* factor;
    Tcl_Obj* ply;
    Tcl_Obj* face;
    Tcl_Obj* mode;
    Tcl_Obj* verdict;
    Tcl_Obj* mos;
    Tcl_Obj* rf;
    Tcl_Obj* index;
    Tcl_Obj* criterion[kCriterionNames];
    Tcl_Obj* faces[3];     // none, top, bottom
    Tcl_Obj* modes[3][7];  // per model criterion, by mode number; [c][6] is none
    // Per catalogue criterion (its position in kCriteria), by mode position;
    // none past the last.
    Tcl_Obj* catalogueModes[kCatalogue][kMaxModes];
    Tcl_Obj* extras[kCatalogue][laminate::analysis::kMaxExtras];
    Tcl_Obj* verdicts[kVerdicts];  // by laminate::analysis::Verdict
};

// The words of one thread.  A Tcl_Obj belongs to the thread that made it,
// so every thread makes its own set and lets it go when the thread exits.
struct ThreadWords {
    FailureWords words;
    Tcl_Obj* owned[192];  // every reference the set holds, to release
    int nOwned;
    int made;
};

Tcl_ThreadDataKey words_key;

Tcl_Obj* kept(ThreadWords& t, const char* text)
{
    Tcl_Obj* o = Tcl_NewStringObj(text, -1);
    Tcl_IncrRefCount(o);
    t.owned[t.nOwned++] = o;
    return o;
}

void releaseWords(ClientData data)
{
    ThreadWords* t = static_cast<ThreadWords*>(data);
    for (int i = 0; i < t->nOwned; i++) Tcl_DecrRefCount(t->owned[i]);
    t->nOwned = 0;
    t->made = 0;
}

FailureWords const& words()
{
    ThreadWords& t = *static_cast<ThreadWords*>(Tcl_GetThreadData(&words_key, sizeof(ThreadWords)));
    if (t.made) return t.words;
    FailureWords& x = t.words;
    t.nOwned = 0;
    x.factor = kept(t, "factor");
    x.ply = kept(t, "ply");
    x.face = kept(t, "face");
    x.mode = kept(t, "mode");
    x.verdict = kept(t, "verdict");
    x.mos = kept(t, "mos");
    x.rf = kept(t, "rf");
    x.index = kept(t, "index");
    for (int c = 0; c < kCriterionNames; c++) x.criterion[c] = kept(t, criterion_names[c]);
    x.faces[0] = kept(t, "none");
    x.faces[1] = kept(t, "top");
    x.faces[2] = kept(t, "bottom");
    for (auto& row : x.modes)
        for (Tcl_Obj*& m : row) m = x.faces[0];
    x.modes[0][0] = kept(t, "tsaiwu");
    x.modes[1][0] = kept(t, "matrix");
    x.modes[1][1] = kept(t, "fibre");
    const char* larc[] = {"m1", "m2", "m3", "m4", "m5", "m6"};
    for (int m = 1; m <= 6; m++) x.modes[2][m] = kept(t, larc[m - 1]);
    for (int c = 0; c < kCatalogue && laminate::analysis::kCriteria[c]; c++) {
        laminate::analysis::CriterionInfo const& info = *laminate::analysis::kCriteria[c];
        for (int m = 0; m < kMaxModes; m++) x.catalogueModes[c][m] = x.faces[0];
        for (int m = 0; m < kMaxModes && info.modes[m]; m++)
            x.catalogueModes[c][m] = kept(t, info.modes[m]);
        for (int e = 0; e < laminate::analysis::kMaxExtras; e++) x.extras[c][e] = nullptr;
        for (int e = 0; e < laminate::analysis::kMaxExtras && info.extras[e]; e++)
            x.extras[c][e] = kept(t, info.extras[e]);
    }
    for (int v = 0; v < kVerdicts; v++)
        x.verdicts[v] = kept(t, laminate::analysis::verdictWord(static_cast<laminate::analysis::Verdict>(v)));
    t.made = 1;
    Tcl_CreateThreadExitHandler(releaseWords, &t);
    return x;
}

// The margin of safety of a factor shown as value: a number for a number,
// the same word for a word.
Tcl_Obj* marginObj(Tcl_Obj* value, double factor, bool isNumber, double fos)
{
    return isNumber ? Tcl_NewDoubleObj(laminate::analysis::marginOfSafety(factor, fos)) : value;
}

// The factor is a number (Inf: never fails) or, where no number can be
// told, the word undefined (an index that is NaN and nothing else failing)
// or overflow (the stresses of the loads, or the factor, beyond the largest
// double).  Those two are rare: their words are made when needed.  mos is
// added when a factor of safety was given.
Tcl_Obj* failureDict(int criterion, PlyFailure const& f, Conditions const& cond)
{
    FailureWords const& w = words();
    Tcl_Obj* d = Tcl_NewDictObj();
    Tcl_Obj* factor;
    bool number = false;
    switch (f.outcome) {
    case laminate::analysis::Outcome::Undefined: factor = Tcl_NewStringObj("undefined", -1); break;
    case laminate::analysis::Outcome::Overflow: factor = Tcl_NewStringObj("overflow", -1); break;
    default: factor = Tcl_NewDoubleObj(f.factor); number = true; break;
    }
    Tcl_DictObjPut(nullptr, d, w.factor, factor);
    Tcl_DictObjPut(nullptr, d, w.ply, Tcl_NewIntObj(f.ply));
    Tcl_DictObjPut(nullptr, d, w.face, w.faces[static_cast<int>(f.face)]);
    Tcl_Obj* mode = w.faces[0];
    if (f.face != Face::None && f.mode >= 0 && f.mode <= 6) mode = w.modes[criterion][f.mode];
    Tcl_DictObjPut(nullptr, d, w.mode, mode);
    if (cond.fosGiven) Tcl_DictObjPut(nullptr, d, w.mos, marginObj(factor, f.factor, number, cond.fos));
    return d;
}

bool rated(laminate::analysis::Verdict v)
{
    return v == laminate::analysis::Verdict::Ok || v == laminate::analysis::Verdict::Residual ||
           v == laminate::analysis::Verdict::Never;
}

// The first-ply failure of a catalogue criterion (its position in
// kCriteria) in the shape of failureDict, with its verdict: the factor is
// the reserve factor (0 when the residual stresses alone fail a ply, Inf
// when nothing fails), or the verdict word when a ply cannot be rated.
Tcl_Obj* ratedFailureDict(int c, laminate::analysis::LaminateFailure const& f, Conditions const& cond,
                          bool withMargin)
{
    FailureWords const& w = words();
    Tcl_Obj* d = Tcl_NewDictObj();
    bool const number = rated(f.verdict);
    Tcl_Obj* verdict = w.verdicts[static_cast<int>(f.verdict)];
    Tcl_Obj* factor = number ? Tcl_NewDoubleObj(f.rf) : verdict;
    Tcl_DictObjPut(nullptr, d, w.factor, factor);
    Tcl_DictObjPut(nullptr, d, w.ply, Tcl_NewIntObj(f.ply));
    Tcl_DictObjPut(nullptr, d, w.face, w.faces[static_cast<int>(f.face)]);
    Tcl_DictObjPut(nullptr, d, w.mode,
                   f.mode >= 0 && f.mode < kMaxModes ? w.catalogueModes[c][f.mode] : w.faces[0]);
    Tcl_DictObjPut(nullptr, d, w.verdict, verdict);
    if (withMargin) Tcl_DictObjPut(nullptr, d, w.mos, marginObj(factor, f.rf, number, cond.fos));
    return d;
}

// {criterion {factor .. ply .. face .. mode .. ?verdict ..? ?mos ..?} ...}
// for the criteria chosen.
Tcl_Obj* failures(PreparedMaterial const& pm, double const loads[8], Chosen const& chosen,
                  Conditions const& cond)
{
    Tcl_Obj* d = Tcl_NewDictObj();
    laminate::analysis::RatingLoad const load{loads, cond.dT, cond.dM};
    for (int i = 0; i < chosen.n; i++) {
        int const id = chosen.id[i];
        Tcl_Obj* value;
        if (id < kModelCriteria) {
            value = failureDict(id, pm.analysis.firstPlyFailure(loads, criteria_in_order[id]), cond);
        } else {
            int const c = catalogueIndex(id);
            value = ratedFailureDict(c, cond.rating(pm).firstPlyFailure(c, load), cond, cond.fosGiven);
        }
        Tcl_DictObjPut(nullptr, d, words().criterion[id], value);
    }
    return d;
}

// The interlaminar shear rating of one ply, shaped as laminate::rate's
// other entries: {rf R mos M index I face top|bottom|middle mode ilss
// verdict V}, R, M and I the verdict word where the ply cannot be rated.
Tcl_Obj* ilssPlyDict(laminate::analysis::ShearRating const& r, Conditions const& cond)
{
    FailureWords const& w = words();
    Tcl_Obj* d = Tcl_NewDictObj();
    Tcl_Obj* verdict = w.verdicts[static_cast<int>(r.verdict)];
    bool const number = rated(r.verdict);
    Tcl_DictObjPut(nullptr, d, w.rf, number ? Tcl_NewDoubleObj(r.rf) : verdict);
    Tcl_DictObjPut(nullptr, d, w.mos,
                   number ? Tcl_NewDoubleObj(laminate::analysis::marginOfSafety(r.rf, cond.fos))
                          : verdict);
    Tcl_DictObjPut(nullptr, d, w.index, number ? Tcl_NewDoubleObj(r.index) : verdict);
    Tcl_DictObjPut(nullptr, d, w.face,
                   Tcl_NewStringObj(laminate::analysis::plyPointWord(r.point), -1));
    Tcl_DictObjPut(nullptr, d, w.mode,
                   r.verdict == laminate::analysis::Verdict::Ok ? Tcl_NewStringObj("ilss", -1)
                                                                : w.faces[0]);
    Tcl_DictObjPut(nullptr, d, w.verdict, verdict);
    return d;
}

// The laminate's first interlaminar shear failure, shaped as
// ratedFailureDict answers, with mos.
Tcl_Obj* ilssFailureDict(laminate::analysis::ShearRating const& r, Conditions const& cond)
{
    FailureWords const& w = words();
    Tcl_Obj* d = Tcl_NewDictObj();
    Tcl_Obj* verdict = w.verdicts[static_cast<int>(r.verdict)];
    bool const number = rated(r.verdict);
    Tcl_Obj* factor = number ? Tcl_NewDoubleObj(r.rf) : verdict;
    Tcl_DictObjPut(nullptr, d, w.factor, factor);
    Tcl_DictObjPut(nullptr, d, w.ply, Tcl_NewIntObj(r.ply));
    Tcl_DictObjPut(nullptr, d, w.face,
                   Tcl_NewStringObj(laminate::analysis::plyPointWord(r.point), -1));
    Tcl_DictObjPut(nullptr, d, w.mode,
                   r.verdict == laminate::analysis::Verdict::Ok ? Tcl_NewStringObj("ilss", -1)
                                                                : w.faces[0]);
    Tcl_DictObjPut(nullptr, d, w.verdict, verdict);
    Tcl_DictObjPut(nullptr, d, w.mos, marginObj(factor, r.rf, number, cond.fos));
    return d;
}

// The common start of laminate::fpf and laminate::batch: the word count,
// the options, then the material and what it allows; null with an error in
// interp when one of them is wrong.
PreparedRef criterionCommand(Tcl_Interp* interp, int objc, Tcl_Obj* const objv[],
                             const char* usage, Chosen& chosen, Conditions& cond)
{
    if (objc < 3 || objc % 2 == 0) {
        Tcl_WrongNumArgs(interp, 1, objv, usage);
        return nullptr;
    }
    Tcl_Obj* opts[OPT_COUNT];
    if (readOptions(interp, objc, objv, 3, kFpfOptions, opts) != TCL_OK ||
        readCriteria(interp, opts[OPT_CRITERION], chosen) != TCL_OK ||
        readConditions(interp, opts, cond) != TCL_OK)
        return nullptr;
    PreparedRef full;
    if (material(interp, objv[1], &full) == nullptr ||
        checkConditions(interp, objv[1], *full, cond, chosen) != TCL_OK)
        return nullptr;
    return full;
}

// The laminate's engineering constants (see analysis/engineering_constants.h)
// as a dict: status ok|singular|notpositive, the ABD compliance as rows,
// membrane and flexural moduli and Poisson ratios, the areal weight when
// every ply has a specific weight, and the free expansion when every ply has
// its coefficients (a laminate of laminate::layup).
Tcl_Obj* engineeringDict(PreparedMaterial const& pm)
{
    size_t const n = pm.specificWeight.size();
    std::vector<double> alpha, beta;
    bool hasAlpha = pm.plyMaterials.size() == n && n > 0, hasBeta = hasAlpha;
    for (laminate::analysis::PlyMaterial const& m : pm.plyMaterials) {
        using K = laminate::analysis::PlyMaterial;
        hasAlpha = hasAlpha && m.has(K::alpha1) && m.has(K::alpha2);
        hasBeta = hasBeta && m.has(K::beta1) && m.has(K::beta2);
        alpha.insert(alpha.end(), {m.number(K::alpha1), m.number(K::alpha2)});
        beta.insert(beta.end(), {m.number(K::beta1), m.number(K::beta2)});
    }
    // A specific weight of 0 stands for one not given: no weight then.
    bool hasWeight = n > 0;
    for (double sw : pm.specificWeight) hasWeight = hasWeight && sw > 0.0;
    laminate::analysis::PlyProperties props;
    props.sw = hasWeight ? pm.specificWeight.data() : nullptr;
    props.alpha = hasAlpha ? alpha.data() : nullptr;
    props.beta = hasBeta ? beta.data() : nullptr;
    laminate::analysis::EngineeringConstants const e = laminate::analysis::engineeringConstants(pm.analysis, props);

    Tcl_Obj* d = Tcl_NewDictObj();
    using E = laminate::analysis::EngineeringConstants;
    put(d, "status", Tcl_NewStringObj(e.status == E::Ok            ? "ok"
                                      : e.status == E::NotPositive ? "notpositive"
                                      : e.status == E::Singular    ? "singular"
                                                                   : "notprepared",
                                      -1));
    if (e.status != E::Ok && e.status != E::NotPositive) return d;
    Tcl_Obj* abd = Tcl_NewListObj(0, nullptr);
    for (int r = 0; r < 6; r++) Tcl_ListObjAppendElement(nullptr, abd, doubles(e.compliance + 6 * r, 6));
    put(d, "abd", abd);
    if (e.status != E::Ok) return d;
    struct Named { const char* key; double value; };
    Named const moduli[] = {{"Ex", e.Ex},     {"Ey", e.Ey},     {"Gxy", e.Gxy},   {"nuxy", e.nuxy},
                            {"nuyx", e.nuyx}, {"Exb", e.Exb},   {"Eyb", e.Eyb},   {"Gxyb", e.Gxyb},
                            {"nuxyb", e.nuxyb}, {"nuyxb", e.nuyxb}};
    for (Named const& m : moduli) put(d, m.key, Tcl_NewDoubleObj(m.value));
    if (e.hasWeight) put(d, "weight", Tcl_NewDoubleObj(e.weight));
    if (e.hasThermal) {
        put(d, "alpha", doubles(e.thermal, 3));
        put(d, "alpha_curvature", doubles(e.thermal + 3, 3));
    }
    if (e.hasMoisture) {
        put(d, "beta", doubles(e.moisture, 3));
        put(d, "beta_curvature", doubles(e.moisture + 3, 3));
    }
    return d;
}

// The transverse shear stresses through the thickness recovered from
// equilibrium: {z txz tyz} at every ply face and middle, lowest face first.
Tcl_Obj* interlaminarList(PreparedMaterial const& pm, double const loads[8])
{
    Tcl_Obj* list = Tcl_NewListObj(0, nullptr);
    if (pm.shear.status() != laminate::analysis::InterlaminarShear::Ok) return list;
    std::vector<laminate::analysis::ShearPoint> points;
    pm.shear.profile(loads, points);
    for (laminate::analysis::ShearPoint const& p : points) {
        double const v[3] = {p.z, p.xz, p.yz};
        Tcl_ListObjAppendElement(nullptr, list, doubles(v, 3));
    }
    return list;
}

// The residual and total stresses of one layer of laminate::evaluate under
// dT, dM: layer axes at both faces and the middle, laminate axes at both
// faces.
void putResidual(Tcl_Obj* d, laminate::analysis::ResidualStress const& r, int layer, PlyResult const& m,
                 Conditions const& cond)
{
    laminate_model::LayerState const& s = m.state;
    double res[2][3], resXy[2][3], tot[2][3], totXy[2][3];
    Face const faces[2] = {Face::Top, Face::Bottom};
    double const* mech[2] = {s.stressesTopLam, s.stressesBasLam};
    double const* mechXy[2] = {s.stressesTop, s.stressesBas};
    for (int f = 0; f < 2; f++) {
        laminate::analysis::PlyStress const p = r.stress(layer, faces[f], cond.dT, cond.dM);
        res[f][0] = p.s1;
        res[f][1] = p.s2;
        res[f][2] = p.t12;
        r.stressLaminateAxes(layer, faces[f], cond.dT, cond.dM, resXy[f]);
        for (int i = 0; i < 3; i++) {
            tot[f][i] = mech[f][i] + res[f][i];
            totXy[f][i] = mechXy[f][i] + resXy[f][i];
        }
    }
    put(d, "residual_stresstop", doubles(res[0], 3));
    put(d, "residual_stressbas", doubles(res[1], 3));
    put(d, "residual_stresses", middle(res[0], res[1]));
    put(d, "total_stresstop", doubles(tot[0], 3));
    put(d, "total_stressbas", doubles(tot[1], 3));
    put(d, "total_stresses", middle(tot[0], tot[1]));
    put(d, "xy_residual_stresstop", doubles(resXy[0], 3));
    put(d, "xy_residual_stressbas", doubles(resXy[1], 3));
    put(d, "xy_total_stresstop", doubles(totXy[0], 3));
    put(d, "xy_total_stressbas", doubles(totXy[1], 3));
}

// {dT .. dM .. resultants {N1..M12} free {ex..kxy}}: the thermal and
// moisture resultants and the free laminate's strains and curvatures.
Tcl_Obj* thermalDict(laminate::analysis::ResidualStress const& r, Conditions const& cond)
{
    double nm[6], e[6];
    r.resultants(cond.dT, cond.dM, nm);
    r.freeStrains(cond.dT, cond.dM, e);
    Tcl_Obj* d = Tcl_NewDictObj();
    put(d, "dT", Tcl_NewDoubleObj(cond.dT));
    put(d, "dM", Tcl_NewDoubleObj(cond.dM));
    put(d, "resultants", doubles(nm, 6));
    put(d, "free", doubles(e, 6));
    return d;
}

}  // namespace

int prepared_laminate(Tcl_Interp* interp, Tcl_Obj* nameObj, double dT, double dM,
                      PreparedLaminate& out, Tcl_Obj* params)
{
    PreparedRef full;
    Conditions cond;
    cond.dT = dT;
    cond.dM = dM;
    cond.params = params;
    if (material(interp, nameObj, &full) == nullptr ||
        checkConditions(interp, nameObj, *full, cond, Chosen()) != TCL_OK)
        return TCL_ERROR;
    out.keep = full;
    out.analysis = &full->analysis;
    out.tuned = cond.tuned;
    out.rating = &cond.rating(*full);
    out.alpha = full->alpha.empty() ? nullptr : full->alpha.data();
    out.beta = full->beta.empty() ? nullptr : full->beta.data();
    return TCL_OK;
}

bool read_number(Tcl_Obj* item, double& v)
{
    return readNumber(item, v);
}

int read_loads(Tcl_Interp* interp, Tcl_Obj* list, double loads[8], const char* what)
{
    return readLoads(interp, list, loads, what);
}

void forget_prepared_analyses()
{
    RegistryLock lock;
    prepared().clear();
}

void forget_prepared_analysis(char const* name)
{
    prepared().erase(name);
}

// laminate::abd NAME
//
// The stiffness the stress recovery uses: a dict of A, B, D (3 x 3), H
// (2 x 2) and K (8 x 8) as lists of rows, the total thickness, and the
// laminate's engineering constants (engineering).
int laminate_abd_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[])
{
    if (objc != 2) {
        Tcl_WrongNumArgs(interp, 1, objv, "name");
        return TCL_ERROR;
    }
    PreparedRef full;
    AnalysisRef an = material(interp, objv[1], &full);
    if (an == nullptr) return TCL_ERROR;
    Tcl_Obj* d = Tcl_NewDictObj();
    put(d, "A", rows(an->A()));
    put(d, "B", rows(an->B()));
    put(d, "D", rows(an->D()));
    put(d, "H", rows(an->H()));
    put(d, "K", rows(an->K()));
    put(d, "thickness", Tcl_NewDoubleObj(an->thickness()));
    put(d, "engineering", engineeringDict(*full));
    Tcl_SetObjResult(interp, d);
    return TCL_OK;
}

// laminate::evaluate NAME LOADS ?-dT T? ?-dM M?
//
// Every layer under one load case: a dict of the 8 generalized strains
// (strains), one dict per layer, layer 1 first (plies: every result type of
// laminate_results with the value it gives, and more), the first-ply
// failure under each of the model's criteria (fpf, mechanical loads), and
// the transverse shear stresses through the thickness by equilibrium
// (interlaminar).  With -dT or -dM each layer also gives its residual and
// total (mechanical + residual) stresses, and the dict the thermal and
// moisture resultants and free strains (thermal).
int laminate_evaluate_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[])
{
    if (objc < 3 || objc % 2 == 0) {
        Tcl_WrongNumArgs(interp, 1, objv, "name loads ?-dT t? ?-dM m?");
        return TCL_ERROR;
    }
    Tcl_Obj* opts[OPT_COUNT];
    Conditions cond;
    if (readOptions(interp, objc, objv, 3, kEvaluateOptions, opts) != TCL_OK ||
        readConditions(interp, opts, cond) != TCL_OK)
        return TCL_ERROR;
    PreparedRef full;
    AnalysisRef an = material(interp, objv[1], &full);
    double loads[8];
    if (an == nullptr || checkConditions(interp, objv[1], *full, cond, Chosen()) != TCL_OK ||
        readLoads(interp, objv[2], loads, "loads") != TCL_OK)
        return TCL_ERROR;
    laminate::analysis::Evaluation ev;
    an->evaluate(loads, ev);
    bool const residual = cond.changeGiven && full->rating.status() == laminate::analysis::LaminateRating::Ok;
    Tcl_Obj* plies = Tcl_NewListObj(0, nullptr);
    for (int k = 1; k <= an->layers(); k++) {
        Tcl_Obj* ply = plyDict(*an, k, ev.plies[k - 1]);
        if (residual) putResidual(ply, full->rating.residual(), k, ev.plies[k - 1], cond);
        Tcl_ListObjAppendElement(nullptr, plies, ply);
    }
    Chosen model;
    for (int c = 0; c < kModelCriteria; c++) model.add(c);
    Tcl_Obj* d = Tcl_NewDictObj();
    put(d, "strains", doubles(ev.strains, 8));
    put(d, "plies", plies);
    put(d, "fpf", failures(*full, loads, model, Conditions()));
    put(d, "interlaminar", interlaminarList(*full, loads));
    if (residual) put(d, "thermal", thermalDict(full->rating.residual(), cond));
    Tcl_SetObjResult(interp, d);
    return TCL_OK;
}

// laminate::fpf NAME LOADS ?-criterion LIST? ?-dT T? ?-dM M? ?-fos F? ?-params P?
//
// The first-ply failure of one load case: a dict by criterion of dicts
// {factor F ply P face top|bottom|none mode M}; a catalogue criterion adds
// its verdict, and -fos the margin of safety (mos).
int laminate_fpf_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[])
{
    Chosen chosen;
    Conditions cond;
    PreparedRef pm = criterionCommand(
        interp, objc, objv, "name loads ?-criterion criteria? ?-dT t? ?-dM m? ?-fos f? ?-params p?", chosen,
        cond);
    double loads[8];
    if (pm == nullptr || readLoads(interp, objv[2], loads, "loads") != TCL_OK) return TCL_ERROR;
    Tcl_SetObjResult(interp, failures(*pm, loads, chosen, cond));
    return TCL_OK;
}

// laminate::batch NAME CASES ?-criterion LIST? ?-dT T? ?-dM M? ?-fos F?
//     ?-params P?
//
// The first-ply failure of every load case of CASES, in order, each under
// the same dT and dM: a list of dicts shaped as laminate::fpf answers.  A
// bad case fails the whole command and names the case (counted from 1).
int laminate_batch_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[])
{
    Chosen chosen;
    Conditions cond;
    PreparedRef pm = criterionCommand(
        interp, objc, objv, "name cases ?-criterion criteria? ?-dT t? ?-dM m? ?-fos f? ?-params p?", chosen,
        cond);
    if (pm == nullptr) return TCL_ERROR;
    int n;
    Tcl_Obj** cases;
    if (Tcl_ListObjGetElements(nullptr, objv[2], &n, &cases) != TCL_OK)
        return fail(interp, "cases: not a list of load vectors", "LOADS", "LIST");
    Tcl_Obj* out = Tcl_NewListObj(0, nullptr);
    Tcl_IncrRefCount(out);
    for (int i = 0; i < n; i++) {
        double loads[8];
        char what[32];
        std::snprintf(what, sizeof what, "case %d", i + 1);
        if (readLoads(interp, cases[i], loads, what) != TCL_OK) {
            Tcl_DecrRefCount(out);
            return TCL_ERROR;
        }
        Tcl_ListObjAppendElement(nullptr, out, failures(*pm, loads, chosen, cond));
    }
    Tcl_SetObjResult(interp, out);
    Tcl_DecrRefCount(out);
    return TCL_OK;
}

// laminate::envelope NAME -plane {I J} ?-criterion C? ?-points N? ?-dT T?
//     ?-dM M? ?-fos F? ?-params P?
//
// N points {x y} of the first-ply-failure envelope (default 72) in the
// plane of load components I and J (1..8), on rays through the origin from
// the I axis, the mechanical loads scaled with dT and dM held; default
// criterion tsaiwu.  With -fos every point is divided by F (the envelope of
// allowable loads).  A ray without a failure load gives a word twice.
int laminate_envelope_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[])
{
    if (objc < 4 || objc % 2 != 0) {
        Tcl_WrongNumArgs(interp, 1, objv,
                         "name -plane {i j} ?-criterion criterion? ?-points n? ?-dT t? ?-dM m? "
                         "?-fos f? ?-params p?");
        return TCL_ERROR;
    }
    Tcl_Obj* opts[OPT_COUNT];
    Conditions cond;
    if (readOptions(interp, objc, objv, 2, kEnvelopeOptions, opts) != TCL_OK ||
        readConditions(interp, opts, cond) != TCL_OK)
        return TCL_ERROR;
    int criterion = 0, points = 72;
    if (opts[OPT_CRITERION] && readCriterion(interp, opts[OPT_CRITERION], criterion) != TCL_OK)
        return TCL_ERROR;
    if (opts[OPT_POINTS] &&
        (Tcl_GetIntFromObj(nullptr, opts[OPT_POINTS], &points) != TCL_OK || points < 1 ||
         points > 100000)) {
        Tcl_Obj* msg = Tcl_ObjPrintf("-points: expected an integer from 1 to 100000, got \"%s\"",
                                     Tcl_GetString(opts[OPT_POINTS]));
        return fail(interp, msg, "OPTION", "-points");
    }
    int plane[2] = {0, 0}, n = 0;
    Tcl_Obj** items = nullptr;
    if (opts[OPT_PLANE] == nullptr ||
        Tcl_ListObjGetElements(nullptr, opts[OPT_PLANE], &n, &items) != TCL_OK || n != 2 ||
        Tcl_GetIntFromObj(nullptr, items[0], &plane[0]) != TCL_OK ||
        Tcl_GetIntFromObj(nullptr, items[1], &plane[1]) != TCL_OK || plane[0] < 1 ||
        plane[0] > 8 || plane[1] < 1 || plane[1] > 8 || plane[0] == plane[1]) {
        Tcl_Obj* msg = Tcl_ObjPrintf(
            "-plane: expected two different load components from 1 to 8, got \"%s\"",
            opts[OPT_PLANE] ? Tcl_GetString(opts[OPT_PLANE]) : "");
        return fail(interp, msg, "PLANE", "INVALID");
    }
    Chosen chosen;
    chosen.add(criterion);
    PreparedRef pm;
    if (material(interp, objv[1], &pm) == nullptr ||
        checkConditions(interp, objv[1], *pm, cond, chosen) != TCL_OK)
        return TCL_ERROR;
    Tcl_Obj* out = Tcl_NewListObj(0, nullptr);
    auto point = [&](double x, double y) {
        double const xy[2] = {x / cond.fos, y / cond.fos};
        Tcl_ListObjAppendElement(nullptr, out, doubles(xy, 2));
    };
    // No load to give: the ray's point is the word, twice, as the factor of
    // laminate::fpf is.
    auto word = [&](Tcl_Obj* w) {
        Tcl_Obj* pair[2] = {w, w};
        Tcl_ListObjAppendElement(nullptr, out, Tcl_NewListObj(2, pair));
    };
    if (criterion < kModelCriteria) {
        std::vector<laminate::analysis::EnvelopePoint> const pts = laminate::analysis::envelope(
            pm->analysis, plane[0], plane[1], criteria_in_order[criterion], points);
        for (laminate::analysis::EnvelopePoint const& p : pts) {
            laminate::analysis::Outcome const o = p.failure.outcome;
            if (o == laminate::analysis::Outcome::Undefined || o == laminate::analysis::Outcome::Overflow)
                word(Tcl_NewStringObj(o == laminate::analysis::Outcome::Undefined ? "undefined" : "overflow",
                                      -1));
            else
                point(p.x, p.y);
        }
    } else {
        std::vector<laminate::analysis::RatedEnvelopePoint> const pts =
            laminate::analysis::ratedEnvelope(cond.rating(*pm), plane[0], plane[1], catalogueIndex(criterion),
                                    points, cond.dT, cond.dM);
        for (laminate::analysis::RatedEnvelopePoint const& p : pts) {
            if (rated(p.failure.verdict))
                point(p.x, p.y);
            else
                word(words().verdicts[static_cast<int>(p.failure.verdict)]);
        }
    }
    Tcl_SetObjResult(interp, out);
    return TCL_OK;
}

// laminate::rate NAME LOADS ?-criteria LIST? ?-dT T? ?-dM M? ?-fos F? ?-params P?
//
// The reserve factors of every ply under the catalogue's criteria (default
// tsaiwu2d puck maxstrain; ilss, named among them, adds the interlaminar
// shear rating), residual stresses of dT and dM held: a dict of
//   plies: layer 1 first, per layer a dict by criterion of the worse face's
//     {rf R mos M index I face F mode MODE verdict V ?extra outputs?};
//   fpf: the first-ply failure per criterion, shaped as laminate::fpf
//     answers, with verdict and mos.
// R is a number (0: the residual stresses alone fail, Inf: never fails) or
// the verdict word of a ply that cannot be rated, as are M and I then; I is
// the index at the loads given (residual + mechanical).
int laminate_rate_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[])
{
    if (objc < 3 || objc % 2 == 0) {
        Tcl_WrongNumArgs(interp, 1, objv, "name loads ?-criteria list? ?-dT t? ?-dM m? ?-fos f? ?-params p?");
        return TCL_ERROR;
    }
    Tcl_Obj* opts[OPT_COUNT];
    Conditions cond;
    Chosen chosen;
    if (readOptions(interp, objc, objv, 3, kRateOptions, opts) != TCL_OK ||
        readConditions(interp, opts, cond) != TCL_OK)
        return TCL_ERROR;
    // ilss, the interlaminar shear rating, is named among the criteria but
    // is not one of the catalogue: ilssAt is its place among those named
    // (-1: not named).
    int ilssAt = -1;
    if (opts[OPT_CRITERIA] != nullptr) {
        int n;
        Tcl_Obj** items;
        if (Tcl_ListObjGetElements(nullptr, opts[OPT_CRITERIA], &n, &items) != TCL_OK || n == 0)
            return readCriterionList(interp, opts[OPT_CRITERIA], "-criteria", true, chosen);
        for (int i = 0; i < n; i++) {
            if (std::strcmp(Tcl_GetString(items[i]), "ilss") == 0) {
                if (ilssAt < 0) ilssAt = chosen.n;
            } else if (readCriterionList(interp, items[i], "-criteria", true, chosen) != TCL_OK) {
                return TCL_ERROR;
            }
        }
    } else {
        for (const char* name : kDefaultRating)
            for (int c = kModelCriteria; c < kCriterionNames; c++)
                if (std::strcmp(criterion_names[c], name) == 0) chosen.add(c);
    }
    PreparedRef pm;
    double loads[8];
    if (material(interp, objv[1], &pm) == nullptr ||
        checkConditions(interp, objv[1], *pm, cond, chosen) != TCL_OK ||
        readLoads(interp, objv[2], loads, "loads") != TCL_OK)
        return TCL_ERROR;

    FailureWords const& w = words();
    laminate::analysis::LaminateRating const& rating = cond.rating(*pm);
    laminate::analysis::RatingLoad const load{loads, cond.dT, cond.dM};
    Tcl_Obj* plies = Tcl_NewListObj(0, nullptr);
    for (int k = 1; k <= pm->analysis.layers(); k++) {
        Tcl_Obj* ply = Tcl_NewDictObj();
        for (int i = 0; i <= chosen.n; i++) {
            if (i == ilssAt)
                put(ply, "ilss", ilssPlyDict(pm->ilss.ratePly(k, loads), cond));
            if (i == chosen.n) break;
            int const c = catalogueIndex(chosen.id[i]);
            laminate::analysis::FaceRating const fr = rating.ratePly(c, k, load);
            laminate::analysis::Rating const& r = fr.rating;
            Tcl_Obj* verdict = w.verdicts[static_cast<int>(r.verdict)];
            Tcl_Obj* d = Tcl_NewDictObj();
            if (rated(r.verdict)) {
                laminate::analysis::PreparedCriterion const& p = rating.prepared(c, k);
                laminate::analysis::PlyStress const now{fr.res.s1 + fr.mech.s1, fr.res.s2 + fr.mech.s2,
                                              fr.res.t12 + fr.mech.t12};
                laminate::analysis::Assessment const a = laminate::analysis::assess(p, now);
                Tcl_DictObjPut(nullptr, d, w.rf, Tcl_NewDoubleObj(r.rf));
                Tcl_DictObjPut(nullptr, d, w.mos,
                               Tcl_NewDoubleObj(laminate::analysis::marginOfSafety(r.rf, cond.fos)));
                Tcl_DictObjPut(nullptr, d, w.index,
                               a.verdict == laminate::analysis::Verdict::Ok
                                   ? Tcl_NewDoubleObj(a.index)
                                   : w.verdicts[static_cast<int>(a.verdict)]);
                Tcl_DictObjPut(nullptr, d, w.face, w.faces[static_cast<int>(fr.face)]);
                Tcl_DictObjPut(nullptr, d, w.mode,
                               r.mode >= 0 && r.mode < kMaxModes ? w.catalogueModes[c][r.mode]
                                                                 : w.faces[0]);
                Tcl_DictObjPut(nullptr, d, w.verdict, verdict);
                // The extra outputs (fracture and misalignment angles) at the
                // failure state.
                if (r.verdict != laminate::analysis::Verdict::Never) {
                    laminate::analysis::Assessment const at =
                        laminate::analysis::assess(p, laminate::analysis::failureState(fr.res, fr.mech, r));
                    for (int e = 0; e < laminate::analysis::kMaxExtras; e++)
                        if (w.extras[c][e] && (at.extraValid & (1u << e)))
                            Tcl_DictObjPut(nullptr, d, w.extras[c][e],
                                           Tcl_NewDoubleObj(at.extra[e]));
                }
            } else {
                Tcl_DictObjPut(nullptr, d, w.rf, verdict);
                Tcl_DictObjPut(nullptr, d, w.mos, verdict);
                Tcl_DictObjPut(nullptr, d, w.index, verdict);
                Tcl_DictObjPut(nullptr, d, w.face, w.faces[static_cast<int>(fr.face)]);
                Tcl_DictObjPut(nullptr, d, w.mode, w.faces[0]);
                Tcl_DictObjPut(nullptr, d, w.verdict, verdict);
            }
            Tcl_DictObjPut(nullptr, ply, w.criterion[chosen.id[i]], d);
        }
        Tcl_ListObjAppendElement(nullptr, plies, ply);
    }
    Tcl_Obj* fpf = Tcl_NewDictObj();
    for (int i = 0; i <= chosen.n; i++) {
        if (i == ilssAt) put(fpf, "ilss", ilssFailureDict(pm->ilss.firstPlyFailure(loads), cond));
        if (i == chosen.n) break;
        int const c = catalogueIndex(chosen.id[i]);
        Tcl_DictObjPut(nullptr, fpf, w.criterion[chosen.id[i]],
                       ratedFailureDict(c, rating.firstPlyFailure(c, load), cond, true));
    }
    Tcl_Obj* d = Tcl_NewDictObj();
    put(d, "plies", plies);
    put(d, "fpf", fpf);
    Tcl_SetObjResult(interp, d);
    return TCL_OK;
}
