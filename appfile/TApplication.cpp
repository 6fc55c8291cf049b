#include "appfile/TApplication.h"

#include <algorithm>

#include "actions/database/DataSourceKinds.h"
#include "fields/ValueCodecs.h"
#include "foundation/CCipherText.h"

namespace zaf {
namespace {

/// A text that is enciphered in legacy files only.
class TCipheredTextCodec final : public TTextCodecBase {
 public:
  Status ReadLegacy(const TProperty& row, void* field,
                    const TLegacySection& section) const override {
    CCipherText text;
    const Status status = TTextCodecBase::ReadLegacy(row, &text, section);
    if (status != Status::kOk) return status;
    text.Decipher();
    *static_cast<CText*>(field) = text.View();
    return Status::kOk;
  }

  Status WriteLegacy(const TProperty& row, const void* field, TSectionWriter& out) const override {
    CCipherText text(static_cast<const CText*>(field)->View());
    text.Encipher();
    return TTextCodecBase::WriteLegacy(row, &text, out);
  }
};

constexpr TCipheredTextCodec kCipheredTextCodec;

constexpr FourCharCode kHostTypeCode = Code("htyp");
constexpr TVocabulary kHostTypes{kDataSourceKinds, TVocabulary::Fallback::kZero};
constexpr TKeywordCodec kHostTypeCodec{kHostTypes};

}  // namespace

std::span<const TProperty> TApplication::Properties() {
  using App = TApplication;
  static constexpr TProperty kRows[] = {
      AttributeIfSet<&App::is_debug>(Code("dbug"), "Debug"),
      AttributeIfSet<&App::title>(Code("titl"), "Title"),
      AttributeIfSet<&App::author>(Code("athr"), "Author"),
      AttributeIfSet<&App::revision>(Code("vers"), "Revision"),
      Child<&App::comments>(Code("cmnt"), "Comments"),
      ChildIfSet<&App::signature>(Code("asts"), "ASTSignature"),
      ByHand<&App::host_type>(kHostTypeCode),
      ByHand<&App::data_source>(Code("dsrc")),
      ByHand<&App::host>(Code("host")),
      ByHand<&App::database>(Code("data")),
      ByHand<&App::user_name>(Code("user"), kCipheredTextCodec),
      ByHand<&App::password>(Code("pass"), kCipheredTextCodec),
      ByHand<&App::dbms>(Code("dbms")),
      Carried<&App::form>(Code("form")),
  };
  return kRows;
}

std::span<const TProperty> TApplication::DataSourceProperties() {
  using App = TApplication;
  static constexpr TProperty kRows[] = {
      AttributeIfSet<&App::host_type>(kHostTypeCode, "Type", kHostTypeCodec),
      Child<&App::data_source>(Code("dsrc"), "DSN"),
      Child<&App::dbms>(Code("dbms"), "DBMS"),
      Child<&App::host>(Code("host"), "Host"),
      Child<&App::database>(Code("data"), "Database"),
  };
  return kRows;
}

std::span<const TProperty> TApplication::DataSourceInfoProperties() {
  using App = TApplication;
  static constexpr TProperty kRows[] = {
      Child<&App::user_name>(Code("user"), "UserName"),
      Child<&App::password>(Code("pass"), "Password"),
  };
  return kRows;
}

bool TApplication::HasDataSource() const {
  const CText* const texts[] = {&data_source, &host, &database, &user_name, &password, &dbms};
  return host_type != kNoCode || !std::all_of(std::begin(texts), std::end(texts),
                                              [](const CText* text) { return text->IsEmpty(); });
}

std::string_view TApplication::GetRootElement() const {
  return kind == DocumentKind::kClassFile ? "ZCF" : "ZAF";
}

bool TApplication::IsEqual(const TApplication& other) const {
  // All but the host type, which is not a text.
  const std::span<const TProperty> rows = Properties();
  const auto no_text = std::find_if(rows.begin(), rows.end(),
                                    [](const TProperty& row) { return row.code == kHostTypeCode; });
  const auto before = static_cast<std::size_t>(no_text - rows.begin());
  return AreRowsEqual(rows.first(before), this, &other) &&
         AreRowsEqual(rows.subspan(before + 1), this, &other) && actions.IsEqual(other.actions);
}

}  // namespace zaf
