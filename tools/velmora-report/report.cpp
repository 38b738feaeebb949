#include "velmora-report/report.h"

#include "velmora-report/utf8.h"

namespace report {

Value TextValue(std::wstring_view text) {
  if (text.empty()) return Absent{};
  return ToUtf8(text);
}

}  // namespace report
