#pragma once

#include <string_view>

#include "dom/Node.h"

namespace dom {

/// The base of texts, CDATA sections and comments.
class CharacterData : public Node {
 public:
  using Node::Node;
  explicit CharacterData(Node node) : Node(node) {}
  [[nodiscard]] std::string_view getData() const { return getNodeValue(); }
};

/// A text between tags. The conversions take a node of that type; any other gives a null handle.
class Text : public CharacterData {
 public:
  Text() = default;
  explicit Text(Node node);
};

/// A text that is written unchanged, in `<![CDATA[` and `]]>`.
class CDATASection : public CharacterData {
 public:
  CDATASection() = default;
  explicit CDATASection(Node node);
};

class Comment : public CharacterData {
 public:
  Comment() = default;
  explicit Comment(Node node);
};

}  // namespace dom
