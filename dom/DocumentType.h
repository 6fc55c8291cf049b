#pragma once

#include <string_view>

#include "dom/Node.h"

namespace dom {

/// `<!DOCTYPE name SYSTEM "system-id">`. A document that was parsed has none: it is skipped.
class DocumentType : public Node {
 public:
  DocumentType() = default;
  /// Null when the node is no document type.
  explicit DocumentType(Node node);

  [[nodiscard]] std::string_view getName() const { return getNodeName(); }
  /// Without its quotes; empty when there is none.
  [[nodiscard]] std::string_view getSystemId() const;
};

}  // namespace dom
