// laminate::define: any input gives a material or a Tcl error, never an
// exit, a hang or a sanitizer report; a refusal changes nothing, and an
// accepted material answers every result type and the analysis commands
// without an error.
//
// Input: the material name up to the first newline, the record after it.
// Every run starts from the same registry: two materials, the cursor on the
// first.  The quit hook aborts: a fatal error is a finding here.
#include <cstdint>
#include <cstring>
#include <string>

#include "harness.h"
#include "laminate/tcl/registry.h"

using fuzz::fail;

namespace {

Tcl_Obj* word(char const* text, size_t n)
{
    Tcl_Obj* o = Tcl_NewStringObj(text, static_cast<int>(n));
    Tcl_IncrRefCount(o);
    return o;
}

Tcl_Obj* word(char const* text)
{
    return word(text, std::strlen(text));
}

int eval(Tcl_Interp* interp, std::initializer_list<Tcl_Obj*> words)
{
    Tcl_Obj* cmd = Tcl_NewListObj(0, nullptr);
    Tcl_IncrRefCount(cmd);
    for (Tcl_Obj* w : words) Tcl_ListObjAppendElement(nullptr, cmd, w);
    int objc;
    Tcl_Obj** objv;
    Tcl_ListObjGetElements(nullptr, cmd, &objc, &objv);
    int const rc = Tcl_EvalObjv(interp, objc, objv, TCL_EVAL_GLOBAL);
    Tcl_DecrRefCount(cmd);
    return rc;
}

// The same starting registry for every input.
void baseline(Tcl_Interp* interp)
{
    static Tcl_Obj* const define = word("laminate::define");
    static Tcl_Obj* const lastLayer = word("last_layer");
    static Tcl_Obj* const base1 = word("base1");
    static Tcl_Obj* const base2 = word("base2");
    static Tcl_Obj* const rec1 = word("1 100 10 0.3 5 4 3 1 2 3 4 5 6 7 0 0 0.2 1 1");
    static Tcl_Obj* const rec2 =
        word("2 100 10 0.3 5 4 3 1 2 3 4 5 6 7 0 45 0.2 1 1 100 10 0.3 5 4 3 1 2 3 4 5 6 7 0 -45 0.2 1 1");
    fuzz::resetRegistry();
    if (eval(interp, {define, base1, rec1}) != TCL_OK || eval(interp, {define, base2, rec2}) != TCL_OK ||
        eval(interp, {lastLayer, base1}) != TCL_OK)
        fail("baseline: %s", Tcl_GetStringResult(interp));
}

// Every result type on layer `layer` of the material, under one load case.
void askEverything(Tcl_Interp* interp, Tcl_Obj* name, int layer)
{
    static Tcl_Obj* const results = word("laminate_results");
    static Tcl_Obj* const loads = word("100 -50 10 1 -2 3 4 -5");
    static Tcl_Obj* types[30];
    if (types[0] == nullptr) {
        for (int i = 0; i < 30; i++) types[i] = word(fuzz::kResultTypes[i]);
    }
    Tcl_Obj* layerObj = Tcl_NewIntObj(layer);
    Tcl_IncrRefCount(layerObj);
    for (Tcl_Obj* type : types) {
        if (eval(interp, {results, type, name, layerObj, loads}) != TCL_OK)
            fail("laminate_results %s on a defined material: %s", Tcl_GetString(type),
                 Tcl_GetStringResult(interp));
    }
    Tcl_DecrRefCount(layerObj);
}

// The analysis commands on the material: each must answer.
void analyse(Tcl_Interp* interp, Tcl_Obj* name)
{
    static Tcl_Obj* const evaluate = word("laminate::evaluate");
    static Tcl_Obj* const fpf = word("laminate::fpf");
    static Tcl_Obj* const abd = word("laminate::abd");
    static Tcl_Obj* const loads = word("100 -50 10 1 -2 3 4 -5");
    if (eval(interp, {abd, name}) != TCL_OK || eval(interp, {evaluate, name, loads}) != TCL_OK ||
        eval(interp, {fpf, name, loads}) != TCL_OK)
        fail("analysis of a defined material: %s", Tcl_GetStringResult(interp));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    static Tcl_Interp* const interp = (fuzz::quitAborts(), fuzz::interpreter());
    static Tcl_Obj* const define = word("laminate::define");

    // A refusal leaves the registry as it was (checked below), so only an
    // accepted record makes the next input rebuild the baseline.
    static bool dirty = true;
    if (dirty) baseline(interp);
    dirty = false;
    char const* text = reinterpret_cast<char const*>(data);
    char const* eol = static_cast<char const*>(std::memchr(text, '\n', size));
    size_t const nameLength = eol ? static_cast<size_t>(eol - text) : size;
    Tcl_Obj* name = word(text, nameLength);
    Tcl_Obj* record = eol ? word(eol + 1, size - nameLength - 1) : word("");

    fuzz::Registry const before = fuzz::registry();
    if (eval(interp, {define, name, record}) != TCL_OK) {
        Tcl_Obj* options = Tcl_GetReturnOptions(interp, TCL_ERROR);
        Tcl_IncrRefCount(options);
        Tcl_Obj* key = word("-errorcode");
        Tcl_Obj* code = nullptr;
        Tcl_DictObjGet(nullptr, options, key, &code);
        if (code == nullptr || std::strncmp(Tcl_GetString(code), "LAMINATE RECORD ", 16) != 0)
            fail("refusal without a record error code: %s", code ? Tcl_GetString(code) : "none");
        if (!(fuzz::registry() == before)) fail("a refusal changed the registry");
        Tcl_DecrRefCount(key);
        Tcl_DecrRefCount(options);
    } else {
        dirty = true;
        fuzz::Registry const after = fuzz::registry();
        if (after.nodes.size() != before.nodes.size() + 1 || after.cursor != after.nodes.back())
            fail("an accepted record did not append one node as the cursor");
        int const layers = after.cursor->lamina->nlayers;
        // One layer per input, the first or the last: across inputs both.
        askEverything(interp, name, size % 2 ? layers : 1);
        analyse(interp, name);
    }
    Tcl_DecrRefCount(name);
    Tcl_DecrRefCount(record);
    Tcl_ResetResult(interp);
    return 0;
}
