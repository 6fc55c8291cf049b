#include "fields/TXmlContext.h"

#include <algorithm>

namespace zaf {
namespace {

constexpr std::uint64_t kReferencedPerByte = 32;
constexpr std::uint64_t kLeastReferenced = 4 << 20;

}  // namespace

TOutputIndex::TOutputIndex(dom::Element outputs) {
  for (dom::Element output = outputs.getFirstChildElement("Output"); output;
       output = output.getNextSiblingElement("Output")) {
    const auto [place, is_new] = entries_.try_emplace(output.getAttribute("ID"));
    if (is_new)
      place->second = {output, output.getTextContent()};
    else
      output.SetRead(false);
  }
}

const std::string_view* TOutputIndex::Find(std::string_view id) const {
  const auto found = entries_.find(id);
  if (found == entries_.end()) return nullptr;
  found->second.was_asked_for = true;
  return &found->second.text;
}

void TOutputIndex::MarkUnused() const {
  for (const auto& [id, entry] : entries_)
    if (!entry.was_asked_for) entry.element.SetRead(false);
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

}  // namespace zaf
