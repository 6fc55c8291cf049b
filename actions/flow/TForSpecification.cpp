#include "actions/flow/TForSpecification.h"

namespace zaf {
namespace {

/// A direction: any number above 0 is up, any other down.
class TDirectionCodec final : public TNumberCodecBase {
 protected:
  std::string_view Spell(const void* field, TScratch&) const override {
    return *static_cast<const std::int32_t*>(field) > 0 ? kUp : kDown;
  }
  Status Parse(void* field, std::string_view text) const override {
    if (!text.empty() && text != kUp && text != kDown) return Status::kMalformed;
    *static_cast<std::int32_t*>(field) = text == kDown ? -1 : 1;
    return Status::kOk;
  }

 private:
  static constexpr std::string_view kUp = "Up";
  static constexpr std::string_view kDown = "Down";
};

constexpr TDirectionCodec kDirectionCodec;

}  // namespace

std::span<const TProperty> TForSpecification::Properties() {
  using For = TForSpecification;
  static constexpr TProperty kRows[] = {
      Child<&For::start_>(Code("lsta"), "Start"),
      Child<&For::end_>(Code("lend"), "Stop"),
      Child<&For::increment_>(Code("linc"), "Increment"),
      Child<&For::variable_>(Code("lvar"), "LoopVariable"),
      BasePart(),
      Attribute<&For::direction_>(Code("lsgn"), "Direction", kDirectionCodec),
  };
  return kRows;
}

}  // namespace zaf
