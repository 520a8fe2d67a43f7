// The laminate_results command: one result for one layer of a material under
// one load vector.

#include <cmath>

#include "laminate/linalg/reavecv.h"
#include "laminate/tcl/commands.h"
#include "laminate/tcl/registry.h"

using vantrel::ReaVecV;

// The result types.  The position of a name is the interface: it selects the
// operation in result_ops below, entry for entry.
const char* const result_types[] = {
    "FS_TW",             //  0
    "stresses",          //  1
    "strains",           //  2
    "stresstop",         //  3
    "stressbas",         //  4
    "s_stresses",        //  5
    "s_strains",         //  6
    "FS_LaRCm1",         //  7
    "FS_LaRCm2",         //  8
    "FS_LaRCm3",         //  9
    "FS_LaRCm4",         // 10
    "FS_LaRCm5",         // 11
    "FS_LaRCm6",         // 12
    "stress1_lam",       // 13
    "stress2_lam",       // 14
    "stress3_lam",       // 15
    "strain1_lam",       // 16
    "strain2_lam",       // 17
    "strain3_lam",       // 18
    "stress1_t_lam",     // 19
    "stress2_t_lam",     // 20
    "stress3_t_lam",     // 21
    "stress1_b_lam",     // 22
    "stress2_b_lam",     // 23
    "stress3_b_lam",     // 24
    "shearStress23_lam", // 25
    "shearStress13_lam", // 26
    "shearStrain23_lam", // 27
    "shearStrain13_lam", // 28
    "FS_TW_simple",      // 29
    nullptr};

namespace {

// How a result reaches the interpreter.
enum Shape {
    FACTOR,     // one double; the not-assessed marker 1000000 is shown as 0
    COMPONENT,  // one double as computed
    VECTOR      // the three entries of out, as a list
};

// Every operation has this form; a single-value one returns its value, a
// vector one fills out (3 entries) and returns 0.
typedef double (*ResultFn)(lamina1& lam, int layer, ReaVecV& loads, ReaVecV& out);

template <double (lamina1::*Get)(int, ReaVecV&)>
double single(lamina1& lam, int layer, ReaVecV& loads, ReaVecV&)
{
    return (lam.*Get)(layer, loads);
}

template <int Mode>
double larc04(lamina1& lam, int layer, ReaVecV& loads, ReaVecV&)
{
    return lam.FasLaRC04_layer(layer, loads, Mode);
}

template <void (lamina1::*Get)(int, ReaVecV&, ReaVecV&, int), int Mode>
double moded_vector(lamina1& lam, int layer, ReaVecV& loads, ReaVecV& out)
{
    (lam.*Get)(layer, loads, out, Mode);
    return 0.0;
}

template <void (lamina1::*Get)(int, ReaVecV&, ReaVecV&)>
double face_vector(lamina1& lam, int layer, ReaVecV& loads, ReaVecV& out)
{
    (lam.*Get)(layer, loads, out);
    return 0.0;
}

struct ResultOp {
    Shape shape;
    ResultFn fn;
};

const ResultOp result_ops[] = {
    {FACTOR, single<&lamina1::FasTWcompleteLayer>},
    {VECTOR, moded_vector<&lamina1::GiveStresses, 0>},
    {VECTOR, moded_vector<&lamina1::GiveStrains, 0>},
    {VECTOR, face_vector<&lamina1::GiveStressTop>},
    {VECTOR, face_vector<&lamina1::GiveStressBas>},
    {VECTOR, moded_vector<&lamina1::GiveStresses, 1>},
    {VECTOR, moded_vector<&lamina1::GiveStrains, 1>},
    {FACTOR, larc04<1>},
    {FACTOR, larc04<2>},
    {FACTOR, larc04<3>},
    {FACTOR, larc04<4>},
    {FACTOR, larc04<5>},
    {FACTOR, larc04<6>},
    {COMPONENT, single<&lamina1::GiveStresses1_layer>},
    {COMPONENT, single<&lamina1::GiveStresses2_layer>},
    {COMPONENT, single<&lamina1::GiveStresses3_layer>},
    {COMPONENT, single<&lamina1::GiveStrains1_layer>},
    {COMPONENT, single<&lamina1::GiveStrains2_layer>},
    {COMPONENT, single<&lamina1::GiveStrains3_layer>},
    {COMPONENT, single<&lamina1::GiveStressest1_layer>},
    {COMPONENT, single<&lamina1::GiveStressest2_layer>},
    {COMPONENT, single<&lamina1::GiveStressest3_layer>},
    {COMPONENT, single<&lamina1::GiveStressesb1_layer>},
    {COMPONENT, single<&lamina1::GiveStressesb2_layer>},
    {COMPONENT, single<&lamina1::GiveStressesb3_layer>},
    {COMPONENT, single<&lamina1::GiveShearStresses1_layer>},
    {COMPONENT, single<&lamina1::GiveShearStresses2_layer>},
    {COMPONENT, single<&lamina1::GiveShearStrains1_layer>},
    {COMPONENT, single<&lamina1::GiveShearStrains2_layer>},
    {FACTOR, single<&lamina1::FasTWLayer>},
};

static_assert(sizeof result_ops / sizeof result_ops[0] + 1 ==
                  sizeof result_types / sizeof result_types[0],
              "one operation per result type");

const double NOT_ASSESSED = 1000000.0;  // criteria's mark of a layer not rated
const double LOAD_SNAP = 1e-6;          // load values this small count as 0

// Reads the first 8 elements of list into loads, snapping tiny values to 0.
// No interpreter is passed, so a failure leaves no message of Tcl's own.
bool read_loads(Tcl_Obj* list, ReaVecV& loads)
{
    for (int i = 0; i < 8; ++i) {
        Tcl_Obj* item = nullptr;
        double v;
        if (Tcl_ListObjIndex(nullptr, list, i, &item) != TCL_OK || item == nullptr
            || Tcl_GetDoubleFromObj(nullptr, item, &v) != TCL_OK)
            return false;
        loads[i] = std::fabs(v) <= LOAD_SNAP ? 0.0 : v;
    }
    return true;
}

void set_layer_range_error(Tcl_Interp* interp)
{
    Tcl_Obj* result = Tcl_GetObjResult(interp);
    Tcl_Obj* count = Tcl_NewIntObj(max_layers);
    Tcl_IncrRefCount(count);
    Tcl_SetStringObj(result, "layer out of range [1,", -1);
    Tcl_AppendObjToObj(result, count);
    Tcl_AppendStringsToObj(result, "]", static_cast<char*>(nullptr));
    Tcl_DecrRefCount(count);
}

}  // namespace

// laminate_results type material_name layer values
//
// One result for layer (1-based) of the material under values, a list whose
// first 8 elements are N1 N2 N12 M1 M2 M12 Q1 Q2.  type is one of the names
// in result_types (unique prefixes accepted).  Returns a double, or a list of
// 3 doubles for the vector types; an empty result when the layer is within
// the largest layer count of all materials but beyond this material's own.
// Errors: Tcl's bad-type message, "material not found '<name>'",
// "layer not OK", "layer out of range [1,<n>]", "values not OK".
int laminate_results_cb(ClientData, Tcl_Interp* interp, int objc,
                        Tcl_Obj* const objv[])
{
    if (objc != 5) {
        Tcl_WrongNumArgs(interp, 1, objv,
                         "type material_name layer values  (1<=layer<=nlaminatess)");
        return TCL_ERROR;
    }
    int type;
    if (Tcl_GetIndexFromObjStruct(interp, objv[1], result_types, sizeof(char*),
                                  "type", 0, &type) != TCL_OK)
        return TCL_ERROR;
    // The lookup moves the shared cursor and the recovery rewrites the
    // model's working members: the whole request runs under the lock.
    RegistryLock lock;
    lam_mat* node = find_material(interp, objv[2]);
    if (node == nullptr)
        return TCL_ERROR;
    int layer;
    if (Tcl_GetIntFromObj(nullptr, objv[3], &layer) != TCL_OK) {
        Tcl_SetResult(interp, const_cast<char*>("layer not OK"), TCL_STATIC);
        return TCL_ERROR;
    }
    // The bound is the largest count over all materials, not this one's.
    if (layer < 1 || layer > max_layers) {
        set_layer_range_error(interp);
        return TCL_ERROR;
    }
    // Working storage, kept from call to call: every entry the call reads is
    // written first, and requests run one at a time under the registry lock,
    // so a call allocates nothing of its own.
    static ReaVecV loads(8);
    static ReaVecV out(3);
    if (!read_loads(objv[4], loads)) {
        Tcl_SetResult(interp, const_cast<char*>("values not OK"), TCL_STATIC);
        return TCL_ERROR;
    }
    lamina1& lam = *node->lamina;
    if (layer > lam.nlayers)
        return TCL_OK;  // a layer of some other material only: no answer

    const ResultOp& op = result_ops[type];
    double value = op.fn(lam, layer, loads, out);
    switch (op.shape) {
    case FACTOR:
        Tcl_SetObjResult(interp, Tcl_NewDoubleObj(value == NOT_ASSESSED ? 0.0 : value));
        break;
    case COMPONENT:
        Tcl_SetObjResult(interp, Tcl_NewDoubleObj(value));
        break;
    case VECTOR:
        for (int i = 0; i < 3; ++i)
            Tcl_ListObjAppendElement(interp, Tcl_GetObjResult(interp),
                                     Tcl_NewDoubleObj(out[i]));
        break;
    }
    return TCL_OK;
}
