#pragma once

#include "actions/TTableSpecification.h"
#include "foundation/CTextPtrArray.h"

namespace zaf {

/// The file action: reads, writes or deletes a file on the server's host. Owns its texts. The mode
/// selects the operation, and the element has the fields of that operation; the other fields are
/// carried in legacy files only.
class TFileQuerySpecification final
    : public TTableSpecification<TFileQuerySpecification, TQuerySpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("flvt");
  static constexpr std::string_view kElement = "FileAction";
  static constexpr std::string_view kLabel = "[File Action] ";
  static constexpr bool kBaseSectionsFirst = true;
  static std::span<const TProperty> Properties();

  Status WriteXml(TXmlWriteContext& context, dom::Element element,
                  dom::Element parent) const override;
  Status ReadXml(const TXmlReadContext& context, dom::Element element) override;

 private:
  Status WriteElement(TXmlWriteContext& context, dom::Element parent) const;
  Status ReadElement(const TXmlReadContext& context, dom::Element element);
  struct TOperation;
  /// Reports the fields that the operation does not use.
  void ReportUnused(const TOperation& operation, TLossReporter& losses) const;

  [[nodiscard]] static std::span<const TOperation> Operations();

  CText file_name_;
  /// 'd' deletes; 'w' overwrites, 'a' appends, 'e' writes if there is no file; others read.
  char mode_ = 0;
  CText range_or_data_;  ///< The range to read, or the data to write.
  CTextPtrArray variables_;
  CText file_name_variable_;
  CText file_type_;
  CText file_creator_;
};

}  // namespace zaf
