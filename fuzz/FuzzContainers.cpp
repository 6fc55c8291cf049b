// Texts and arrays beside std::string and std::vector: each input is a program of operations.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/CText.h"
#include "foundation/TRecordArray.h"

namespace zaf {
namespace {

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

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

void StepText(TInput& input, CText& text, std::string& model) {
  const auto size = static_cast<std::uint32_t>(model.size());
  const std::uint32_t position = size == 0 ? 0 : input.Number() % (size + 1);
  const std::uint32_t count = input.Number() % (size - position + 1);
  const std::string other = input.Text();
  switch (input.Number() % 6) {
    case 0:
      text.Append(other);
      model += other;
      break;
    case 1:
      if (size == 0) break;  // Splicing into an empty text replaces it.
      text.Splice(position, count, other.data(), static_cast<std::uint32_t>(other.size()));
      model.replace(position, count, other);
      break;
    case 2: {
      text.ReplaceAll(CText("a"), CText(other));
      std::string replaced;
      for (const char c : model) c == 'a' ? replaced += other : replaced += c;
      model = replaced;
      break;
    }
    case 3:
      text.SubstringInPlace(position, count);
      model = model.substr(position, count);
      break;
    case 4:
      text = std::string_view(other);
      model = other;
      break;
    default: {
      const std::size_t found = model.find(other, position);
      const std::uint32_t expected =
          found == std::string::npos ? kNoIndex : static_cast<std::uint32_t>(found);
      Require(other.empty() || text.Find(other, position) == expected, "a search finds the first");
    }
  }
  if (model.size() > 4096) {
    text.Clear();
    model.clear();
  }
  Require(text.View() == model, "a text is its model");
}

void StepArray(TInput& input, TRecordArray<std::uint32_t>& array,
               std::vector<std::uint32_t>& model) {
  const std::uint32_t index = input.Number();
  const std::uint32_t value = input.Number();
  const auto place = static_cast<std::ptrdiff_t>(std::min<std::size_t>(index, model.size()));
  if (input.Number() % 3 != 0) {
    array.Insert(index, &value);
    model.insert(model.begin() + place, value);
  } else {
    array.Remove(index);
    if (index < model.size()) model.erase(model.begin() + place);
  }
  Require(std::equal(array.begin(), array.end(), model.begin(), model.end()),
          "an array is its model");
}

}  // namespace
}  // namespace zaf

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zaf;
  TInput input({reinterpret_cast<const char*>(data), size});
  CText text;
  std::string text_model;
  TRecordArray<std::uint32_t> array;
  std::vector<std::uint32_t> array_model;
  while (!input.IsAtEnd()) {
    if (input.Number() % 2 == 0) {
      StepText(input, text, text_model);
    } else {
      StepArray(input, array, array_model);
    }
  }
  return 0;
}
