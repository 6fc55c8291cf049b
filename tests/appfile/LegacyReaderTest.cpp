#include <gtest/gtest.h>

#include "appfile/LegacyReader.h"
#include "tests/support/Convert.h"
#include "tests/support/LegacyFile.h"

namespace zaf {
namespace {

using test::LegacyFile;
using test::TLoadedFile;

/// The names of a tree, depth first, each with that of its parent: "child<parent ...".
std::string Shape(const TZanfoFile& file) {
  std::string shape;
  for (const TActionEntry* entry = file.GetApplication().actions.GetRoot(); entry != nullptr;
       entry = TActionTree::GetNext(*entry)) {
    shape.append(entry->action->GetName().View()).append("<");
    shape.append(entry->parent->action->GetName().View()).append(" ");
  }
  return shape;
}

constexpr std::string_view kRoot = "ContainerSpecif__1";

TEST(LegacyReader, FirstActionThatIsNoContainerHangsUnderTheFixedRoot) {
  const TLoadedFile file(LegacyFile().Action("null", "A", "ignored").Action("null", "B").Bytes());
  EXPECT_EQ(Shape(file),
            "ContainerSpecif__1<ContainerSpecif__1 A<ContainerSpecif__1 B<ContainerSpecif__1 ");
  const TQuerySpecification& last = *file.GetApplication().actions.GetRoot()->last_child->action;
  EXPECT_EQ(last.GetParentName().View(), kRoot);
}

TEST(LegacyReader, ActionsHangUnderTheNearestEntryAboveThatBearsTheName) {
  LegacyFile file;
  file.Action("cntr", "Root").Action("null", "A", "root").Action("null", "B", "A");
  file.Action("null", "C", "B").Action("null", "D", "a");
  EXPECT_EQ(Shape(TLoadedFile(file.Bytes())), "Root<Root A<Root B<A C<B D<A ");
}

struct StatusCase {
  const char* name;
  LegacyFile file;
  Status status;
  const char* shape = "";
};

class LegacyReaderStatus : public testing::TestWithParam<StatusCase> {};

TEST_P(LegacyReaderStatus, IsAsSpecified) {
  TZanfoFile file;
  EXPECT_EQ(test::LoadBytes(GetParam().file.Bytes(), file), GetParam().status);
  EXPECT_EQ(Shape(file), GetParam().shape);
}

constexpr std::uint32_t kHuge = 0xFFFFFFFF;

INSTANTIATE_TEST_SUITE_P(
    Files, LegacyReaderStatus,
    testing::Values(
        StatusCase{"ShortHeader", LegacyFile().TruncateTo(47), Status::kFailure},
        StatusCase{"FormatTooOld", LegacyFile("appl", 0x01000000), Status::kUnsupportedFormat},
        StatusCase{"FormatTooNew", LegacyFile("appl", 0x01000004), Status::kUnsupportedFormat},
        StatusCase{"FormatNegative", LegacyFile("appl", kHuge), Status::kUnsupportedFormat},
        StatusCase{"NoActions", LegacyFile(), Status::kOk},
        StatusCase{"MapCountTooGreat", LegacyFile().Action("null", "A").SetNumber(12, 2),
                   Status::kMalformed},
        StatusCase{"MapCountHuge", LegacyFile().Action("null", "A").SetNumber(12, kHuge),
                   Status::kMalformed},
        StatusCase{"MapBeyondTheEnd", LegacyFile().Action("null", "A").SetNumber(8, kHuge),
                   Status::kMalformed},
        StatusCase{"EmptyMapBeyondTheEnd", LegacyFile().SetNumber(8, kHuge), Status::kOk},
        StatusCase{"ActionHeaderCut", LegacyFile().Payload("head", ""), Status::kFailure},
        StatusCase{"ParentIsNoAncestor",
                   LegacyFile()
                       .Action("cntr", "R")
                       .Action("null", "A", "R")
                       .Action("null", "B", "R")
                       .Action("null", "C", "A"),
                   Status::kMalformed, "R<R A<R B<R "},
        StatusCase{"EmptyParentNeedsTheFixedName",
                   LegacyFile().Action("cntr", "R").Action("null", "A"), Status::kMalformed,
                   "R<R "},
        StatusCase{"NewerActionEndsTheLoad",
                   LegacyFile()
                       .Action("cntr", "R")
                       .Action("null", "A", "R", 0x01000004)
                       .Action("null", "B", "R"),
                   Status::kOk, "R<R "},
        StatusCase{"OlderActionIsRead",
                   LegacyFile().Action("cntr", "R", "", 0).Action("null", "A", "R", 0x01000003),
                   Status::kOk, "R<R A<R "},
        StatusCase{"ActionMapNotWholeReadsNothing",
                   LegacyFile().Action("cntr", "R").Text("cmnt", "c").SetNumber(48 + 12, kHuge),
                   Status::kOk, "R<R "},
        StatusCase{"EmptySectionAtTheEndFails",
                   LegacyFile()
                       .Payload("titl", "")
                       .SetNumber(48, 0x7469746C)
                       .SetNumber(52, 60)
                       .SetNumber(56, 0),
                   Status::kFailure},
        StatusCase{"UnknownSectionsAreNotRead",
                   LegacyFile().Payload("xxxx", "").SetNumber(52, kHuge).SetNumber(56, kHuge),
                   Status::kOk}),
    [](const testing::TestParamInfo<StatusCase>& test_case) { return test_case.param.name; });

TEST(LegacyReader, RunOnlyFileIsScrambledAndMayBeRefused) {
  const std::string bytes = LegacyFile("rdoc").Text("titl", "Till").Action("cntr", "R").Bytes();
  const TLoadedFile file(bytes);
  EXPECT_TRUE(file.IsRunOnly());
  EXPECT_EQ(file.GetApplication().title.View(), "Till");
  TDataFile data(AsBytes(bytes));
  TZanfoFile refused;
  EXPECT_EQ(refused.Load(data, nullptr, RunOnlyFiles::kRefused), Status::kRunOnlyNotAllowed);
  EXPECT_EQ(Shape(refused), "");
}

}  // namespace
}  // namespace zaf
