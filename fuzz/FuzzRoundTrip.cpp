// A document that was written from another document is written the same again.

#include "fuzz/FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zaf;
  TZanfoFile file;
  if (fuzz::LoadBytes({reinterpret_cast<const char*>(data), size}, file) != Status::kOk) return 0;
  std::string document = fuzz::SaveToXml(file, Protection::kPlain);
  // The first documents may still change: a return in a text reads back as a line feed, an
  // else-if may find another place, an unknown check box is no check box any more.
  for (int i = 0; i < 3; ++i) {
    TZanfoFile again;
    if (fuzz::LoadBytes(document, again) != Status::kOk) return 0;
    const std::string next = fuzz::SaveToXml(again, Protection::kPlain);
    if (i == 2) fuzz::Require(next == document, "a document that was read is written alike");
    document = next;
  }
  return 0;
}
