// Buffers, texts and lists of texts beside std::string and std::vector, with what is particular
// about them: each input is a program of operations. (Random programs of the operations that
// conversions live on are an ordinary test; here are the rules of storage, parts of themselves as
// arguments, and the rest of the operations.)

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/CTextLocal.h"
#include "foundation/CTextPtrArray.h"

namespace zaf {
namespace {

constexpr std::size_t kLongest = 8192;

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

std::uint32_t Size(std::string_view text) { return static_cast<std::uint32_t>(text.size()); }

/// Takes numbers and texts from the front of the input; zeros and nothing when it is used up.
class TInput {
 public:
  explicit TInput(std::string_view bytes) : bytes_(bytes) {}

  [[nodiscard]] bool IsAtEnd() const { return bytes_.empty(); }
  std::uint32_t Number() {
    if (bytes_.empty()) return 0;
    const auto number = static_cast<unsigned char>(bytes_.front());
    bytes_.remove_prefix(1);
    return number;
  }
  std::uint32_t Below(std::size_t limit) {
    return static_cast<std::uint32_t>(limit == 0 ? 0 : Number() % limit);
  }
  std::string Text() {
    const std::uint32_t wanted = Number() % 40;
    const std::size_t size = std::min<std::size_t>(wanted, bytes_.size());
    std::string text(bytes_.substr(0, size));
    bytes_.remove_prefix(size);
    return text;
  }

 private:
  std::string_view bytes_;
};

/// A buffer's bytes and capacity by the rules: the first reservation and a shrinking one exactly, a
/// growing one to the next multiple of 16, or 4096; shrinking from 32 bytes on.
struct TBufferModel {
  std::string bytes;
  std::size_t capacity = 0;

  void Reserve(std::size_t size) {
    if (size <= capacity && capacity - size < 32) return;
    const std::size_t unit = capacity > 4096 ? 4096 : 16;
    const bool grows = capacity != 0 && size > capacity;
    capacity = grows ? (size / unit + 1) * unit : size;
    bytes.resize(std::min(bytes.size(), capacity));
  }
  void Set(const std::string& other) {
    Reserve(other.size());
    bytes = other;
  }
  /// An empty buffer is set instead, wherever.
  void Splice(std::size_t position, std::size_t count, const std::string& other) {
    if (bytes.empty()) return Set(other);
    bytes.replace(std::min(position, bytes.size()), count, other);
  }
};

void StepBuffer(TInput& input, CData& buffer, TBufferModel& model) {
  const std::uint32_t size = Size(model.bytes);
  const std::uint32_t position = input.Below(size + 2);
  const std::uint32_t count = input.Below(size + 2);
  const std::string other = input.Text();
  const std::uint32_t operation = input.Below(6);
  switch (operation) {
    case 0:
      buffer.Set(other.data(), Size(other));
      model.Set(other);
      break;
    case 1:
      Require(buffer.Reserve(position + count), "a small reservation succeeds");
      model.Reserve(position + count);
      break;
    case 2: {
      // Bytes of the buffer itself, which move meanwhile.
      const std::uint32_t begin = std::min(position, size);
      const std::string part = model.bytes.substr(begin, count);
      if (part.empty()) break;
      buffer.Splice(count, position, buffer.GetData() + begin, Size(part));
      model.Splice(count, position, part);
      break;
    }
    case 3: {
      CData target(7);
      buffer.Extract(target, position, count);
      const std::string part = position < size ? model.bytes.substr(position, count) : "";
      Require(AsText(target.Bytes()) == part, "an extract is the range");
      std::string copy(count, '#');
      const std::uint32_t copied = buffer.CopyOutRange(copy.data(), count, position, kNoIndex);
      Require(copied == part.size() && copy.starts_with(part), "a copy is the range");
      break;
    }
    case 4: {
      const auto value = static_cast<std::int32_t>(position * 0x01234567U);
      buffer.SpliceDecimal(position, count, value);
      model.Splice(position, count, std::to_string(value));
      break;
    }
    default:
      buffer.Splice(position, count, other.data(), Size(other));
      model.Splice(position, count, other);
  }
  if (model.bytes.size() > kLongest) {
    buffer.Release();
    model = {};
  }
  Require(AsText(buffer.Bytes()) == model.bytes, "a buffer is its model");
  // What splicing reserves is its own business.
  Require(operation > 1 || buffer.GetCapacity() == model.capacity, "capacity follows its rules");
  model.capacity = buffer.GetCapacity();
}

void ChangeText(TInput& input, CText& text, std::string& model) {
  const bool is_dropped = input.Below(2) == 0;
  const std::string set = input.Text();
  constexpr std::string_view kBlanks = " \t\n\r";
  switch (input.Below(7)) {
    case 0: {
      text.FilterCharacters(set, is_dropped ? CharacterFilter::kDrop : CharacterFilter::kKeep);
      std::erase_if(model, [&](char c) { return (set.find(c) != set.npos) == is_dropped; });
      break;
    }
    case 1:
      text.TrimStart(is_dropped ? TrimSet::kSpaces : TrimSet::kWhiteSpace);
      model.erase(0, model.find_first_not_of(is_dropped ? " " : kBlanks));
      break;
    case 2:
      text.TrimEnd(is_dropped ? TrimSet::kSpaces : TrimSet::kWhiteSpace);
      model.resize(model.find_last_not_of(is_dropped ? " " : kBlanks) + 1);
      break;
    case 3:
      text.Unquote();
      if (model.size() >= 2 && (model[0] == '"' || model[0] == '\'') && model.back() == model[0])
        model = model.substr(1, model.size() - 2);
      break;
    case 4: {
      // Blanks become returns and nothing else happens.
      text.WordWrap(1 + Size(set));
      Require(text.View().size() == model.size(), "wrapping keeps the length");
      for (std::size_t i = 0; i < model.size(); ++i) {
        const char c = text.View()[i];
        const bool is_break = c == '\r' && (model[i] == ' ' || model[i] == '\t');
        Require(c == model[i] || is_break, "wrapping changes blanks alone");
      }
      model = text.View();
      break;
    }
    case 5:
      text.ToUpperCase();
      std::transform(model.begin(), model.end(), model.begin(), ToUpper);
      break;
    default:
      text = std::string_view(set);
      model = set;
  }
}

void StepText(TInput& input, CText& text, std::string& model) {
  const std::uint32_t position = input.Below(model.size() + 2);
  const std::string part = model.substr(std::min<std::size_t>(position, model.size()));
  switch (input.Below(5)) {
    case 0:
      text.Append(text.View().substr(std::min<std::size_t>(position, model.size())));
      model += part;
      break;
    case 1: {
      char copy[32];
      const std::uint32_t copied = text.CopyOutPrefixed(copy, 1 + position % 31);
      Require(copied <= 1 + position % 31, "a copy fits");
      break;
    }
    case 2: {
      const CText other = text.Left(position);
      Require(other.View() == model.substr(0, position), "the left is the beginning");
      Require(
          text.PrefixEquals(other.GetCString(), other.GetCharacterCount(), CaseSensitivity::kExact),
          "a text begins as its beginning");
      const bool is_sorted = !(text < other) || text.View().find('\0') != std::string_view::npos;
      Require(is_sorted && text == CText(text), "a text is behind its beginning");
      break;
    }
    case 3:
      Require(CText(std::to_string(position)).ToNumber() == position, "digits are a number");
      text.Append(static_cast<std::int32_t>(position * 0x01000193U));
      model += std::to_string(static_cast<std::int32_t>(position * 0x01000193U));
      break;
    default:
      ChangeText(input, text, model);
  }
  if (model.size() > kLongest) {
    text.Clear();
    model.clear();
  }
  Require(text.View() == model, "a text is its model");
  Require(text.GetCString()[model.size()] == 0, "a text has its NUL");
  const CTextLocal<64> local(text);
  Require(local.View() == (model.size() < 64 ? model : ""), "a text that does not fit is refused");
}

void StepList(TInput& input, CTextPtrArray& list, std::vector<std::string>& model) {
  const std::uint32_t index = input.Below(model.size() + 2);
  const auto place = static_cast<std::ptrdiff_t>(std::min<std::size_t>(index, model.size()));
  const bool is_inside = index < model.size();
  switch (input.Below(5)) {
    case 0:
      if (is_inside) list.DeleteElement(list.Get(index));
      Require(list.Remove(index) == (is_inside ? index : kNoIndex), "an element is removed");
      if (is_inside) model.erase(model.begin() + place);
      break;
    case 1: {
      const CTextPtrArray copy(list);
      Require(copy == list, "a copy is equal");
      list.DeleteAll();
      list = copy;
      break;
    }
    case 2:
      list.Append(input.Text());
      model.emplace_back(list[list.GetCount() - 1].View());
      break;
    default: {
      const std::string text = input.Text();
      list.Insert(index, new CText(text));
      model.insert(model.begin() + place, text);
    }
  }
  Require(std::equal(list.begin(), list.end(), model.begin(), model.end(),
                     [](const CText& a, const std::string& b) { return a.View() == b; }),
          "a list is its model");
}

}  // namespace
}  // namespace zaf

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zaf;
  TInput input({reinterpret_cast<const char*>(data), size});
  CData buffer;
  TBufferModel buffer_model;
  CText text;
  std::string text_model;
  CTextPtrArray list;
  std::vector<std::string> list_model;
  while (!input.IsAtEnd()) {
    switch (input.Below(3)) {
      case 0:
        StepBuffer(input, buffer, buffer_model);
        break;
      case 1:
        StepText(input, text, text_model);
        break;
      default:
        StepList(input, list, list_model);
    }
  }
  return 0;
}
