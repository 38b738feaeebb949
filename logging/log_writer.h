/// What is done with the host's logger. Only a writer needs the logging library's code: the logger itself is
/// a pointer, null until a host sets it.
#pragma once

#include <source_location>
#include <string_view>

#include "logging/level.h"
#include "logging/propertyconfiguratorex.h"

namespace velmora::logging {

/// The functions of the one writer. What an appender throws comes out of them.
struct LogWriter {
  /// Whether the logger takes lines of this level.
  bool (*is_enabled)(const log4cxx::Logger& logger, Level level);
  /// Hands a finished line, in UTF-8, to the logger.
  void (*write)(const log4cxx::Logger& logger, Level level, std::string_view line,
                const std::source_location& location);
  /// Reports a failure inside logging through the logging library's own error channel.
  void (*report_failure)();
};

/// The writer; null when its library cannot be loaded. From any thread.
///
/// On Linux the writer is a library of its own beside this one and loaded when the first line is due, so that
/// a host without a logger does not wait for the logging library and the five others that come with it, which
/// takes longer than to read the whole machine. It stays loaded.
VELMORA_LOGGING_API const LogWriter* FindLogWriter() noexcept;

}  // namespace velmora::logging

/// The writer where it is, in a form that can be looked up by name.
extern "C" VELMORA_LOGGING_API const velmora::logging::LogWriter velmora_log_writer;
