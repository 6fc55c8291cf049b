#include <cstdio>
#include <gtest/gtest.h>
#include <string>

#include "actions/flow/TContainerSpecification.h"
#include "appfile/LegacyReader.h"
#include "tests/support/AllocationFault.h"
#include "tests/support/Convert.h"
#include "tests/support/LegacyFile.h"

namespace zaf {
namespace {

using test::DocumentWith;
using test::LegacyFile;
using test::LoadBytes;
using test::SaveToLegacy;

TEST(LegacyWriter, ApplicationReadsBackEqualAndItsSectionsAreInOrder) {
  LegacyFile legacy("rdoc");
  std::string order;
  for (const char* code : {"dsrc", "host", "htyp", "data", "user", "pass", "dbms", "form", "asts",
                           "athr", "titl", "vers", "cmnt", "dbug"}) {
    order += code;
    const bool is_number = order.ends_with("htyp") || order.ends_with("dbug");
    is_number ? legacy.Number(code, 0x6F646263) : legacy.Text(code, "secret");
  }
  TZanfoFile file;
  ASSERT_EQ(LoadBytes(legacy.Action("cntr", "R").Action("null", "A", "R").Bytes(), file),
            Status::kOk);
  std::string written = SaveToLegacy(file);
  TZanfoFile again;
  ASSERT_EQ(LoadBytes(written, again), Status::kOk);
  EXPECT_TRUE(again.IsEqual(file));
  EXPECT_TRUE(again.IsRunOnly());
  EXPECT_EQ(again.GetApplication().password.View(), "secret");
  EXPECT_EQ(written.find("secret"), std::string::npos);
  again.SetRunOnly(false);
  written = SaveToLegacy(again);
  std::string codes;
  for (std::size_t at = written.find("dsrc"); codes.size() < order.size(); at += 12)
    codes += written.substr(at, 4);
  EXPECT_EQ(codes, order);
}

/// Actions and their parents, and whether a legacy file can distinguish their names.
struct NamesCase {
  const char* name;
  std::string actions;  ///< Their elements.
  std::string program;
  bool is_written;
};

class LegacyNames : public testing::TestWithParam<NamesCase> {};

TEST_P(LegacyNames, AreCutAlikeOrRefused) {
  TZanfoFile file;
  ASSERT_EQ(LoadBytes(DocumentWith(GetParam().actions, GetParam().program), file), Status::kOk);
  TDataFile stream(std::tmpfile());
  EXPECT_EQ(file.SaveLegacy(stream), GetParam().is_written ? Status::kOk : Status::kFailure);
  EXPECT_EQ(stream.GetSize() != 0, GetParam().is_written);
  if (!GetParam().is_written) return;
  TZanfoFile again;
  ASSERT_EQ(LoadBytes(SaveToLegacy(file), again), Status::kOk);
  EXPECT_TRUE(again.IsEqual(file));
  EXPECT_EQ(SaveToLegacy(again), SaveToLegacy(file));
}

std::string Action(const std::string& name) { return "<IfAction ID='" + name + "'/>"; }
std::string Reference(const std::string& name, const std::string& content = {}) {
  return "<ActionRef Ref='" + name + "'>" + content + "</ActionRef>";
}
const std::string kLong(31, 'n');

INSTANTIATE_TEST_SUITE_P(
    Names, LegacyNames,
    testing::Values(
        NamesCase{"BecomeEqual", Action(kLong + "a") + Action("c") + Action(kLong + "b"),
                  Reference(kLong + "a", Reference("c")), false},
        NamesCase{"CutParent", Action(kLong + "ame") + Action("c") + Action("d"),
                  Reference(kLong + "ame", Reference("c", Reference("d"))), true},
        NamesCase{"CutLeaves", Action(kLong + "1") + Action(kLong + "2"), "", true},
        NamesCase{"CutParentOfTwoCases", Action(kLong) + Action("N" + kLong) + Action("c"),
                  Reference("N" + kLong, Reference("c")), false},
        NamesCase{"SameParent", Action("a") + Action("c") + Action("A"),
                  Reference("a", Reference("c")), false},
        NamesCase{"NamelessParent", Action("") + Action("c"), Reference("", Reference("c")), false},
        NamesCase{"NamelessLeaves", Action("") + Action(""), "", true},
        NamesCase{"NameOfTheRoot", Action("containerSpecif__1"), "", false}),
    [](const testing::TestParamInfo<NamesCase>& test_case) { return test_case.param.name; });

TEST(ActionTree, RootAloneEqualsItsDocument) {
  const auto equals_its_document = [](const LegacyFile& legacy) {
    TZanfoFile file;
    TZanfoFile again;
    EXPECT_EQ(LoadBytes(legacy.Bytes(), file), Status::kOk);
    EXPECT_EQ(LoadBytes(test::SaveToXml(file), again), Status::kOk);
    EXPECT_EQ(again.IsEqual(file), file.IsEqual(again));
    return again.IsEqual(file);
  };
  EXPECT_TRUE(equals_its_document(LegacyFile()));
  EXPECT_TRUE(equals_its_document(LegacyFile().Action("cntr", "R")));
  EXPECT_FALSE(equals_its_document(LegacyFile().Action("cntr", "R").Text("cmnt", "lost")));
}

TEST(Load, ReportsEachActionOnceAndAttachesIt) {
  struct TNames final : TLoadProgress {
    void OnAction(const TQuerySpecification& action) override {
      names.append(action.GetName().View()).append(" ");
    }
    std::string names;
  };
  const std::string legacy =
      LegacyFile().Action("null", "A").Action("if  ", "B").Action("null", "C", "B").Bytes();
  for (const std::string& bytes : {legacy, test::ToXml(legacy)}) {
    TDataFile data(AsBytes(bytes));
    TZanfoFile file;
    TNames progress;
    ASSERT_EQ(file.Load(data, nullptr, RunOnlyFiles::kAllowed, &progress), Status::kOk);
    EXPECT_EQ(progress.names, "A B C ");
    for (const TActionEntry* entry = file.GetApplication().actions.GetRoot(); entry != nullptr;
         entry = TActionTree::GetNext(*entry))
      EXPECT_EQ(entry->action->GetOwner(), &file.GetApplication());
  }
}

/// Makes each allocation of `operation` fail in turn, until all succeed.
template <class Operation>
void ExpectFailures(Operation operation) {
  bool has_failed = true;
  for (std::uint64_t failing = 0; has_failed; ++failing) {
    const test::TAllocationFault fault(failing);
    const Status status = operation();
    has_failed = fault.GetRequestCount() > failing;
    ASSERT_EQ(status, has_failed ? Status::kFailure : Status::kOk) << failing;
  }
}

TEST(Memory, ThatRunsOutIsAFailureOfEachOperation) {
  const std::string legacy =
      LegacyFile().Action("cntr", "R").Action("mail", "A", "R").Text("body", "x").Bytes();
  for (const std::string& bytes : {legacy, test::ToXml(legacy)}) {
    TZanfoFile whole;
    ASSERT_EQ(LoadBytes(bytes, whole), Status::kOk);
    ExpectFailures([&] {
      TDataFile data(AsBytes(bytes));
      TZanfoFile file;
      const Status status = file.Load(data, nullptr);
      EXPECT_TRUE(status != Status::kOk || file.IsEqual(whole));
      return status;
    });
    const TQuerySpecification& mail =
        *whole.GetApplication().actions.GetRoot()->first_child->action;
    ExpectFailures([&] {
      std::unique_ptr<TQuerySpecification> clone;
      const Status status = mail.Clone(clone);
      EXPECT_EQ(clone == nullptr, status != Status::kOk);
      return status;
    });
  }
  const TQuerySpecificationServer server;
  std::unique_ptr<TQuerySpecification> action;
  ExpectFailures([&] { return server.CreateByElement("IfAction", action); });
  for (const FourCharCode type : {Code("srch"), Code("????")})
    ExpectFailures([&] {
      action = server.CreateByType(type);
      return action == nullptr ? Status::kFailure : Status::kOk;
    });
  ExpectFailures([&] {
    std::unique_ptr<TQuerySpecification> placed(new (std::nothrow) TQuerySpecification);
    return placed == nullptr ? Status::kFailure : TActionTree().Place(std::move(placed));
  });
}

}  // namespace
}  // namespace zaf
