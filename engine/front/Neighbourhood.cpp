#include "engine/front/Neighbourhood.h"

#include <algorithm>

namespace qx {

Neighbourhood::Neighbourhood(std::size_t projects, std::size_t most) : most_(most) {
  for (std::size_t i = 0; i < projects; ++i) members_.emplace_back(*this, i);
}

std::size_t Neighbourhood::Running() const {
  return static_cast<std::size_t>(std::ranges::count_if(members_, [](const Member& each) {
    return each.state == State::Runs || each.state == State::HasAnnounced;
  }));
}

template <class Asked>
bool Neighbourhood::HasBefore(const Member& member, const Asked& asked) const {
  return std::any_of(members_.begin(), members_.begin() + static_cast<std::ptrdiff_t>(member.number),
                     [&](const Member& each) { return each.state != State::HasEnded && asked(each.intent); });
}

void Neighbourhood::AwaitEnds(const std::vector<std::size_t>& projects) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] {
    return std::ranges::all_of(projects,
                               [this](std::size_t each) { return members_[each].state == State::HasEnded; });
  });
}

void Neighbourhood::AwaitRoom(std::size_t project) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] {
    return Running() < most_ && !HasBefore(members_[project], [](const Neighbours::Intent& intent) {
             return intent.runsCommands;
           });
  });
  members_[project].state = State::Runs;
}

void Neighbourhood::AwaitAll() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return Running() == 0; });
}

void Neighbourhood::AwaitIntent(std::size_t project) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] { return members_[project].state >= State::HasAnnounced; });
}

void Neighbourhood::End(std::size_t project) {
  const std::lock_guard lock(mutex_);
  members_[project].state = State::HasEnded;
  changed_.notify_all();
}

// What it says counts from now on, even while it waits: those behind it wait for it.
void Neighbourhood::Announce(Member& member, const Neighbours::Intent& intent) {
  std::unique_lock lock(mutex_);
  member.intent = intent;
  member.state = State::HasAnnounced;
  changed_.notify_all();
  changed_.wait(lock, [&] {
    return !HasBefore(member, [&](const Neighbours::Intent& other) {
      return intent.runsCommands ||
             std::ranges::find_first_of(intent.makes, other.makes) != intent.makes.end();
    });
  });
}

void Neighbourhood::Await(const Member& member, const std::function<bool(const std::string&)>& isMeant) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] {
    return !HasBefore(
        member, [&](const Neighbours::Intent& other) { return std::ranges::any_of(other.makes, isMeant); });
  });
}

}  // namespace qx
