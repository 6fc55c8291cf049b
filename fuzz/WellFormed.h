#pragma once

#include <cctype>
#include <set>
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

  /// Takes everything up to `end`, which is taken too; characters that no document may hold fail.
  bool TakeUntil(std::string_view end, std::string_view& content) {
    const std::size_t size = rest_.find(end);
    if (size == std::string_view::npos) return false;
    content = rest_.substr(0, size);
    rest_.remove_prefix(size + end.size());
    for (const char c : content) {
      const auto byte = static_cast<unsigned char>(c);
      if (byte < 0x20 && c != '\t' && c != '\n' && c != '\r') return false;
    }
    return true;
  }

  std::string_view TakeName() {
    std::size_t size = 0;
    while (size < rest_.size() && std::isalnum(static_cast<unsigned char>(rest_[size]))) ++size;
    const std::string_view name = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return name;
  }

  bool TakeNode() {
    std::string_view content;
    if (open_.empty() && !rest_.starts_with("<")) return false;
    if (Take("<![CDATA[")) return !open_.empty() && TakeUntil("]]>", content);
    if (Take("<!--")) return TakeUntil("-->", content) && content.find("--") == content.npos;
    if (Take("</")) {
      if (open_.empty() || !Take(open_.back())) return false;
      open_.pop_back();
      return Take(">");
    }
    if (Take("<")) return TakeTag();
    const std::size_t size = rest_.find('<');
    if (size == std::string_view::npos || rest_.substr(0, size).find("]]>") != rest_.npos)
      return false;
    if (!TakeUntil("<", content) || !HasSoundReferences(content)) return false;
    rest_ = {rest_.data() - 1, rest_.size() + 1};
    return true;
  }

  bool TakeTag() {
    const std::string_view name = TakeName();
    if (name.empty() || std::isdigit(static_cast<unsigned char>(name.front()))) return false;
    std::set<std::string_view> attributes;
    while (Take(" ")) {
      const std::string_view attribute = TakeName();
      std::string_view value;
      const bool is_sound = !attribute.empty() && attributes.insert(attribute).second &&
                            Take("=\"") && TakeUntil("\"", value) &&
                            value.find_first_of("<\t\n\r") == value.npos &&
                            HasSoundReferences(value);
      if (!is_sound) return false;
    }
    if (Take("/>")) return true;
    open_.push_back(name);
    return Take(">");
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
};

inline bool IsWellFormed(std::string_view document) { return TWellFormedCheck(document).Passes(); }

}  // namespace zaf::fuzz
