#include <cstdio>
#include <gtest/gtest.h>
#include <string>

#include "actions/database/TDataSourceIndex.h"
#include "actions/database/TDataSourceWriter.h"
#include "appfile/LegacyReader.h"
#include "tests/support/AllocationFault.h"
#include "tests/support/Convert.h"
#include "tests/support/LegacyFile.h"

namespace zaf {
namespace {

using test::DocumentWith;
using test::LegacyFile;
using test::SaveToLegacy;
using test::TLoadedFile;

TEST(LegacyWriter, ApplicationReadsBackEqualAndItsSectionsAreInOrder) {
  LegacyFile legacy("rdoc");
  std::string order;
  for (const char* code : {"dsrc", "host", "htyp", "data", "user", "pass", "dbms", "form", "asts",
                           "athr", "titl", "vers", "cmnt", "dbug"}) {
    order += code;
    const bool is_number = order.ends_with("htyp") || order.ends_with("dbug");
    is_number ? legacy.Number(code, 0x6F646263) : legacy.Text(code, "secret");
  }
  TLoadedFile file(legacy.Action("cntr", "R").Action("null", "A", "R").Bytes());
  std::string written = SaveToLegacy(file);
  TLoadedFile again(written);
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

TEST(LegacyWriter, FileOfMoreThanOffsetsReachIsRefused) {
  TDataFile stream(std::tmpfile());
  std::uint32_t offset = 0xFFFFFFF0;
  TSectionWriter out(stream, offset);
  EXPECT_EQ(out.Write(Code("cmnt"), CText("longer than 15 bytes")), Status::kFailure);
  EXPECT_EQ(offset, 0xFFFFFFF0);
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
  TLoadedFile file(DocumentWith(GetParam().actions, GetParam().program));
  TDataFile stream(std::tmpfile());
  EXPECT_EQ(file.SaveLegacy(stream), GetParam().is_written ? Status::kOk : Status::kFailure);
  EXPECT_EQ(stream.GetSize() != 0, GetParam().is_written);
  EXPECT_EQ(file.GetErrorPlace().reason.empty(), GetParam().is_written);
  if (!GetParam().is_written) return;
  TLoadedFile again(SaveToLegacy(file));
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
    TLoadedFile file(legacy.Bytes());
    const TLoadedFile again(test::SaveToXml(file));
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

/// Returns the result of `make`, whose allocations all succeed.
template <class Make>
auto WithMemory(Make make) {
  const test::TAllocationFault none(~std::uint64_t{0});
  return make();
}

/// Tries each operation that copies, writes or reads an action. `element` is its element in `root`.
void ExpectFailuresOf(const TQuerySpecification& action, dom::Element root, dom::Element element) {
  const TQuerySpecificationServer server;
  std::unique_ptr<TQuerySpecification> other;
  ExpectFailures([&] {
    other.reset();
    const Status status = action.Clone(other);
    EXPECT_EQ(other == nullptr, status != Status::kOk);
    return status;
  });
  ExpectFailures([&] {
    const dom::Document document =
        WithMemory([] { return dom::DOMImplementation::createDocument(); });
    const dom::Element parent = document.createElement("ZAF");
    TDataSourceWriter data_sources;
    data_sources.SetList(parent);
    TXmlWriteContext context{parent, parent, data_sources};
    const Status status = action.WriteXml(context, {}, parent);
    return document.IsComplete() ? status : Status::kFailure;
  });
  ExpectFailures([&] {
    auto sources =
        WithMemory([&] { return TDataSourceIndex(root.getFirstChildElement("DataSources")); });
    TReferenceBudget references(0);
    const TXmlReadContext context{
        WithMemory([&] { return TOutputIndex(root.getFirstChildElement("Outputs")); }), sources,
        references};
    other = WithMemory([&] { return server.CreateByType(action.GetTypeCode()); });
    return other->ReadXml(context, element);
  });
  TDataFile record(std::tmpfile());
  TRecordHeader header;
  ExpectFailures([&] {
    std::uint32_t size = 0;
    return action.WriteLegacy(record, size, header);
  });
  ExpectFailures([&] {
    other = WithMemory([&] { return server.CreateByType(action.GetTypeCode()); });
    return other->ReadLegacy(&record, header);
  });
}

TEST(Memory, ThatRunsOutIsAFailureOfEachOperation) {
  for (const char* sample : {"checkout.zaf", "order-entry.zaf", "staff-directory.zaf"}) {
    SCOPED_TRACE(sample);
    const std::string legacy = test::ReadFile(std::string(ZAF2XML_SAMPLES "/") + sample);
    TLoadedFile file(legacy);
    std::string text = test::SaveToXml(file);
    for (const std::string& bytes : {legacy, text})
      ExpectFailures([&] {
        TDataFile data(AsBytes(bytes));
        return TZanfoFile().Load(data, nullptr);
      });
    const dom::Document document =
        dom::DOMImplementation::createDocument(std::as_writable_bytes(std::span(text)));
    const dom::Element root = document.getDocumentElement();
    dom::Element element = root.getFirstChildElement("Actions").getFirstChildElement();
    const TActionEntry* entry = file.GetApplication().actions.GetRoot()->first_child;
    for (; entry != nullptr; entry = TActionTree::GetNext(*entry)) {
      ExpectFailuresOf(*entry->action, root, element);
      element = element.getNextSiblingElement();
    }
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
