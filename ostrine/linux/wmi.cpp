// CWMI on this system: nothing needs to be connected, so the connection's words stay null, and every query
// reads afresh. `state_` says which namespace was asked for.
#include "platform/ostrine/wmi.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <variant>

#include "ostrine/common/wql.h"
#include "ostrine/common/wql_text.h"
#include "ostrine/linux/firmware_method.h"
#include "ostrine/linux/guard.h"
#include "ostrine/linux/last_error.h"
#include "ostrine/linux/system_root.h"
#include "ostrine/linux/wmi_tables.h"

namespace {

constexpr std::uint64_t kNoNamespace = 0;
constexpr std::uint64_t kSystemClasses = 1;
constexpr std::uint64_t kFirmwareMethods = 2;

std::uint64_t StateFor(std::wstring_view name_space) {
  if (ostrine::EqualIgnoringCase(name_space, L"ROOT\\CIMV2")) return kSystemClasses;
  if (ostrine::EqualIgnoringCase(name_space, L"ROOT\\WMI")) return kFirmwareMethods;
  return kNoNamespace;
}

/// A query longer than this is none.
constexpr std::size_t kLongestQuery = 65536;

/// Whether the query asks for rows with an empty text. No table has any: where there is no text the value is
/// null, so that such a query is answered without a look at the machine.
bool AsksForEmptyText(const ostrine::WqlQuery& query) {
  return std::ranges::any_of(query.conditions, [](const ostrine::WqlCondition& condition) {
    const auto* const text = std::get_if<std::wstring>(&condition.literal);
    return condition.comparison == ostrine::WqlOperator::kEqual && text != nullptr && text->empty();
  });
}

ostrine::WqlValue Select(std::uint64_t state, std::wstring_view query_text, std::wstring_view property) {
  if (state != kSystemClasses || query_text.size() > kLongestQuery) return {};
  auto query = ostrine::ParseWql(query_text);
  if (!query || !ostrine::EqualIgnoringCase(query->property, property)) return {};
  if (AsksForEmptyText(*query)) return {};
  const auto table = ostrine::FindTable(ostrine::SystemRoot(), query->class_name);
  return table ? ostrine::SelectFirst(*query, *table) : ostrine::WqlValue{};
}

}  // namespace

CWMI::CWMI(std::wstring name_space) : name_space_(std::move(name_space)), state_(StateFor(name_space_)) {}

CWMI::~CWMI() {
  for (ConnectionPart* const part : connection_) {
    if (part != nullptr) part->Release();
  }
}

std::wstring CWMI::SelectStr(const std::wstring& query, const std::wstring& property) {
  return ostrine::Guarded(std::wstring(), [&] { return ostrine::TextOf(Select(state_, query, property)); });
}

unsigned int CWMI::SelectUInt(const std::wstring& query, const std::wstring& property) {
  return ostrine::Guarded(0U, [&] { return ostrine::NumberOf(Select(state_, query, property)); });
}

bool CWMI::GetOutPutUInt(std::uint64_t input, unsigned char* output, unsigned int output_size) {
  if (state_ != kFirmwareMethods) {
    ostrine::SetLastError(ostrine::kErrorNotSupported);
    return false;
  }
  if (output == nullptr && output_size != 0) {
    ostrine::SetLastError(ostrine::kErrorInvalidParameter);
    return false;
  }
  const auto reply = ostrine::Guarded(ostrine::FirmwareAnswer{.error = ostrine::kErrorGeneralFailure}, [&] {
    return ostrine::AnswerFirmwareMethod(ostrine::SystemRoot(), input);
  });
  if (reply.error != 0) {
    ostrine::SetLastError(reply.error);
    return false;
  }
  std::copy_n(reply.bytes.begin(), std::min<std::size_t>(reply.bytes.size(), output_size), output);
  return true;
}
