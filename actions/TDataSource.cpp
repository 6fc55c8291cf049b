#include "actions/TDataSource.h"

#include "actions/DataSourceKinds.h"
#include "actions/TDataSourceIndex.h"
#include "foundation/CCipherText.h"

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

/// Appends an element `name` with the enciphered form of `text`, which is made once. False when it
/// cannot be enciphered.
bool WriteEnciphered(TXmlWriteContext& context, dom::Element parent, std::string_view name,
                     std::string_view text) {
  if (text.empty()) {
    parent.appendElement(name);
    return true;
  }
  const std::uint64_t hash = TSeededHash::Extend(0, text);
  const TEncipheredText* const found = context.enciphered_texts.Find(
      hash, [&](const TEncipheredText& known) { return known.clear == text; });
  if (found != nullptr) {
    parent.appendPlainElement(name, found->enciphered);
    return true;
  }
  std::string enciphered;
  CCipherText::Encipher(text, enciphered);
  const dom::Element element = parent.appendPlainElement(name, enciphered);
  if (element) context.enciphered_texts.Add(hash, {text, element.getTextContent()});
  return true;
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

Status TDataSource::WriteXml(TXmlWriteContext& context, std::uint32_t& development,
                             std::uint32_t& deployment) const {
  std::uint64_t hash = 0;
  for (const std::string_view text : GetCommonTexts()) hash = TSeededHash::Extend(hash, text);
  const Status status = WriteElement(context, Login::kDevelopment, hash, development);
  deployment = development;
  return status != Status::kOk || GetLogin(Login::kDeployment) == GetLogin(Login::kDevelopment)
             ? status
             : WriteElement(context, Login::kDeployment, hash, deployment);
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

TDataSource::TLogin TDataSource::GetLogin(Login login) const {
  if (login == Login::kDevelopment) return {user_name, password};
  return {deployment_user_name, deployment_password};
}

std::array<std::string_view, 5> TDataSource::GetCommonTexts() const {
  return {KindWord(host_type), data_source.View(), dbms.View(), host.View(), database.View()};
}

Status TDataSource::WriteElement(TXmlWriteContext& context, Login login, std::uint64_t hash,
                                 std::uint32_t& number) const {
  const TLogin texts = GetLogin(login);
  hash = TSeededHash::Extend(TSeededHash::Extend(hash, texts.user_name), texts.password);
  const TWrittenDataSource* const found =
      context.action_data_sources.Find(hash, [&](const TWrittenDataSource& other) {
        return other.source->GetLogin(other.login) == texts &&
               other.source->GetCommonTexts() == GetCommonTexts();
      });
  if (found != nullptr) {
    number = found->number;
    return Status::kOk;
  }
  number = context.data_source_count;
  const dom::Element element = AppendDataSource(context);
  WriteXmlRows(Properties(), this, {context, element, {}});
  const dom::Element info = element.appendElement("UserInfo");
  info.appendAttribute("Encrypted", "True");
  if (!WriteEnciphered(context, info, "UserName", texts.user_name) ||
      !WriteEnciphered(context, info, "Password", texts.password))
    return Status::kFailure;
  context.action_data_sources.Add(hash, {this, login, number});
  return Status::kOk;
}

}  // namespace zaf
