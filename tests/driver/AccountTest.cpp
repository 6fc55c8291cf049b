// Checks the account of a legacy file's bytes: changes bytes and compares the documents.

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>

#include "fields/TByteAccount.h"
#include "foundation/TMemoryFile.h"
#include "tests/support/Convert.h"
#include "tests/support/LegacyFile.h"

namespace zaf {
namespace {

using test::LegacyFile;

struct TObserver final : TLossObserver {
  void OnLoss(TLoss&&) override {}
  TByteAccount* GetAccount() override { return &account; }
  TByteAccount account;
};

/// The XML document of a file; empty if it is refused.
std::string Convert(std::string_view bytes, TObserver* observer = nullptr) {
  TDataFile data(AsBytes(bytes));
  TZanfoFile file;
  file.SetObserver(observer);
  TMemoryFile document;
  if (file.Load(data, nullptr) != Status::kOk ||
      file.Save(document, nullptr, Protection::kPlain) != Status::kOk)
    return {};
  return std::string(AsText(document.GetBytes()));
}

/// Sections in which bytes that are reported as carried may have no effect, and why.
struct TException {
  std::string_view codes;
  std::string_view reason;
};
constexpr TException kExceptions[] = {
    {"blok cmit dbug dflt expd iret mpgs push rdro totr", "a flag is set while any bit is"},
    {"eact flav htyp ilvl lsgn plat type", "numbers without a keyword are written as one"},
    {"join dltj", "so are operators; records of older sizes count as a whole"},
    {"ordr lsrt", "every direction but one word is the other"},
    {"cols slct grup valu crit have", "records of older sizes count as a whole"},
    {"scit lcit dcit icol", "flags and kinds; records of other sizes count as a whole"},
    {"sfvt dfvt fval", "items belong to columns that they name, and count as a whole"},
    {"ieei weit", "an if cuts its operators to four characters"},
    {"agit", "only a cookie has an expiry, a path and a domain, which others have room for"},
    {"flmd", "several letters are one mode, of which one byte tells"},
    {"fnvr mccr mctp vbls", "an operation on a file has only some of its fields"},
    {"aevt aevx exev", "the last of these sections replaces the others"},
};

bool IsException(std::string_view code) {
  return std::ranges::any_of(kExceptions, [&](const TException& exception) {
    return exception.codes.find(code) != std::string_view::npos;
  });
}

/// Returns the errors in the account of these bytes.
std::set<std::string> FaultsOf(const std::string& bytes, std::size_t most_per_range) {
  TObserver observer;
  const std::string document = Convert(bytes, &observer);
  TByteAccount& account = observer.account;
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
            : TextOf(account.GetSections()[range.section].code) + " of " +
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
      if (!changes && is_carried && IsException(section.substr(0, 4))) break;
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
      for (const std::string& fault : FaultsOf(test::ReadFile(entry.path()), 6))
        faults[fault] += entry.path().filename().string() + " ";
    }
  for (const auto& [fault, files] : faults) ADD_FAILURE() << fault << ": " << files;
}

TEST(Account, HasEveryClass) {
  LegacyFile file;
  file.Text("titl", "first").Text("titl", "last").Text("form", "none").Action("cntr", "R");
  file.Text("cmnt", "of the root").Action("srch", "S", "R").Text("xyzw", "unknown");
  file.Payload("assn", std::string(288, 'a')).Text("host", std::string("host\0rest", 9));
  const std::string bytes = file.Bytes() + "unreferenced";
  EXPECT_THAT(FaultsOf(bytes, 1000), testing::IsEmpty());
  TObserver observer;
  static_cast<void>(Convert(bytes, &observer));
  std::map<ByteUse, std::size_t> sums;
  for (const TByteAccount::TRange& range : observer.account.TakeRanges(bytes.size()))
    sums[range.use] += range.end - range.offset;
  EXPECT_THAT(sums,
              testing::ElementsAre(
                  testing::Pair(ByteUse::kStructure, 3 * 48 + 10 * 12),
                  testing::Pair(ByteUse::kCarried, sizeof "last" + sizeof "R" + sizeof "host"),
                  testing::Pair(ByteUse::kDropped, sizeof "first" + sizeof "none" +
                                                       sizeof "of the root" + 288 + sizeof "rest"),
                  testing::Pair(ByteUse::kUnknown, sizeof "unknown"),
                  testing::Pair(ByteUse::kUnreferenced, sizeof "unreferenced" - 1)));
}

}  // namespace
}  // namespace zaf
