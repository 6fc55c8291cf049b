#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zaf {

/// Whether a path with `/` as separator matches a glob: `*` matches any characters but separators,
/// `?` one such character, `**` any characters; each but `?` also matches nothing, `**/` at the
/// beginning of a part together with its separator. All else matches itself. Takes time
/// proportional to the product of the sizes.
[[nodiscard]] bool MatchesGlob(std::string_view path, std::string_view glob);

/// Includes and excludes paths by globs. The last glob that matches decides. A path that none
/// matches is included unless the first glob is an include.
class TPathFilter {
 public:
  enum class Rule : bool { kExclude, kInclude };

  void Add(Rule rule, std::string glob) { globs_.push_back({rule, std::move(glob)}); }
  [[nodiscard]] bool Takes(std::string_view path) const;

 private:
  struct TGlob {
    Rule rule;
    std::string text;
  };
  std::vector<TGlob> globs_;
};

/// One of several parts of all inputs. The parts are disjoint and cover all inputs.
struct TShard {
  std::uint32_t number = 1;  ///< From 1 to count.
  std::uint32_t count = 1;

  /// Whether a path with `/` as separator belongs to this part, by its 32-bit FNV-1a hash.
  [[nodiscard]] bool Takes(std::string_view path) const;
};

}  // namespace zaf
