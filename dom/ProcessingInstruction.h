#pragma once

#include <string_view>

#include "dom/Node.h"

namespace dom {

/// `<?target data?>`. The XML declaration is the instruction whose target is "xml".
class ProcessingInstruction : public Node {
 public:
  ProcessingInstruction() = default;
  /// Null when the node is not an instruction.
  explicit ProcessingInstruction(Node node);

  [[nodiscard]] std::string_view getTarget() const { return getNodeName(); }
  [[nodiscard]] std::string_view getData() const { return getNodeValue(); }
};

}  // namespace dom
