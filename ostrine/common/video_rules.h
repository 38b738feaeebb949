/// Which video card is the internal and which the independent one, and the forms of the values. Pure; the
/// same on every system.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace ostrine {

/// What the choice depends on.
struct VideoCardTraits {
  std::uint16_t vendor = 0;     ///< PCI number; 0 for a card that has none
  bool is_virtual = false;      ///< made by software alone: a remote session's or a mirror's adapter
  bool is_on_root_bus = false;  ///< directly at the processor's own bus, without a bridge between
  bool is_in_package = false;   ///< another function of its PCI device is a part of the processor (APU)
  bool is_boot_display = false;
};

/// Whether a maker of virtual machines has the vendor number: such a card is emulated.
bool IsEmulatedCard(const VideoCardTraits& card) noexcept;

/// Whether the card is a part of the processor or the chipset:
///  - an emulated one counts as such, wherever it is;
///  - NVIDIA's never are, as laptops go;
///  - others are when they stand at the root bus, or share their PCI device with parts of the processor. A
///  graphics
///    card, Intel's and AMD's too, stands behind a bridge and by itself.
bool IsIntegratedCard(const VideoCardTraits& card) noexcept;

/// Positions in the list of cards.
struct VideoCardChoice {
  std::uint32_t count = 0;
  std::optional<std::size_t> internal;
  std::optional<std::size_t> independent;

  bool operator==(const VideoCardChoice&) const = default;
};

/// Virtual cards never count. Emulated ones count only where there is no other: they are a virtual machine's
/// own. The internal card is an integrated one, the independent card one that is not, whichever they are to
/// the screen (so a machine with nothing but a graphics card has no internal card). Of several the boot
/// display comes first, then the order of the list.
VideoCardChoice ChooseVideoCards(std::span<const VideoCardTraits> cards);

/// Whole MiB; the most that 32 bits hold where they are more.
std::uint32_t MemoryMegabytes(std::uint64_t bytes) noexcept;

/// "1920 x 1080".
std::string ResolutionText(std::uint32_t width, std::uint32_t height);

/// "OK" for a card without a problem, else "Error".
const char* CardStatus(std::uint32_t problem_code) noexcept;

}  // namespace ostrine
