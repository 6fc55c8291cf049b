#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zaf::bench {

/// The kinds of applications that the sample writer makes.
enum class SampleKind : std::uint8_t {
  kTypical,  ///< Searches, conditions and pages of HTML, as in web applications.
  kMixed,    ///< Every kind of action, with moderate texts.
  kDense,    ///< Every kind of action, with many short fields and long lists.
  kFlat,     ///< Small actions, all under the root.
  kNested,   ///< Small actions, each a child of the previous one.
  kChain,    ///< One long chain of else-ifs, each with an action in it.
  kLong,     ///< Ten actions that share `size` bytes of HTML.
};

/// "typical", "mixed" and so on.
std::optional<SampleKind> ParseSampleKind(std::string_view name);

/// The default size of an application of this kind: the number of its actions or, of a long one, of
/// its bytes.
std::size_t UsualSize(SampleKind kind);

/// Returns the bytes of a legacy file. The same arguments give the same bytes; another `number`
/// gives another application of the same kind. It has `actions` actions, a typical one up to a
/// dozen more.
std::string MakeApplication(SampleKind kind, std::uint32_t number, std::size_t actions);

}  // namespace zaf::bench
