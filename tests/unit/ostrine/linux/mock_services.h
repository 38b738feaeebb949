/// Made-up services on a message bus of the test's own, below the root of a made-up machine.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <string>
#include <vector>

#include "tests/support/linux/fake_machine.h"

namespace ostrine::test {

/// The services (see `mock_services.py`) run as long as the object lives, and no longer than this program.
class MockServices {
 public:
  MockServices(const FakeMachine& machine, const std::vector<std::string>& services) {
    std::array<int, 2> input{};
    std::array<int, 2> output{};
    if (pipe2(input.data(), O_CLOEXEC) != 0 || pipe2(output.data(), O_CLOEXEC) != 0) return;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);

    std::vector<std::string> words{"/usr/bin/python3",
                                   VELMORA_SOURCE "/tests/unit/ostrine/linux/mock_services.py",
                                   machine.Path().string()};
    words.insert(words.end(), services.begin(), services.end());
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    // Not the sanitizers' libraries and the like: the services are other programs.
    std::string path = "PATH=/usr/sbin:/usr/bin:/sbin:/bin";
    std::array<char*, 2> environment{path.data(), nullptr};
    is_running_ =
        posix_spawn(&process_, arguments[0], &actions, nullptr, arguments.data(), environment.data()) == 0;
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    close(output[1]);
    input_ = input[1];
    std::array<char, 5> word{};
    std::size_t count = 0;
    for (ssize_t got = 1; got > 0 && count < word.size(); count += static_cast<std::size_t>(got)) {
      got = read(output[0], word.data() + count, word.size() - count);
      if (got < 0) break;
    }
    close(output[0]);
    EXPECT_EQ(std::string(word.data(), count), "ready");
  }
  MockServices(const MockServices&) = delete;
  MockServices& operator=(const MockServices&) = delete;
  ~MockServices() {
    if (input_ >= 0) close(input_);
    if (is_running_) waitpid(process_, nullptr, 0);
  }

 private:
  pid_t process_ = 0;
  int input_ = -1;
  bool is_running_ = false;
};

}  // namespace ostrine::test
