#include "ostrine/linux/sysfs.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "fake_root.h"
#include "ostrine/linux/file.h"

namespace ostrine {
namespace {

using test::FakeRoot;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Sysfs, NamesEntriesInNaturalOrderByTheirBeginning) {
  const FakeRoot root;
  for (const char* const name : {"hci10", "hci2", "eth0"}) root.Write(name, "");
  EXPECT_THAT(EntryNames(root.Path()), ElementsAre("eth0", "hci2", "hci10"));
  EXPECT_THAT(EntryNames(root.Path(), "hci"), ElementsAre("hci2", "hci10"));
}

TEST(Sysfs, NamesAllEntriesOfAFolderThatTakesManyReads) {
  const FakeRoot root;
  constexpr std::size_t kCount = 3000;
  for (std::size_t i = 0; i < kCount; ++i) root.Write("a_name_of_some_length_" + std::to_string(i), "");
  EXPECT_EQ(EntryNames(root.Path()).size(), kCount);
}

TEST(Sysfs, NamesNothingInAFile) {
  const FakeRoot root;
  root.Write("file", "text");
  EXPECT_THAT(EntryNames(root.Path() / "file"), IsEmpty());
}

TEST(Sysfs, GivesTheLastPartOfALinkThatNeedNotLeadAnywhere) {
  const FakeRoot root;
  root.Link("driver", "../../bus/pci/drivers/iwlwifi");
  root.Link("short", "name");
  root.Write("file", "");
  EXPECT_EQ(LinkName(root.Path() / "driver"), "iwlwifi");
  EXPECT_EQ(LinkName(root.Path() / "short"), "name");
  EXPECT_EQ(LinkName(root.Path() / "file"), "");
  EXPECT_EQ(LinkName(root.Path() / "none"), "");
}

TEST(Sysfs, ResolvesOnlyWhatIsInTheFolderItself) {
  const FakeRoot root;
  root.Write("devices/a/name", "");
  root.Write("devices2/b/name", "");
  root.Link("to_a", "devices/a");
  root.Link("to_b", "devices2/b");
  root.Link("circle", "circle");
  const Path devices = std::filesystem::canonical(root.Path() / "devices");
  EXPECT_EQ(ResolveBelow(root.Path() / "to_a", devices), devices / "a");
  EXPECT_EQ(ResolveBelow(devices, devices), devices);
  EXPECT_EQ(ResolveBelow(root.Path() / "to_b", devices), Path()) << "the same beginning, another folder";
  EXPECT_EQ(ResolveBelow(root.Path() / "circle", devices), Path());
  EXPECT_EQ(ResolveBelow(devices / "a", "/"), devices / "a");
}

class AFolder : public testing::Test {
 protected:
  AFolder() {
    root_.Write("devices/pci0/modalias", "pci:v1 \n");
    root_.Write("devices/pci0/number", "-12\n");
    root_.Write("devices/pci0/revision", "0x0c\n");
    root_.Link("devices/pci0/driver", "../../drivers/e1000e");
    root_.Link("bus/0000:00:02.0", "../devices/pci0");
  }

  FakeRoot root_;
};

TEST_F(AFolder, AnswersThroughLinksAsTheFunctionsForWholePathsDo) {
  Folder bus(root_.Path() / "bus");
  EXPECT_EQ(bus.ReadAttribute("0000:00:02.0/modalias"), "pci:v1 ");
  EXPECT_EQ(bus.CleanAttribute("0000:00:02.0/modalias"), "pci:v1");
  EXPECT_EQ(bus.NumberAttribute("0000:00:02.0/number"), -12);
  EXPECT_EQ(bus.HexAttribute("0000:00:02.0/revision"), 0x0Cu);
  EXPECT_EQ(bus.LinkName("0000:00:02.0/driver"), "e1000e");
  EXPECT_EQ(bus.LinkTarget("0000:00:02.0"), "../devices/pci0");
  EXPECT_TRUE(bus.Exists("0000:00:02.0/number"));
  EXPECT_FALSE(bus.Exists("0000:00:02.0/net"));
  const Path devices = std::filesystem::canonical(root_.Path() / "devices");
  EXPECT_EQ(bus.ResolveBelow("0000:00:02.0", devices), devices / "pci0");
}

TEST_F(AFolder, NamesItsEntriesEachTimeItIsAsked) {
  Folder bus(root_.Path() / "bus");
  EXPECT_THAT(bus.EntryNames(), ElementsAre("0000:00:02.0"));
  EXPECT_THAT(bus.EntryNames(), ElementsAre("0000:00:02.0"));
}

TEST_F(AFolder, ThatIsNotThereHasNothingInIt) {
  for (const char* const place : {"none", "devices/pci0/number"}) {
    Folder folder(root_.Path() / place);
    EXPECT_THAT(folder.EntryNames(), IsEmpty());
    // Not taken for paths in the folder where the process stands.
    EXPECT_EQ(folder.ReadAttribute("/proc/self/comm/x"), std::nullopt);
    EXPECT_FALSE(folder.Exists("."));
    EXPECT_EQ(folder.LinkTarget("."), "");
  }
}

TEST(Attribute, ThatIsAPipeWithSomethingInItIsNotRead) {
  const FakeRoot root;
  const std::string pipe = root.Place("pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const int end = open(pipe.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK);
  ASSERT_EQ(write(end, "text\n", 5), 5);
  EXPECT_EQ(ReadAttribute(root.Path() / "pipe"), std::nullopt);
  char first = 0;
  EXPECT_EQ(read(end, &first, 1), 1) << "it was taken out";
  close(end);
}

TEST(Attribute, ThatIsADeviceWithNothingToTellIsNone) { EXPECT_EQ(ReadAttribute("/dev/null"), std::nullopt); }

TEST(Attribute, OfProcIsReadAlthoughItsStatedSizeIsZero) {
  ASSERT_EQ(std::filesystem::file_size("/proc/self/comm"), 0u);
  EXPECT_FALSE(ReadAttribute("/proc/self/comm").value_or("").empty());
}

}  // namespace
}  // namespace ostrine
