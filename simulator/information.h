/// What a simulated device class answers, and how it is written into the buffers of the contract.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>

#include "simulator/machine.h"

namespace simulator {

/// The query fails.
struct Refused {};

/// Text of the system's narrow code page.
struct Narrow {
  std::string text;
};

/// Text that crosses as UTF-16; written here in UTF-8.
struct Wide {
  std::string text;
};

/// The answer to one query.
using Information = std::variant<Refused, Narrow, Wide, std::uint32_t, std::uint64_t>;

/// Narrow text that may be absent.
Information NarrowOrRefused(const Text& text);

/// Writes `information` into `buffer` as the contract demands; false when it is refused or does not fit.
bool WriteInformation(const Information& information, std::span<unsigned char> buffer,
                      unsigned int* returned_size);

// One function a device class, each in the file of its device. Nothing: the machine has no script for it.
std::optional<Information> BaseboardInformation(const Machine& machine, unsigned int information_id);

}  // namespace simulator
