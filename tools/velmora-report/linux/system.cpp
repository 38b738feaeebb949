#include "velmora-report/system.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "velmora-report/utf8.h"

namespace report {
namespace {

bool WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(file, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

}  // namespace

bool WriteOutput(std::string_view utf8) { return WriteAll(STDOUT_FILENO, utf8); }
void WriteError(std::string_view utf8) { WriteAll(STDERR_FILENO, utf8); }

// The narrow code page is UTF-8, but for bytes that got into a text by mistake.
std::string FromNarrow(std::string_view narrow) { return ToUtf8(FromUtf8(narrow)); }

int RunOnMachine(const std::string& program, const std::string& machine,
                 const std::vector<std::string>& arguments) {
  const auto file = std::filesystem::read_symlink("/proc/self/exe").parent_path() / program;
  std::vector<std::string> texts{file.string()};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers(texts.size() + 1, nullptr);
  std::ranges::transform(texts, pointers.begin(), [](std::string& text) { return text.data(); });
  if (setenv("VELMORA_MACHINE", machine.c_str(), 1) == 0) execv(file.c_str(), pointers.data());
  throw std::system_error(errno, std::generic_category(), "cannot run " + file.string());
}

}  // namespace report
