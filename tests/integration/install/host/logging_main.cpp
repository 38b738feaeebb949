// A host that wants the library's log lines, as its author writes it: they go to its own output.
#include <log4cxx/consoleappender.h>
#include <log4cxx/logger.h>
#include <log4cxx/patternlayout.h>
#include <logging/propertyconfiguratorex.h>
#include <velmora/battery.h>

#include <memory>

int main() {
  const auto layout = std::make_shared<log4cxx::PatternLayout>(LOG4CXX_STR("%p %m%n"));
  const auto logger = log4cxx::Logger::getLogger("host");
  logger->addAppender(std::make_shared<log4cxx::ConsoleAppender>(layout));
  log4cxx::PropertyConfiguratorEx::m_objLoggerPtr = logger;
  CBattery().GetBatteryPercent();
}
