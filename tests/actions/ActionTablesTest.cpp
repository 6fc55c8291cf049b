// Walks the tables of all action classes: what every row of every class has to keep.

#include <cstdio>
#include <gtest/gtest.h>
#include <set>
#include <string>

#include "actions/AllActions.h"
#include "appfile/TQuerySpecificationServer.h"
#include "tests/support/Convert.h"
#include "tests/support/LegacyFile.h"

namespace zaf {
namespace {

/// All rows of a class, those of its parts included.
void Collect(std::span<const TProperty> rows, std::vector<const TProperty*>& all) {
  for (const TProperty& row : rows) {
    if (row.codec == nullptr) continue;
    all.push_back(&row);
    Collect(row.codec->Nested(), all);
  }
}

/// Reads one section, made of `payload`, into an action.
Status ReadSection(TQuerySpecification& action, FourCharCode code, std::string_view payload) {
  TDataFile file(AsBytes(payload));
  return action.ReadLegacyProperty(
      {&file, code, 0, static_cast<std::uint32_t>(payload.size()), &action});
}

/// Writes the action's legacy record and reads it into `copy`.
void WriteAndReadBack(const TQuerySpecification& action, TQuerySpecification& copy) {
  std::FILE* const stream = std::tmpfile();
  TDataFile written(stream);
  std::uint32_t size = 0;
  TRecordHeader header;
  ASSERT_EQ(action.WriteLegacy(written, size, header), Status::kOk);
  std::string bytes(written.GetSize(), '\0');
  std::rewind(stream);
  ASSERT_EQ(std::fread(bytes.data(), 1, bytes.size(), stream), bytes.size());
  TDataFile file(AsBytes(bytes));
  EXPECT_EQ(copy.ReadLegacy(&file, header), Status::kOk);
}

template <class Action>
class ActionTable : public testing::Test {};

TYPED_TEST_SUITE(ActionTable, TAllActions<testing::Types>);

TYPED_TEST(ActionTable, NamesNoCodeAndNoElementTwice) {
  std::vector<const TProperty*> rows;
  Collect(TypeParam::Properties(), rows);
  std::set<FourCharCode> codes;
  for (const TProperty* row : rows) {
    const std::string code(Characters(row->code).data(), 4);
    EXPECT_TRUE(row->code == kNoCode || codes.insert(row->code).second) << code;
  }
  std::set<std::string_view> names;
  for (const TProperty& row : TypeParam::Properties())
    EXPECT_TRUE(row.name.empty() || names.insert(row.name).second) << row.name;
}

TYPED_TEST(ActionTable, EveryLegacyFieldCountsAndIsClonedAndWrittenBack) {
  std::vector<const TProperty*> rows;
  Collect(TypeParam::Properties(), rows);
  for (const TProperty* row : rows) {
    // The place in the tree is no content.
    if (row->code == kNoCode || row->code == Code("pare")) continue;
    SCOPED_TRACE(std::string(Characters(row->code).data(), 4));
    const TypeParam initial;
    TypeParam changed;
    std::string payload;
    for (const std::string& candidate : test::SectionPayloads()) {
      TypeParam attempt;
      if (ReadSection(attempt, row->code, candidate) == Status::kOk && !attempt.IsEqual(initial)) {
        payload = candidate;
        EXPECT_EQ(ReadSection(changed, row->code, candidate), Status::kOk);
        break;
      }
    }
    ASSERT_FALSE(payload.empty()) << "no payload makes a difference";
    const std::unique_ptr<TQuerySpecification> clone = changed.Clone(nullptr);
    EXPECT_TRUE(clone->IsEqual(changed));
    TypeParam target;
    EXPECT_EQ(changed.Clone(&target), nullptr);
    EXPECT_TRUE(target.IsEqual(changed));
    EXPECT_FALSE(initial.IsEqual(changed));
    // The first is only read; list items are dropped unless their column is there.
    if (row->code == Code("dflt") || row->code == Code("fval") || row->code == Code("sfvt") ||
        row->code == Code("dfvt"))
      continue;
    TypeParam copy;
    WriteAndReadBack(changed, copy);
    EXPECT_TRUE(copy.IsEqual(changed));
  }
}

TYPED_TEST(ActionTable, ElementReadsBackAsTheClass) {
  const TQuerySpecificationServer server;
  // An external action has an element for each of its kinds.
  const std::string_view element =
      TypeParam::kElement.empty()
          ? (TypeParam::kTypeCode == Code("adll") ? "ExternalDLLAction" : "AppleEventAction")
          : TypeParam::kElement;
  const auto action = server.CreateByElement(element);
  ASSERT_NE(action, nullptr);
  const bool is_written_as_the_base = TypeParam::kElement == TQuerySpecification::kElement;
  EXPECT_EQ(action->GetTypeCode(),
            is_written_as_the_base ? TQuerySpecification::kTypeCode : TypeParam::kTypeCode);
  const auto by_type = server.CreateByType(TypeParam::kTypeCode);
  EXPECT_EQ(by_type->GetTypeCode(), TypeParam::kTypeCode);
}

}  // namespace
}  // namespace zaf
