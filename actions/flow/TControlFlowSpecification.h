#pragma once

#include "actions/TTableSpecification.h"
#include "fields/BytesCodec.h"
#include "foundation/CData.h"

namespace zaf {

/// A jump in a program that the server has prepared. It is written and read back as a results
/// action. Target and test are carried in legacy files only; the state of the run time is only
/// cloned.
class TControlFlowSpecification
    : public TTableSpecification<TControlFlowSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("goto");
  static std::span<const TProperty> Properties();

  void SetRunState(std::uint32_t state) { run_state_ = state; }
  [[nodiscard]] std::int32_t GetRunState() const override {
    return static_cast<std::int32_t>(run_state_);
  }

 private:
  CData target_;
  CData test_;
  std::uint32_t run_state_ = 0;
};

}  // namespace zaf
