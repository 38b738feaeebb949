#include "velmora-report/command_line.h"

#include <cstddef>

namespace report {
namespace {

/// Backslashes are themselves, except before a quote: there each is doubled and the quote has one more. All
/// is quoted, as that does no harm.
std::wstring Quoted(std::wstring_view argument) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t character : argument) {
    if (character == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = character == L'\\' ? backslashes + 1 : 0;
    quoted += character;
  }
  return quoted.append(backslashes, L'\\') + L'"';
}

}  // namespace

std::wstring CommandLine(const std::vector<std::wstring>& arguments) {
  std::wstring line;
  for (const std::wstring& argument : arguments) line += (line.empty() ? L"" : L" ") + Quoted(argument);
  return line;
}

}  // namespace report
