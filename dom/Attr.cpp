#include "dom/Attr.h"

#include "dom/NamedNodeMap.h"
#include "dom/Tree.h"

namespace dom {

std::string_view Attr::getName() const {
  return attribute_ == nullptr ? std::string_view() : attribute_->name.View();
}

std::string_view Attr::getValue() const {
  return attribute_ == nullptr ? std::string_view() : attribute_->value.View();
}

bool Attr::WasRead() const { return attribute_ != nullptr && attribute_->WasRead(); }

void Attr::setValue(std::string_view value) const {
  if (attribute_ == nullptr) return;
  const TreeText copy = tree_->CopyLegal(value, TextRule::kAttribute);
  if (copy.data != nullptr) attribute_->value = copy;
}

Attr Attr::getNextAttribute() const {
  return {attribute_ == nullptr ? nullptr : attribute_->next, tree_};
}

Attr NamedNodeMap::getNamedItem(std::string_view name) const {
  for (const Attr attribute : *this)
    if (attribute.getName() == name) return attribute;
  return {};
}

}  // namespace dom
