/// A getter of narrow text beside the least that a host would write to get the same text: the bare contract
/// call and the conversion of what it gave.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

#include "benchmarks/allocations.h"
#include "platform/os/text.h"
#include "platform/ostrine/device_record.h"
#include "platform/ostrine/hal.h"
#include "velmora/baseboard.h"

namespace {

constexpr unsigned int kBaseboard = static_cast<unsigned int>(velmora::hal::DeviceClass::kBaseboard);
constexpr int kTextSize = static_cast<int>(velmora::hal::kNarrowTextSize);

template <unsigned int kInformationId>
std::wstring BareText() {
  char narrow[kTextSize] = {};
  wchar_t wide[kTextSize];
  unsigned int returned_size = 0;
  if (HalQueryInformation(kBaseboard, nullptr, kInformationId, narrow, kTextSize, &returned_size) == 0)
    return {};
  const int length = velmora::os::MultiByteToWideChar(velmora::os::kNarrowCodePage, 0, narrow,
                                                      static_cast<int>(std::strlen(narrow)), wide, kTextSize);
  return {wide, static_cast<std::size_t>(length)};
}

/// Times `get` and counts what it allocates.
template <class Get>
void Measure(benchmark::State& state, Get get) {
  const long before = velmora::benchmarks::Allocations();
  for (auto unused : state) benchmark::DoNotOptimize(get());
  const auto allocations = static_cast<double>(velmora::benchmarks::Allocations() - before);
  state.counters["allocations"] = allocations / static_cast<double>(state.iterations());
}

template <unsigned int kInformationId>
void Bare(benchmark::State& state) {
  Measure(state, BareText<kInformationId>);
}

/// The goals stand beside what they are for: at most so many times the bare time, and so many allocations.
template <std::wstring (CBaseboard::*kGetter)(), int kAllocations>
void Velmora(benchmark::State& state) {
  CBaseboard board;
  Measure(state, [&board] { return (board.*kGetter)(); });
  state.counters["ratio goal"] = 1.3;
  state.counters["allocations goal"] = kAllocations;
}

// The double's three texts stand where the board's first three are asked for.
BENCHMARK(Velmora<&CBaseboard::GetBaseboardProduct, 0>)->Name("narrow text of 3 characters/velmora");
BENCHMARK(Bare<0>)->Name("narrow text of 3 characters/bare");
BENCHMARK(Velmora<&CBaseboard::GetBaseboardManufacturer, 1>)->Name("narrow text of 10 characters/velmora");
BENCHMARK(Bare<1>)->Name("narrow text of 10 characters/bare");
BENCHMARK(Velmora<&CBaseboard::GetBaseboardVersion, 1>)->Name("narrow text of 152 characters/velmora");
BENCHMARK(Bare<2>)->Name("narrow text of 152 characters/bare");

}  // namespace
