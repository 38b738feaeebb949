// Any bytes as each of the texts in which Linux tells about processors and memory slots.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "ostrine/linux/cpu_text.h"
#include "ostrine/linux/memory.h"

namespace {

using namespace ostrine;

void Require(bool holds) {
  if (!holds) std::abort();
}

void ReadList(std::string_view text) {
  const auto numbers = ParseProcessorList(text);
  if (!numbers) return;
  Require(!numbers->empty() && numbers->back() < kProcessorLimit);
  for (std::size_t i = 1; i < numbers->size(); ++i) Require((*numbers)[i - 1] < (*numbers)[i]);
}

void ReadTime(std::string_view text) {
  const auto time = ParseProcessorTime(text);
  if (!time) return;
  Require(time->busy <= time->total);
  const auto percent = LoadPercent({}, *time);
  Require(percent.has_value() == (time->total != 0));
  Require(percent.value_or(0) <= 100);
}

void ReadInfo(std::string_view text) {
  for (const char* key : {"vendor_id", "model name", "CPU implementer"}) {
    const auto value = ProcessorInfoValue(text, key);
    Require(!value || (!value->empty() && text.find(*value) != std::string_view::npos));
  }
  Require(HighestListedClock(text) != 0u);
}

void ReadProperties(std::string_view text) {
  const auto modules = ParseMemoryProperties(text);
  if (!modules) return;
  Require(modules->size() <= text.size());
  for (const MemoryModule& module : *modules) Require(module.speed < 0xFFFF && module.slot < 0xFFFF);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  ReadList(text);
  ReadTime(text);
  ReadInfo(text);
  ReadProperties(text);
  Require(ParseCacheSize(text) != 0u);
  return 0;
}
