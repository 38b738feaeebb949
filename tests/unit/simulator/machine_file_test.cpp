#include "simulator/machine_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

using simulator::EmptyMachine;
using simulator::Machine;
using simulator::MachineFileError;
using simulator::ParseMachine;
using simulator::ReadMachine;
using simulator::WriteMachine;
using testing::HasSubstr;
using testing::StartsWith;

/// What reading `json` as the file "bad.json" complains about; empty when it does not.
std::string Complaint(const std::string& json) {
  try {
    ParseMachine(json, "bad.json");
    return {};
  } catch (const MachineFileError& error) {
    return error.what();
  }
}

/// A file in the working folder, for one test.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& content) { std::ofstream(path, std::ios::binary) << content; }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
  }
  const std::filesystem::path path = "machine_file_test.json";
};

Machine WholeMachine() {
  auto machine = EmptyMachine();
  machine.name = "A laptop \"with\" quotes\nand lines";
  machine.baseboard = {.product = "20XW004AGE",
                       .manufacturer = "",
                       .version = "\u4E2D\U0001F600",
                       .serial_number = std::string("a\0b", 3),
                       .bios_version = "N32ET75W (1.51 )",
                       .bios_manufacturer = "ACME\\",
                       .bios_release_date = "12/02/2021"};
  return machine;
}

TEST(MachineFile, ReadsEveryFieldOfAMachine) {
  const auto machine = ParseMachine(R"({
    "name": "A laptop",
    "baseboard": {
      "product": "1", "manufacturer": "2", "version": "3", "serial_number": "4",
      "bios_version": "5", "bios_manufacturer": "6", "bios_release_date": "7"
    }
  })",
                                    "laptop.json");
  auto expected = EmptyMachine();
  expected.name = "A laptop";
  expected.baseboard = {"1", "2", "3", "4", "5", "6", "7"};
  EXPECT_EQ(machine, expected);
}

TEST(MachineFile, ReadsBackWhatItWrote) {
  EXPECT_EQ(ParseMachine(WriteMachine(WholeMachine()), "whole.json"), WholeMachine());
  EXPECT_EQ(ParseMachine(WriteMachine(EmptyMachine()), "empty.json"), EmptyMachine());
}

TEST(MachineFile, WritesFieldsInTheOrderOfTheMachineAndEndsItsLastLine) {
  auto machine = simulator::BlankMachine();
  machine.name = "N";
  machine.baseboard = {.product = "P", .version = "V"};
  EXPECT_EQ(
      WriteMachine(machine),
      "{\n  \"name\": \"N\",\n  \"baseboard\": {\n    \"product\": \"P\",\n    \"version\": \"V\"\n  }\n}\n");
}

TEST(MachineFile, GivesAWholeMachineWhateverItLeavesOut) {
  EXPECT_EQ(ParseMachine("{}", "empty.json"), EmptyMachine());
  EXPECT_TRUE(ParseMachine("{}", "empty.json").baseboard.has_value());
}

TEST(MachineFile, TakesNullForAThingThatTheMachineDoesNotHave) {
  const auto machine = ParseMachine(R"({"baseboard": {"product": null, "version": "1"}})", "null.json");
  EXPECT_EQ(machine.baseboard->product, std::nullopt);
  EXPECT_EQ(machine.baseboard->version, "1");
}

TEST(MachineFile, SkipsAByteOrderMark) {
  EXPECT_EQ(ParseMachine("\xEF\xBB\xBF{\"name\": \"N\"}", "mark.json").name, "N");
}

TEST(MachineFile, NamesAnUnknownFieldWithFileLineAndPath) {
  EXPECT_EQ(Complaint("{\n  \"baseboard\": {\n    \"product\": \"1\",\n    \"prodct\": \"2\"\n  }\n}"),
            "bad.json:4: /baseboard/prodct: there is no such field");
  EXPECT_EQ(Complaint("{\n\n\"boards\": {}}"), "bad.json:3: /boards: there is no such field");
}

TEST(MachineFile, NamesAFieldOfTheWrongKind) {
  EXPECT_EQ(Complaint("{\n  \"baseboard\": {\n    \"product\": true\n  }\n}"),
            "bad.json:3: /baseboard/product: must be a text");
  EXPECT_EQ(Complaint("{\n  \"baseboard\": [\n  ]\n}"), "bad.json:2: /baseboard: must be an object");
  EXPECT_EQ(Complaint("{\n  \"name\": null\n}"), "bad.json:2: /name: must be a text");
  EXPECT_EQ(Complaint("[]"), "bad.json:1: /: must be an object");
  EXPECT_EQ(Complaint("\n\n\"text\""), "bad.json:3: /: must be an object");
}

TEST(MachineFile, NamesTheLineOfANumberThatEndsItsLine) {
  EXPECT_EQ(Complaint("{\n  \"baseboard\": {\n    \"product\": 5\n  }\n}"),
            "bad.json:3: /baseboard/product: must be a text");
  EXPECT_EQ(Complaint("{\n  \"name\": -5,\n  \"baseboard\": {}\n}"), "bad.json:2: /name: must be a text");
  EXPECT_EQ(Complaint("{\n  \"name\": 5.25\n\n\n}"), "bad.json:2: /name: must be a text");
}

TEST(MachineFile, NamesTheElementOfAList) {
  EXPECT_EQ(Complaint("{\n  \"name\": [\n    1,\n    2\n  ],\n  \"x\": 1\n}"),
            "bad.json:2: /name: must be a text");
}

TEST(MachineFile, RefusesAFieldThatIsGivenTwice) {
  EXPECT_EQ(Complaint("{\n  \"name\": \"a\",\n  \"name\": \"b\"\n}"), "bad.json:3: /name: is given twice");
  EXPECT_EQ(Complaint("{\n  \"baseboard\": {},\n\n  \"baseboard\": {}\n}"),
            "bad.json:4: /baseboard: is given twice");
}

TEST(MachineFile, NamesTheLineAtWhichTextIsNoJson) {
  EXPECT_THAT(Complaint("{\n  \"name\": \"a\"\n  \"baseboard\": {}\n}"),
              StartsWith("bad.json:3: /: is not JSON: "));
  EXPECT_THAT(Complaint("{\"name\": \"a\"} {}"), StartsWith("bad.json:1: /: is not JSON: "));
  EXPECT_THAT(Complaint(""), StartsWith("bad.json:1: /: is not JSON: "));
  EXPECT_THAT(Complaint("{\n\"name\": \"a"), StartsWith("bad.json:2: /: is not JSON: "));
  EXPECT_THAT(Complaint("{\"name\": \"\xFF\"}"), StartsWith("bad.json:1: /: is not JSON: ")) << "no UTF-8";
  EXPECT_THAT(Complaint("{\"name\": 1e999}"), StartsWith("bad.json:1: /: is not JSON: "));
}

TEST(MachineFile, RefusesComments) {
  EXPECT_THAT(Complaint("{\n  // a comment\n  \"name\": \"a\"\n}"),
              StartsWith("bad.json:2: /: is not JSON: "));
  EXPECT_THAT(Complaint("{ /* a comment */ }"), StartsWith("bad.json:1: /: is not JSON: "));
}

TEST(MachineFile, RefusesValuesThatAreNestedWithoutEnd) {
  EXPECT_THAT(Complaint("{\"x\":" + std::string(100'000, '[')), HasSubstr("is nested too deeply"));
}

TEST(MachineFile, SaysThatAFileCannotBeRead) {
  try {
    ReadMachine("no-such-machine.json");
    FAIL() << "nothing was thrown";
  } catch (const MachineFileError& error) {
    EXPECT_STREQ(error.what(), "no-such-machine.json:1: /: cannot be read");
  }
  EXPECT_THROW(ReadMachine("."), MachineFileError) << "a folder";
}

TEST(MachineFile, NamesTheFileThatItRead) {
  const TemporaryFile file("{\n\"nam\": 1}");
  try {
    ReadMachine(file.path);
    FAIL() << "nothing was thrown";
  } catch (const MachineFileError& error) {
    EXPECT_STREQ(error.what(), "machine_file_test.json:2: /nam: there is no such field");
  }
}

TEST(MachineFile, ReadsAFileWithTheLineEndsOfWindows) {
  const TemporaryFile file("{\r\n\"name\": \"a\"\r\n}\r\n");
  EXPECT_EQ(ReadMachine(file.path).name, "a");
}

TEST(MachineFile, CannotHoldTextThatIsNotUtf8) {
  auto machine = EmptyMachine();
  machine.baseboard->product = "\xFF";
  EXPECT_THROW(WriteMachine(machine), MachineFileError);
}

TEST(MachineFile, ReadsEveryMachineThatIsDelivered) {
  int machines = 0;
  for (const auto& entry : std::filesystem::directory_iterator(VELMORA_MACHINES)) {
    if (entry.path().extension() != ".json") continue;
    ++machines;
    SCOPED_TRACE(entry.path().filename().string());
    const auto machine = ReadMachine(entry.path());
    EXPECT_NE(machine.name, "") << "people need to know what it is";
    EXPECT_EQ(ParseMachine(WriteMachine(machine), "again"), machine);
  }
  EXPECT_GT(machines, 0);
}

}  // namespace
