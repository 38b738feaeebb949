#include "system/system_query.h"

#include "platform/ostrine/wmi.h"
#include "system/name_query.h"

namespace velmora {
namespace {

constexpr const wchar_t* kNamespace = L"ROOT\\CIMV2";

}  // namespace

std::wstring AskText(const std::wstring& query, const std::wstring& property) {
  return CWMI(kNamespace).SelectStr(query, property);
}

std::wstring AskTextByName(std::wstring_view head, std::wstring_view name, const std::wstring& property) {
  const auto query = NameQuery(head, name);
  return query ? AskText(*query, property) : std::wstring();
}

unsigned int AskNumberByName(std::wstring_view head, std::wstring_view name, const std::wstring& property) {
  const auto query = NameQuery(head, name);
  return query ? CWMI(kNamespace).SelectUInt(*query, property) : 0;
}

}  // namespace velmora
