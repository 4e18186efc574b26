// The action "Greet": writes a greeting to the log. Its two properties are saved, shown and set by the host.
#pragma once

#include <cstdint>
#include <string>

#include "plugin/Qxaction.h"

class TGreetAction : public qx::TQXAction {
 public:
  void Create() override;  // sets the defaults
  bool Validate(qx::IQXActionValidationError& errors) override;
  bool Execute() override;

  const std::string& GetWhom() const { return whom_; }
  void SetWhom(const std::string& value) { whom_ = value; }
  std::int32_t GetTimes() const { return times_; }
  void SetTimes(std::int32_t value) { times_ = value; }

 private:
  std::string whom_;  // may name variables of the build project
  std::int32_t times_ = 0;
};

// What the host knows the class by.
const qx::TQXActionClass& GreetActionClass();
