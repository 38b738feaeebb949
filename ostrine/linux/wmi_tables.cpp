#include "ostrine/linux/wmi_tables.h"

#include "ostrine/common/wql_text.h"

namespace ostrine {
namespace {

struct NamedTable {
  const wchar_t* name;
  void (*visit_all)(const Path& root, const WqlVisitor& visit);
};

constexpr NamedTable kTables[] = {
    {L"Win32_Process", VisitProcesses},
    {L"Win32_Service", VisitServices},
    {L"Win32_NetworkAdapter", VisitNetworkAdapters},
    {L"Win32_VideoController", VisitVideoControllers},
    {L"Win32_PnPSignedDriver", VisitDrivers},
};

}  // namespace

std::optional<WqlTable> FindTable(const Path& root, std::wstring_view class_name) {
  for (const NamedTable& table : kTables) {
    if (!EqualIgnoringCase(table.name, class_name)) continue;
    return [root, visit_all = table.visit_all](const WqlVisitor& visit) { visit_all(root, visit); };
  }
  return std::nullopt;
}

}  // namespace ostrine
