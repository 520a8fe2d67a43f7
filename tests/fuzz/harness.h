// What the fuzz targets share: the quit hook that turns the error writer's
// process exit into an exception, one Tcl interpreter with both packages,
// the registry reset, and the way a target reports a broken promise.
#ifndef LAMINATE_TESTS_FUZZ_HARNESS_H
#define LAMINATE_TESTS_FUZZ_HARNESS_H

#include <cstddef>
#include <string>
#include <vector>

#include <tcl.h>

#include "laminate/laminate/lamina1.h"

namespace fuzz {

// Thrown by the quit hook where the library would end the process with
// status 2 (a fatal linear-algebra error): the harness catches it as that
// legitimate outcome.
struct Quit {};

// The error writer's exit becomes a thrown Quit (targets for which the exit
// is a legitimate outcome), or an abort that libFuzzer reports as a crash,
// with the fatal message (targets that promise never to exit).
void quitThrows();
void quitAborts();
// After a caught Quit: the error writer's stream cleared, the registry reset,
// as a fresh process would have them.
void afterQuit();

// An empty registry, as the library loaded it, and no prepared analysis
// left keyed by a freed model.
void resetRegistry();

// One interpreter for the whole run, with Laminate and laminate::analysis
// loaded; nothing else of it is ever called by the targets.
Tcl_Interp* interpreter();

// Prints the message (printf-style) and aborts: the fuzzer's crash report.
[[noreturn]] void fail(char const* format, ...) __attribute__((format(printf, 1, 2)));

// The registry as a list of its nodes, the cursor and max_layers, to compare
// before and after a command.
struct Registry {
    std::vector<lam_mat*> nodes;
    lam_mat* cursor;
    int maxLayers;
    bool operator==(Registry const& o) const;
};
Registry registry();

// Whether laminate_material with this record would never return: the model's
// parser refuses it while two or more materials are defined.  Exact, since
// the parse is the same one the command makes.
bool materialWouldSpin(char const* record);

// Up to 8 numbers read with strtod from text (inf and nan included); the rest
// are 0.
void readLoads(std::string const& text, double loads[8]);

// The 30 result types of laminate_results, in table order.
extern char const* const kResultTypes[30];

}  // namespace fuzz

#endif
