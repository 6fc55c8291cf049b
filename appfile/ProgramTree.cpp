#include "appfile/ProgramTree.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace zaf {
namespace {

constexpr std::string_view kReference = "ActionRef";
constexpr FourCharCode kIf = Code("if  ");
constexpr FourCharCode kElseIf = Code("elif");
constexpr FourCharCode kElse = Code("else");

/// The actions by their IDs. Actions with the same ID are returned one after another, each once.
/// Most documents refer to all actions in their order; only for the others an index is built.
class TActionIndex {
 public:
  explicit TActionIndex(std::span<TActionEntry* const> entries) : entries_(entries) {}

  /// Returns the next action with this ID; null when none is left.
  TActionEntry* Take(std::string_view id) {
    if (!is_indexed_) {
      if (in_order_ < entries_.size() && entries_[in_order_]->action->GetName().View() == id)
        return entries_[in_order_++];
      IndexRest();
    }
    const auto found = first_of_id_.find(id);
    if (found == first_of_id_.end() || found->second == kNone) return nullptr;
    TActionEntry* const entry = entries_[found->second];
    found->second = next_of_same_id_[found->second];
    return entry;
  }

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  /// Indexes the actions that have not been returned.
  void IndexRest() {
    is_indexed_ = true;
    next_of_same_id_.assign(entries_.size(), kNone);
    for (std::size_t i = entries_.size(); i-- > in_order_;) {
      const auto [place, is_new] =
          first_of_id_.try_emplace(entries_[i]->action->GetName().View(), i);
      if (is_new) continue;
      next_of_same_id_[i] = place->second;
      place->second = i;
    }
  }

  std::span<TActionEntry* const> entries_;
  std::size_t in_order_ = 0;  ///< The number of actions that were returned in their order.
  bool is_indexed_ = false;
  TTextIndex<std::size_t> first_of_id_;
  std::vector<std::size_t> next_of_same_id_;
};

/// One level of the walk through the references: the entry whose children are being read, and the
/// last child read.
struct TLevel {
  TActionEntry* parent;
  TActionEntry* last = nullptr;
};

}  // namespace

bool IsBranchOf(const TQuerySpecification& action, const TQuerySpecification& before) {
  const FourCharCode type = action.GetTypeCode();
  const FourCharCode type_before = before.GetTypeCode();
  return (type == kElseIf || type == kElse) && (type_before == kIf || type_before == kElseIf);
}

Status WriteProgram(const TActionTree& tree, dom::Element program, TXmlWriteContext& context) {
  const TActionEntry* const root = tree.GetRoot();
  if (root == nullptr) return Status::kOk;
  // The references from the root to the current entry; that of the root is the program element.
  std::vector<dom::Element> path{program};
  std::vector<const TActionEntry*> path_entries{root};
  for (const TActionEntry* entry = TActionTree::GetNext(*root); entry != nullptr;
       entry = TActionTree::GetNext(*entry)) {
    while (path_entries.back() != entry->parent) {
      path.pop_back();
      path_entries.pop_back();
    }
    if (context.losses != nullptr) [[unlikely]]
      context.losses->BeginWriting(entry->action->GetName().View(),
                                   entry->action->GetRecordNumber());
    const Status status = entry->action->WriteXml(context, dom::Element(), context.actions);
    if (status != Status::kOk) return status;
    dom::Element place = path.back();
    if (IsBranchOf(*entry->action, *entry->parent->action))
      place = dom::Element(place.getParentNode());
    const dom::Element reference = place.appendElement(kReference);
    reference.appendAttribute("Ref",
                              dom::Element(context.actions.getLastChild()).getAttribute("ID"));
    path.push_back(reference);
    path_entries.push_back(entry);
  }
  return Status::kOk;
}

Status ReadProgram(dom::Element program, std::span<TActionEntry* const> entries, TActionTree& tree,
                   dom::Element& refused) {
  dom::Element reference = program.getFirstChildElement(kReference);
  if (entries.empty()) {
    refused = reference;
    return reference ? Status::kMalformed : Status::kOk;
  }
  TActionEntry* const root = tree.EnsureRoot();
  if (root == nullptr) return Status::kFailure;
  TActionIndex index(entries);
  std::vector<TLevel> levels{{root}};
  while (reference) {
    TActionEntry* const entry = index.Take(reference.getAttribute("Ref"));
    if (entry == nullptr) {
      refused = reference;
      return Status::kMalformed;
    }
    TLevel& level = levels.back();
    const bool is_branch = level.last != nullptr && IsBranchOf(*entry->action, *level.last->action);
    TActionTree::Hang(*entry, is_branch ? *level.last : *level.parent);
    level.last = entry;
    if (const dom::Element child = reference.getFirstChildElement(kReference); child) {
      levels.push_back({entry});
      reference = child;
      continue;
    }
    dom::Element next = reference.getNextSiblingElement(kReference);
    while (!next && levels.size() > 1) {
      levels.pop_back();
      reference = dom::Element(reference.getParentNode());
      next = reference.getNextSiblingElement(kReference);
    }
    reference = next;
  }
  for (TActionEntry* const entry : entries)
    if (entry->parent == nullptr) TActionTree::Hang(*entry, *root);
  return Status::kOk;
}

}  // namespace zaf
