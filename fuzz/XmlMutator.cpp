// Mutates documents by their elements: whole elements are repeated, moved, removed and taken from
// other documents, so that the nesting remains valid.

#include <cctype>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t max_size);

namespace {

constexpr std::size_t kLongestGrowth = 64;

struct TSpan {
  std::size_t begin = 0;
  std::size_t end = 0;

  [[nodiscard]] std::size_t Size() const { return end - begin; }
};

bool IsNameStart(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }

/// Finds the end of the element whose start tag begins at `begin`; the end of the text if its end
/// tag is missing. Only approximate: any markup counts as a tag.
TSpan FindElement(std::string_view text, std::size_t begin) {
  std::size_t depth = 0;
  for (std::size_t at = begin; at < text.size(); ++at) {
    if (text[at] == '<' && at + 1 < text.size()) {
      if (IsNameStart(text[at + 1])) ++depth;
      if (text[at + 1] == '/' && depth > 0) --depth;
    }
    if (text[at] != '>') continue;
    if (text[at - 1] == '/' && depth > 0) --depth;
    if (depth == 0) return {begin, at + 1};
  }
  return {begin, text.size()};
}

class TXmlMutation {
 public:
  explicit TXmlMutation(unsigned seed) : random_(seed) {}

  void Apply(std::string& text) {
    const TSpan element = ChooseElement(text);
    switch (Below(6)) {
      case 0:
        text.erase(element.begin, element.Size());
        return;
      case 1:
        InsertElement(text, text.substr(element.begin, element.Size()));
        return;
      case 2: {
        const std::string moved = text.substr(element.begin, element.Size());
        text.erase(element.begin, element.Size());
        InsertElement(text, moved);
        return;
      }
      case 3:
        text.insert(element.end, text.substr(element.begin, element.Size()));
        return;
      default:
        ChangeWithin(text, element);
    }
  }

  void Cross(std::string& text, std::string_view other) {
    const TSpan element = ChooseElement(other);
    InsertElement(text, std::string(other.substr(element.begin, element.Size())));
  }

 private:
  std::size_t Below(std::size_t limit) { return limit == 0 ? 0 : random_() % limit; }

  /// Finds the first element at or after a random position; an empty span if not found.
  TSpan ChooseElement(std::string_view text) {
    std::size_t at = text.find('<', Below(text.size()));
    while (at != std::string_view::npos && (at + 1 >= text.size() || !IsNameStart(text[at + 1])))
      at = text.find('<', at + 1);
    return at == std::string_view::npos ? TSpan() : FindElement(text, at);
  }

  /// Inserts an element after the start tag or the end tag of another one.
  void InsertElement(std::string& text, const std::string& element) {
    const TSpan place = ChooseElement(text);
    const std::size_t tag_end = text.find('>', place.begin);
    const bool is_inside = Below(2) == 0 && tag_end < place.end && text[tag_end - 1] != '/';
    text.insert(is_inside ? tag_end + 1 : place.end, element);
  }

  /// Changes only the start tag of an element or the whole element.
  void ChangeWithin(std::string& text, TSpan element) {
    const std::size_t tag_end = text.find('>', element.begin);
    if (Below(2) == 0 && tag_end < element.end) element.end = tag_end;
    if (element.Size() == 0) return;
    std::string part = text.substr(element.begin, element.Size());
    part.resize(element.Size() + kLongestGrowth);
    part.resize(LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(part.data()), element.Size(),
                                 part.size()));
    text.replace(element.begin, element.Size(), part);
  }

  std::minstd_rand random_;
};

std::string_view View(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

std::size_t Deliver(const std::string& text, std::uint8_t* data, std::size_t max_size) {
  return text.size() <= max_size ? text.copy(reinterpret_cast<char*>(data), max_size) : 0;
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t max_size, unsigned seed) {
  std::size_t delivered = 0;
  if (seed % 4 != 0) {
    TXmlMutation mutation(seed);
    std::string text(View(data, size));
    for (unsigned i = 0; i <= seed / 4 % 3; ++i) mutation.Apply(text);
    delivered = Deliver(text, data, max_size);
  }
  return delivered != 0 ? delivered : LLVMFuzzerMutate(data, size, max_size);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* data, std::size_t size,
                                                 const std::uint8_t* other, std::size_t other_size,
                                                 std::uint8_t* out, std::size_t max_size,
                                                 unsigned seed) {
  std::string text(View(data, size));
  TXmlMutation(seed).Cross(text, View(other, other_size));
  return Deliver(text, out, max_size);
}
