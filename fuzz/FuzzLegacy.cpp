// Any bytes as a legacy file: load, save, load what was saved, compare.

#include "fuzz/FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zaf;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  TZanfoFile file;
  if (fuzz::LoadBytes(bytes, file) != Status::kOk) return 0;
  const std::string saved = fuzz::SaveToXml(file, Protection::kPlain);
  TZanfoFile again;
  // Words that a legacy file may hold and a document may not end a load; nothing else does.
  const Status status = fuzz::LoadBytes(saved, again);
  fuzz::Require(status == Status::kOk || status == Status::kMalformed, "a document loads");
  static_cast<void>(again.IsEqual(file));
  return 0;
}
