#pragma once

#include <algorithm>
#include <cctype>
#include <string_view>
#include <vector>

namespace zaf::fuzz {

/// Checks that a document is well-formed as XML 1.0 has it, in the subset that the program writes,
/// and that it is nothing but ISO-8859-1 without control characters. Strict where the program's own
/// parser is lenient, which reads more than XML allows.
class TWellFormedCheck {
 public:
  explicit TWellFormedCheck(std::string_view document) : rest_(document) {}

  bool Passes() {
    if (!Take("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n")) return false;
    const bool is_class_file = rest_.starts_with("<!DOCTYPE ZCF");
    if (!Take(is_class_file ? "<!DOCTYPE ZCF SYSTEM \"zanfo.dtd\">\n"
                            : "<!DOCTYPE ZAF SYSTEM \"zanfo.dtd\">\n"))
      return false;
    Take("<?zanfo run-only?>\n");
    do {
      if (!TakeNode()) return false;
    } while (!open_.empty());
    return rest_ == "\n";
  }

 private:
  bool Take(std::string_view expected) {
    if (!rest_.starts_with(expected)) return false;
    rest_.remove_prefix(expected.size());
    return true;
  }

  /// One character is compared without the call that a text costs; most of what is taken is that.
  bool Take(char expected) {
    if (rest_.empty() || rest_.front() != expected) return false;
    rest_.remove_prefix(1);
    return true;
  }

  /// Takes everything up to `end`, which stays; characters that no document may hold fail.
  template <class End>
  bool TakeUntil(End end, std::string_view& content) {
    const std::size_t size = rest_.find(end);
    if (size == std::string_view::npos) return false;
    content = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return std::none_of(content.begin(), content.end(), [](char c) {
      const auto byte = static_cast<unsigned char>(c);
      return byte < 0x20 && c != '\t' && c != '\n' && c != '\r';
    });
  }

  std::string_view TakeName() {
    const auto end = std::find_if(rest_.begin(), rest_.end(), [](char c) {
      return std::isalnum(static_cast<unsigned char>(c)) == 0;
    });
    const std::string_view name(rest_.begin(), end);
    rest_.remove_prefix(name.size());
    return name;
  }

  bool TakeNode() {
    if (!Take('<')) return !open_.empty() && TakeText();
    if (Take('/')) {
      if (open_.empty() || !Take(open_.back())) return false;
      open_.pop_back();
      return Take('>');
    }
    if (!Take('!')) return TakeTag();
    std::string_view content;
    if (Take("[CDATA[")) return !open_.empty() && TakeUntil("]]>", content) && Take("]]>");
    return Take("--") && TakeUntil("--", content) && Take("-->");
  }

  bool TakeText() {
    std::string_view content;
    return TakeUntil('<', content) && content.find("]]>") == content.npos &&
           HasSoundReferences(content);
  }

  bool TakeTag() {
    const std::string_view name = TakeName();
    if (name.empty() || std::isdigit(static_cast<unsigned char>(name.front())) != 0) return false;
    attributes_.clear();
    while (Take(' '))
      if (!TakeAttribute()) return false;
    if (Take('/')) return Take('>');
    open_.push_back(name);
    return Take('>');
  }

  bool TakeAttribute() {
    const std::string_view name = TakeName();
    const bool is_new =
        std::find(attributes_.begin(), attributes_.end(), name) == attributes_.end();
    attributes_.push_back(name);
    std::string_view value;
    const auto is_refused = [](char c) { return c == '<' || c == '\t' || c == '\n' || c == '\r'; };
    return is_new && !name.empty() && Take('=') && Take('"') && TakeUntil('"', value) &&
           Take('"') && std::none_of(value.begin(), value.end(), is_refused) &&
           HasSoundReferences(value);
  }

  static bool HasSoundReferences(std::string_view text) {
    for (std::size_t at = text.find('&'); at != text.npos; at = text.find('&', at + 1)) {
      bool is_sound = false;
      for (const char* const reference :
           {"&amp;", "&lt;", "&gt;", "&quot;", "&#9;", "&#10;", "&#13;"})
        is_sound = is_sound || text.substr(at).starts_with(reference);
      if (!is_sound) return false;
    }
    return true;
  }

  std::string_view rest_;
  std::vector<std::string_view> open_;
  std::vector<std::string_view> attributes_;  ///< Of the tag at hand.
};

inline bool IsWellFormed(std::string_view document) { return TWellFormedCheck(document).Passes(); }

}  // namespace zaf::fuzz
