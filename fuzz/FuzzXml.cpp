// Any bytes as an XML document, behind a declaration and as they are: load and save.

#include "fuzz/FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zaf;
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  for (const std::string_view declaration :
       {"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>", ""}) {
    TZanfoFile file;
    const Status status = fuzz::LoadBytes(std::string(declaration).append(input), file);
    if (status == Status::kOk) fuzz::SaveToXml(file, Protection::kPlain);
  }
  return 0;
}
