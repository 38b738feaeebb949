#include "simulator/machine_file.h"

#include <fstream>
#include <iterator>

#include "simulator/json_reader.h"
#include "simulator/json_text.h"
#include "simulator/json_writer.h"

namespace simulator {
namespace {

/// Both ways through the same code, which the compiler thus meets once.
void Carry(Archive& archive, Machine& machine) { archive.Value(machine); }

}  // namespace

Machine ParseMachine(std::string_view json, const std::string& file) {
  try {
    const JsonValue root = ParseJson(json);
    JsonReader reader(root);
    Machine machine = EmptyMachine();  // a machine from a file is whole: what it does not name is not there
    Carry(reader, machine);
    return machine;
  } catch (const JsonError& error) {
    throw MachineFileError(file + ":" + std::to_string(error.line) + ": " +
                           (error.path.empty() ? "/" : error.path) + ": " + error.what());
  }
}

Machine ReadMachine(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string text;
  try {
    if (!stream) throw std::ios_base::failure("not there");
    text.assign(std::istreambuf_iterator<char>(stream), {});  // of a folder, the first read throws
  } catch (const std::ios_base::failure&) {
    throw MachineFileError(file.string() + ":1: /: cannot be read");
  }
  return ParseMachine(text, file.string());
}

std::string WriteMachine(const Machine& machine) {
  try {
    JsonWriter writer;
    Carry(writer, const_cast<Machine&>(machine));  // which a writer leaves as it is
    return writer.Json() + "\n";
  } catch (const std::invalid_argument& error) {
    throw MachineFileError(std::string("the machine cannot be written: ") + error.what());
  }
}

}  // namespace simulator
