#include "platform/linux/lease_text.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <limits>

namespace velmora::os {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view WithoutBlanks(std::string_view text) noexcept {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

/// Takes the next statement, up to ';', '{' or '}', off the front; the sign that ended it is put into `sign`.
/// What stands in double quotes belongs to the statement whatever it is.
std::string_view TakeStatement(std::string_view& text, char& sign) noexcept {
  bool is_quoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '"') is_quoted = !is_quoted;
    if (is_quoted || (text[i] != ';' && text[i] != '{' && text[i] != '}')) continue;
    const std::string_view statement = WithoutBlanks(text.substr(0, i));
    sign = text[i];
    text.remove_prefix(i + 1);
    return statement;
  }
  sign = 0;
  text = {};
  return {};
}

/// What stands behind `word` and a blank; nothing for any other statement.
std::optional<std::string_view> Behind(std::string_view statement, std::string_view word) noexcept {
  const bool begins = statement.starts_with(word) && statement.size() > word.size() &&
                      kBlanks.find(statement[word.size()]) != std::string_view::npos;
  if (!begins) return std::nullopt;
  return WithoutBlanks(statement.substr(word.size()));
}

/// "3 2024/02/28 13:07:00" (the first number is the day of the week), "epoch 1709125620" or "never".
std::int64_t ParseExpiry(std::string_view text) {
  if (text == "never") return std::numeric_limits<std::int64_t>::max();
  if (const auto seconds = Behind(text, "epoch")) {
    std::int64_t number = 0;
    const auto [rest, error] = std::from_chars(seconds->data(), seconds->data() + seconds->size(), number);
    return error == std::errc() && rest == seconds->data() + seconds->size() && number > 0 ? number : 0;
  }
  const std::size_t day = text.find_first_of(kBlanks);
  if (day == std::string_view::npos) return 0;
  return std::max<std::int64_t>(ParseLeaseTime(WithoutBlanks(text.substr(day))).value_or(0), 0);
}

/// One block while it is read.
struct Block {
  Lease lease;
  bool has_address = false;
  bool is_of_interface = true;

  void Take(std::string_view statement, std::string_view interface) {
    constexpr std::string_view kServer = "option dhcp-server-identifier";
    if (const auto name = Behind(statement, "interface")) {
      is_of_interface = name->size() == interface.size() + 2 && name->front() == '"' && name->back() == '"' &&
                        name->substr(1, interface.size()) == interface;
    } else if (const auto text = Behind(statement, "fixed-address")) {
      const auto address = ParseIpv4(*text);
      has_address = address.has_value();
      lease.address = address.value_or(0);
    } else if (const auto server = Behind(statement, kServer)) {
      lease.server = ParseIpv4(*server) ? std::string(*server) : std::string();
    } else if (const auto expiry = Behind(statement, "expire")) {
      lease.expires = ParseExpiry(*expiry);
    }
  }
};

/// Takes a number of exactly `digits` digits off the front, and `behind` behind it.
std::optional<int> TakeDigits(std::string_view& text, std::size_t digits, std::string_view behind) noexcept {
  int number = 0;
  if (digits > text.size()) return std::nullopt;
  const auto [rest, error] = std::from_chars(text.data(), text.data() + digits, number);
  if (error != std::errc() || rest != text.data() + digits || number < 0) return std::nullopt;
  text.remove_prefix(digits);
  if (!text.starts_with(behind)) return std::nullopt;
  text.remove_prefix(behind.size());
  return number;
}

}  // namespace

std::optional<std::int64_t> ParseLeaseTime(std::string_view text) noexcept {
  const auto year = TakeDigits(text, 4, "/");
  const auto month = year ? TakeDigits(text, 2, "/") : std::nullopt;
  const auto day = month ? TakeDigits(text, 2, " ") : std::nullopt;
  const auto hour = day ? TakeDigits(text, 2, ":") : std::nullopt;
  const auto minute = hour ? TakeDigits(text, 2, ":") : std::nullopt;
  const auto second = minute ? TakeDigits(text, 2, "") : std::nullopt;
  if (!second || !text.empty() || *hour > 23 || *minute > 59 || *second > 60) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year(*year),
                                         std::chrono::month(static_cast<unsigned int>(*month)),
                                         std::chrono::day(static_cast<unsigned int>(*day))};
  if (!date.ok()) return std::nullopt;
  const std::chrono::sys_seconds midnight = std::chrono::sys_days(date);
  return midnight.time_since_epoch().count() + std::int64_t{*hour} * 3600 + std::int64_t{*minute} * 60 +
         *second;
}

std::optional<Lease> FindClientLease(std::string_view text, std::string_view interface) {
  std::optional<Lease> latest;
  std::optional<Block> block;
  int depth = 0;
  while (!text.empty()) {
    char sign = 0;
    const std::string_view statement = TakeStatement(text, sign);
    if (sign == ';' && block && depth == 1) block->Take(statement, interface);
    if (sign == '{') {
      if (depth == 0 && statement == "lease") block.emplace();
      ++depth;
    }
    if (sign != '}' || depth == 0) continue;
    --depth;
    if (depth == 0) {
      if (block && block->has_address && block->is_of_interface) latest = block->lease;
      block.reset();
    }
  }
  return latest;
}

std::optional<Lease> ParseReply(Bytes reply) {
  constexpr std::size_t kAddressPlace = 16;
  constexpr std::size_t kMarkPlace = 236;
  constexpr std::uint8_t kReply = 2;
  constexpr std::uint8_t kMark[] = {0x63, 0x82, 0x53, 0x63};
  if (reply.size() < kMarkPlace + sizeof kMark || reply[0] != kReply) return std::nullopt;
  if (!std::equal(std::begin(kMark), std::end(kMark), reply.begin() + kMarkPlace)) return std::nullopt;
  Lease lease;
  for (const std::uint8_t byte : reply.subspan(kAddressPlace, sizeof(Ipv4)))
    lease.address = lease.address << 8 | byte;
  return lease;
}

}  // namespace velmora::os
