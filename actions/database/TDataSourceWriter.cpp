#include "actions/database/TDataSourceWriter.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "foundation/CCipherText.h"

namespace zaf {
namespace {

constexpr std::string_view kDataSourceId = "DataSource.";

}  // namespace

TDataSourceId::TDataSourceId(std::uint32_t number) {
  char* const digits = std::copy(kDataSourceId.begin(), kDataSourceId.end(), text_.data());
  const std::to_chars_result end = std::to_chars(digits, text_.data() + text_.size(), number);
  size_ = static_cast<std::size_t>(end.ptr - text_.data());
}

bool TDataSourceWriter::TSizesFirst::operator()(const TContent& one, const TContent& other) const {
  for (std::size_t i = 0; i < one.size(); ++i)
    if (one[i].size() != other[i].size()) return one[i].size() < other[i].size();
  return one < other;
}

dom::Element TDataSourceWriter::Append() {
  const dom::Element source = list_.appendElement("DataSource");
  source.appendAttribute("ID", TDataSourceId(count_++).View());
  return source;
}

dom::Element TDataSourceWriter::FindOrAppend(const TContent& content, std::uint32_t& number) {
  const auto [place, is_new] = numbers_.try_emplace(content, count_);
  number = place->second;
  return is_new ? Append() : dom::Element();
}

void TDataSourceWriter::WriteEnciphered(dom::Element parent, std::string_view name,
                                        std::string_view text) {
  if (text.empty()) {
    parent.appendElement(name);
    return;
  }
  if (const auto known = enciphered_.find(text); known != enciphered_.end()) {
    parent.appendPlainElement(name, known->second);
    return;
  }
  std::string enciphered;
  CCipherText::Encipher(text, enciphered);
  const dom::Element element = parent.appendPlainElement(name, enciphered);
  if (element) enciphered_.emplace(text, element.getTextContent());
}

}  // namespace zaf
