#include "actions/TXmlContext.h"

#include <algorithm>
#include <charconv>

namespace zaf {
namespace {

constexpr std::uint64_t kReferencedPerByte = 32;
constexpr std::uint64_t kLeastReferenced = 4 << 20;

constexpr std::string_view kDataSourceId = "DataSource.";

}  // namespace

TOutputIndex::TOutputIndex(dom::Element outputs) {
  for (dom::Element output = outputs.getFirstChildElement("Output"); output;
       output = output.getNextSiblingElement("Output")) {
    const auto [place, is_new] = texts_.try_emplace(output.getAttribute("ID"));
    if (is_new) place->second = output.getTextContent();
  }
}

const std::string_view* TOutputIndex::Find(std::string_view id) const {
  const auto found = texts_.find(id);
  return found == texts_.end() ? nullptr : &found->second;
}

TReferenceBudget::TReferenceBudget(std::size_t document_size)
    : left_(std::max(kReferencedPerByte * document_size, kLeastReferenced)) {}

Status TReferenceBudget::Charge(std::size_t bytes) {
  if (bytes > left_) {
    left_ = 0;
    return Status::kMalformed;
  }
  left_ -= bytes;
  return Status::kOk;
}

TDataSourceId::TDataSourceId(std::uint32_t number) {
  char* const digits = std::copy(kDataSourceId.begin(), kDataSourceId.end(), text_.data());
  const std::to_chars_result end = std::to_chars(digits, text_.data() + text_.size(), number);
  size_ = static_cast<std::size_t>(end.ptr - text_.data());
}

dom::Element AppendDataSource(TXmlWriteContext& context) {
  const dom::Element source = context.data_sources.appendElement("DataSource");
  source.appendAttribute("ID", TDataSourceId(context.data_source_count++).View());
  return source;
}

}  // namespace zaf
