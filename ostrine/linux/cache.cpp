#include "ostrine/linux/cache.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

#include "ostrine/linux/cpu_text.h"
#include "ostrine/linux/file.h"

namespace ostrine {
namespace {

constexpr std::size_t kKinds = 3;

std::optional<CacheKind> ParseKind(std::string_view text) {
  if (text == "Data") return CacheKind::kData;
  if (text == "Instruction") return CacheKind::kInstruction;
  if (text == "Unified") return CacheKind::kUnified;
  return std::nullopt;
}

std::string ReadText(const std::string& path) { return ReadAttribute(path.c_str()).value_or(""); }

std::optional<std::uint64_t> ReadNumber(const std::string& path) { return ParseNumber(ReadText(path)); }

CacheWays ReadWays(const std::string& cache) {
  const std::uint64_t ways = ReadNumber(cache + "ways_of_associativity").value_or(0);
  // The kernel has no word for a fully associative cache: it is a single set of all its lines.
  if (ways > 1 && ReadNumber(cache + "number_of_sets") == 1) return {.full = true};
  return {.count = static_cast<std::uint32_t>(std::min<std::uint64_t>(ways, 0xFFFFFFFF))};
}

/// Gathers the caches of one level, and remembers which processors' caches it has.
class Gatherer {
 public:
  Gatherer(unsigned int level, bool with_ways) : level_(level), with_ways_(with_ways) {}

  /// Whether the processor has been met as a sharer of every kind of cache that this level has shown. Few
  /// processors are left to be asked then: the caches of the others are known.
  bool Knows(std::uint32_t processor) const {
    bool has_any = false;
    for (const auto& sharers : sharers_) {
      if (sharers.empty()) continue;
      has_any = true;
      if (!sharers[processor]) return false;
    }
    return has_any;
  }

  /// Takes in what `folder`, the processor's own list of caches, has; false when a cache is described in
  /// part.
  bool Add(const std::string& folder, std::uint32_t processor) {
    constexpr int kMostCaches = 16;
    for (int i = 0; i < kMostCaches; ++i) {
      const std::string cache = folder + std::to_string(i) + '/';
      const auto level = ReadNumber(cache + "level");
      if (!level) break;
      if (*level == level_ && !AddCache(cache, processor)) return false;
    }
    return true;
  }

  bool HasAny() const { return !caches_.empty(); }
  std::vector<Cache> Take() { return std::move(caches_); }

 private:
  bool AddCache(const std::string& cache, std::uint32_t processor) {
    const auto kind = ParseKind(ReadText(cache + "type"));
    if (!kind) return false;
    auto& sharers = sharers_.at(static_cast<std::size_t>(*kind));
    if (!sharers.empty() && sharers[processor]) return true;
    const auto size = ParseCacheSize(ReadText(cache + "size"));
    const auto shared_by = ParseProcessorList(ReadText(cache + "shared_cpu_list"));
    if (!size || !shared_by) return false;
    sharers.resize(kProcessorLimit);
    for (const std::uint32_t sharer : *shared_by) sharers[sharer] = true;
    caches_.push_back(
        {.level = level_, .kind = *kind, .size = *size, .ways = with_ways_ ? ReadWays(cache) : CacheWays{}});
    return true;
  }

  unsigned int level_;
  bool with_ways_;
  std::array<std::vector<bool>, kKinds> sharers_;  ///< by kind; empty for a kind that has not been met
  std::vector<Cache> caches_;
};

}  // namespace

std::vector<Cache> ReadCaches(const std::string& folder, std::span<const std::uint32_t> processors,
                              unsigned int level, CacheExtent extent) {
  const bool first_only = extent == CacheExtent::kFirst;
  Gatherer gatherer(level, first_only);
  for (const std::uint32_t processor : processors) {
    if (first_only && gatherer.HasAny()) break;
    if (gatherer.Knows(processor)) continue;
    if (!gatherer.Add(folder + "cpu" + std::to_string(processor) + "/cache/index", processor)) return {};
  }
  return gatherer.Take();
}

}  // namespace ostrine
