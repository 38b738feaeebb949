#include "platform/logging.h"

#include <log4cxx/helpers/loglog.h>
#include <log4cxx/helpers/transcoder.h>
#include <log4cxx/level.h>
#include <log4cxx/spi/location/locationinfo.h>

#include <cerrno>
#include <type_traits>

#include "logging/propertyconfiguratorex.h"
#include "platform/os/last_error.h"
#include "platform/os/text.h"
#include "platform/unicode.h"

namespace velmora::logging {
namespace {

using log4cxx::spi::LocationInfo;

const log4cxx::LoggerPtr& HostLogger() { return log4cxx::PropertyConfiguratorEx::m_objLoggerPtr; }

/// The file's name without its folders. Points into `path`, as the location keeps only pointers.
const char* ShortName(const char* path) {
  const char* name = path;
  for (const char* c = path; *c != '\0'; ++c) {
    if (*c == '/' || *c == '\\') name = c + 1;
  }
  return name;
}

/// Releases of the logging library differ in whether a location names the short file too.
template <class Location>
Location MakeLocation(const std::source_location& from) {
  const auto line = static_cast<int>(from.line());
  if constexpr (std::is_constructible_v<Location, const char*, const char*, const char*, int>) {
    return Location(from.file_name(), ShortName(from.file_name()), from.function_name(), line);
  } else {
    return Location(from.file_name(), from.function_name(), line);
  }
}

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
  return level == Level::kDebug ? logger->isDebugEnabled() : logger->isErrorEnabled();
}

void Write(Level level, const std::wstring& text, const std::source_location& location) {
  // Handing over the library's own text form keeps the process locale out of the conversion.
  log4cxx::LogString message;
  log4cxx::helpers::Transcoder::decodeUTF8(unicode::Utf8FromWide(text), message);
  const auto log_level = level == Level::kDebug ? log4cxx::Level::getDebug() : log4cxx::Level::getError();
  HostLogger()->forcedLogLS(log_level, message, MakeLocation<LocationInfo>(location));
}

void Write(Level level, const std::string& text, const std::source_location& location) {
  Write(level, WidenAll(text), location);
}

void ReportFailure() noexcept {
  try {
    log4cxx::helpers::LogLog::error(LOG4CXX_STR("An log4cxx exception occurred."));
  } catch (...) {  // there is no channel left to report through
  }
}

LastErrorKeeper::LastErrorKeeper() noexcept : last_error_(os::LastError()), errno_(errno) {}
LastErrorKeeper::~LastErrorKeeper() {
  os::SetLastError(last_error_);
  errno = errno_;  // second, as the last error may be kept in it
}

}  // namespace velmora::logging
