/// The video cards as the kernel lists them below a root folder. No file is opened whose reading wakes a card
/// that sleeps: neither its configuration space nor what its driver must ask it for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ostrine/common/video.h"
#include "ostrine/linux/sysfs.h"

namespace ostrine {

/// Number for a PCI address ("0000:01:00.0"); nothing for a text of another form.
std::optional<std::uint64_t> CardNumber(std::string_view address);
std::string CardAddress(std::uint64_t card);

/// PCI addresses of the display functions, with or without a driver, in order. A display function of a PCI
/// device whose first function is one too belongs to the same card; a virtual function belongs to its
/// physical one.
std::vector<std::string> DisplayFunctions(const Path& root);

VideoCards FindVideoCards(const Path& root);

std::optional<std::string> ReadCardText(const Path& root, std::uint64_t card, CardFact fact);

/// What the driver found as the card's memory. Without that the window through which the processor sees it,
/// but not of a graphics card that shows no more than the usual 256 MiB of what it has.
std::optional<std::uint64_t> ReadCardMemory(const Path& root, std::uint64_t card);

std::optional<std::uint32_t> ReadCardProblem(const Path& root, std::uint64_t card);

}  // namespace ostrine
