// Random tables: what was built is what is read.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "ostrine/common/smbios.h"
#include "smbios_builder.h"

namespace ostrine::smbios {
namespace {

using test::ByteVector;

class Random {
 public:
  explicit Random(unsigned int seed) : engine_(seed) {}
  unsigned int UpTo(unsigned int most) {
    return std::uniform_int_distribution<unsigned int>(0, most)(engine_);
  }
  std::uint8_t Byte() { return static_cast<std::uint8_t>(UpTo(255)); }

 private:
  std::mt19937 engine_;
};

struct Built {
  std::uint8_t type;
  std::uint16_t handle;
  ByteVector body;
  std::vector<std::string> strings;
};

Built RandomStructure(Random& random) {
  Built built{.type = static_cast<std::uint8_t>(random.UpTo(126)),
              .handle = static_cast<std::uint16_t>(random.UpTo(0xFFFF)),
              .body = ByteVector(random.UpTo(251)),
              .strings = std::vector<std::string>(random.UpTo(3) == 0 ? random.UpTo(255) : random.UpTo(5))};
  for (auto& byte : built.body) byte = random.Byte();
  for (auto& text : built.strings) {
    text.resize(1 + random.UpTo(40));
    for (auto& letter : text) letter = static_cast<char>(1 + random.UpTo(254));
  }
  return built;
}

TEST(SmbiosProperty, EveryBuiltTableReadsBackAsItWasBuilt) {
  for (unsigned int seed = 0; seed < 300; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed);
    std::vector<Built> built(random.UpTo(12));
    ByteVector table;
    for (auto& structure : built) {
      structure = RandomStructure(random);
      test::AppendStructure(table, structure.type, structure.handle, structure.body, structure.strings);
    }
    test::AppendEnd(table);

    StructureWalker walker({table, {}});
    for (const Built& expected : built) {
      const auto read = walker.Next();
      ASSERT_TRUE(read);
      EXPECT_EQ(read->Type(), expected.type);
      EXPECT_EQ(read->Handle(), expected.handle);
      ASSERT_EQ(read->Formatted().size(), expected.body.size() + 4);
      EXPECT_TRUE(std::equal(expected.body.begin(), expected.body.end(), read->Formatted().begin() + 4));
      for (unsigned int number = 0; number <= 255; ++number) {
        const bool present = number >= 1 && number <= expected.strings.size();
        EXPECT_EQ(read->String(static_cast<std::uint8_t>(number)),
                  present ? expected.strings[number - 1] : std::string());
      }
    }
    const auto end = walker.Next();
    ASSERT_TRUE(end);
    EXPECT_EQ(end->Type(), kEndOfTable);
    EXPECT_FALSE(walker.Next());
  }
}

TEST(SmbiosProperty, AnyBytesAtAllAreWalkedInNoMoreStepsThanTheyHaveHeaders) {
  for (unsigned int seed = 0; seed < 2000; ++seed) {
    Random random(seed);
    ByteVector bytes(random.UpTo(600));
    // Small values make believable lengths and double zeros likely.
    for (auto& byte : bytes)
      byte = random.UpTo(1) == 0 ? static_cast<std::uint8_t>(random.UpTo(6)) : random.Byte();
    StructureWalker walker({bytes, {}});
    std::size_t steps = 0;
    while (const auto structure = walker.Next()) {
      ++steps;
      ASSERT_GE(structure->Formatted().data(), bytes.data());
      ASSERT_LE(structure->Formatted().data() + structure->Formatted().size(), bytes.data() + bytes.size());
    }
    EXPECT_LE(steps, bytes.size() / Structure::kHeaderSize) << "seed " << seed;
  }
}

}  // namespace
}  // namespace ostrine::smbios
