#pragma once

#include <array>

#include "actions/TTableSpecification.h"

namespace zaf {

/// The return action: ends the program, or returns to the branch that led here.
class TStopSpecification final
    : public TTableSpecification<TStopSpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("stop");
  static constexpr std::string_view kElement = "ReturnAction";
  static constexpr std::string_view kLabel = "[Return Action] ";
  static std::span<const TProperty> Properties() { return {}; }

  /// Texts of the server's run time. They are cloned, but neither compared nor written.
  [[nodiscard]] std::array<CText, 2>& GetRunTexts() { return run_texts_; }

 private:
  std::array<CText, 2> run_texts_;
};

}  // namespace zaf
