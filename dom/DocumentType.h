#pragma once

#include <string_view>

#include "dom/Node.h"

namespace dom {

/// `<!DOCTYPE name SYSTEM "system-id">`. A parsed document has none: the parser skips it.
class DocumentType : public Node {
 public:
  DocumentType() = default;
  /// Null when the node is not a document type.
  explicit DocumentType(Node node);

  [[nodiscard]] std::string_view getName() const { return getNodeName(); }
  /// The identifier without quotes; empty if absent.
  [[nodiscard]] std::string_view getSystemId() const;
};

}  // namespace dom
