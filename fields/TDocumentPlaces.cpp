#include "fields/TDocumentPlaces.h"

namespace zaf {
namespace {

/// Distance of the places that are kept, in bytes.
constexpr std::size_t kDistance = 1024;

}  // namespace

TDocumentPlace TDocumentPlaces::Find(std::string_view name) {
  const auto offset = static_cast<std::size_t>(name.data() - text_.data());
  if (name.data() < text_.data() || offset >= text_.size()) return {};
  while (marks_.back().offset + kDistance <= offset)
    marks_.push_back(Advance(marks_.back(), marks_.back().offset + kDistance));
  return Advance(marks_[offset / kDistance], offset).place;
}

TDocumentPlaces::TMark TDocumentPlaces::Advance(TMark mark, std::size_t to) const {
  for (; mark.offset < to; ++mark.offset) {
    const auto byte = static_cast<unsigned char>(text_[mark.offset]);
    const bool is_before_lf = text_.substr(mark.offset).starts_with("\r\n");
    if (byte == '\n' || (byte == '\r' && !is_before_lf)) {
      ++mark.place.line;
      mark.place.column = 1;
    } else if (!is_utf8_ || (byte & 0xC0) != 0x80) {
      ++mark.place.column;
    }
  }
  return mark;
}

}  // namespace zaf
