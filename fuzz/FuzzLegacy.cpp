// Loads any bytes as a legacy file, saves them, loads the result and compares.

#include "fuzz/LegacyParts.h"
#include "fuzz/RoundTrip.h"

namespace {

constexpr std::uint32_t kManyRecords = 512;
constexpr std::size_t kTriedOfExpensive = 64;

/// Whether a list turns few bytes into many records. The bound on these still allows a tiny file 16
/// MiB of them.
bool IsExpensive(std::string_view bytes) {
  for (const zaf::fuzz::TRecordParts& record : zaf::fuzz::TakeApart(bytes)) {
    for (const auto& [code, content] : record.sections) {
      const std::uint32_t count = zaf::fuzz::Number32At(content, 0);
      const bool is_expression_list = code == "ieei" || code == "weit";
      if (count > kManyRecords && (is_expression_list || count < content.size())) return true;
    }
  }
  return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zaf;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  // Only some of the expensive files are tried: they are a hundred times slower than the others.
  if (std::hash<std::string_view>()(bytes) % kTriedOfExpensive != 0 && IsExpensive(bytes)) return 0;
  TZanfoFile file;
  if (fuzz::LoadBytes(bytes, file) != Status::kOk) return 0;
  fuzz::Require(file.IsEqual(file), "a file equals itself");
  fuzz::RequireThatDocumentStays(fuzz::SaveToXml(file));
  return 0;
}
