#include "actions/database/TDataSourceWriter.h"

#include <algorithm>
#include <charconv>

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

bool TDataSourceWriter::WriteEnciphered(dom::Element parent, std::string_view name,
                                        std::string_view text) {
  if (text.empty()) {
    parent.appendElement(name);
    return true;
  }
  if (const auto known = enciphered_.find(text); known != enciphered_.end()) {
    parent.appendPlainElement(name, known->second);
    return true;
  }
  heap::TPooledString enciphered;
  if (!CCipherText::Encipher(text, enciphered)) return false;
  const dom::Element element = parent.appendPlainElement(name, enciphered);
  if (element) enciphered_.emplace(text, element.getTextContent());
  return true;
}

}  // namespace zaf
