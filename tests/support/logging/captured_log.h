#pragma once

#include <log4cxx/logger.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace velmora::testing {

/// One line as it reached the logging library. Texts are UTF-8.
struct LogRecord {
  std::string level;     ///< "DEBUG" or "ERROR"
  std::string text;      ///< the message
  std::string file;      ///< the source file that wrote it
  std::string function;  ///< "Class::Function", which the logging library reads out of the signature
  int line = 0;

  bool operator==(const LogRecord&) const = default;
};

/// Shows a record in the message of a failed test.
inline void PrintTo(const LogRecord& record, std::ostream* stream) {
  *stream << record.level << " \"" << record.text << "\" at " << record.file << ":" << record.line << " in "
          << record.function;
}

class CapturingAppender;

/// A host's logging set-up: while it lives, the library's logger takes lines of every level and keeps them
/// here. The logger that was there before comes back at the end.
class CapturedLog {
 public:
  CapturedLog();
  CapturedLog(const CapturedLog&) = delete;
  CapturedLog& operator=(const CapturedLog&) = delete;
  ~CapturedLog();

  /// Lets only errors through.
  void DisableDebug();

  /// Lets nothing through.
  void DisableAll();

  /// Makes writing of every line throw from now on.
  void MakeAppenderThrow();

  /// What was written, in order.
  const std::vector<LogRecord>& Lines() const;

  /// The messages alone.
  std::vector<std::string> Texts() const;

 private:
  std::shared_ptr<CapturingAppender> appender_;
  log4cxx::LoggerPtr logger_;
  log4cxx::LoggerPtr previous_;
};

/// While it lives, the host has set up no logging at all.
class NoLogger {
 public:
  NoLogger();
  NoLogger(const NoLogger&) = delete;
  NoLogger& operator=(const NoLogger&) = delete;
  ~NoLogger();

 private:
  log4cxx::LoggerPtr previous_;
};

}  // namespace velmora::testing
