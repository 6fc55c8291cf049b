// Loads any bytes as an XML document and saves it. A document without a declaration gets one.

#include "fuzz/FuzzSupport.h"
#include "fuzz/WellFormed.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zaf;
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  std::string document("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>");
  const bool is_whole = input.starts_with("<?xml ") || input.starts_with('\xFE') ||
                        input.starts_with('\xFF') || input.starts_with('\xEF');
  if (is_whole) document.clear();
  TZanfoFile file;
  if (fuzz::LoadBytes(document.append(input), file) != Status::kOk) return 0;
  const std::string saved = fuzz::SaveToXml(file);
  fuzz::Require(fuzz::IsKnown(saved) || fuzz::IsWellFormed(saved), "a document is well-formed");
  return 0;
}
