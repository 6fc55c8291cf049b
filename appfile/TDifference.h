#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace zaf {

/// How something of one application is in another one.
enum class DifferenceKind : std::uint8_t {
  kChanged,    ///< Different.
  kAdded,      ///< Only in the other one.
  kRemoved,    ///< Only in the first one.
  kMoved,      ///< An action below another one.
  kReordered,  ///< An action after another sibling.
};

/// One difference between two applications. Its texts are valid while it is reported.
struct TDifference {
  DifferenceKind kind;
  bool is_of_action;         ///< Else it is one of the application.
  std::string_view subject;  ///< Name of the action, or of the root element.
  /// Attributes and elements from the subject's element to the field, as the XML form has them:
  /// `Criteria[2].Operator`, items counted from 1. The code of a section in single quotes where
  /// the XML form does not have it. Empty: all of the subject.
  std::string_view field;
  /// The values. For kMoved the names of the parents, for kReordered those of the actions before;
  /// nullopt is the program itself, or the beginning.
  std::optional<std::string_view> from;
  std::optional<std::string_view> to;
};

/// Receives each difference as it is found.
class TDifferenceObserver {
 public:
  virtual void OnDifference(const TDifference& difference) = 0;
  /// Whether to look for differences inside an action of this name.
  virtual bool LooksInto(std::string_view /*action*/) { return true; }

 protected:
  ~TDifferenceObserver() = default;
};

}  // namespace zaf
