// Compares buffers, texts and lists of texts with models of std::string and std::vector: each input
// is a program of operations.

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/CTextLocal.h"
#include "foundation/CTextPtrArray.h"
#include "foundation/CaseFolding.h"
#include "fuzz/Require.h"

namespace zaf {
namespace {

using fuzz::Require;

constexpr std::size_t kLongest = 4096;

std::uint32_t Size(std::string_view text) { return static_cast<std::uint32_t>(text.size()); }

std::uint32_t Place(std::size_t place) {
  return place == std::string::npos ? kNoIndex : static_cast<std::uint32_t>(place);
}

/// Reads numbers and texts from the beginning of the input; at its end 0 and empty texts.
class TProgram {
 public:
  explicit TProgram(std::string_view bytes) : bytes_(bytes) {}

  [[nodiscard]] bool IsAtEnd() const { return bytes_.empty(); }
  std::uint32_t Below(std::size_t limit) {
    std::size_t number = 0;
    for (std::size_t most = 1; most < limit && !bytes_.empty(); most <<= 8) {
      number = number << 8 | static_cast<unsigned char>(bytes_.front());
      bytes_.remove_prefix(1);
    }
    return static_cast<std::uint32_t>(number % limit);
  }
  /// Uses few different characters, so that patterns repeat and overlap.
  std::string Text() {
    std::string text(Below(40), 'a');
    for (char& character : text) character = "aaaaaaAb \xC9"[Below(10)];
    return text;
  }

 private:
  std::string_view bytes_;
};

std::string Folded(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), ToUpper);
  return text;
}

/// A buffer's bytes and its capacity by the rules: the first reservation and a shrinking one are
/// exact, a growing one is rounded to the next multiple of 16, or 4096; it shrinks by 32 bytes or
/// more.
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
  /// On an empty buffer this sets the content, whatever the position.
  void Splice(std::size_t position, std::size_t count, const std::string& other) {
    if (bytes.empty()) return Set(other);
    bytes.replace(std::min(position, bytes.size()), count, other);
  }
};

/// Replaces step by step: find, splice, continue after the replacement.
std::string Replaced(std::string text, const std::string& find, const std::string& replacement,
                     bool is_folded, std::uint32_t occurrence) {
  const std::string pattern = is_folded ? Folded(find) : find;
  std::uint32_t number = 0;
  for (std::size_t i = 0; !find.empty();) {
    i = (is_folded ? Folded(text) : text).find(pattern, i);
    if (i == std::string::npos) break;
    const bool is_chosen = ++number == occurrence || occurrence == 0;
    if (is_chosen) text.replace(i, find.size(), replacement);
    i += is_chosen ? replacement.size() : find.size();
  }
  return text;
}

void StepBuffer(TProgram& program, CData& buffer, TBufferModel& model) {
  const std::uint32_t size = Size(model.bytes);
  const std::uint32_t position = program.Below(size + 2);
  const std::uint32_t count = program.Below(size + 2);
  const std::uint32_t operation = program.Below(5);
  const std::string part = position < size ? model.bytes.substr(position, count) : "";
  if (operation == 0) {
    const std::string other = program.Text();
    buffer.Set(other.data(), Size(other));
    model.Set(other);
  } else if (operation == 1) {
    Require(buffer.Reserve(position + count), "a small reservation succeeds");
    model.Reserve(position + count);
  } else if (operation == 2) {
    CData target(7);
    buffer.Extract(target, position, count);
    Require(AsText(target.Bytes()) == part, "an extract is the range");
    std::string copy(count, '#');
    const std::uint32_t copied = buffer.CopyOutRange(copy.data(), count, position, kNoIndex);
    Require(copied == part.size() && copy.starts_with(part), "a copy is the range");
  } else if (operation == 3 && !part.empty()) {
    // Bytes of the buffer itself, which move during the call.
    buffer.Splice(count, position, buffer.GetData() + position, Size(part));
    model.Splice(count, position, part);
  } else {
    const std::string other = program.Text();
    buffer.Splice(position, count, other.data(), Size(other));
    model.Splice(position, count, other);
  }
  if (model.bytes.size() > kLongest) {
    buffer.Release();
    model = {};
  }
  Require(AsText(buffer.Bytes()) == model.bytes, "a buffer is its model");
  // The rules do not determine what splicing reserves.
  Require(operation > 1 || buffer.GetCapacity() == model.capacity, "capacity follows its rules");
  model.capacity = buffer.GetCapacity();
}

void StepText(TProgram& program, CText& text, std::string& model) {
  const std::uint32_t start = program.Below(model.size() + 1);
  // Half of the patterns come from the text itself.
  const std::string pattern =
      program.Below(2) == 0 ? program.Text() : model.substr(start, program.Below(80));
  Require(text.Find(pattern, start) == Place(model.find(pattern, start)) || pattern.empty(),
          "a pattern is found where it is");
  Require(text.Find(pattern, start, SearchDirection::kBackward) ==
                  Place(model.substr(0, start).rfind(pattern)) ||
              pattern.empty(),
          "a pattern is found backwards where it is");
  Require(text.FindIgnoringCase(pattern) == Place(Folded(model).find(Folded(pattern))) ||
              pattern.empty(),
          "a pattern is found ignoring case");
  const std::string other = program.Text();
  const bool is_folded = program.Below(2) == 0;
  const std::uint32_t occurrence = program.Below(4);
  switch (program.Below(4)) {
    case 0:
      text.Append(std::string_view(other));
      model += other;
      break;
    case 1:
      text = std::string_view(other);
      model = other;
      break;
    default:
      model = Replaced(model, pattern, other, is_folded, occurrence);
      if (occurrence != 0)
        text.ReplaceOccurrence(CText(pattern), CText(other), occurrence,
                               is_folded ? CaseSensitivity::kIgnore : CaseSensitivity::kExact);
      else if (is_folded)
        text.ReplaceAllIgnoringCase(CText(pattern), CText(other));
      else
        text.ReplaceAll(CText(pattern), CText(other));
  }
  if (model.size() > kLongest) {
    text.Clear();
    model.clear();
  }
  Require(text.View() == model && text.GetCString()[model.size()] == 0, "a text is its model");
  const CTextLocal<64> local(text);
  Require(local.View() == (model.size() < 64 ? model : ""), "a text that does not fit is refused");
}

void StepList(TProgram& program, CTextPtrArray& list, std::vector<std::string>& model) {
  const std::uint32_t index = program.Below(model.size() + 2);
  const auto place = static_cast<std::ptrdiff_t>(std::min<std::size_t>(index, model.size()));
  const bool is_inside = index < model.size();
  switch (program.Below(4)) {
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
    default: {
      const std::string text = program.Text();
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
  TProgram program({reinterpret_cast<const char*>(data), size});
  CData buffer;
  TBufferModel buffer_model;
  CText text;
  std::string text_model;
  CTextPtrArray list;
  std::vector<std::string> list_model;
  while (!program.IsAtEnd()) {
    const std::uint32_t kind = program.Below(3);
    if (kind == 0) StepBuffer(program, buffer, buffer_model);
    if (kind == 1) StepText(program, text, text_model);
    if (kind == 2) StepList(program, list, list_model);
  }
  return 0;
}
