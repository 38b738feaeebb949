#include <charconv>
#include <optional>
#include <string>
#include <system_error>

#include "ostrine/common/wql_text.h"
#include "ostrine/linux/file.h"
#include "ostrine/linux/wmi_tables.h"
#include "platform/process_caption.h"
#include "platform/unicode.h"

namespace ostrine {
namespace {

using velmora::unicode::WideFromUtf8;

struct ListedProcess {
  std::uint32_t number = 0;
  Path folder;
  std::string executable;  ///< its path; empty when it may not be known or there is none
};

std::optional<std::uint32_t> ProcessNumber(std::string_view name) {
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
  if (error != std::errc() || end != name.data() + name.size()) return std::nullopt;
  return number;
}

/// The program's path; empty when it may not be known or there is none.
std::string ExecutableOf(const Path& folder) {
  std::error_code error;
  const std::string link = std::filesystem::read_symlink(folder / "exe", error).string();
  return std::string(velmora::ProgramPath(link));
}

/// Whether the process runs, in contrast to one that has ended. Its state stands behind its name, which is in
/// parentheses and may itself hold any character.
bool IsAlive(const Path& folder) {
  constexpr std::size_t kStatLimit = 4096;
  const auto bytes = ReadBytes(folder / "stat", kStatLimit);
  if (!bytes) return false;
  const std::string_view text(reinterpret_cast<const char*>(bytes->data()), bytes->size());
  const std::size_t name_end = text.rfind(')');
  if (name_end == std::string_view::npos || text.size() - name_end <= 2) return false;
  const char state = text[name_end + 2];
  return state != 'Z' && state != 'X' && state != 'x';
}

WqlValue KnownText(const std::string& text) {
  if (text.empty()) return {};
  return WideFromUtf8(text);
}

WqlValue ProcessProperty(const ListedProcess& process, std::wstring_view property) {
  if (EqualIgnoringCase(property, L"ProcessId")) return std::uint64_t{process.number};
  if (EqualIgnoringCase(property, L"ExecutablePath")) return KnownText(process.executable);
  if (EqualIgnoringCase(property, L"Caption") || EqualIgnoringCase(property, L"Name")) {
    const auto& executable = process.executable;
    return KnownText(velmora::ProcessCaption(
        executable, executable.empty() ? CleanAttribute(process.folder / "comm") : std::string()));
  }
  return {};
}

}  // namespace

void VisitProcesses(const Path& root, const WqlVisitor& visit) {
  for (const std::string& name : EntryNames(root / "proc")) {
    const auto number = ProcessNumber(name);
    if (!number) continue;
    const Path folder = root / "proc" / name;
    const ListedProcess process{.number = *number, .folder = folder, .executable = ExecutableOf(folder)};
    // A process that has ended has no program any more, but not every one without a program has ended.
    if (process.executable.empty() && !IsAlive(folder)) continue;
    const auto row = [&process](std::wstring_view property) { return ProcessProperty(process, property); };
    if (!visit(row)) return;
  }
}

}  // namespace ostrine
