#pragma once

#include "actions/TTableSpecification.h"
#include "fields/BytesCodec.h"
#include "foundation/CData.h"

namespace zaf {

/// A jump, which the server places in a program that it has prepared. It is written as a results
/// action and read back as one; target and test are carried in legacy files only.
class TControlFlowSpecification
    : public TTableSpecification<TControlFlowSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("goto");
  static std::span<const TProperty> Properties();

 private:
  CData target_;
  CData test_;
};

}  // namespace zaf
