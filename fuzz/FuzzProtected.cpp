// Loads any bytes after the first line of a protected document. A document that was saved protected
// must load again, but not with one of its bytes changed.

#include "fuzz/FuzzSupport.h"
#include "tests/support/NamedChanges.h"

namespace {

/// A position that depends on the input, so that all positions are tried.
std::size_t ChoosePlace(std::string_view bytes, std::size_t begin, std::size_t end) {
  std::uint32_t hash = 0;
  for (const char c : bytes) hash = hash * 31 + static_cast<unsigned char>(c);
  return begin + hash % (end - begin);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zaf;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  std::string line(kProtectedLine);
  line += '\n';
  TZanfoFile file;
  if (fuzz::LoadBytes(bytes, file) != Status::kOk) {
    TZanfoFile damaged;
    static_cast<void>(fuzz::LoadBytes(line.append(bytes), damaged));
    return 0;
  }
  const std::string saved = fuzz::SaveToXml(file, Protection::kProtected);
  fuzz::Require(saved.starts_with(line), "a protected document begins with its line");
  TZanfoFile again;
  fuzz::Require(fuzz::LoadBytes(saved, again) == Status::kOk ||
                    test::FindNamedChanges(fuzz::SaveToXml(file)).contains(test::kNamelessJoin),
                "a protected document loads");
  fuzz::Require(again.IsRunOnly(), "a protected document is run-only");
  std::string damaged = saved;
  const std::size_t place = ChoosePlace(bytes, line.size(), saved.size());
  damaged[place] = static_cast<char>(damaged[place] + 1);
  TZanfoFile refused;
  fuzz::Require(fuzz::LoadBytes(damaged, refused) == Status::kMalformed, "damage is found");
  return 0;
}
