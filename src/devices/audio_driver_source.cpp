/// Where the audio device's driver comes from.
#include <algorithm>
#include <array>
#include <utility>

#include "devices/inf_source.h"
#include "platform/guard.h"
#include "platform/logging.h"
#include "platform/os/files.h"
#include "platform/os/text_tests.h"
#include "velmora/audio.h"

namespace os = velmora::os;

namespace {

/// A file that is read from front to back.
class InfFile {
 public:
  explicit InfFile(const std::wstring& path) : file_(os::OpenFileForReading(path.c_str())) {}
  InfFile(const InfFile&) = delete;
  InfFile& operator=(const InfFile&) = delete;
  ~InfFile() {
    if (file_ != nullptr) os::CloseHandle(file_);
  }

  bool IsOpen() const { return file_ != nullptr; }

  /// The next bytes; none at the end, and when reading fails. They stay until the next call.
  std::string_view Read() {
    const std::size_t size = os::ReadFile(file_, bytes_.data(), static_cast<std::uint32_t>(bytes_.size()));
    return {bytes_.data(), std::min(size, bytes_.size())};
  }

 private:
  os::Handle file_;
  std::array<char, 4096> bytes_;
};

enmDRIVER_SOURCE_INFO ReadSource(const std::wstring& path, std::string& fail_line) {
  InfFile file(path);
  if (!file.IsOpen()) return DRIVER_SOURCE_OPEN_FAILED;
  velmora::devices::ForeignModelScan scan;
  for (auto bytes = file.Read(); !bytes.empty() && scan.Take(bytes); bytes = file.Read()) {
  }
  auto foreign_line = scan.Finish();
  if (!foreign_line) return DRIVER_SOURCE_MAKER;
  fail_line = std::move(*foreign_line);
  return DRIVER_SOURCE_OTHER_VENDOR;
}

enmDRIVER_SOURCE_INFO FindSource(const std::wstring& inf_name, std::string& fail_line) {
  if (!velmora::devices::IsBareFileName(inf_name)) return DRIVER_SOURCE_NO_INF;
  const std::wstring path = L"C:\\Windows\\INF\\" + inf_name;
  if (!os::PathFileExistsW(path.c_str())) return DRIVER_SOURCE_NO_INF;
  if (os::StrStrIW(inf_name.c_str(), L"oem") == nullptr) return DRIVER_SOURCE_INBOX;
  return ReadSource(path, fail_line);
}

}  // namespace

enmDRIVER_SOURCE_INFO CAudioCard::Check3rdAudioDriver(std::string& fail_line) {
  const auto source = velmora::Answer(DRIVER_SOURCE_OPEN_FAILED, [&] {
    std::wstring inf_name;
    return GetAudioDriverInf(inf_name) ? FindSource(inf_name, fail_line) : DRIVER_SOURCE_NO_INF;
  });
  velmora::LogDebugNarrow([&](auto& line) {
    line << "enmDriverSource=" << source << ", strFailInfo=" << fail_line
         << velmora::Within("CAudioCard::Check3rdAudioDriver");
  });
  return source;
}
