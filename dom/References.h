#pragma once

#include <pugixml.hpp>

namespace dom {

/// Expands the references in the texts and attribute values of a tree that was parsed in place,
/// where they stand: nothing grows. Which ones, is said at DOMImplementation::createDocument.
void ExpandReferences(const pugi::xml_node& document);

}  // namespace dom
