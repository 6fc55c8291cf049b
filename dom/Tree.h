#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <pugixml.hpp>
#include <string_view>

#include "dom/Blocks.h"
#include "dom/Document.h"
#include "dom/Heap.h"

/// What the classes of this folder share about the way they use pugixml. Not for others.
///
/// - A detached node is the only child of an element without a name, and all of those are the
///   children of another one, the document's first child. No other element has an empty name.
/// - A document type is an instruction whose name is '!' and its name, and whose value is the
///   system identifier: pugixml lets its own kind of node stand nowhere but in the document.
namespace dom {

struct Document::Tree {
  pugi::xml_document document;
  std::uint64_t failure_count_before = 0;  ///< Of the PagePool, when the tree was empty.
};

/// pugixml's handles are a pointer each, but making one of a pointer, or asking it whether it is
/// null, is a call into the library. These are none.
inline pugi::xml_node Wrap(pugi::xml_node_struct* node) {
  return std::bit_cast<pugi::xml_node>(node);
}
inline pugi::xml_attribute Wrap(pugi::xml_attribute_struct* attribute) {
  return std::bit_cast<pugi::xml_attribute>(attribute);
}
inline pugi::xml_node_struct* Unwrap(pugi::xml_node node) {
  return std::bit_cast<pugi::xml_node_struct*>(node);
}
inline pugi::xml_attribute_struct* Unwrap(pugi::xml_attribute attribute) {
  return std::bit_cast<pugi::xml_attribute_struct*>(attribute);
}
inline bool IsNull(pugi::xml_node node) { return Unwrap(node) == nullptr; }
inline bool IsNull(pugi::xml_attribute attribute) { return Unwrap(attribute) == nullptr; }

inline bool IsHidden(const pugi::xml_node& node) {
  return node.type() == pugi::node_element && *node.name() == '\0';
}

/// An empty place for a detached node in the document that `node` belongs to; null when memory
/// runs out.
pugi::xml_node GetHiddenPlace(const pugi::xml_node& node);

/// A name with a NUL behind it.
class TerminatedName {
 public:
  explicit TerminatedName(std::string_view name) {
    if (name.size() <= kBlock) {
      CopyBlock<Search::kNothing>(name.data(), name.size(), short_name_.data());
      short_name_[name.size()] = '\0';
    } else {
      Copy("", name);
    }
  }
  TerminatedName(std::string_view prefix, std::string_view name) { Copy(prefix, name); }
  TerminatedName(const TerminatedName&) = delete;
  TerminatedName& operator=(const TerminatedName&) = delete;
  ~TerminatedName() {
    if (name_ != short_name_.data()) Free(name_);
  }

  /// "" when memory ran out, which the PagePool has counted.
  operator const char*() const { return name_; }  // NOLINT(google-explicit-constructor)

 private:
  void Copy(std::string_view prefix, std::string_view name);

  std::array<char, 64> short_name_;
  char* name_ = short_name_.data();
};

/// Which characters a text cannot hold besides the control characters.
enum class TextRule {
  kAttribute,    ///< None.
  kComment,      ///< `--`, and `-` at the end.
  kInstruction,  ///< `?>`.
  kIdentifier,   ///< `"`.
};

/// Changes `length` characters to a text that obeys the rule, and terminates it. It never grows.
void MakeLegal(char* text, std::size_t length, TextRule rule);

/// Whether any character is below 0x20; tab, LF and CR are.
inline bool HasControls(std::string_view text) {
  std::array<char, kBlock> copy;
  while (text.size() > kBlock) {
    if (CopyBlock<Search::kControls>(text.data(), kBlock, copy.data()) != 0) return true;
    text.remove_prefix(kBlock);
  }
  return CopyBlock<Search::kControls>(text.data(), text.size(), copy.data()) != 0;
}

/// Gives a node or an attribute a value that obeys the rule.
template <class Target>
void SetLegalValue(Target target, std::string_view value, TextRule rule) {
  if (IsNull(target) || !target.set_value(value.data(), value.size())) return;
  if (value.empty() || (rule == TextRule::kAttribute && !HasControls(value))) return;
  // The value is pugixml's own copy, in memory that is not constant.
  MakeLegal(const_cast<char*>(target.value()), value.size(), rule);
}

}  // namespace dom
