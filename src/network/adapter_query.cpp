#include "network/adapter_query.h"

namespace velmora::network {

std::optional<std::wstring> QueryFor(const AdapterQuestion& question, std::wstring_view name) {
  if (name.find(L'\'') != std::wstring_view::npos) return std::nullopt;
  std::wstring query(question.query);
  query += name;
  query += L'\'';
  return query;
}

}  // namespace velmora::network
