#include "ostrine/common/video_rules.h"

#include <algorithm>
#include <array>
#include <limits>

namespace ostrine {
namespace {

constexpr std::uint16_t kNvidia = 0x10DE;

bool Counts(const VideoCardTraits& card, bool emulated_count) {
  return !card.is_virtual && (emulated_count || !IsEmulatedCard(card));
}

}  // namespace

bool IsEmulatedCard(const VideoCardTraits& card) noexcept {
  constexpr std::array<std::uint16_t, 7> kMakersOfMachines{
      0x1234,  // QEMU
      0x1414,  // Hyper-V
      0x15AD,  // VMware
      0x1AB8,  // Parallels
      0x1AF4,  // virtio
      0x1B36,  // QXL
      0x80EE,  // VirtualBox
  };
  return std::find(kMakersOfMachines.begin(), kMakersOfMachines.end(), card.vendor) !=
         kMakersOfMachines.end();
}

bool IsIntegratedCard(const VideoCardTraits& card) noexcept {
  if (IsEmulatedCard(card)) return true;
  return card.vendor != kNvidia && (card.is_on_root_bus || card.is_in_package);
}

VideoCardChoice ChooseVideoCards(std::span<const VideoCardTraits> cards) {
  const bool has_real =
      std::any_of(cards.begin(), cards.end(), [](const auto& card) { return Counts(card, false); });
  VideoCardChoice choice;
  for (std::size_t i = 0; i < cards.size(); ++i) {
    if (!Counts(cards[i], !has_real)) continue;
    ++choice.count;
    auto& chosen = IsIntegratedCard(cards[i]) ? choice.internal : choice.independent;
    const bool boots_instead = chosen && cards[i].is_boot_display && !cards[*chosen].is_boot_display;
    if (!chosen || boots_instead) chosen = i;
  }
  return choice;
}

std::uint32_t MemoryMegabytes(std::uint64_t bytes) noexcept {
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint32_t>::max();
  return static_cast<std::uint32_t>(std::min(bytes >> 20, kMost));
}

std::string ResolutionText(std::uint32_t width, std::uint32_t height) {
  return std::to_string(width) + " x " + std::to_string(height);
}

const char* CardStatus(std::uint32_t problem_code) noexcept { return problem_code == 0 ? "OK" : "Error"; }

}  // namespace ostrine
