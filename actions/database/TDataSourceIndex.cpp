#include "actions/database/TDataSourceIndex.h"

namespace zaf {

TDataSourceIndex::TDataSourceIndex(dom::Element data_sources) {
  for (dom::Element element = data_sources.getFirstChildElement("DataSource"); element;
       element = element.getNextSiblingElement("DataSource")) {
    if (!entries_.try_emplace(element.getAttribute("ID"), TEntry{element}).second)
      element.SetRead(false);
  }
}

void TDataSourceIndex::Read(const TXmlReadContext& context, std::string_view id,
                            TDataSource& source) {
  const TDataSource* kept = nullptr;
  const dom::Element element = Find(context, id, kept);
  if (kept != nullptr)
    source = *kept;
  else
    source.ReadElement(context, element);
}

void TDataSourceIndex::ReadLogin(const TXmlReadContext& context, std::string_view id,
                                 CText& user_name, CText& password) {
  const TDataSource* kept = nullptr;
  const dom::Element element = Find(context, id, kept);
  if (kept != nullptr) {
    user_name = kept->user_name;
    password = kept->password;
  } else {
    TDataSource::ReadLogin(context, element, user_name, password);
  }
}

void TDataSourceIndex::MarkUnused() const {
  for (const auto& [id, entry] : entries_)
    if (!entry.was_asked_for) entry.element.SetRead(false);
}

std::string_view TDataSourceIndex::Decipher(std::string_view text) {
  if (text.empty()) return text;
  const auto [place, is_new] = clear_texts_.try_emplace(text, text);
  if (is_new) place->second.Decipher();
  return place->second.View();
}

dom::Element TDataSourceIndex::Find(const TXmlReadContext& context, std::string_view id,
                                    const TDataSource*& kept) {
  const auto found = entries_.find(id);
  if (found == entries_.end()) return {};
  TEntry& entry = found->second;
  if (entry.was_asked_for && entry.kept == nullptr) {
    entry.kept = std::make_unique<TDataSource>();
    entry.kept->ReadElement(context, entry.element);
  }
  entry.was_asked_for = true;
  kept = entry.kept.get();
  return entry.element;
}

}  // namespace zaf
