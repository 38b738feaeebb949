#include "velmora-report/audio_section.h"

#include <velmora/audio.h>

#include "velmora-report/utf8.h"

namespace report {
namespace {

/// Where a driver comes from, in one word; absent where no file tells.
Value SourceValue(enmDRIVER_SOURCE_INFO source) {
  switch (source) {
    case DRIVER_SOURCE_MAKER:
      return std::string("maker");
    case DRIVER_SOURCE_OTHER_VENDOR:
      return std::string("other vendor");
    case DRIVER_SOURCE_INBOX:
      return std::string("system");
    case DRIVER_SOURCE_OPEN_FAILED:
      return std::string("unreadable");
    case DRIVER_SOURCE_NO_INF:
      break;
  }
  return Absent{};
}

/// How the sentence about the device's state goes on.
std::string SourceClause(enmDRIVER_SOURCE_INFO source) {
  switch (source) {
    case DRIVER_SOURCE_MAKER:
      return ", with a driver from the machine's maker";
    case DRIVER_SOURCE_OTHER_VENDOR:
      return ", with another vendor's driver";
    case DRIVER_SOURCE_INBOX:
      return ", with the system's own driver";
    case DRIVER_SOURCE_OPEN_FAILED:
    case DRIVER_SOURCE_NO_INF:
      break;
  }
  return {};
}

/// A line of the driver's file, without what is left of its line end.
Value LineValue(std::string_view line) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  if (line.empty()) return Absent{};
  return ToUtf8(line);
}

std::string AudioVerdict(const std::wstring& name, unsigned int problem, enmDRIVER_SOURCE_INFO source) {
  const std::string device = name.empty() ? "The audio device" : ToUtf8(name);
  const std::string state =
      problem == 0 ? " works" : " does not work (problem " + std::to_string(problem) + ")";
  return device + state + SourceClause(source) + ".";
}

}  // namespace

Section AudioSection() {
  CAudioCard audio;
  std::wstring hardware_id;
  const bool is_found = audio.GetAudioHardId(hardware_id);
  std::wstring inf;
  audio.GetAudioDriverInf(inf);
  std::string foreign_line;
  const auto source = audio.Check3rdAudioDriver(foreign_line);
  const auto name = audio.GetAudioCardName();
  const unsigned int problem = audio.GetAudioErrorCode();
  return {
      .key = "audio",
      .title = "Audio",
      .verdict = is_found ? AudioVerdict(name, problem, source) : "No audio device was found.",
      .rows =
          {
              {"name", "Name", TextValue(name)},
              {"manufacturer", "Maker", TextValue(audio.GetAudioCardManufacturer())},
              {"hardware_id", "Hardware ID", TextValue(hardware_id)},
              {"driver_version", "Driver version", TextValue(audio.GetDriverVersion())},
              {"inf", "Driver file", TextValue(inf)},
              {"driver_source", "Driver source", SourceValue(source)},
              {"foreign_line", "Foreign model", LineValue(foreign_line)},
              {"problem_code", "Problem code", is_found ? Value(std::uint64_t{problem}) : Value(Absent{})},
          },
  };
}

}  // namespace report
