// The commands of ply materials and layups.
//
// Ply materials live in one process-wide store, like the laminate registry:
// every interpreter of every thread sees the same materials.  The store holds
// plain C++ values only and sits behind a mutex.  A layup becomes a laminate
// through the strict path of laminate::define, from the record text a user
// would type for it; the store keeps, per defined model, what the layup was
// made of, for laminate::describe.

#include "laminate/tcl/material_cmds.h"

#include <cstring>
#include <map>
#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "laminate/analysis/layup_notation.h"
#include "laminate/analysis/layup_record.h"
#include "laminate/analysis/material_library.h"
#include "laminate/analysis/ply_material.h"
#include "laminate/tcl/define_cmd.h"
#include "laminate/tcl/registry.h"

using laminate::analysis::DecimalRead;
using laminate::analysis::LayupNotation;
using laminate::analysis::LayupPly;
using laminate::analysis::LayupRecord;
using laminate::analysis::MaterialLibrary;
using laminate::analysis::PlyMaterial;
using laminate::analysis::readDecimal;

namespace {

// The bundled library: its file name in the package folder, and the word
// that asks for it.
char const* const kBundledFile = "materials.lam";
char const* const kBundledWord = "bundled";
// The package folder, set by the package index when the package loads.
char const* const kLibraryVar = "::laminate::library";

// What a layup was made of.
struct LayupInfo {
    std::string notation;                                      // as written
    std::vector<LayupPly> plies;                               // layer 1 first
    std::vector<std::pair<std::string, PlyMaterial>> materials;  // in order of first use
    laminate::analysis::UnitSystem units;
    std::string record;
};

// Process-wide state: the ply materials by name, and what each laminate
// defined by laminate::layup was made of, by its name.  A name's entry is
// dropped whenever the name is defined strictly again (forget_layup), and a
// strictly defined name resolves to that definition for good, so an entry
// always describes the definition its name resolves to.  Lock order: the
// registry lock first, then this one.
struct Store {
    std::mutex lock;
    std::map<std::string, PlyMaterial> materials;
    std::unordered_map<std::string, LayupInfo> layups;
};

Store& store()
{
    static Store s;
    return s;
}

// ---- errors ----------------------------------------------------------------

// Sets the message and the -errorcode {LAMINATE a b ?c? ?d?}; returns TCL_ERROR.
int fail(Tcl_Interp* interp, std::string const& message, char const* a, char const* b,
         char const* c = nullptr, char const* d = nullptr)
{
    Tcl_SetObjResult(interp, Tcl_NewStringObj(message.data(), static_cast<int>(message.size())));
    Tcl_SetErrorCode(interp, "LAMINATE", a, b, c, d, static_cast<char*>(nullptr));
    return TCL_ERROR;
}

// Text quoted back in a message: at most 40 bytes, cut on a character.
std::string shown(char const* text)
{
    std::string s(text);
    if (s.size() <= 40) return s;
    size_t cut = 40;
    while (cut > 0 && (static_cast<unsigned char>(s[cut]) & 0xC0) == 0x80) --cut;
    return s.substr(0, cut) + "...";
}

// ---- results ---------------------------------------------------------------

// A material as a dict, keys in table order: every value it has (given or
// by default, numbers as doubles), or only the given ones, as written.
Tcl_Obj* materialDict(PlyMaterial const& m, bool givenOnly)
{
    Tcl_Obj* dict = Tcl_NewDictObj();
    for (int i = 0; i < PlyMaterial::kKeyCount; ++i) {
        PlyMaterial::Key const k = static_cast<PlyMaterial::Key>(i);
        if (givenOnly ? !m.given(k) : !m.has(k)) continue;
        PlyMaterial::KeyRow const& row = PlyMaterial::kKeys[k];
        Tcl_Obj* value;
        if (givenOnly || row.kind == PlyMaterial::ONE_OF || row.kind == PlyMaterial::FREE_TEXT) {
            std::string const& text = m.text(k);
            value = Tcl_NewStringObj(text.data(), static_cast<int>(text.size()));
        } else {
            value = Tcl_NewDoubleObj(m.number(k));
        }
        Tcl_DictObjPut(nullptr, dict, Tcl_NewStringObj(row.name, -1), value);
    }
    return dict;
}

// The plies as a list of {material angle thickness}, layer 1 first.
Tcl_Obj* plyList(std::vector<LayupPly> const& plies)
{
    Tcl_Obj* list = Tcl_NewListObj(0, nullptr);
    for (LayupPly const& p : plies) {
        Tcl_Obj* row[3] = {Tcl_NewStringObj(p.material.data(), static_cast<int>(p.material.size())),
                           Tcl_NewDoubleObj(p.angle), Tcl_NewDoubleObj(p.thickness)};
        Tcl_ListObjAppendElement(nullptr, list, Tcl_NewListObj(3, row));
    }
    return list;
}

// ---- laminate::material ----------------------------------------------------

char const* const subcommands[] = {"get", "list", "load", "remove", nullptr};
enum Subcommand { SUB_GET, SUB_LIST, SUB_LOAD, SUB_REMOVE };

int defineMaterial(Tcl_Interp* interp, Tcl_Obj* nameObj, Tcl_Obj* dictObj)
{
    std::string const name = Tcl_GetString(nameObj);
    if (name.empty()) return fail(interp, "a ply material needs a name", "MATERIAL", "NAME", "");
    int n = 0;
    Tcl_Obj** items = nullptr;
    if (Tcl_ListObjGetElements(nullptr, dictObj, &n, &items) != TCL_OK || n % 2 != 0) {
        return fail(interp,
                    "material " + name + ": expected key value pairs, got \"" +
                        shown(Tcl_GetString(dictObj)) + "\"",
                    "MATERIAL", "PAIRS", "");
    }
    std::vector<std::pair<std::string, std::string>> pairs;
    for (int i = 0; i < n; i += 2) pairs.emplace_back(Tcl_GetString(items[i]), Tcl_GetString(items[i + 1]));
    PlyMaterial m;
    if (!m.read(pairs)) {
        PlyMaterial::Refusal const& why = m.refusal();
        return fail(interp, "material " + name + ", " + why.message(), "MATERIAL", why.ruleWord(),
                    why.key.c_str());
    }
    {
        std::lock_guard<std::mutex> hold(store().lock);
        store().materials[name] = m;
    }
    Tcl_ResetResult(interp);
    return TCL_OK;
}

int notFound(Tcl_Interp* interp, std::string const& name)
{
    return fail(interp, "ply material not found '" + name + "'", "MATERIAL", "NOTFOUND", name.c_str());
}

int getMaterial(Tcl_Interp* interp, int objc, Tcl_Obj* const objv[])
{
    if (objc != 3 && objc != 4) {
        Tcl_WrongNumArgs(interp, 2, objv, "name ?-given?");
        return TCL_ERROR;
    }
    static char const* const options[] = {"-given", nullptr};
    int index = 0;
    if (objc == 4 && Tcl_GetIndexFromObj(interp, objv[3], options, "option", 0, &index) != TCL_OK) {
        Tcl_SetErrorCode(interp, "LAMINATE", "OPTION", Tcl_GetString(objv[3]), static_cast<char*>(nullptr));
        return TCL_ERROR;
    }
    std::string const name = Tcl_GetString(objv[2]);
    PlyMaterial m;
    {
        std::lock_guard<std::mutex> hold(store().lock);
        auto it = store().materials.find(name);
        if (it == store().materials.end()) return notFound(interp, name);
        m = it->second;
    }
    Tcl_SetObjResult(interp, materialDict(m, objc == 4));
    return TCL_OK;
}

int listMaterials(Tcl_Interp* interp, int objc, Tcl_Obj* const objv[])
{
    if (objc != 2 && objc != 3) {
        Tcl_WrongNumArgs(interp, 2, objv, "?pattern?");
        return TCL_ERROR;
    }
    char const* pattern = objc == 3 ? Tcl_GetString(objv[2]) : "*";
    std::vector<std::string> names;
    {
        std::lock_guard<std::mutex> hold(store().lock);
        for (auto const& named : store().materials) {
            if (Tcl_StringMatch(named.first.c_str(), pattern)) names.push_back(named.first);
        }
    }
    Tcl_Obj* list = Tcl_NewListObj(0, nullptr);
    for (std::string const& n : names)
        Tcl_ListObjAppendElement(nullptr, list, Tcl_NewStringObj(n.data(), static_cast<int>(n.size())));
    Tcl_SetObjResult(interp, list);
    return TCL_OK;
}

int removeMaterial(Tcl_Interp* interp, int objc, Tcl_Obj* const objv[])
{
    if (objc != 3) {
        Tcl_WrongNumArgs(interp, 2, objv, "name");
        return TCL_ERROR;
    }
    std::string const name = Tcl_GetString(objv[2]);
    {
        std::lock_guard<std::mutex> hold(store().lock);
        if (store().materials.erase(name) == 0) return notFound(interp, name);
    }
    Tcl_ResetResult(interp);
    return TCL_OK;
}

// The whole text of the file at path, read as UTF-8; null with an error in
// interp when it cannot be read.  The caller owns the reference.
Tcl_Obj* readFile(Tcl_Interp* interp, Tcl_Obj* path)
{
    Tcl_Channel channel = Tcl_FSOpenFileChannel(interp, path, "r", 0);
    if (channel == nullptr) {
        std::string const why = Tcl_GetString(Tcl_GetObjResult(interp));
        fail(interp, "material library: " + why, "LIBRARY", "OPEN", "0", "");
        return nullptr;
    }
    Tcl_Obj* text = Tcl_NewObj();
    Tcl_IncrRefCount(text);
    bool ok = Tcl_SetChannelOption(interp, channel, "-encoding", "utf-8") == TCL_OK &&
              Tcl_ReadChars(channel, text, -1, 0) >= 0;
    if (!ok) {
        std::string const why = Tcl_ErrnoMsg(Tcl_GetErrno());
        fail(interp, "material library \"" + std::string(Tcl_GetString(path)) + "\": " + why,
             "LIBRARY", "OPEN", "0", "");
    }
    Tcl_Close(nullptr, channel);
    if (!ok) {
        Tcl_DecrRefCount(text);
        return nullptr;
    }
    return text;
}

int loadLibrary(Tcl_Interp* interp, int objc, Tcl_Obj* const objv[])
{
    if (objc != 3) {
        Tcl_WrongNumArgs(interp, 2, objv, "file");
        return TCL_ERROR;
    }
    // The file, or the bundled library in the package folder.
    Tcl_Obj* path = objv[2];
    if (std::strcmp(Tcl_GetString(path), kBundledWord) == 0) {
        Tcl_Obj* folder = Tcl_GetVar2Ex(interp, kLibraryVar, nullptr, TCL_GLOBAL_ONLY);
        if (folder == nullptr) {
            return fail(interp,
                        std::string("the bundled material library is not known: ") + kLibraryVar +
                            " names no folder (load the package with package require)",
                        "LIBRARY", "NOTFOUND", "0", "");
        }
        Tcl_Obj* file = Tcl_NewStringObj(kBundledFile, -1);
        Tcl_IncrRefCount(file);
        path = Tcl_FSJoinToPath(folder, 1, &file);
        Tcl_DecrRefCount(file);
    }
    Tcl_IncrRefCount(path);
    Tcl_Obj* content = readFile(interp, path);
    std::string const where = Tcl_GetString(path);
    Tcl_DecrRefCount(path);
    if (content == nullptr) return TCL_ERROR;

    int length = 0;
    char const* text = Tcl_GetStringFromObj(content, &length);
    MaterialLibrary library;
    bool const ok = library.parse(text, static_cast<size_t>(length));
    Tcl_DecrRefCount(content);
    if (!ok) {
        MaterialLibrary::Refusal const& why = library.refusal();
        std::string const line = std::to_string(why.line);
        return fail(interp, where + ", line " + line + ": " + why.text, "LIBRARY", why.rule.c_str(),
                    line.c_str(), why.key.c_str());
    }
    for (MaterialLibrary::Entry const& e : library.entries()) {
        for (int s = 0; subcommands[s] != nullptr; ++s) {
            if (e.name != subcommands[s]) continue;
            std::string const line = std::to_string(e.line);
            return fail(interp,
                        where + ", line " + line + ": material " + e.name +
                            ": get, list, load and remove are subcommands, not names",
                        "LIBRARY", "NAME", line.c_str(), "");
        }
    }
    Tcl_Obj* names = Tcl_NewListObj(0, nullptr);
    {
        std::lock_guard<std::mutex> hold(store().lock);
        for (MaterialLibrary::Entry const& e : library.entries()) store().materials[e.name] = e.material;
    }
    for (MaterialLibrary::Entry const& e : library.entries())
        Tcl_ListObjAppendElement(nullptr, names, Tcl_NewStringObj(e.name.data(), static_cast<int>(e.name.size())));
    Tcl_SetObjResult(interp, names);
    return TCL_OK;
}

// ---- laminate::layup ---------------------------------------------------------

// A ply list {material angle ?thickness?} ..., layer 1 first.
int readPlyList(Tcl_Interp* interp, Tcl_Obj* layup, std::vector<LayupPly>& plies)
{
    int n = 0;
    Tcl_Obj** items = nullptr;
    if (Tcl_ListObjGetElements(nullptr, layup, &n, &items) != TCL_OK) {
        return fail(interp,
                    "layup: expected a stacking sequence in brackets or a list of plies "
                    "{material angle ?thickness?}, got \"" + shown(Tcl_GetString(layup)) + "\"",
                    "LAYUP", "PLY", "0");
    }
    for (int i = 0; i < n; ++i) {
        std::string const ply = std::to_string(i + 1);
        int m = 0;
        Tcl_Obj** words = nullptr;
        if (Tcl_ListObjGetElements(nullptr, items[i], &m, &words) != TCL_OK || m < 2 || m > 3) {
            std::string hint;
            if (m == 1 && std::strchr(Tcl_GetString(items[i]), '/') != nullptr)
                hint = " (a stacking sequence is written in brackets: [0/90]s)";
            return fail(interp,
                        "ply " + ply + ": expected {material angle ?thickness?}, got \"" +
                            shown(Tcl_GetString(items[i])) + "\"" + hint,
                        "LAYUP", "PLY", ply.c_str());
        }
        LayupPly p;
        p.material = Tcl_GetString(words[0]);
        char const* names[2] = {"angle", "thickness"};
        double* values[2] = {&p.angle, &p.thickness};
        for (int w = 1; w < m; ++w) {
            int len = 0;
            char const* text = Tcl_GetStringFromObj(words[w], &len);
            DecimalRead const r = readDecimal(text, static_cast<size_t>(len), *values[w - 1]);
            char const* rule = r == DecimalRead::NotDecimal ? "must be a decimal number"
                               : r == DecimalRead::NotFinite ? "must be finite"
                               : w == 2 && !(p.thickness > 0) ? "must be > 0"
                                                               : nullptr;
            if (rule != nullptr) {
                return fail(interp, "ply " + ply + ", " + names[w - 1] + ": " + rule + ", got " + shown(text),
                            "LAYUP", "PLY", ply.c_str());
            }
        }
        plies.push_back(p);
    }
    return TCL_OK;
}

}  // namespace

// laminate::material name dict
// laminate::material get name ?-given?
// laminate::material list ?pattern?
// laminate::material remove name
// laminate::material load file
//
// Defines (or redefines) the ply material name from dict, key-value pairs
// checked in full (error code {LAMINATE MATERIAL rule key}; a refused
// definition changes nothing) and returns an empty result.  get returns the
// material as a dict (every value it has, defaults included; only the values
// given with -given); list the names matching pattern, sorted; remove forgets
// a material (laminates made of it keep their plies).  load reads a material
// library file (the word "bundled": the library shipped with the package)
// and returns the names it defined, in file order; a library is accepted or
// refused as a whole ({LAMINATE LIBRARY rule line key}).
int ply_material_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[])
{
    int sub = -1;
    if (objc >= 2 &&
        Tcl_GetIndexFromObj(nullptr, objv[1], subcommands, "subcommand", TCL_EXACT, &sub) != TCL_OK)
        sub = -1;
    switch (sub) {
    case SUB_GET: return getMaterial(interp, objc, objv);
    case SUB_LIST: return listMaterials(interp, objc, objv);
    case SUB_LOAD: return loadLibrary(interp, objc, objv);
    case SUB_REMOVE: return removeMaterial(interp, objc, objv);
    default: break;
    }
    if (objc != 3) {
        Tcl_WrongNumArgs(interp, 1, objv, "name dict | get name ?-given? | list ?pattern? | remove name | load file");
        return TCL_ERROR;
    }
    return defineMaterial(interp, objv[1], objv[2]);
}

// laminate::layup name layup ?-material mat? ?-thickness t?
//
// Defines laminate name (in the registry laminate_material fills, through the
// strict path of laminate::define) from layup: a stacking sequence in
// brackets ("[0/±45/90]s", every ply of material mat) or a list of plies
// {material angle ?thickness?}, layer 1 first.  -thickness gives the
// thickness of every ply that has none of its own (else the material's t).
// Returns the plies made, {material angle thickness} each, layer 1 first.
// Errors: {LAMINATE LAYUP SYNTAX column} for the notation, {LAMINATE LAYUP
// PLY n} for a ply of a list, {LAMINATE LAYUP rule layer material} for the
// plies' materials (MATERIAL, UNITS, THICKNESS, TOUGHNESS, EMPTY, RANGE),
// {LAMINATE RECORD ...} from the strict reader; nothing changes on error.
int laminate_layup_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[])
{
    if (objc < 3 || (objc - 3) % 2 != 0) {
        Tcl_WrongNumArgs(interp, 1, objv, "name layup ?-material mat? ?-thickness t?");
        return TCL_ERROR;
    }
    static char const* const options[] = {"-material", "-thickness", nullptr};
    Tcl_Obj* values[2] = {nullptr, nullptr};
    for (int i = 3; i < objc; i += 2) {
        int index = 0;
        if (Tcl_GetIndexFromObj(interp, objv[i], options, "option", 0, &index) != TCL_OK) {
            Tcl_SetErrorCode(interp, "LAMINATE", "OPTION", Tcl_GetString(objv[i]), static_cast<char*>(nullptr));
            return TCL_ERROR;
        }
        values[index] = objv[i + 1];
    }
    double thickness = 0;
    if (values[1] != nullptr) {
        int len = 0;
        char const* text = Tcl_GetStringFromObj(values[1], &len);
        if (readDecimal(text, static_cast<size_t>(len), thickness) != DecimalRead::Ok || !(thickness > 0))
            return fail(interp, "-thickness: must be a decimal number > 0, got " + shown(text), "OPTION",
                        "-thickness");
    }

    // A copy: reading the argument as a list below may change its object.
    int length = 0;
    char const* raw = Tcl_GetStringFromObj(objv[2], &length);
    std::string const layup(raw, static_cast<size_t>(length));
    char const* text = layup.c_str();
    std::vector<LayupPly> plies;
    if (LayupNotation::looksLikeNotation(text, static_cast<size_t>(length))) {
        LayupNotation notation;
        if (!notation.parse(text, static_cast<size_t>(length))) {
            std::string const column = std::to_string(notation.refusal().column);
            return fail(interp, "layup " + shown(text) + ", " + notation.refusal().message(), "LAYUP",
                        "SYNTAX", column.c_str());
        }
        if (values[0] == nullptr)
            return fail(interp, "layup " + shown(text) + ": a stacking sequence needs -material", "LAYUP",
                        "MATERIAL", "0", "");
        for (double angle : notation.angles()) {
            LayupPly p;
            p.material = Tcl_GetString(values[0]);
            p.angle = angle;
            plies.push_back(p);
        }
    } else {
        if (values[0] != nullptr)
            return fail(interp, "-material: a list of plies names the material of each ply", "OPTION",
                        "-material");
        if (readPlyList(interp, objv[2], plies) != TCL_OK) return TCL_ERROR;
    }

    LayupRecord record;
    LayupInfo info;
    bool built = false;
    {
        std::lock_guard<std::mutex> hold(store().lock);
        auto lookup = [](std::string const& name) -> PlyMaterial const* {
            auto it = store().materials.find(name);
            return it == store().materials.end() ? nullptr : &it->second;
        };
        built = record.build(plies, lookup, thickness);
        for (size_t i = 0; built && i < record.plies().size(); ++i) {
            std::string const& material = record.plies()[i].material;
            bool known = false;
            for (auto const& named : info.materials) known = known || named.first == material;
            if (!known) info.materials.emplace_back(material, *lookup(material));
        }
    }
    if (!built) {
        LayupRecord::Refusal const& why = record.refusal();
        std::string const layer = std::to_string(why.layer);
        return fail(interp, why.message(), "LAYUP", why.ruleWord(), layer.c_str(), why.material.c_str());
    }
    info.notation = layup;
    info.plies = record.plies();
    info.units = record.unitSystem();
    info.record = record.text();

    std::string const name = Tcl_GetString(objv[1]);
    auto const record_layup = [&name, &info](lamina1 const&) {
        std::lock_guard<std::mutex> hold(store().lock);
        store().layups[name] = info;
    };
    if (define_checked(interp, objv[1], info.record.data(), info.record.size(), record_layup) != TCL_OK)
        return TCL_ERROR;
    Tcl_SetObjResult(interp, plyList(info.plies));
    return TCL_OK;
}

bool layup_ply_materials(char const* name, std::vector<PlyMaterial>& plies)
{
    plies.clear();
    std::lock_guard<std::mutex> hold(store().lock);
    auto const it = store().layups.find(name);
    if (it == store().layups.end()) return false;
    LayupInfo const& info = it->second;
    for (LayupPly const& p : info.plies) {
        for (auto const& named : info.materials) {
            if (named.first == p.material) {
                plies.push_back(named.second);
                break;
            }
        }
    }
    return plies.size() == info.plies.size();
}

void reset_ply_materials()
{
    std::lock_guard<std::mutex> hold(store().lock);
    store().materials.clear();
    store().layups.clear();
}

void forget_layup(char const* name)
{
    std::lock_guard<std::mutex> hold(store().lock);
    store().layups.erase(name);
}

// laminate::describe name
//
// What the laminate name (as the analysis commands find it) was made of by
// laminate::layup: a dict with notation (the layup as written), units, plies
// ({material angle thickness}, layer 1 first), materials (each material used,
// as laminate::material get gives it, as it was at the time of the layup) and
// record (the record it was defined from).  Errors: {LAMINATE MATERIAL
// NOTFOUND name}, {LAMINATE LAYUP NONE name} for a laminate defined otherwise.
int laminate_describe_cb(ClientData, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[])
{
    if (objc != 2) {
        Tcl_WrongNumArgs(interp, 1, objv, "name");
        return TCL_ERROR;
    }
    char const* name = Tcl_GetString(objv[1]);
    LayupInfo info;
    bool found = false;
    {
        RegistryLock registry;
        if (peek_material(name) == nullptr)
            return fail(interp, std::string("material not found '") + name + "'", "MATERIAL", "NOTFOUND", name);
        std::lock_guard<std::mutex> hold(store().lock);
        auto it = store().layups.find(name);
        if (it != store().layups.end()) {
            info = it->second;
            found = true;
        }
    }
    if (!found)
        return fail(interp, std::string("laminate '") + name + "' was not defined by laminate::layup", "LAYUP",
                    "NONE", name);

    Tcl_Obj* materials = Tcl_NewDictObj();
    for (auto const& named : info.materials) {
        Tcl_DictObjPut(nullptr, materials, Tcl_NewStringObj(named.first.data(), static_cast<int>(named.first.size())),
                       materialDict(named.second, false));
    }
    Tcl_Obj* dict = Tcl_NewDictObj();
    auto put = [dict](char const* key, Tcl_Obj* value) {
        Tcl_DictObjPut(nullptr, dict, Tcl_NewStringObj(key, -1), value);
    };
    put("notation", Tcl_NewStringObj(info.notation.data(), static_cast<int>(info.notation.size())));
    put("units", Tcl_NewStringObj(laminate::analysis::unitName(info.units), -1));
    put("plies", plyList(info.plies));
    put("materials", materials);
    put("record", Tcl_NewStringObj(info.record.data(), static_cast<int>(info.record.size())));
    Tcl_SetObjResult(interp, dict);
    return TCL_OK;
}
