#pragma once

#include <array>

#include "actions/TTableSpecification.h"
#include "actions/database/TDataSource.h"

namespace zaf {

/// The base of every action that works on a database: it adds the action's data source, and whether
/// the application's default data source takes its place.
class TSourceSpecification : public TTableSpecification<TSourceSpecification, TQuerySpecification> {
 public:
  static constexpr std::string_view kLabel = "[Data Source] ";
  static std::span<const TProperty> Properties();
  /// The sections of every action come first. Whether the default is used is read only.
  static constexpr std::array<FourCharCode, 10> LegacyOrder() {
    return {kNoCode,      Code("htyp"), Code("dsrc"), Code("host"), Code("data"),
            Code("user"), Code("pass"), Code("dbms"), Code("dusr"), Code("dpas")};
  }

  TSourceSpecification() { SetRecordSize(368); }

  [[nodiscard]] const TDataSource& GetDataSource() const { return data_source_; }

  /// Whether a section of this code is part of the data source.
  static bool IsDataSource(FourCharCode code);
  Status ReadLegacyProperty(const TLegacySection& section) override;
  static constexpr FourCharCode kReadByHand[] = {Code("htyp")};
  /// kFailure when the users and passwords cannot be enciphered.
  Status WriteXml(TXmlWriteContext& context, dom::Element element,
                  dom::Element parent) const override;
  Status ReadXml(const TXmlReadContext& context, dom::Element element) override;

 private:
  using Table = TTableSpecification<TSourceSpecification, TQuerySpecification>;

  TDataSource data_source_;
  bool uses_default_ = false;
};

}  // namespace zaf
