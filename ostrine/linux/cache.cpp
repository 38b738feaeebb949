#include "ostrine/linux/cache.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
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

/// The levels of a processor's caches, each looked up when it is first asked for.
class LevelList {
 public:
  static constexpr std::uint64_t kNoCache = std::numeric_limits<std::uint64_t>::max();

  explicit LevelList(const std::string& folder) : folder_(folder) {}

  std::string Folder(std::size_t index) const { return folder_ + std::to_string(index) + '/'; }

  std::uint64_t At(std::size_t index) {
    if (index >= levels_.size()) return kNoCache;
    auto& level = levels_.at(index);
    if (!level) level = ReadNumber(Folder(index) + "level").value_or(kNoCache);
    return *level;
  }

 private:
  static constexpr std::size_t kMostCaches = 16;

  const std::string& folder_;
  std::array<std::optional<std::uint64_t>, kMostCaches> levels_;
};

/// Gathers the caches of one level, and remembers which processors' caches it has. Of the first processor
/// alone it takes no more than the cache whose ways are asked for, the one that holds data, and what stands
/// before it.
class Gatherer {
 public:
  Gatherer(unsigned int level, bool first_only) : level_(level), first_only_(first_only) {}

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
    // The kernel lists a processor's caches by their levels. As the first level alone is split in two, a
    // cache hardly ever stands behind the number of its level.
    LevelList levels(folder);
    std::size_t i = level_;
    while (i > 0 && levels.At(i - 1) >= level_) --i;
    for (; levels.At(i) <= level_; ++i) {
      if (levels.At(i) == level_ && !AddCache(levels.Folder(i), processor)) return false;
      if (first_only_ && HasAny() && caches_.back().kind != CacheKind::kInstruction) break;
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
    Cache found{.level = level_, .kind = *kind};
    if (first_only_) found.ways = ReadWays(cache);
    if (!found.ways.full && found.ways.count == 0) {
      const auto size = ParseCacheSize(ReadText(cache + "size"));
      if (!size) return false;
      found.size = *size;
    }
    if (!first_only_ && !NoteSharers(cache, sharers)) return false;
    caches_.push_back(found);
    return true;
  }

  static bool NoteSharers(const std::string& cache, std::vector<bool>& sharers) {
    const auto shared_by = ParseProcessorList(ReadText(cache + "shared_cpu_list"));
    if (!shared_by) return false;
    sharers.resize(kProcessorLimit);
    for (const std::uint32_t sharer : *shared_by) sharers[sharer] = true;
    return true;
  }

  unsigned int level_;
  bool first_only_;
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
