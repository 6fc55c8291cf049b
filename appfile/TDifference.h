#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace zaf {

/// The kind of a difference, from the first application to the second.
enum class DifferenceKind : std::uint8_t {
  kChanged,    ///< The values differ.
  kAdded,      ///< Only in the second.
  kRemoved,    ///< Only in the first.
  kMoved,      ///< An action has another parent.
  kReordered,  ///< An action follows another sibling.
};

/// One difference between two applications. Its texts are valid while it is reported.
struct TDifference {
  DifferenceKind kind;
  bool is_of_action;         ///< False: of the application.
  std::string_view subject;  ///< Name of the action, or of the root element.
  /// The path of elements and attributes from the subject's element to the field, as in the XML
  /// form: `Criteria[2].Operator`, with items counted from 1. For a field without XML form, the
  /// code of its section in single quotes. Empty: the subject as a whole.
  std::string_view field;
  /// The values. For kMoved the names of the parents, for kReordered those of the preceding
  /// actions; nullopt means the program itself, or that there is no preceding action.
  std::optional<std::string_view> from;
  std::optional<std::string_view> to;
};

/// Receives each difference as it is found.
class TDifferenceObserver {
 public:
  virtual void OnDifference(const TDifference& difference) = 0;
  /// Whether to report differences within an action of this name.
  virtual bool LooksInto(std::string_view /*action*/) { return true; }

 protected:
  ~TDifferenceObserver() = default;
};

}  // namespace zaf
