#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace report {

/// What the caller asks of the program. Arguments are UTF-8 on Windows and the system's bytes elsewhere.
struct Options {
  enum class Action { kReport, kDevices, kRepair, kCommand, kHelp, kVersion };

  Action action = Action::kReport;
  bool json = false;
  std::string machine;  ///< machine file to report instead of this machine; empty for this machine
  std::vector<std::string> repair;    ///< what stands behind "repair"
  std::vector<std::string> services;  ///< names to tell of, as are those of processes
  std::vector<std::string> processes;
  std::vector<std::string> networks;  ///< Wi-Fi networks whose access points to tell of
  std::vector<std::string> command;   ///< the words of a command
  std::vector<std::string> others;    ///< the arguments without the machine file
};

/// The arguments ask for nothing that the program can do; the message says why.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Reads the arguments that follow the program's name. Throws UsageError.
Options ParseOptions(const std::vector<std::string>& arguments);

/// The text of --help.
extern const std::string_view kHelp;

}  // namespace report
