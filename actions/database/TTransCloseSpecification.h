#pragma once

#include "actions/database/TSourceSpecification.h"

namespace zaf {

/// The end-transaction action: ends a transaction by commit or rollback. It has a data source in
/// legacy files only: its element does not refer to one. kMalformed when the end type in a document
/// has an unknown keyword.
class TTransCloseSpecification final
    : public TTableSpecification<TTransCloseSpecification, TSourceSpecification> {
 public:
  static constexpr FourCharCode kTypeCode = Code("endt");
  static constexpr std::string_view kElement = "EndTransactionAction";
  static constexpr std::string_view kLabel = "[Close Transaction] ";
  static std::span<const TProperty> Properties();

  /// Every end type other than rollback is a commit.
  [[nodiscard]] bool IsCommit() const;
  /// An operation of the server's run time.
  virtual void ReleaseConnection() {}

  /// In older files the section "plat" (platform) is the end type: only "mac " commits.
  Status ReadLegacyProperty(const TLegacySection& section) override;
  /// The label, how the transaction ends, and the name.
  void GetDisplayName(CText& name) const override;
  Status WriteXml(TXmlWriteContext& context, dom::Element element,
                  dom::Element parent) const override;
  Status ReadXml(const TXmlReadContext& context, dom::Element element) override;

 private:
  std::int32_t end_type_ = 0;
};

}  // namespace zaf
