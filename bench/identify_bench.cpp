// One identification with its next-question suggestion over the shipped library.

#include "identify/matcher.h"
#include "library/specimen_library.h"

#include <benchmark/benchmark.h>

using namespace quarrydex;

namespace {

const SpecimenLibrary& library() {
    static const SpecimenLibrary lib = SpecimenLibrary::bundled(QUARRYDEX_BUILD_RESOURCES);
    return lib;
}

void BM_IdentifyWithSuggestion(benchmark::State& state) {
    const auto& specimens = library().specimens();
    Answers answers;
    if (state.range(0) > 0) {
        answers.color = ColorFamily::white;
        answers.luster = LusterAnswer::glassy;
        answers.scratch = ScratchAnswer::scratchesGlass;
    }
    Matcher matcher;
    for (auto _ : state) {
        IdentifyResult r = matcher.identify(RGB{0.8, 0.78, 0.75}, answers, specimens, 8);
        benchmark::DoNotOptimize(r.suggestedNext);
    }
    state.counters["species"] = static_cast<double>(specimens.size());
}
BENCHMARK(BM_IdentifyWithSuggestion)->Arg(0)->Arg(3)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
