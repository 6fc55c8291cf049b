#include "bench/SampleApplication.h"

#include <vector>

#include "bench/SampleFields.h"

namespace zaf::bench {
namespace {

using test::LegacyFile;

struct TKind {
  std::string_view name;
  std::size_t size;
  TSampleStyle style;
};

/// In the order of SampleKind.
constexpr TKind kKinds[] = {
    {"typical", 32, {80, 3, 70, 1500, 100}},
    {"mixed", 32, {80, 3, 50, 500, 60}},
    {"dense", 32, {95, 6, 90, 60, 30}},
    {"flat", 100'000, {}},
    {"nested", 100'000, {}},
    {"chain", 100'000, {}},
    {"long", 1'000'000, {}},
};
constexpr std::size_t kLongActions = 10;
constexpr std::uint32_t kSmallPage = 150;

/// A group of actions that form a part of a web application.
enum class Scene : std::uint8_t {
  kStart,
  kListPage,
  kSavePage,
  kFunction,
  kMail,
  kDirect,
  kDelete,
  kRepeat,
  kCount,
  kScript,
  kBuilders,
  kOthers
};

constexpr int kHolder = -1;

/// One action of a scene. Its parent is given by its index in the scene; kHolder: the parent of the
/// scene.
struct TSceneAction {
  Scene scene;
  std::string_view type;
  std::string_view name;
  int parent;
};

constexpr TSceneAction kSceneActions[] = {
    {Scene::kStart, "grop", "Initialise", kHolder},
    {Scene::kStart, "asgn", "Defaults", 0},
    {Scene::kStart, "glob", "Header", 0},
    {Scene::kListPage, "srch", "Get", kHolder},
    {Scene::kListPage, "if  ", "Found", kHolder},
    {Scene::kListPage, "glob", "Show", 1},
    {Scene::kListPage, "else", "NotFound", 1},
    {Scene::kListPage, "glob", "Missing", 3},
    {Scene::kSavePage, "asgn", "Check", kHolder},
    {Scene::kSavePage, "if  ", "Valid", kHolder},
    {Scene::kSavePage, "bgnt", "Begin", 1},
    {Scene::kSavePage, "if  ", "New", 1},
    {Scene::kSavePage, "insr", "Insert", 3},
    {Scene::kSavePage, "elif", "Old", 3},
    {Scene::kSavePage, "updt", "Update", 5},
    {Scene::kSavePage, "endt", "End", 1},
    {Scene::kSavePage, "glob", "Saved", 1},
    {Scene::kSavePage, "else", "Wrong", 1},
    {Scene::kSavePage, "glob", "Error", 9},
    {Scene::kSavePage, "stop", "Return", 9},
    {Scene::kFunction, "if  ", "Function", kHolder},
    {Scene::kFunction, "srch", "Search", 0},
    {Scene::kFunction, "glob", "Result", 0},
    {Scene::kFunction, "elif", "Other", 0},
    {Scene::kFunction, "srch", "Alternate", 3},
    {Scene::kFunction, "asgn", "Remember", 3},
    {Scene::kMail, "mail", "Mail", kHolder},
    {Scene::kMail, "glob", "Sent", kHolder},
    {Scene::kDirect, "cust", "Run", kHolder},
    {Scene::kDirect, "if  ", "Empty", kHolder},
    {Scene::kDirect, "glob", "EmptyPage", 1},
    {Scene::kDelete, "dele", "Delete", kHolder},
    {Scene::kDelete, "bran", "Back", kHolder},
    {Scene::kRepeat, "whil", "Each", kHolder},
    {Scene::kRepeat, "asgn", "Next", 0},
    {Scene::kRepeat, "if  ", "Done", 0},
    {Scene::kRepeat, "brek", "Leave", 2},
    {Scene::kCount, "forl", "Count", kHolder},
    {Scene::kCount, "glob", "Row", 0},
    {Scene::kScript, "scrp", "Script", kHolder},
    {Scene::kScript, "flvt", "Export", kHolder},
    {Scene::kBuilders, "sgrp", "Find", kHolder},
    {Scene::kBuilders, "igrp", "Add", kHolder},
    {Scene::kOthers, "grop", "Group", kHolder},
    {Scene::kOthers, "stop", "Stop", kHolder},
    {Scene::kOthers, "aevt", "Command", kHolder},
    {Scene::kOthers, "adll", "Library", kHolder},
    {Scene::kOthers, "jvvt", "Java", kHolder},
    {Scene::kOthers, "cobj", "Create", kHolder},
    {Scene::kOthers, "calm", "Call", kHolder},
    {Scene::kOthers, "oblp", "Objects", kHolder},
    {Scene::kOthers, "pres", "Present", kHolder},
};

/// The frequency of a scene in a typical application, in percent.
struct TShare {
  Scene scene;
  std::uint32_t percent;
};
constexpr TShare kShares[] = {
    {Scene::kListPage, 30}, {Scene::kSavePage, 20}, {Scene::kFunction, 18},
    {Scene::kMail, 8},      {Scene::kDirect, 8},    {Scene::kDelete, 6},
    {Scene::kRepeat, 4},    {Scene::kCount, 4},     {Scene::kScript, 2},
};

class TApplicationMaker {
 public:
  TApplicationMaker(const TKind& kind, std::uint32_t number)
      : random_(number), text_(random_), fields_(kind.style, random_, text_, file_) {}

  std::string MakeScenes(std::size_t actions) {
    fields_.WriteApplication();
    Play(Scene::kStart, {});
    if (random_.Chance(10)) Play(Scene::kBuilders, {});
    while (count_ < actions) {
      // Sometimes two scenes are the branches of an if.
      const std::string holder = random_.Chance(20) ? Add("if  ", "When", {}) : std::string();
      for (int i = holder.empty() ? 1 : 2; i > 0; --i) Play(PickScene(), holder);
    }
    return file_.Bytes();
  }

  /// Uses the scenes in turn, and so every kind of action.
  std::string MakeAllScenes(std::size_t actions) {
    fields_.WriteApplication();
    while (count_ < actions)
      for (int scene = 0; scene <= static_cast<int>(Scene::kOthers); ++scene)
        Play(static_cast<Scene>(scene), {});
    return file_.Bytes();
  }

 private:
  Scene PickScene() {
    std::uint32_t place = random_.Below(100);
    for (const TShare& share : kShares) {
      if (place < share.percent) return share.scene;
      place -= share.percent;
    }
    return Scene::kListPage;
  }

  void Play(Scene scene, const std::string& holder) {
    const std::string subject(text_.Subject());
    std::vector<std::string> names;
    for (const TSceneAction& action : kSceneActions) {
      if (action.scene != scene) continue;
      const std::string& parent =
          action.parent == kHolder ? holder : names[static_cast<std::size_t>(action.parent)];
      names.push_back(Add(action.type, std::string(action.name) + subject, parent));
    }
  }

  std::string Add(std::string_view type, std::string_view stem, const std::string& parent) {
    const std::string name = std::string(stem) + std::to_string(++count_);
    file_.Action(type, name, parent);
    fields_.WriteAction(type);
    return name;
  }

  TRandom random_;
  TSampleText text_;
  LegacyFile file_;
  TSampleFields fields_;
  std::size_t count_ = 0;
};

/// Actions of the large applications, which differ in structure only.
std::string MakeShape(SampleKind kind, std::uint32_t number, std::size_t size) {
  const bool is_long = kind == SampleKind::kLong;
  const std::size_t actions = is_long ? kLongActions : size;
  const auto page_size = is_long ? static_cast<std::uint32_t>(size / kLongActions) : kSmallPage;
  TRandom random(number);
  TSampleText text(random);
  LegacyFile file;
  file.Text("titl", "Large");
  const auto name = [](std::size_t place) { return "Action" + std::to_string(place); };
  const auto add = [&](std::string_view type, std::size_t place, const std::string& parent) {
    file.Action(type, name(place), parent);
    if (type == "glob") file.Text("rslt", text.Html(page_size));
    if (type == "if  " || type == "elif") file.Text("ifex", text.Expression());
    file.Text("cmnt", text.Words(6)).Number("push", 1).Number("expd", 0);
  };
  for (std::size_t i = 0; i < actions; ++i) {
    if (kind == SampleKind::kNested) {
      add("glob", i, i == 0 ? "" : name(i - 1));
    } else if (kind != SampleKind::kChain) {
      add("glob", i, "");
    } else if (i % 2 == 0) {
      add(i == 0 ? "if  " : "elif", i, i == 0 ? "" : name(i - 2));
    } else {
      add("glob", i, name(i - 1));
    }
  }
  return file.Bytes();
}

const TKind& Kind(SampleKind kind) { return kKinds[static_cast<std::size_t>(kind)]; }

}  // namespace

std::optional<SampleKind> ParseSampleKind(std::string_view name) {
  for (std::size_t i = 0; i < std::size(kKinds); ++i)
    if (kKinds[i].name == name) return static_cast<SampleKind>(i);
  return std::nullopt;
}

std::size_t UsualSize(SampleKind kind) { return Kind(kind).size; }

std::string MakeApplication(SampleKind kind, std::uint32_t number, std::size_t size) {
  switch (kind) {
    case SampleKind::kTypical:
      return TApplicationMaker(Kind(kind), number).MakeScenes(size);
    case SampleKind::kMixed:
    case SampleKind::kDense:
      return TApplicationMaker(Kind(kind), number).MakeAllScenes(size);
    default:
      return MakeShape(kind, number, size);
  }
}

}  // namespace zaf::bench
