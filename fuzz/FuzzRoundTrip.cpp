// Writes a document from another document, and from the legacy file written from it: both must be
// written again with the same bytes.

#include <algorithm>

#include "foundation/CCipherText.h"
#include "fuzz/RoundTrip.h"

namespace zaf::fuzz {
namespace {

constexpr std::size_t kLongestName = 31;

std::FILE* OpenBuffer() {
#ifdef _WIN32
  return std::tmpfile();
#else
  static char buffer[1 << 18];
  return fmemopen(buffer, sizeof buffer, "w+b");
#endif
}

/// Saves in the legacy form; empty if the file exceeds the buffer.
std::string SaveToLegacy(TZanfoFile& file) {
  TDataFile data(OpenBuffer());
  CData content;
  const bool is_saved = file.SaveLegacy(data) == Status::kOk &&
                        data.ReadBlock(kNoCode, 0, data.GetSize(), content) == Status::kOk;
  return is_saved ? std::string(AsText(content.Bytes())) : std::string();
}

/// Whether an enciphered login of the document has a NUL, at which legacy texts end.
bool HasNulInLogin(std::string_view document) {
  constexpr std::string_view kMark = "ZC1:";
  for (std::size_t at = document.find(kMark); at != document.npos;
       at = document.find(kMark, at + 1)) {
    CCipherText text(document.substr(at, document.find('<', at) - at));
    text.Decipher();
    if (text.View().find('\0') != std::string_view::npos) return true;
  }
  return false;
}

/// Whether the legacy form can represent the document: it refers to parents by their names, which
/// are short and ignore case, adds a line feed to each carriage return of an output, omits the
/// parameters of mail, and gives all columns of one name the same list items.
bool FitsLegacyFile(const TZanfoFile& file, std::string_view document) {
  if (test::Count(document, "<InputListItem") > 0 && test::Count(document, "<InputOptions") > 1)
    return false;
  if (HasNulInLogin(document)) return false;
  if (document.find('\r') != document.npos || document.find("<MailAction") != document.npos ||
      document.find("UseDevelopmentDataSource") != document.npos)
    return false;
  std::set<std::string> names;
  for (const TActionEntry* entry = file.GetApplication().actions.GetRoot(); entry != nullptr;
       entry = TActionTree::GetNext(*entry)) {
    std::string name(entry->action->GetName().View());
    if (name.empty() || name.size() > kLongestName || name.find('\0') != name.npos) return false;
    std::transform(name.begin(), name.end(), name.begin(), ToUpper);
    if (!names.insert(std::move(name)).second) return false;
  }
  return true;
}

void RequireThatLegacyFileTellsAll(TZanfoFile& file, const std::string& document) {
  if (!FitsLegacyFile(file, document)) return;
  const std::string legacy = SaveToLegacy(file);
  if (legacy.empty()) return;
  TZanfoFile again;
  again.SetKind(file.GetApplication().kind);
  Require(LoadBytes(legacy, again) == Status::kOk, "a legacy file loads");
  const std::string next = SaveToXml(again);
  if (next == document) return;
  std::fprintf(stderr, "%s\nbecomes\n%s\n", document.c_str(), next.c_str());
  Require(false, "a legacy file tells all that a document tells");
}

}  // namespace
}  // namespace zaf::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zaf;
  TZanfoFile file;
  if (fuzz::LoadBytes({reinterpret_cast<const char*>(data), size}, file) != Status::kOk) return 0;
  const std::string document = fuzz::SaveToXml(file);
  fuzz::RequireThatLegacyFileTellsAll(file, document);
  fuzz::RequireThatDocumentStays(document);
  return 0;
}
