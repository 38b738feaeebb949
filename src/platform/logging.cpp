#include "platform/logging.h"

#include <cerrno>

#include "logging/log_writer.h"
#include "logging/propertyconfiguratorex.h"
#include "platform/os/last_error.h"
#include "platform/os/text.h"
#include "platform/unicode.h"

namespace velmora::logging {
namespace {

const log4cxx::LoggerPtr& HostLogger() { return log4cxx::PropertyConfiguratorEx::m_objLoggerPtr; }

std::wstring WidenAll(const std::string& narrow) {
  if (narrow.empty()) return {};
  std::wstring wide(narrow.size(), L'\0');
  const int size = static_cast<int>(narrow.size());
  const int written = os::MultiByteToWideChar(os::kNarrowCodePage, 0, narrow.data(), size, wide.data(), size);
  wide.resize(static_cast<std::size_t>(written > 0 ? written : 0));
  return wide;
}

}  // namespace

bool IsEnabled(Level level) {
  const auto& logger = HostLogger();
  if (!logger) return false;
  const LogWriter* const writer = FindLogWriter();
  return writer != nullptr && writer->is_enabled(*logger, level);
}

void Write(Level level, const std::wstring& text, const std::source_location& location) {
  if (const LogWriter* const writer = FindLogWriter()) {
    writer->write(*HostLogger(), level, unicode::Utf8FromWide(text), location);
  }
}

void Write(Level level, const std::string& text, const std::source_location& location) {
  Write(level, WidenAll(text), location);
}

void ReportFailure() noexcept {
  try {
    if (const LogWriter* const writer = FindLogWriter()) writer->report_failure();
  } catch (...) {  // there is no channel left to report through
  }
}

LastErrorKeeper::LastErrorKeeper() noexcept : last_error_(os::LastError()), errno_(errno) {}
LastErrorKeeper::~LastErrorKeeper() {
  os::SetLastError(last_error_);
  errno = errno_;  // second, as the last error may be kept in it
}

}  // namespace velmora::logging
