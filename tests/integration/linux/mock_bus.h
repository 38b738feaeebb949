/// A message bus of the test's own, and made-up services on it.
#pragma once

#include <sys/types.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "platform/linux/system_bus.h"

namespace velmora::os::test {

/// A program that runs as long as the object lives; it ends with the test program whatever happens to that.
class HelperProgram {
 public:
  /// Returns when the program runs. `output` receives what the program writes to its standard output, if not
  /// negative.
  HelperProgram(const std::vector<std::string>& arguments, int output = -1);
  HelperProgram(const HelperProgram&) = delete;
  HelperProgram& operator=(const HelperProgram&) = delete;
  ~HelperProgram();

  pid_t Id() const { return id_; }
  void Stop();

 private:
  pid_t id_ = -1;
};

/// Sets an environment variable for as long as it lives.
class Variable {
 public:
  Variable(const char* name, const std::string& value);
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;
  ~Variable();

 private:
  const char* name_;
  std::string before_;
  bool was_set_;
};

/// A bus that takes the system bus's place.
class PrivateBus {
 public:
  PrivateBus();
  void Stop() { daemon_.Stop(); }
  pid_t Id() const { return daemon_.Id(); }

 private:
  struct Pipe {
    Pipe();
    ~Pipe();
    int ends[2];
  };
  Pipe pipe_;
  HelperProgram daemon_;
  Variable address_;
};

/// The interface through which a test tells a made-up service what to have, and asks what it was asked for.
inline constexpr const char* kMockControl = "org.freedesktop.DBus.Mock";

/// A made-up service of python3-dbusmock on that bus: one of its own templates, or a file's.
class MockService {
 public:
  MockService(const std::string& bus_template, std::string name, std::string path);

  /// Calls a method of the made-up service that takes texts and returns nothing or a text.
  std::string Call(const char* interface, const char* method,
                   std::initializer_list<const char*> texts = {}) const;

  SystemBus* Connection() const { return bus_.get(); }

 private:
  HelperProgram program_;
  std::string name_;
  std::string path_;
  Bus bus_;
};

}  // namespace velmora::os::test
