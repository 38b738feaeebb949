#include "tests/support/logging/captured_log.h"

#include <log4cxx/appenderskeleton.h>
#include <log4cxx/helpers/transcoder.h>
#include <log4cxx/level.h>
#include <log4cxx/spi/location/locationinfo.h>
#include <log4cxx/spi/loggingevent.h>

#include <stdexcept>
#include <utility>

#include "logging/propertyconfiguratorex.h"

using log4cxx::PropertyConfiguratorEx;
using log4cxx::helpers::Class;

namespace velmora::testing {
namespace {

std::string Utf8(const log4cxx::LogString& text) {
  std::string utf8;
  log4cxx::helpers::Transcoder::encodeUTF8(text, utf8);
  return utf8;
}

std::string QualifiedFunction(const log4cxx::spi::LocationInfo& location) {
  const std::string owner = location.getClassName();
  return (owner.empty() ? "" : owner + "::") + location.getMethodName();
}

class AppenderClass : public Class {
 public:
  log4cxx::LogString getName() const override { return LOG4CXX_STR("CapturingAppender"); }
};

}  // namespace

/// Keeps every event. The logging library asks of its objects that they describe and cast themselves; its own
/// macros for that do not compile without warnings, so it is spelt out.
class CapturingAppender : public log4cxx::AppenderSkeleton {
 public:
  static const Class& getStaticClass() {
    static const AppenderClass description;
    return description;
  }
  const Class& getClass() const override { return getStaticClass(); }
  const void* cast(const Class& target) const override {
    if (&target == &getStaticClass()) return this;
    return AppenderSkeleton::cast(target);
  }
  bool instanceof(const Class& target) const override { return cast(target) != nullptr; }

  void close() override {}
  bool requiresLayout() const override { return false; }

  void append(const log4cxx::spi::LoggingEventPtr& event, log4cxx::helpers::Pool& /*pool*/) override {
    if (throws) throw std::runtime_error("the appender was made to throw");
    const auto& location = event->getLocationInformation();
    lines.push_back({Utf8(event->getLevel()->toString()), Utf8(event->getMessage()), location.getFileName(),
                     QualifiedFunction(location), location.getLineNumber()});
  }

  std::vector<LogRecord> lines;
  bool throws = false;
};

CapturedLog::CapturedLog()
    : appender_(std::make_shared<CapturingAppender>()),
      logger_(log4cxx::Logger::getLogger("velmora.tests")),
      previous_(std::exchange(PropertyConfiguratorEx::m_objLoggerPtr, logger_)) {
  logger_->setAdditivity(false);
  logger_->setLevel(log4cxx::Level::getDebug());
  logger_->addAppender(appender_);
}

CapturedLog::~CapturedLog() {
  logger_->removeAppender(appender_);
  PropertyConfiguratorEx::m_objLoggerPtr = previous_;
}

void CapturedLog::DisableDebug() { logger_->setLevel(log4cxx::Level::getError()); }
void CapturedLog::DisableAll() { logger_->setLevel(log4cxx::Level::getOff()); }
void CapturedLog::MakeAppenderThrow() { appender_->throws = true; }
const std::vector<LogRecord>& CapturedLog::Lines() const { return appender_->lines; }

std::vector<std::string> CapturedLog::Texts() const {
  std::vector<std::string> texts;
  for (const auto& line : Lines()) texts.push_back(line.text);
  return texts;
}

NoLogger::NoLogger() : previous_(std::exchange(PropertyConfiguratorEx::m_objLoggerPtr, nullptr)) {}
NoLogger::~NoLogger() { PropertyConfiguratorEx::m_objLoggerPtr = previous_; }

}  // namespace velmora::testing
