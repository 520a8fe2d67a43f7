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
#include <memory>
#include <string>
#include <unordered_map>

#include "laminate/analysis/engineering_constants.h"
#include "laminate/analysis/envelope.h"
#include "laminate/analysis/interlaminar_shear.h"
#include "laminate/analysis/laminate_analysis.h"
#include "laminate/laminate/decimal.h"
#include "laminate/tcl/analysis_cmds.h"
#include "laminate/tcl/commands.h"
#include "laminate/tcl/material_cmds.h"
#include "laminate/tcl/registry.h"

using analysis::Criterion;
using analysis::Face;
using analysis::LaminateAnalysis;
using analysis::PlyFailure;
using analysis::PlyResult;

namespace {

const double kLoadSnap = 1e-6;  // load values this small count as 0, as in laminate_results

// ---- errors ----------------------------------------------------------------

// Sets the message and the -errorcode {LAMINATE a b ?c?}; returns TCL_ERROR.
int fail(Tcl_Interp* interp, Tcl_Obj* message, const char* a, const char* b,
         const char* c = nullptr)
{
    Tcl_SetObjResult(interp, message);
    Tcl_SetErrorCode(interp, "LAMINATE", a, b, c, static_cast<char*>(nullptr));
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
    std::vector<analysis::PlyMaterial> plyMaterials;  // per layer; empty unless a layup
    analysis::InterlaminarShear shear;

    PreparedMaterial(lamina1& lam, char const* name) : analysis(lam)
    {
        vantrel::ReaVecV const& sw = lam.layerSpecificWeight;
        for (int k = 0; k < lam.nlayers && k < sw.length(); k++)
            specificWeight.push_back(sw.data[k]);
        layup_ply_materials(name, plyMaterials);
        if (analysis.status() == LaminateAnalysis::Ok) shear.prepare(analysis);
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

// Reads exactly 8 finite numbers from list into loads, snapping tiny values
// to 0.  what names the list in messages ("loads", "case 3").  A value
// written as text must be of the grammar of the material record
// (laminate/decimal.h: decimal, finite, "010" is ten, no hexadecimal, inf or
// nan) and reads to the value that grammar gives; a number a script computed
// and never turned into text is taken as it is, when finite.
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
        Tcl_Obj* item = items[i];
        double v = 0.0;
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
        if (!read || !std::isfinite(v)) {
            Tcl_Obj* msg = Tcl_ObjPrintf("%s: load value %d is not a finite number: \"%s\"", what,
                                         i + 1, Tcl_GetString(item));
            return fail(interp, msg, "LOADS", "VALUE");
        }
        loads[i] = std::fabs(v) <= kLoadSnap ? 0.0 : v;
    }
    return TCL_OK;
}

// ---- options -----------------------------------------------------------------

const char* const criterion_names[] = {"tsaiwu", "hashin", "larc04", nullptr};
const Criterion criteria_in_order[] = {Criterion::TsaiWu, Criterion::Hashin, Criterion::LaRC04};

int readCriterion(Tcl_Interp* interp, Tcl_Obj* word, int& index)
{
    if (Tcl_GetIndexFromObj(interp, word, criterion_names, "criterion", 0, &index) != TCL_OK) {
        Tcl_SetErrorCode(interp, "LAMINATE", "CRITERION", Tcl_GetString(word),
                         static_cast<char*>(nullptr));
        return TCL_ERROR;
    }
    return TCL_OK;
}

enum Option { OPT_CRITERION, OPT_PLANE, OPT_POINTS };

// The options a command takes: names for Tcl_GetIndexFromObj, and what each
// one is.
struct OptionTable {
    const char* const* names;  // NULL-terminated
    const Option* ids;
};
const char* const criterion_only[] = {"-criterion", nullptr};
const Option criterion_only_ids[] = {OPT_CRITERION};
const OptionTable kCriterionOption = {criterion_only, criterion_only_ids};
const char* const envelope_options[] = {"-plane", "-criterion", "-points", nullptr};
const Option envelope_option_ids[] = {OPT_PLANE, OPT_CRITERION, OPT_POINTS};
const OptionTable kEnvelopeOptions = {envelope_options, envelope_option_ids};

// Parses "-option value" pairs from objv[first..objc-1]; the value of each
// option lands in values[its Option].
int readOptions(Tcl_Interp* interp, int objc, Tcl_Obj* const objv[], int first,
                OptionTable const& table, Tcl_Obj* values[3])
{
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

// Which criteria a command answers: all three, or the one of -criterion.
int readCriteria(Tcl_Interp* interp, Tcl_Obj* value, int& first, int& last)
{
    first = 0;
    last = 2;
    if (value == nullptr) return TCL_OK;
    int c;
    if (readCriterion(interp, value, c) != TCL_OK) return TCL_ERROR;
    first = last = c;
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
    return Tcl_NewDoubleObj(v == analysis::kNotAssessed ? 0.0 : v);
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

// The words of a first-ply failure, made once per thread and shared by every
// answer: a batch of many cases builds only the numbers.
struct FailureWords {
    Tcl_Obj* factor;
    Tcl_Obj* ply;
    Tcl_Obj* face;
    Tcl_Obj* mode;
    Tcl_Obj* criterion[3];
    Tcl_Obj* faces[3];     // none, top, bottom
    Tcl_Obj* modes[3][7];  // per criterion, by mode number; [c][6] is none
};

// The words of one thread.  A Tcl_Obj belongs to the thread that made it,
// so every thread makes its own set and lets it go when the thread exits.
struct ThreadWords {
    FailureWords words;
    Tcl_Obj* owned[32];  // every reference the set holds, to release
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
    for (int c = 0; c < 3; c++) x.criterion[c] = kept(t, criterion_names[c]);
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
    t.made = 1;
    Tcl_CreateThreadExitHandler(releaseWords, &t);
    return x;
}

// The factor is a number (Inf: never fails) or, where no number can be
// told, the word undefined (an index that is NaN and nothing else failing)
// or overflow (the stresses of the loads, or the factor, beyond the largest
// double).  Those two are rare: their words are made when needed.
Tcl_Obj* failureDict(int criterion, PlyFailure const& f)
{
    FailureWords const& w = words();
    Tcl_Obj* d = Tcl_NewDictObj();
    Tcl_Obj* factor;
    switch (f.outcome) {
    case analysis::Outcome::Undefined: factor = Tcl_NewStringObj("undefined", -1); break;
    case analysis::Outcome::Overflow: factor = Tcl_NewStringObj("overflow", -1); break;
    default: factor = Tcl_NewDoubleObj(f.factor); break;
    }
    Tcl_DictObjPut(nullptr, d, w.factor, factor);
    Tcl_DictObjPut(nullptr, d, w.ply, Tcl_NewIntObj(f.ply));
    Tcl_DictObjPut(nullptr, d, w.face, w.faces[static_cast<int>(f.face)]);
    Tcl_Obj* mode = w.faces[0];
    if (f.face != Face::None && f.mode >= 0 && f.mode <= 6) mode = w.modes[criterion][f.mode];
    Tcl_DictObjPut(nullptr, d, w.mode, mode);
    return d;
}

// {criterion {factor .. ply .. face .. mode ..} ...} for criteria first..last.
Tcl_Obj* failures(LaminateAnalysis const& an, double const loads[8], int first, int last)
{
    Tcl_Obj* d = Tcl_NewDictObj();
    for (int c = first; c <= last; c++)
        Tcl_DictObjPut(nullptr, d, words().criterion[c],
                       failureDict(c, an.firstPlyFailure(loads, criteria_in_order[c])));
    return d;
}

// The common start of the commands of the form "NAME ARG ?-criterion C?":
// the word count, the option, then the material; null with an error in
// interp when one of them is wrong.
AnalysisRef criterionCommand(Tcl_Interp* interp, int objc, Tcl_Obj* const objv[],
                                         const char* usage, int& first, int& last)
{
    if (objc != 3 && objc != 5) {
        Tcl_WrongNumArgs(interp, 1, objv, usage);
        return nullptr;
    }
    Tcl_Obj* opts[3] = {nullptr, nullptr, nullptr};
    if (readOptions(interp, objc, objv, 3, kCriterionOption, opts) != TCL_OK ||
        readCriteria(interp, opts[OPT_CRITERION], first, last) != TCL_OK)
        return nullptr;
    return material(interp, objv[1]);
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
    for (analysis::PlyMaterial const& m : pm.plyMaterials) {
        using K = analysis::PlyMaterial;
        hasAlpha = hasAlpha && m.has(K::alpha1) && m.has(K::alpha2);
        hasBeta = hasBeta && m.has(K::beta1) && m.has(K::beta2);
        alpha.insert(alpha.end(), {m.number(K::alpha1), m.number(K::alpha2)});
        beta.insert(beta.end(), {m.number(K::beta1), m.number(K::beta2)});
    }
    // A specific weight of 0 stands for one not given: no weight then.
    bool hasWeight = n > 0;
    for (double sw : pm.specificWeight) hasWeight = hasWeight && sw > 0.0;
    analysis::PlyProperties props;
    props.sw = hasWeight ? pm.specificWeight.data() : nullptr;
    props.alpha = hasAlpha ? alpha.data() : nullptr;
    props.beta = hasBeta ? beta.data() : nullptr;
    analysis::EngineeringConstants const e = analysis::engineeringConstants(pm.analysis, props);

    Tcl_Obj* d = Tcl_NewDictObj();
    using E = analysis::EngineeringConstants;
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
    if (pm.shear.status() != analysis::InterlaminarShear::Ok) return list;
    std::vector<analysis::ShearPoint> points;
    pm.shear.profile(loads, points);
    for (analysis::ShearPoint const& p : points) {
        double const v[3] = {p.z, p.xz, p.yz};
        Tcl_ListObjAppendElement(nullptr, list, doubles(v, 3));
    }
    return list;
}

}  // namespace

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

// laminate::evaluate NAME LOADS
//
// Every layer under one load case: a dict of the 8 generalized strains
// (strains), one dict per layer, layer 1 first (plies: every result type of
// laminate_results with the value it gives, and more), the first-ply
// failure under each criterion (fpf), and the transverse shear stresses
// through the thickness by equilibrium (interlaminar).
int laminate_evaluate_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[])
{
    if (objc != 3) {
        Tcl_WrongNumArgs(interp, 1, objv, "name loads");
        return TCL_ERROR;
    }
    PreparedRef full;
    AnalysisRef an = material(interp, objv[1], &full);
    double loads[8];
    if (an == nullptr || readLoads(interp, objv[2], loads, "loads") != TCL_OK) return TCL_ERROR;
    analysis::Evaluation ev;
    an->evaluate(loads, ev);
    Tcl_Obj* plies = Tcl_NewListObj(0, nullptr);
    for (int k = 1; k <= an->layers(); k++)
        Tcl_ListObjAppendElement(nullptr, plies, plyDict(*an, k, ev.plies[k - 1]));
    Tcl_Obj* d = Tcl_NewDictObj();
    put(d, "strains", doubles(ev.strains, 8));
    put(d, "plies", plies);
    put(d, "fpf", failures(*an, loads, 0, 2));
    put(d, "interlaminar", interlaminarList(*full, loads));
    Tcl_SetObjResult(interp, d);
    return TCL_OK;
}

// laminate::fpf NAME LOADS ?-criterion tsaiwu|hashin|larc04?
//
// The first-ply failure of one load case: a dict by criterion of dicts
// {factor F ply P face top|bottom|none mode M}.
int laminate_fpf_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[])
{
    int first, last;
    AnalysisRef an =
        criterionCommand(interp, objc, objv, "name loads ?-criterion criterion?", first, last);
    double loads[8];
    if (an == nullptr || readLoads(interp, objv[2], loads, "loads") != TCL_OK) return TCL_ERROR;
    Tcl_SetObjResult(interp, failures(*an, loads, first, last));
    return TCL_OK;
}

// laminate::batch NAME CASES ?-criterion tsaiwu|hashin|larc04?
//
// The first-ply failure of every load case of CASES, in order: a list of
// dicts shaped as laminate::fpf answers.  A bad case fails the whole command
// and names the case (counted from 1).
int laminate_batch_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[])
{
    int first, last;
    AnalysisRef an =
        criterionCommand(interp, objc, objv, "name cases ?-criterion criterion?", first, last);
    if (an == nullptr) return TCL_ERROR;
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
        Tcl_ListObjAppendElement(nullptr, out, failures(*an, loads, first, last));
    }
    Tcl_SetObjResult(interp, out);
    Tcl_DecrRefCount(out);
    return TCL_OK;
}

// laminate::envelope NAME -plane {I J} ?-criterion C? ?-points N?
//
// N points {x y} of the first-ply-failure envelope (default 72) in the
// plane of load components I and J (1..8), on rays through the origin from
// the I axis; default criterion tsaiwu.
int laminate_envelope_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[])
{
    if (objc < 4 || objc % 2 != 0) {
        Tcl_WrongNumArgs(interp, 1, objv, "name -plane {i j} ?-criterion criterion? ?-points n?");
        return TCL_ERROR;
    }
    Tcl_Obj* opts[3] = {nullptr, nullptr, nullptr};
    if (readOptions(interp, objc, objv, 2, kEnvelopeOptions, opts) != TCL_OK) return TCL_ERROR;
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
    AnalysisRef an = material(interp, objv[1]);
    if (an == nullptr) return TCL_ERROR;
    std::vector<analysis::EnvelopePoint> const pts =
        analysis::envelope(*an, plane[0], plane[1], criteria_in_order[criterion], points);
    Tcl_Obj* out = Tcl_NewListObj(0, nullptr);
    for (analysis::EnvelopePoint const& p : pts) {
        analysis::Outcome const o = p.failure.outcome;
        if (o == analysis::Outcome::Undefined || o == analysis::Outcome::Overflow) {
            // No load to give: the ray's point is the word, twice, as the
            // factor of laminate::fpf is.
            Tcl_Obj* word = Tcl_NewStringObj(o == analysis::Outcome::Undefined ? "undefined"
                                                                                  : "overflow",
                                             -1);
            Tcl_Obj* pair[2] = {word, word};
            Tcl_ListObjAppendElement(nullptr, out, Tcl_NewListObj(2, pair));
            continue;
        }
        double const xy[2] = {p.x, p.y};
        Tcl_ListObjAppendElement(nullptr, out, doubles(xy, 2));
    }
    Tcl_SetObjResult(interp, out);
    return TCL_OK;
}
