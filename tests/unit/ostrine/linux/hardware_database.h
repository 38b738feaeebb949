/// Writes a hardware database in the system's binary form, as a prefix tree of patterns.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace ostrine::test {

class HardwareDatabase {
 public:
  /// Devices whose modalias fits `pattern` have `properties`.
  void Add(std::string_view pattern, const std::map<std::string, std::string>& properties) {
    Node* node = &root_;
    for (const char c : pattern) node = &node->children[c];
    node->properties = properties;
  }

  std::string Bytes() const {
    constexpr std::uint64_t kHeadSize = 80;
    Writer writer{std::string(kHeadSize, '\0'), {}};
    const std::uint64_t root = writer.Write(root_);
    const std::uint64_t nodes = writer.bytes.size() - kHeadSize;
    std::string head = "KSLPHHRH";
    // Tool version; sizes of the file, the head, a node, a child and a value; then the tree and the texts.
    for (const std::uint64_t number :
         {std::uint64_t{252}, writer.bytes.size() + writer.texts.size(), kHeadSize, kNodeSize, kChildSize,
          kValueSize, root, nodes, std::uint64_t{writer.texts.size()}}) {
      Put(head, number);
    }
    // Texts stand behind the tree; until now they were counted from their own beginning.
    std::string bytes = writer.bytes;
    for (const std::size_t place : writer.text_places) {
      std::string offset;
      Put(offset, Get(bytes, place) + bytes.size());
      bytes.replace(place, offset.size(), offset);
    }
    bytes.replace(0, head.size(), head);
    return bytes + writer.texts;
  }

 private:
  static constexpr std::uint64_t kNodeSize = 24;
  static constexpr std::uint64_t kChildSize = 16;
  static constexpr std::uint64_t kValueSize = 16;

  struct Node {
    std::map<char, Node> children;
    std::map<std::string, std::string> properties;
  };

  static void Put(std::string& bytes, std::uint64_t number) {
    for (int i = 0; i < 8; ++i) bytes.push_back(static_cast<char>(number >> (8 * i) & 0xFF));
  }
  static std::uint64_t Get(const std::string& bytes, std::size_t place) {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < 8; ++i) {
      number |= std::uint64_t{static_cast<unsigned char>(bytes[place + i])} << (8 * i);
    }
    return number;
  }

  struct Writer {
    std::string bytes;
    std::string texts;
    std::vector<std::size_t> text_places{};

    void PutText(const std::string& text) {
      text_places.push_back(bytes.size());
      Put(bytes, texts.size());
      texts += text + '\0';
    }

    /// Writes the node behind its children and returns where it stands.
    std::uint64_t Write(const Node& node) {
      std::map<char, std::uint64_t> children;
      for (const auto& [c, child] : node.children) children[c] = Write(child);
      const std::uint64_t place = bytes.size();
      PutText("");  // the node's prefix
      bytes.push_back(static_cast<char>(children.size()));
      bytes.append(7, '\0');
      Put(bytes, node.properties.size());
      for (const auto& [c, offset] : children) {
        bytes.push_back(c);
        bytes.append(7, '\0');
        Put(bytes, offset);
      }
      for (const auto& [key, value] : node.properties) {
        PutText(" " + key);
        PutText(value);
      }
      return place;
    }
  };

  Node root_;
};

}  // namespace ostrine::test
