#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "actions/TActionEntry.h"
#include "fields/TLegacySection.h"
#include "fields/TProperty.h"
#include "fields/TRecordHeader.h"
#include "fields/TSectionWriter.h"
#include "fields/TXmlContext.h"
#include "foundation/Attempt.h"
#include "foundation/CText.h"
#include "foundation/FourCharCode.h"
#include "foundation/Status.h"
#include "foundation/TOwningArray.h"

namespace zaf {

struct TApplication;

/// An assignment of an action: a variable and its value.
struct TGlobalAssignment {
  CText name;
  CText value;
};
using CGlobalAssignmentArray = TOwningArray<TGlobalAssignment>;

/// The name of an action as stored in legacy files: cut to 31 bytes.
inline TFixedText<kRecordNameWidth> ToRecordName(std::string_view name) {
  TFixedText<kRecordNameWidth> record_name;
  record_name.Set(name);
  return record_name;
}

/// State of the server's run time. It is cloned, but neither compared nor written.
struct TRunTimeState {
  std::uint32_t word = 0;
  std::uint32_t second_word = 0;
  std::uint32_t flag = 0;
};

/// The base class of every action of an application, and itself the results action. It has the
/// fields that all actions share and defines the virtual operations by which an application loads
/// an action from a legacy file, writes it back, writes it as an XML element and reads it from one.
/// They are declared in the order of a fixed table.
///
/// An action owns its texts and lists. The nesting of actions is kept in the application's tree, to
/// which an action has a link that it does not own; the tree outlives its use.
///
/// No operation throws; insufficient memory is a failure status, null or false.
class TQuerySpecification : public TRecordConverter {
 public:
  static constexpr FourCharCode kTypeCode = Code("null");
  static constexpr std::string_view kElement = "ResultAction";
  static constexpr std::string_view kLabel = "[Results Action] ";
  static std::span<const TProperty> Properties();

  TQuerySpecification() = default;
  TQuerySpecification(const TQuerySpecification&) = default;
  TQuerySpecification& operator=(const TQuerySpecification&) = default;

  /// The base class has no lists and converts no record.
  Conversion ConvertLegacyRecord(FourCharCode code, ByteView legacy_record,
                                 std::span<std::byte> record) override;
  virtual ~TQuerySpecification() = default;
  /// Copies every field into `target`, an action of the same class; null is replaced by a new one.
  /// kFailure when memory runs out: a null target then remains null, another one is undefined.
  virtual Status Clone(std::unique_ptr<TQuerySpecification>& target) const;
  /// The size of the action's legacy record in bytes: that of its class, after a load plus the
  /// sizes of its name and all its sections.
  [[nodiscard]] virtual std::uint32_t GetRecordSize() const;
  /// Whether both have the same type and content. Names and places do not count.
  [[nodiscard]] virtual bool IsEqual(const TQuerySpecification& other) const;
  /// Reads the record that `header` begins, section by section. The first section that fails ends
  /// it with its status; what was read before is kept. If the file ends within the section map,
  /// nothing is loaded and the status is kOk; kNoFile without a file.
  virtual Status ReadLegacy(TDataFile* file, const TRecordHeader& header);
  /// Reads one section into the property with its code; a section with an unknown code is not read
  /// and is kOk; kNoFile without a file.
  virtual Status ReadLegacyProperty(const TLegacySection& section);
  /// The codes that ReadLegacyProperty handles without a row of this class.
  static constexpr FourCharCode kReadByHand[] = {Code("assn"), Code("assx")};
  /// Writes the record's sections and their map at `offset`, advances `offset` past them, and fills
  /// `header`, which the caller writes.
  virtual Status WriteLegacy(TDataFile& file, std::uint32_t& offset, TRecordHeader& header) const;
  /// Writes the sections of all properties. The parent's name is cut like that in a record header.
  virtual Status WriteLegacyProperties(TSectionWriter& out) const;
  // Hooks of the server's run time, which a conversion never calls.
  virtual void PrepareRun() {}
  virtual bool CanRun() const { return true; }
  virtual bool CanFollow() const { return true; }
  virtual void BeginRun() {}
  virtual void EndRun() {}
  /// The entry that a walk visits after this action; null at the end. A plain action continues with
  /// its next sibling, a container into its children.
  [[nodiscard]] virtual const TActionEntry* GetNextInTree() const;
  /// Whether this action has no children.
  [[nodiscard]] virtual bool IsLeaf() const;
  /// A number that distinguishes two actions of one type at run time; 0 if nothing does.
  [[nodiscard]] virtual std::int32_t GetRunDifference(const TQuerySpecification&) const {
    return 0;
  }
  virtual std::int32_t GetRunState() const { return 0; }
  virtual std::int32_t GetRunResult() const { return 0; }
  /// Sets `name` to the action's name after the label of its class.
  virtual void GetDisplayName(CText& name) const;
  virtual void GetResults(CText& text) const;
  virtual void ResetRun() {}
  // The properties that an editor lists, numbered from 1: name, comments, results, no-results and
  // error text.
  virtual std::int32_t GetFirstProperty(std::int32_t& id, std::uint32_t& flags) const;
  /// 0; kNoMoreProperties at the end; kUnknownProperty for an unknown number.
  virtual std::int32_t GetNextProperty(std::int32_t& id, std::uint32_t& flags) const;
  [[nodiscard]] virtual bool IsProperty(std::int32_t id) const;
  /// 0, or kUnknownProperty.
  virtual std::int32_t GetProperty(CText& text, std::int32_t id) const;
  /// Always returns kUnknownProperty, even on success: callers rely on that. Null is ignored.
  virtual std::int32_t SetProperty(const char* text, std::int32_t id);
  virtual void BeginEdit() {}
  virtual void EndEdit() {}
  /// Writes the action into `element`, which a derived class has appended to `parent`; if it is
  /// null, appends an element of its own.
  virtual Status WriteXml(TXmlWriteContext& context, dom::Element element,
                          dom::Element parent) const;
  /// Reads the action from its element. kMalformed when a derived class refuses a keyword; what was
  /// read before is kept.
  virtual Status ReadXml(const TXmlReadContext& context, dom::Element element);

  static constexpr std::int32_t kNoMoreProperties = -1;
  static constexpr std::int32_t kUnknownProperty = -2;

  [[nodiscard]] const CText& GetName() const { return name_; }
  void SetName(std::string_view name) { name_ = name; }
  /// The number of its record for the loss reporter that it was loaded with; 0 without a reporter.
  [[nodiscard]] std::uint32_t GetRecordNumber() const { return record_number_; }
  [[nodiscard]] FourCharCode GetTypeCode() const { return type_code_; }
  /// The name of the parent action: as in the legacy file or, for an action in a tree without such
  /// a name, that of the parent entry.
  [[nodiscard]] const CText& GetParentName() const;
  void SetParentName(std::string_view name) { parent_name_ = name; }
  // The output blocks; null is ignored.
  void SetResults(const char* text) {
    if (text != nullptr) results_ = text;
  }
  void SetNoResults(const char* text) {
    if (text != nullptr) no_results_ = text;
  }
  void SetError(const char* text) {
    if (text != nullptr) error_ = text;
  }
  void SetComments(const char* text) {
    if (text != nullptr) comments_ = text;
  }
  /// The application of the action; not owned, null outside of an application.
  void SetOwner(const TApplication* owner) { owner_ = owner; }
  [[nodiscard]] const TApplication* GetOwner() const { return owner_; }
  [[nodiscard]] TRunTimeState& GetRunTime() { return run_time_; }
  [[nodiscard]] const TRunTimeState& GetRunTime() const { return run_time_; }
  /// The action's entry in the application's tree; not owned.
  void SetTreeEntry(const TActionEntry* entry) { tree_entry_ = entry; }
  [[nodiscard]] const TActionEntry* GetTreeEntry() const { return tree_entry_; }

 protected:
  // Common content of all actions, for classes that omit a part of their bases' content.
  void WriteCommonXml(TXmlWriteContext& context, dom::Element element) const;
  Status ReadCommonXml(const TXmlReadContext& context, dom::Element element);
  [[nodiscard]] bool HasEqualCommonContent(const TQuerySpecification& other) const;

  /// Adds the rows of this class to the index of the class of `object`, which is this object.
  void AddLegacyRows(TCodeIndex& index, const void* object) const {
    index.Add(Properties(), object, this);
  }
  void SetTypeCode(FourCharCode code) { type_code_ = code; }
  void SetRecordSize(std::uint32_t size) { record_size_ = size; }
  void SetResultsText(std::string_view text) { results_ = text; }

 private:
  Status ReadSections(TDataFile* file, const TRecordHeader& header);
  Status WriteSections(TDataFile& file, std::uint32_t& offset, TRecordHeader& header) const;
  Status ReadAssignments(const TLegacySection& section, std::size_t value_width);
  Status WriteAssignments(TSectionWriter& out) const;
  Status WriteAssignments(FourCharCode code, std::size_t value_width, TSectionWriter& out) const;

  static constexpr std::int32_t kFirstPropertyId = 1;
  static constexpr std::int32_t kLastPropertyId = 5;
  /// The properties' texts, in the order of their numbers.
  static CText TQuerySpecification::*const kPropertyTexts[kLastPropertyId];

  CText results_;
  CText no_results_;
  CText error_;
  CText comments_;
  CGlobalAssignmentArray assignments_;
  std::uint32_t format_ = 0;  ///< Format number of the record that the action was loaded from.
  std::uint32_t record_number_ = 0;
  std::uint32_t record_size_ = 168;
  CText name_;
  FourCharCode type_code_ = kTypeCode;
  bool push_results_ = false;
  CText parent_name_;  ///< Empty: that of the parent entry. A copy for each child could be huge.
  bool is_expanded_ = false;
  bool has_long_assignments_ = false;  ///< A section of long values was read; it takes precedence.
  const TApplication* owner_ = nullptr;
  const TActionEntry* tree_entry_ = nullptr;
  TRunTimeState run_time_;
};

/// Implements Clone for an action of class `Action`.
template <class Action>
Status CloneAction(const Action& action, std::unique_ptr<TQuerySpecification>& target) {
  const bool is_new = target == nullptr;
  const auto clone = [&] {
    if (is_new)
      target = std::make_unique<Action>(action);
    else
      static_cast<Action&>(*target) = action;
    return Status::kOk;
  };
  const Status status = Attempt(clone, Status::kFailure);
  if (is_new && status != Status::kOk) target.reset();
  return status;
}

}  // namespace zaf
