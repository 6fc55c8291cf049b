#include "tool/PathFilter.h"

#include <algorithm>

#include "foundation/Fnv.h"

namespace zaf {
namespace {

/// Matches a glob with a state machine: state j has matched the first j characters of the glob.
class TGlobMatch {
 public:
  explicit TGlobMatch(std::string_view glob)
      : glob_(glob), now_(glob.size() + 1), next_(glob.size() + 1) {
    Enter(0, now_);
  }

  void Take(char character) {
    std::fill(next_.begin(), next_.end(), false);
    for (std::size_t j = 0; j < glob_.size(); ++j)
      if (now_[j]) Step(j, character);
    now_.swap(next_);
  }

  [[nodiscard]] bool IsMatched() const { return now_[glob_.size()]; }

 private:
  [[nodiscard]] bool IsAt(std::size_t j, std::string_view text) const {
    return glob_.substr(j).starts_with(text);
  }

  /// Enters state j, and the states after stars that match nothing.
  void Enter(std::size_t j, std::vector<bool>& states) {
    for (; !states[j]; j += IsAt(j, "**") ? 2U : 1U) {
      states[j] = true;
      const bool begins_part = j == 0 || glob_[j - 1] == '/';
      if (begins_part && IsAt(j, "**/")) Enter(j + 3, states);
      if (!IsAt(j, "*")) return;
    }
  }

  void Step(std::size_t j, char character) {
    if (IsAt(j, "**")) {
      next_[j] = true;
      Enter(j + 2, next_);
    } else if (glob_[j] == '*') {
      if (character != '/') Enter(j, next_);
    } else if (glob_[j] == character || (glob_[j] == '?' && character != '/')) {
      Enter(j + 1, next_);
    }
  }

  std::string_view glob_;
  std::vector<bool> now_;
  std::vector<bool> next_;
};

}  // namespace

bool MatchesGlob(std::string_view path, std::string_view glob) {
  TGlobMatch match(glob);
  for (const char character : path) match.Take(character);
  return match.IsMatched();
}

bool TPathFilter::Takes(std::string_view path) const {
  const auto last = std::find_if(globs_.rbegin(), globs_.rend(),
                                 [&](const TGlob& glob) { return MatchesGlob(path, glob.text); });
  if (last != globs_.rend()) return last->rule == Rule::kInclude;
  return globs_.empty() || globs_.front().rule == Rule::kExclude;
}

bool TShard::Takes(std::string_view path) const {
  return count == 1 || Fnv1a(path) % count == number - 1;
}

}  // namespace zaf
