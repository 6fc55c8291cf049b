#include "actions/database/TDataSource.h"

#include <utility>

#include "actions/database/DataSourceKinds.h"
#include "actions/database/TDataSourceIndex.h"
#include "actions/database/TDataSourceWriter.h"

namespace zaf {
namespace {

constexpr TVocabulary kKinds{kDataSourceKindsAndDefault, TVocabulary::Fallback::kFirstKeyword};
constexpr TKeywordCodec kKindCodec{kKinds};

/// The host types that have a type name.
constexpr TVocabulary kTypeNames{kNamedDataSourceKinds, TVocabulary::Fallback::kZero};

std::string_view KindKeyword(FourCharCode host_type) {
  const std::string_view keyword = kKinds.KeywordOf(static_cast<std::int32_t>(host_type));
  return keyword.empty() ? kDefaultDataSourceKind.keyword : keyword;
}

}  // namespace

std::span<const TProperty> TDataSource::Properties() {
  using Source = TDataSource;
  static constexpr TProperty kRows[] = {
      Child<&Source::host_type>(Code("htyp"), "DSType", kKindCodec),
      Child<&Source::data_source>(Code("dsrc"), "DSN", kPlainTextCodec),
      Child<&Source::dbms>(Code("dbms"), "DBMS", kPlainTextCodec),
      Child<&Source::host>(Code("host"), "Host", kPlainTextCodec),
      Child<&Source::database>(Code("data"), "Database", kPlainTextCodec),
      ByHand<&Source::user_name>(Code("user"), kPlainTextCodec),
      ByHand<&Source::password>(Code("pass"), kPlainTextCodec),
      ByHand<&Source::deployment_user_name>(Code("dusr"), kPlainTextCodec),
      ByHand<&Source::deployment_password>(Code("dpas"), kPlainTextCodec),
      Carried<&Source::type_name>(kNoCode),
  };
  return kRows;
}

void TDataSource::UpdateTypeName() {
  const std::string_view name = kTypeNames.KeywordOf(static_cast<std::int32_t>(host_type));
  if (!name.empty()) type_name = name;
}

void TDataSource::WriteXml(TXmlWriteContext& context, std::uint32_t& development,
                           std::uint32_t& deployment) const {
  development = WriteElement(context, user_name, password);
  const bool is_one_login = deployment_user_name.View() == user_name.View() &&
                            deployment_password.View() == password.View();
  deployment = development;
  if (is_one_login) return;
  // All but the login is the same; its losses have been reported.
  TLossReporter* const losses = std::exchange(context.losses, nullptr);
  deployment = WriteElement(context, deployment_user_name, deployment_password);
  context.losses = losses;
}

Status TDataSource::ReadXml(const TXmlReadContext& context, std::string_view development,
                            std::string_view deployment) {
  context.data_sources.Read(context, development, *this);
  if (deployment == development) {
    deployment_user_name = user_name;
    deployment_password = password;
  } else {
    context.data_sources.ReadLogin(context, deployment, deployment_user_name, deployment_password);
  }
  std::size_t size = 0;
  for (const CText* text : {&data_source, &host, &database, &dbms, &user_name, &password,
                            &deployment_user_name, &deployment_password})
    size += text->GetCharacterCount();
  return context.references.Charge(size);
}

void TDataSource::ReadElement(const TXmlReadContext& context, dom::Element element) {
  // The rows are texts and a kind that has a keyword for every text, so reading cannot fail.
  static_cast<void>(ReadXmlRows(Properties(), this, {context, element}));
  UpdateTypeName();
  ReadLogin(context, element, user_name, password);
}

void TDataSource::ReadLogin(const TXmlReadContext& context, dom::Element element, CText& user_name,
                            CText& password) {
  const dom::Element info = element.getFirstChildElement("UserInfo");
  const bool is_enciphered = info.getAttribute("Encrypted") == "True";
  const auto read = [&](std::string_view name, CText& field) {
    const std::string_view text = info.getFirstChildElement(name).getTextContent();
    field = is_enciphered ? context.data_sources.Decipher(text) : text;
  };
  read("UserName", user_name);
  read("Password", password);
}

std::uint32_t TDataSource::WriteElement(TXmlWriteContext& context, const CText& login_name,
                                        const CText& login_password) const {
  std::uint32_t number = 0;
  const dom::Element element = context.data_sources.FindOrAppend(
      {data_source.View(), database.View(), host.View(), login_name.View(), login_password.View(),
       dbms.View(), KindKeyword(host_type)},
      number);
  if (!element) return number;
  WriteXmlRows(Properties(), this, {context, element, {}});
  const dom::Element info = element.appendElement("UserInfo");
  info.appendAttribute("Encrypted", "True");
  context.data_sources.WriteEnciphered(info, "UserName", login_name.View());
  context.data_sources.WriteEnciphered(info, "Password", login_password.View());
  return number;
}

}  // namespace zaf
