/// That a machine file holds every section, as it is read and as it is written.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/machine_file.h"

namespace {

using simulator::Bytes;
using simulator::Machine;
using simulator::MachineFileError;
using testing::HasSubstr;
using testing::ThrowsMessage;

/// Every section with something in it that is not its default.
Machine FullMachine() {
  auto machine = simulator::EmptyMachine();
  machine.devices = {{.setup_class = "Net",
                      .hardware_ids = {"PCI\\VEN_8086", "PCI\\CC_0280"},
                      .type = "Mouse",
                      .next_problem_codes = {28, 0},
                      .after_removal = {.returns = false, .returns_after = 3, .heals_after = 2},
                      .rescans_since_removal = 1}};
  machine.battery = {
      .ac_line = 1,
      .batteries = {{.name = "A", .rate_mw = -5, .threshold = {{75, 80}}, .refuses_threshold = true}, {}}};
  machine.wmi = {.broken = true,
                 .classes = {{"Win32_X", {{{"Text", "a"}, {"Number", std::uint64_t{1} << 63}}, {}}}}};
  machine.firmware = {{.input = 0x250105, .output = {{0, 0xFF}}, .error = 31}};
  machine.services = {{.name = "Spooler", .state = 4}};
  machine.processes = {{.process_id = 4, .caption = "System"}};
  machine.bluetooth = {.radios = {{.address = 0x1A7DDA7113}}, .remote_devices = {{.connected = true}}};
  machine.control_devices = {{.name = "\\\\.\\IBTRSTD", .requests = {{0x2211FC, {{1, 2}}}}}};
  machine.adapters = {.list = {{.ip_addresses = {{"10.0.0.2", "255.0.0.0"}}, .lease_expires = -1}},
                      .loops = true};
  machine.wifi = {.interfaces = {{.networks = {{.ssid = "Cafe", .ssid_length = 99}},
                                  .access_points = {{.rssi = -70, .elements = {{221}}}}}}};
  machine.internet = {.access_type = 3, .proxy_answer = Bytes{{3}}};
  machine.com = {.initialize_result = 0x80010106};
  machine.network_list = {.connected = true};
  machine.firewall = {.rules = {{.grouping = "g", .direction = 2}}};
  machine.registry.emplace()["SYSTEM\\X"].values["*PhysicalMediaType"] = {.type = 4, .number = 9};
  machine.power = {.fails_next = 2, .battery_life_percent = 50};
  machine.memory_status = {.load_percent = 10, .total_physical = 1};
  machine.files = {{.path = "C:\\a", .link_target = "C:\\b", .raw = Bytes{{0xFF, 0xFE}}, .repeated = 5}};
  machine.clock = {.now = -5};
  return machine;
}

TEST(MachineFileSections, ReadBackAsTheyWereWritten) {
  const Machine machine = FullMachine();
  EXPECT_EQ(simulator::ParseMachine(simulator::WriteMachine(machine), "f"), machine);
}

TEST(MachineFileSections, AreEmptyButThereInAnEmptyFile) {
  EXPECT_EQ(simulator::ParseMachine("{}", "f"), simulator::EmptyMachine());
}

TEST(MachineFileSections, HoldBytesAsHexadecimalDigits) {
  const auto machine = simulator::ParseMachine(R"({"firmware": [{"input": 1, "output": "00ff 1A"}]})", "f");
  EXPECT_EQ(machine.firmware->at(0).output, (Bytes{{0, 0xFF, 0x1A}}));
  for (const char* wrong : {"0", "0x12", "zz", "1 2", "12 3"}) {
    const auto read = [&] {
      simulator::ParseMachine(R"({"firmware": [{"output": ")" + std::string(wrong) + "\"}]}", "f");
    };
    EXPECT_THAT(read, ThrowsMessage<MachineFileError>(
                          HasSubstr("f:1: /firmware/0/output: must be pairs of hexadecimal digits")));
  }
}

TEST(MachineFileSections, HoldWmiValuesAsTextsOrNumbers) {
  const auto machine =
      simulator::ParseMachine(R"({"wmi": {"classes": {"Win32_X": [{"A": "text", "B": 7}]}}})", "f");
  const auto& row = machine.wmi->classes.at("Win32_X").at(0);
  EXPECT_EQ(row.at("A"), simulator::WmiValue("text"));
  EXPECT_EQ(row.at("B"), simulator::WmiValue(std::uint64_t{7}));
  const auto read = [] {
    simulator::ParseMachine("{\"wmi\": {\"classes\": {\"Win32_X\": [\n{\"A\": true}]}}}", "f");
  };
  EXPECT_THAT(read, ThrowsMessage<MachineFileError>(
                        HasSubstr("f:2: /wmi/classes/Win32_X/0/A: must be a text or a whole number")));
}

TEST(MachineFileSections, RefuseAFieldThatIsNone) {
  const auto read = [] {
    simulator::ParseMachine(R"({"registry": {"SYSTEM\\X": {"values": {"a": {"txt": "b"}}}}})", "f");
  };
  EXPECT_THAT(read, ThrowsMessage<MachineFileError>(
                        HasSubstr("/registry/SYSTEM\\X/values/a/txt: there is no such field")));
}

TEST(MachineFileSections, RefuseAListOrATextWhereNamesAreWanted) {
  const auto read = [] { simulator::ParseMachine(R"({"registry": []})", "f"); };
  EXPECT_THAT(read, ThrowsMessage<MachineFileError>(HasSubstr("/registry: must be an object")));
}

}  // namespace
