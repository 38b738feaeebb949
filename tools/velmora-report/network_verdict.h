#pragma once

#include <velmora/networkadapter.h>

#include <optional>
#include <string>

namespace report {

/// What is known of the machine's way out; nothing where it could not be asked.
struct NetworkFacts {
  bool has_card = false;  ///< a wireless one
  unsigned long problem_code = 0;
  unsigned char radio = 0;  ///< 1 on, 2 off, 0 unknown
  std::optional<emIP_STATE_INFO> address;
  std::optional<stIP_INFO> details;
  std::optional<bool> is_connected;
  std::optional<bool> is_internet_connected;
  bool is_on_modem = false;
};

/// What the address says, in a few words.
std::string AddressInWords(emIP_STATE_INFO state);

/// How the wireless connection stands, and what is worth a look when it does not work.
std::string NetworkVerdict(const NetworkFacts& facts);

}  // namespace report
