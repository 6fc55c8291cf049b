#include "dom/Attr.h"

#include "dom/NamedNodeMap.h"
#include "dom/Tree.h"

namespace dom {

std::string_view Attr::getName() const { return Wrap(attribute_).name(); }

std::string_view Attr::getValue() const { return Wrap(attribute_).value(); }

void Attr::setValue(std::string_view value) const {
  SetLegalValue(Wrap(attribute_), value, TextRule::kAttribute);
}

Attr Attr::getNextAttribute() const { return Attr(Unwrap(Wrap(attribute_).next_attribute())); }

Attr NamedNodeMap::getNamedItem(std::string_view name) const {
  for (const Attr attribute : *this)
    if (attribute.getName() == name) return attribute;
  return {};
}

}  // namespace dom
