#include "engine/front/OrderedOutput.h"

namespace qx {

OrderedOutput::OrderedOutput(Console& target, std::size_t projects) : target_(target) {
  for (std::size_t i = 0; i < projects; ++i) parts_.emplace_back(*this, i);
}

void OrderedOutput::Write(Part& part, std::string_view line) {
  const std::lock_guard lock(mutex_);
  if (part.number == first_) {
    target_.Line(line);
  } else {
    part.kept.emplace_back(line);
  }
}

void OrderedOutput::End(std::size_t project) {
  const std::lock_guard lock(mutex_);
  parts_[project].hasEnded = true;
  while (first_ < parts_.size() && parts_[first_].hasEnded) {
    if (++first_ == parts_.size()) return;
    for (const std::string& line : parts_[first_].kept) target_.Line(line);
    parts_[first_].kept.clear();
  }
}

}  // namespace qx
