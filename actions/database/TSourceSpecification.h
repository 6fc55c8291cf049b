#pragma once

#include <array>

#include "actions/TTableSpecification.h"
#include "actions/database/TDataSource.h"

namespace zaf {

/// The base of every action that uses a database: adds the action's data source and a switch that
/// replaces it by the application's default one.
class TSourceSpecification : public TTableSpecification<TSourceSpecification, TQuerySpecification> {
 public:
  static constexpr std::string_view kLabel = "[Data Source] ";
  static constexpr bool kBaseSectionsFirst = true;
  static std::span<const TProperty> Properties();
  static constexpr std::array<FourCharCode, 11> LegacyOrder() {
    return {kNoCode,      Code("htyp"), Code("dsrc"), Code("host"), Code("data"), Code("user"),
            Code("pass"), Code("dbms"), Code("dusr"), Code("dpas"), Code("dflt")};
  }

  TSourceSpecification() { SetRecordSize(368); }

  [[nodiscard]] const TDataSource& GetDataSource() const { return data_source_; }

  // Hooks of the server's run time and editor, which have no effect yet.
  void PrepareRun() override {}
  bool CanRun() const override { return true; }
  bool CanFollow() const override { return true; }
  void BeginRun() override {}
  void ResetRun() override {}
  void BeginEdit() override {}
  void EndEdit() override {}
  std::int32_t GetNextProperty(std::int32_t& id, std::uint32_t& flags) const override {
    return TQuerySpecification::GetNextProperty(id, flags);
  }
  [[nodiscard]] bool IsProperty(std::int32_t id) const override {
    return TQuerySpecification::IsProperty(id);
  }
  std::int32_t GetProperty(CText& text, std::int32_t id) const override {
    return TQuerySpecification::GetProperty(text, id);
  }
  std::int32_t SetProperty(const char* text, std::int32_t id) override {
    return TQuerySpecification::SetProperty(text, id);
  }

  /// Whether a section of this code is part of the data source.
  static bool IsDataSource(FourCharCode code);
  Status ReadLegacyProperty(const TLegacySection& section) override;
  static constexpr FourCharCode kReadByHand[] = {Code("htyp")};
  /// kFailure when the users and passwords cannot be enciphered.
  Status WriteXml(TXmlWriteContext& context, dom::Element element,
                  dom::Element parent) const override;
  Status ReadXml(const TXmlReadContext& context, dom::Element element) override;

 private:
  TDataSource data_source_;
  bool uses_default_ = false;
};

}  // namespace zaf
