/// Debug and error lines to the logger that the host configures.
///
///     LogDebug([&](auto& line) { line << "hardid=" << id << Within("CNetworkCard::GetWireLessCardHardID");
///     });
///
/// The level is asked first and the line is built only when it is enabled. The location that goes with the
/// line is the caller's: source file as a path from the repository root, full signature, line. Whatever fails
/// in here, an appender that throws or memory that runs out, is reported through the logging library's own
/// error channel and never reaches the caller. The thread's last error and errno are left as they were.
#pragma once

#include <cstdint>
#include <source_location>
#include <string>
#include <utility>

#include "logging/level.h"
#include "platform/log_line.h"

namespace velmora {
namespace logging {

/// Whether the host's logger exists and takes lines of this level.
bool IsEnabled(Level level);

/// Hands a finished line to the host's logger.
void Write(Level level, const std::wstring& text, const std::source_location& location);
void Write(Level level, const std::string& text, const std::source_location& location);

/// Reports a failure inside logging through the logging library's error channel.
void ReportFailure() noexcept;

/// Keeps the thread's last error and errno over its lifetime, so that logging between a failing call and the
/// reading of its error does no harm.
class LastErrorKeeper {
 public:
  LastErrorKeeper() noexcept;
  LastErrorKeeper(const LastErrorKeeper&) = delete;
  LastErrorKeeper& operator=(const LastErrorKeeper&) = delete;
  ~LastErrorKeeper();

 private:
  std::uint32_t last_error_;
  int errno_;
};

template <class Line, class Build>
void Log(Level level, Build&& build, const std::source_location& location) noexcept {
  const LastErrorKeeper keeper;
  try {
    if (!IsEnabled(level)) return;
    Line line;
    std::forward<Build>(build)(line);
    Write(level, line.Text(), location);
  } catch (...) {
    ReportFailure();
  }
}

}  // namespace logging

/// Logs a line of wide text at debug level; `build` is given the line to write to.
template <class Build>
void LogDebug(Build&& build,
              const std::source_location& location = std::source_location::current()) noexcept {
  logging::Log<WideLine>(logging::Level::kDebug, std::forward<Build>(build), location);
}

/// Logs a line of narrow text (in the system's narrow code page) at debug level.
template <class Build>
void LogDebugNarrow(Build&& build,
                    const std::source_location& location = std::source_location::current()) noexcept {
  logging::Log<NarrowLine>(logging::Level::kDebug, std::forward<Build>(build), location);
}

/// Logs a line of wide text at error level.
template <class Build>
void LogError(Build&& build,
              const std::source_location& location = std::source_location::current()) noexcept {
  logging::Log<WideLine>(logging::Level::kError, std::forward<Build>(build), location);
}

}  // namespace velmora
