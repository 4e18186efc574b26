// Which projects of a solution are being built at this moment, and who of them waits for whom. One thread starts them
// in the order of building; each runs on a thread of its own and speaks to the others through its Neighbours.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "engine/Project.h"

namespace qx {

class Neighbourhood {
 public:
  // At most `most` are built at the same time.
  Neighbourhood(std::size_t projects, std::size_t most);

  // For a project's task.
  Neighbours& Of(std::size_t project) { return members_[project]; }

  // For the thread that starts them. Returns when these projects have ended.
  void AwaitEnds(const std::vector<std::size_t>& projects);
  // When this one may start: there is room, and nobody runs commands of his own.
  void AwaitRoom(std::size_t project);
  // When nothing is being built.
  void AwaitAll();
  // When this one has announced what it makes, or has ended: then the next may be looked at.
  void AwaitIntent(std::size_t project);

  // To be called as the last of a project, also of one that was not built at all.
  void End(std::size_t project);

 private:
  enum class State { Waits, Runs, HasAnnounced, HasEnded };
  struct Member final : Neighbours {
    Member(Neighbourhood& theOwner, std::size_t theNumber) : owner(theOwner), number(theNumber) {}
    void Announce(const Intent& said) override { owner.Announce(*this, said); }
    void Await(const std::function<bool(const std::string&)>& isMeant) override {
      owner.Await(*this, isMeant);
    }

    Neighbourhood& owner;
    const std::size_t number;
    State state = State::Waits;
    Intent intent;
  };
  void Announce(Member& member, const Neighbours::Intent& intent);
  void Await(const Member& member, const std::function<bool(const std::string&)>& isMeant);
  std::size_t Running() const;
  // Whether one before it that is being built is as asked.
  template <class Asked>
  bool HasBefore(const Member& member, const Asked& asked) const;

  const std::size_t most_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Member> members_;  // they stay where they are
};

}  // namespace qx
