#include "fields/TextTraits.h"

namespace zaf {

bool CopySimple(std::string_view text, dom::ShortText& copy) {
  copy.size = static_cast<std::uint32_t>(text.size());
  return dom::CopyBlock<dom::Search::kUnusual>(text.data(), text.size(), copy.characters.data()) ==
         0;
}

TTextTraits ExamineText(std::string_view text) {
  using dom::FindInBlock;
  using dom::Search;
  unsigned dropped = 0;
  unsigned needing = 0;
  const auto examine = [&](std::size_t count) {
    dropped |= FindInBlock<Search::kIllegal>(text.data(), count);
    if (needing == 0) needing = FindInBlock<Search::kNeedsCData>(text.data(), count);
  };
  for (; text.size() > dom::kBlock; text.remove_prefix(dom::kBlock)) examine(dom::kBlock);
  examine(text.size());
  return {.has_dropped = dropped != 0, .needs_cdata = needing != 0};
}

}  // namespace zaf
