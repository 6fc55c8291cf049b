// Any bytes behind the line of a protected document; and what was saved protected loads again.

#include "appfile/ProtectedDocument.h"

#include "fuzz/FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zaf;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  TZanfoFile damaged;
  static_cast<void>(
      fuzz::LoadBytes(std::string(kProtectedLine).append("\n").append(bytes), damaged));
  TZanfoFile file;
  if (fuzz::LoadBytes(bytes, file) != Status::kOk) return 0;
  const std::string saved = fuzz::SaveToXml(file, Protection::kProtected);
  TZanfoFile again;
  const Status status = fuzz::LoadBytes(saved, again);
  fuzz::Require(status == Status::kOk || status == Status::kMalformed, "a document loads");
  fuzz::Require(again.IsRunOnly(), "a protected document is run-only");
  return 0;
}
