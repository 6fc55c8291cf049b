// Any bytes as an XML document: load and save.

#include "fuzz/FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zaf;
  const std::string bytes = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" +
                            std::string(reinterpret_cast<const char*>(data), size);
  for (const std::string_view text :
       {std::string_view(bytes), std::string_view(bytes).substr(44)}) {
    TZanfoFile file;
    if (fuzz::LoadBytes(text, file) == Status::kOk) fuzz::SaveToXml(file, Protection::kPlain);
  }
  return 0;
}
