// The material record parser, the stiffness and every result operation of the
// model, called directly in C++.
//
// Input: a record, then optionally '|' and up to 8 load values (the text after
// the last '|').  The record goes to the model's own parser and to the strict
// reader.  Whatever the strict reader accepts must read to the same values in
// the model's parser and must never reach a fatal error afterwards; for
// anything else the fatal exit is a legitimate end of the run, caught through
// the quit hook.
#include <cstdint>
#include <cstring>
#include <string>

#include "harness.h"
#include "laminate/analysis/envelope.h"
#include "laminate/analysis/laminate_analysis.h"
#include "laminate/laminate/lamina1.h"
#include "laminate/laminate/strict_record.h"
#include "laminate/util/errorwriter.h"

using fuzz::fail;
using vantrel::ReaVecV;

namespace {

// Beyond this many layers the laminate-wide criteria and the envelope
// (quadratic in the layers) are skipped, to keep the run fast.
int const kWideLayers = 8;

void sameAsModel(StrictRecord const& strict, lamina1& lam, int rc)
{
    if (rc != 0 || lam.nlayers != strict.layers())
        fail("accepted by the strict reader, read otherwise by the model (rc %d)", rc);
    ReaVecV* const fields[] = {
        &lam.E1,        &lam.E2,        &lam.nu12,      &lam.G12,       &lam.G13,
        &lam.G23,       &lam.strength1, &lam.strength2, &lam.strength3, &lam.strength4,
        &lam.strength5, &lam.strength6, &lam.strength7, &lam.strength8, &lam.angleDeg,
        &lam.layerThickness, &lam.layerSpecificWeight};
    for (int k = 1; k <= lam.nlayers; k++) {
        for (int f = 0; f < 17; f++) {
            double const model = (*fields[f])[k - 1];
            double const read = strict.field(k, f);
            if (std::memcmp(&model, &read, sizeof model) != 0)
                fail("layer %d field %d: strict %.17g, model %.17g", k, f, read, model);
        }
        if (lam.layerFlag[k - 1] != static_cast<int>(strict.field(k, 17)))
            fail("layer %d: flags differ", k);
    }
}

// The whole-laminate analysis: prepared from the defined model, every layer
// under the loads, the first-ply failure and a coarse envelope per criterion.
// A strictly accepted record must prepare.
void analyse(lamina1& lam, double const loads[8], bool accepted, unsigned pick)
{
    laminate::analysis::LaminateAnalysis an;
    if (an.prepare(lam) != laminate::analysis::LaminateAnalysis::Ok) {
        if (accepted) fail("a strictly accepted record did not prepare: status %d", an.status());
        return;
    }
    laminate::analysis::Evaluation ev;
    an.evaluate(loads, ev);
    laminate::analysis::Criterion const all[] = {laminate::analysis::Criterion::TsaiWu, laminate::analysis::Criterion::Hashin,
                                       laminate::analysis::Criterion::LaRC04};
    for (laminate::analysis::Criterion c : all) an.firstPlyFailure(loads, c);
    int const i = 1 + pick % 8, j = 1 + (pick / 8) % 8;
    if (i != j && lam.nlayers <= kWideLayers) laminate::analysis::envelope(an, i, j, all[pick % 3], 4);
}

// Every per-layer result operation on layer k.
void layerResults(lamina1& lam, int k, ReaVecV& loads)
{
    ReaVecV out(3);
    for (int mode = 0; mode <= 1; mode++) {
        lam.GiveStresses(k, loads, out, mode);
        lam.GiveStrains(k, loads, out, mode);
        lam.FasHashinM_layer(k, loads, mode);
    }
    lam.GiveStressTop(k, loads, out);
    lam.GiveStressBas(k, loads, out);
    for (int mode = 1; mode <= 6; mode++) lam.FasLaRC04_layer(k, loads, mode);
    double (lamina1::*const single[])(int, ReaVecV&) = {
        &lamina1::FasTWLayer,           &lamina1::FasTWcompleteLayer,
        &lamina1::GiveStresses1_layer,  &lamina1::GiveStresses2_layer,
        &lamina1::GiveStresses3_layer,  &lamina1::GiveStrains1_layer,
        &lamina1::GiveStrains2_layer,   &lamina1::GiveStrains3_layer,
        &lamina1::GiveStressest1_layer, &lamina1::GiveStressest2_layer,
        &lamina1::GiveStressest3_layer, &lamina1::GiveStressesb1_layer,
        &lamina1::GiveStressesb2_layer, &lamina1::GiveStressesb3_layer,
        &lamina1::GiveShearStresses1_layer, &lamina1::GiveShearStresses2_layer,
        &lamina1::GiveShearStrains1_layer,  &lamina1::GiveShearStrains2_layer};
    for (auto op : single) (lam.*op)(k, loads);
}

// The stiffness as a definition computes it, then every per-layer operation
// on one layer and one of the laminate-wide criteria, both chosen by pick:
// across inputs, every layer position and every criterion is reached
// without paying for all of them on each input.
void allResults(lamina1& lam, ReaVecV& loads, unsigned pick)
{
    lam.calcDefinition();
    lam.GiveSpecificWeight();
    lam.GiveShellThickness();
    if (lam.nlayers < 1) return;  // no layer to ask about
    layerResults(lam, 1 + static_cast<int>(pick % static_cast<unsigned>(lam.nlayers)), loads);
    if (lam.nlayers > kWideLayers) return;
    switch (pick % 5) {
    case 0: lam.FasTW(loads); break;
    case 1: lam.FasTWcomplete(loads); break;
    case 2: lam.FasHashinM(loads, static_cast<int>(pick / 5 % 2)); break;
    default: lam.FasLaRC04(loads, 1 + static_cast<int>(pick / 5 % 6)); break;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    static bool const once = (fuzz::quitThrows(), true);
    (void)once;

    std::string const input(reinterpret_cast<char const*>(data), size);
    size_t const bar = input.rfind('|');
    std::string record = input.substr(0, bar);
    double given[8] = {0, 0, 0, 0, 0, 0, 0, 0};
    if (bar != std::string::npos) fuzz::readLoads(input.substr(bar + 1), given);
    ReaVecV loads(8);
    for (int i = 0; i < 8; i++) loads[i] = given[i];

    StrictRecord strict;
    bool const accepted = strict.read(record);
    lamina1 lam;
    try {
        // The model reads up to the first zero byte, as from a C string.
        int const rc = lam.LeerCampoMater(&record[0], 1.0, 1.0, 1.0);
        if (accepted) sameAsModel(strict, lam, rc);
        if (rc == 0) {
            allResults(lam, loads, static_cast<unsigned>(size));
            analyse(lam, given, accepted, static_cast<unsigned>(size));
        }
    } catch (fuzz::Quit const&) {
        if (accepted)
            fail("fatal error on a strictly accepted record: %s", errorwriter.error_stream->str());
        fuzz::afterQuit();
    }
    return 0;
}
