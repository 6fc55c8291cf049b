#include "actions/TDataSource.h"

#include <string>
#include <utility>

#include "actions/DataSourceKinds.h"
#include "actions/TDataSourceIndex.h"
#include "actions/WriteTextElement.h"
#include "foundation/CCipherText.h"
#include "foundation/TByteReader.h"

namespace zaf {
namespace {

constexpr TVocabulary kKinds{kDataSourceKindsAndDefault, TVocabulary::Fallback::kFirstWord};
constexpr TWordCodec kKindCodec{kKinds};

/// The host types that have a type name.
constexpr TVocabulary kTypeNames{kNamedDataSourceKinds, TVocabulary::Fallback::kZero};

std::string_view KindWord(FourCharCode host_type) {
  const std::string_view word = kKinds.WordOf(static_cast<std::int32_t>(host_type));
  return word.empty() ? kDefaultDataSourceKind.word : word;
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
      Carried<&Source::user_name>(Code("user"), kPlainTextCodec),
      Carried<&Source::password>(Code("pass"), kPlainTextCodec),
      Carried<&Source::deployment_user_name>(Code("dusr"), kPlainTextCodec),
      Carried<&Source::deployment_password>(Code("dpas"), kPlainTextCodec),
      Carried<&Source::type_name>(kNoCode),
  };
  return kRows;
}

void TDataSource::UpdateTypeName() {
  const std::string_view name = kTypeNames.WordOf(static_cast<std::int32_t>(host_type));
  if (!name.empty()) type_name = name;
}

Status TDataSource::WriteXml(TXmlWriteContext& context, dom::Element& development,
                             dom::Element& deployment) const {
  const TLogin login{user_name, password};
  const TLogin deployment_login{deployment_user_name, deployment_password};
  const Status status = WriteElement(context, login, development);
  deployment = development;
  return status != Status::kOk || deployment_login == login
             ? status
             : WriteElement(context, deployment_login, deployment);
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
  // The rows are texts and a kind that has a word for every text: none refuses anything.
  static_cast<void>(ReadXmlRows(Properties(), this, {context, element}));
  UpdateTypeName();
  ReadLogin(element, user_name, password);
}

void TDataSource::ReadLogin(dom::Element element, CText& user_name, CText& password) {
  const dom::Element info = element.getFirstChildElement("UserInfo");
  const bool is_enciphered = info.getAttribute("Encrypted") == "True";
  const auto read = [&](std::string_view name, CText& field) {
    std::string joined;
    CCipherText text(info.getFirstChildElement(name).getTextContent(joined));
    if (is_enciphered) text.Decipher();
    field = text.View();
  };
  read("UserName", user_name);
  read("Password", password);
}

/// Each text has its length before it, so that no two lists of texts have the same key.
heap::TPooledString TDataSource::KeyOfContent(const TLogin& login) const {
  const std::string_view texts[] = {KindWord(host_type), data_source.View(), dbms.View(),
                                    host.View(),         database.View(),    login.user_name,
                                    login.password};
  std::size_t size = 0;
  for (const std::string_view text : texts) size += sizeof(std::uint32_t) + text.size();
  heap::TPooledString key;
  key.reserve(size);
  for (const std::string_view text : texts) {
    AppendU32(static_cast<std::uint32_t>(text.size()), key);
    key.append(text);
  }
  return key;
}

Status TDataSource::WriteElement(TXmlWriteContext& context, const TLogin& login,
                                 dom::Element& element) const {
  heap::TPooledString key = KeyOfContent(login);
  element = context.action_data_sources.Find(key);
  if (element) return Status::kOk;
  CCipherText user_text(login.user_name);
  CCipherText password_text(login.password);
  if (!user_text.Encipher() || !password_text.Encipher()) return Status::kFailure;
  element = AppendDataSource(context);
  WriteXmlRows(Properties(), this, {context, element, {}});
  const dom::Element info = element.appendElement("UserInfo");
  info.appendAttribute("Encrypted", "True");
  WriteTextElement(info, "UserName", user_text.View());
  WriteTextElement(info, "Password", password_text.View());
  context.action_data_sources.Remember(std::move(key), element);
  return Status::kOk;
}

}  // namespace zaf
