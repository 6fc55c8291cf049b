#pragma once

#include <cstdint>

namespace dom {

/// The types of nodes, with the numbers of the DOM.
enum class NodeType : std::uint8_t {
  kNone = 0,  ///< A null handle.
  kElement = 1,
  kText = 3,
  kCDATASection = 4,
  kProcessingInstruction = 7,
  kComment = 8,
  kDocument = 9,
  kDocumentType = 10,
};

}  // namespace dom
