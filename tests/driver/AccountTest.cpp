// Holds the account of a legacy file's bytes to its word: changes bytes and compares documents.

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <map>
#include <set>
#include <string>

#include "appfile/TZanfoFile.h"
#include "driver/TMemoryFile.h"
#include "fields/TByteAccount.h"
#include "tests/support/LegacyFile.h"

namespace zaf {
namespace {

using test::LegacyFile;

struct TNoLosses final : TLossObserver {
  void OnLoss(const TLoss&) override {}
};

/// The XML document of a file; empty when it is refused.
std::string Convert(std::string_view bytes, TByteAccount* account = nullptr) {
  TDataFile data(AsBytes(bytes));
  TZanfoFile file;
  TNoLosses losses;
  if (account != nullptr) file.SetObserver(&losses);
  file.SetAccount(account);
  TMemoryFile document;
  if (file.Load(data, nullptr) != Status::kOk ||
      file.Save(document, nullptr, Protection::kPlain) != Status::kOk)
    return {};
  return std::string(AsText(document.GetBytes()));
}

/// Why bytes of a section can be changed without consequence although they are called carried.
const std::map<std::string, std::string> kExceptions{};

std::string NameOf(FourCharCode code) { return {Characters(code).data(), 4}; }

/// What the account says wrongly of these bytes.
std::set<std::string> FaultsOf(const std::string& bytes, std::size_t most_per_range) {
  TByteAccount account;
  const std::string document = Convert(bytes, &account);
  std::set<std::string> faults;
  std::uint64_t end = 0;
  for (const TByteAccount::TRange& range : account.TakeRanges(bytes.size())) {
    if (range.offset != end || range.end <= range.offset) faults.insert("a gap");
    end = range.end;
    if (range.use == ByteUse::kStructure) continue;
    const bool is_carried = range.use == ByteUse::kCarried;
    const std::string section =
        range.section == TByteAccount::kNoSection
            ? "unreferenced"
            : NameOf(account.GetSections()[range.section].code) + " of " +
                  account.GetRecords()[account.GetSections()[range.section].record];
    const std::uint64_t step =
        std::max<std::uint64_t>(1, (range.end - range.offset) / most_per_range);
    for (std::uint64_t at = range.offset; at < range.end; at += step) {
      bool changes = false;
      for (const int flip : {0x01, 0x20, 0xFF}) {
        std::string changed = bytes;
        changed[at] = static_cast<char>(changed[at] ^ flip);
        changes = changes || Convert(changed) != document;
      }
      if (changes != is_carried)
        faults.insert(section + (is_carried ? " is not carried" : " is not dropped"));
    }
  }
  if (end != bytes.size()) faults.insert("not the whole file");
  return faults;
}

TEST(Account, TellsWhichBytesDecideTheDocument) {
  std::map<std::string, std::string> faults;
  for (const char* const directory : {ZAF2XML_SAMPLES, ZAF2XML_CORPUS "/legacy"})
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
      if (!entry.is_regular_file() || entry.path().extension() == ".md") continue;
      std::ifstream stream(entry.path(), std::ios::binary);
      const std::string bytes(std::istreambuf_iterator<char>(stream), {});
      for (const std::string& fault : FaultsOf(bytes, 4))
        faults[fault] += entry.path().filename().string() + " ";
    }
  for (const auto& [fault, files] : faults) ADD_FAILURE() << fault << ": " << files;
}

}  // namespace
}  // namespace zaf
