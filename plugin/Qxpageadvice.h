// What a page can tell a person while it is filled in, beyond its rules: an optional interface that a frame may
// implement besides TFrame. A page without it works as ever, and so does one that nobody asks; the host knows no
// names.
#pragma once

#include <functional>
#include <string>

#include "plugin/Qxcontrols.h"
#include "plugin/Qxtypes.h"

namespace qx {

// Something that the page would do if it may. Without a question there is none.
struct PageOffer {
  std::string question;  // answered with yes or no
  std::function<void()> accept;
};

// Implemented by a frame; asked on the user-interface thread, between its ReadActionData and its end.
class IQXPageAdvice : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{7D2B64E1-90A3-4F58-8C1D-2E5B7F30A946}");
  using Base = IInterface;

  // What is wrong with what stands in the control of this page, one line; empty: nothing that is known. Asked
  // after every key, so it must be quick.
  virtual std::string WhatIsWrongWith(const TControl& control) = 0;
  // The user has changed the control's text and has gone on: reads again what depends on it, quietly where
  // there is nothing to read.
  virtual PageOffer TextWasLeft(TControl& control) = 0;
  // Why WriteActionData would lose what the user has not touched, and whether to go on; empty: it loses nothing.
  virtual std::string QuestionBeforeWriting() = 0;

 protected:
  ~IQXPageAdvice() = default;
};

}  // namespace qx
