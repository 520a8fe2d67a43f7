#include "harness.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "laminate/tcl/analysis_cmds.h"
#include "laminate/tcl/material_cmds.h"
#include "laminate/tcl/registry.h"
#include "laminate/util/errorwriter.h"

extern "C" int Laminate_Init(Tcl_Interp* interp);
extern "C" int Laminate_analysis_Init(Tcl_Interp* interp);

namespace fuzz {

namespace {

[[noreturn]] void throwQuit()
{
    throw Quit();
}

[[noreturn]] void abortQuit()
{
    fail("the library ended the process: %s", errorwriter.error_stream->str());
}

}  // namespace

void quitThrows()
{
    SetQuitHook(throwQuit);
}

void quitAborts()
{
    SetQuitHook(abortQuit);
}

void afterQuit()
{
    errorwriter.error_stream->reset();
    resetRegistry();
}

void resetRegistry()
{
    reset_registry();
    forget_prepared_analyses();
    reset_ply_materials();
}

Tcl_Interp* interpreter()
{
    static Tcl_Interp* interp = nullptr;
    if (interp == nullptr) {
        Tcl_FindExecutable("laminate-fuzz");
        interp = Tcl_CreateInterp();
        if (Laminate_Init(interp) != TCL_OK || Laminate_analysis_Init(interp) != TCL_OK)
            fail("cannot load the packages: %s", Tcl_GetStringResult(interp));
    }
    return interp;
}

void fail(char const* format, ...)
{
    va_list ap;
    va_start(ap, format);
    std::vfprintf(stderr, format, ap);
    va_end(ap);
    std::fputc('\n', stderr);
    std::abort();
}

bool Registry::operator==(Registry const& o) const
{
    return nodes == o.nodes && cursor == o.cursor && maxLayers == o.maxLayers;
}

Registry registry()
{
    Registry r{{}, current_mat, max_layers};
    for (lam_mat* n = first_mat; n != nullptr; n = n->next) r.nodes.push_back(n);
    return r;
}

bool materialWouldSpin(char const* record)
{
    if (first_mat == nullptr || first_mat->next == nullptr) return false;
    lamina1 scratch;
    return scratch.LeerCampoMater(const_cast<char*>(record), 1.0, 1.0, 1.0) != 0;
}

void readLoads(std::string const& text, double loads[8])
{
    char const* p = text.c_str();
    for (int i = 0; i < 8; i++) {
        char* end = nullptr;
        double v = std::strtod(p, &end);
        if (end == p) {
            loads[i] = 0.0;
            continue;
        }
        loads[i] = v;
        p = end;
    }
}

char const* const kResultTypes[30] = {
    "FS_TW",           "stresses",          "strains",           "stresstop",
    "stressbas",       "s_stresses",        "s_strains",         "FS_LaRCm1",
    "FS_LaRCm2",       "FS_LaRCm3",         "FS_LaRCm4",         "FS_LaRCm5",
    "FS_LaRCm6",       "stress1_lam",       "stress2_lam",       "stress3_lam",
    "strain1_lam",     "strain2_lam",       "strain3_lam",       "stress1_t_lam",
    "stress2_t_lam",   "stress3_t_lam",     "stress1_b_lam",     "stress2_b_lam",
    "stress3_b_lam",   "shearStress23_lam", "shearStress13_lam", "shearStrain23_lam",
    "shearStrain13_lam", "FS_TW_simple"};

}  // namespace fuzz
