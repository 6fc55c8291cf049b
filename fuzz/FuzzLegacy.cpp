// Any bytes as a legacy file: load, save, load what was saved, compare.

#include "fuzz/LegacyParts.h"
#include "fuzz/RoundTrip.h"

namespace {

constexpr std::uint32_t kManyRecords = 512;
constexpr std::size_t kTriedOfExpensive = 64;

/// Whether a list turns few bytes into many records. What a file may make of them is bounded, but
/// so that a file of a few bytes may make 16 MiB of them.
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
  // Few of the expensive files are tried, for they are slower than the others by a hundred times.
  if (std::hash<std::string_view>()(bytes) % kTriedOfExpensive != 0 && IsExpensive(bytes)) return 0;
  TZanfoFile file;
  if (fuzz::LoadBytes(bytes, file) != Status::kOk) return 0;
  fuzz::Require(file.IsEqual(file), "a file equals itself");
  fuzz::RequireThatDocumentStays(fuzz::SaveToXml(file));
  return 0;
}
