// laminate_host: a program that embeds Tcl, defines a material through the
// Laminate package's commands, and then works on that same material in C++.
//
//   laminate_host ?TCL_DIR?
//
// TCL_DIR is put in front of auto_path (default: the folder of the installed
// package that find_package(Laminate) named when the host was built).
// Prints the generalized strains from a direct solve of the laminate
// stiffness and the ply stresses and first-ply failure from the analysis
// classes, and checks each against what the Tcl commands answer.  Exits 0
// when they all agree, 1 otherwise.
#include <tcl.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "laminate/analysis/laminate_analysis.h"
#include "laminate/laminate/lamina1.h"
#include "laminate/linalg/matriu.h"
#include "laminate/linalg/reavecv.h"
#include "laminate/tcl/materials.h"

namespace {

// A [0/90]s carbon/epoxy cross-ply, units N and mm: four plies of 0.125 mm.
#define CFRP "161000 11400 0.32 5170 5170 3980  1590 185 2560 73 90 57 90 0"
const char* const kRecord =
    "4 " CFRP "  0 0.125 1.54e-5 1\n"
    "  " CFRP " 90 0.125 1.54e-5 1\n"
    "  " CFRP " 90 0.125 1.54e-5 1\n"
    "  " CFRP "  0 0.125 1.54e-5 1";
#undef CFRP
// N1 N2 N12 (N/mm), M1 M2 M12 (N mm/mm), Q1 Q2 (N/mm).
const double kLoads[8] = {100, 20, 0, 10, 0, 0, 5, 0};

Tcl_Interp* interp = nullptr;
int disagreements = 0;

// Runs a script in the interpreter; a Tcl error ends the program.
Tcl_Obj* run(std::string const& script)
{
    if (Tcl_EvalEx(interp, script.c_str(), -1, TCL_EVAL_GLOBAL) != TCL_OK) {
        std::fprintf(stderr, "laminate_host: %s\n    while running: %s\n",
                     Tcl_GetStringResult(interp), script.c_str());
        std::exit(1);
    }
    return Tcl_GetObjResult(interp);
}

double number(std::string const& script)
{
    double value = 0.0;
    if (Tcl_GetDoubleFromObj(interp, run(script), &value) != TCL_OK) {
        std::fprintf(stderr, "laminate_host: not a number from: %s\n", script.c_str());
        std::exit(1);
    }
    return value;
}

// Counts a C++ value that differs from the Tcl answer by more than tol.
void agree(std::string const& what, double cpp, double tcl, double tol)
{
    if (!(std::fabs(cpp - tcl) <= tol)) {
        std::fprintf(stderr, "%s: C++ gives %.17g, Tcl %.17g\n", what.c_str(), cpp, tcl);
        ++disagreements;
    }
}

}  // namespace

int main(int argc, char** argv)
{
    char const* tclDir = argc > 1 ? argv[1] : LAMINATE_TCL_DIR;
    Tcl_FindExecutable(argv[0]);
    interp = Tcl_CreateInterp();
    if (Tcl_Init(interp) != TCL_OK) {
        std::fprintf(stderr, "laminate_host: %s\n", Tcl_GetStringResult(interp));
        return 1;
    }
    Tcl_SetVar(interp, "laminate_dir", tclDir, TCL_GLOBAL_ONLY);
    run("set auto_path [linsert $auto_path 0 $laminate_dir]");
    std::string version = Tcl_GetString(run("package require Laminate"));
    run("package require laminate::analysis");
    std::printf("Laminate %s loaded from %s\n", version.c_str(),
                Tcl_GetString(run("lindex [lsearch -inline -index 1 [info loaded] Laminate] 0")));

    run(std::string("laminate_material cp {") + kRecord + "}");
    std::string loads = "{";
    for (double v : kLoads) loads += " " + std::to_string(v);
    run("set loads " + loads + "}");
    run("set ev [laminate::evaluate cp $loads]");

    // The material the script defined, seen from C++.
    lamina1* lam = laminate_find_material("cp");
    if (lam == nullptr || laminate_find_material("no such material") != nullptr) {
        std::fprintf(stderr, "laminate_host: the registry lookup is wrong\n");
        return 1;
    }
    std::printf("material cp: %d layers, %g mm\n", lam->nlayers, lam->thickness);

    // Generalized strains by a direct solve of K e = loads.  LinSolve
    // overwrites its matrix and right-hand side, so both are copies.
    lam->calcK();
    vantrel::Matriu K(lam->K);
    vantrel::ReaVecV b(8), e(8);
    for (int i = 0; i < 8; i++) b[i] = kLoads[i];
    if (K.LinSolve(b, e) != 0) {
        std::fprintf(stderr, "laminate_host: the stiffness is singular\n");
        return 1;
    }
    double scale = 0.0;
    for (int i = 0; i < 8; i++) scale = std::fmax(scale, std::fabs(e[i]));
    static char const* const strainNames[8] = {"ex", "ey", "gxy", "kx", "ky", "kxy", "gxz", "gyz"};
    std::printf("generalized strains (Matriu::LinSolve):\n");
    for (int i = 0; i < 8; i++) {
        std::printf("  %-4s %13.6e\n", strainNames[i], e[i]);
        agree(std::string("strain ") + strainNames[i], e[i],
              number("lindex [dict get $ev strains] " + std::to_string(i)), 1e-12 * scale);
    }

    // Every ply at once through the analysis classes.
    laminate::analysis::LaminateAnalysis an(*lam);
    if (an.status() != laminate::analysis::LaminateAnalysis::Ok) {
        std::fprintf(stderr, "laminate_host: the analysis refused the material\n");
        return 1;
    }
    laminate::analysis::Evaluation ev;
    an.evaluate(kLoads, ev);
    std::printf("ply  angle     sigma1     sigma2      tau12   Tsai-Wu   (MPa, ply axes, mid-ply)\n");
    for (int k = 1; k <= an.layers(); k++) {
        laminate::analysis::PlyResult const& ply = ev.plies[k - 1];
        double const* s = ply.state.stressesLam;
        double tsaiWu = ply.tsaiWu == laminate::analysis::kNotAssessed ? 0.0 : ply.tsaiWu;
        std::printf("%3d %6g %10.3f %10.3f %10.3f %9.4f\n", k, an.angle(k), s[0], s[1], s[2], tsaiWu);
        std::string layer = " cp " + std::to_string(k) + " $loads";
        for (int j = 0; j < 3; j++)
            agree("ply " + std::to_string(k) + " stress " + std::to_string(j + 1), s[j],
                  number("lindex [laminate_results stresses" + layer + "] " + std::to_string(j)),
                  1e-12 * std::fabs(s[j]));
        agree("ply " + std::to_string(k) + " Tsai-Wu", tsaiWu,
              number("laminate_results FS_TW" + layer), 1e-12 * tsaiWu);
    }

    laminate::analysis::PlyFailure f = an.firstPlyFailure(kLoads, laminate::analysis::Criterion::TsaiWu);
    std::printf("first-ply failure (Tsai-Wu): load factor %.4f, ply %d, %s face\n", f.factor,
                f.ply,
                f.face == laminate::analysis::Face::Top ? "top" : f.face == laminate::analysis::Face::Bottom ? "bottom" : "no");
    agree("first-ply failure factor", f.factor,
          number("dict get [laminate::fpf cp $loads -criterion tsaiwu] tsaiwu factor"),
          1e-12 * f.factor);

    Tcl_DeleteInterp(interp);
    if (disagreements > 0) {
        std::fprintf(stderr, "laminate_host: C++ and Tcl disagree on %d values\n", disagreements);
        return 1;
    }
    std::printf("C++ and Tcl agree on every value.\n");
    return 0;
}
