// The host's string tokeniser: a cursor over one text that never reads past its end.
#pragma once

#include <string>
#include <string_view>

#include "plugin/Qxtypes.h"

namespace qx {

class IStringTokeniser : public IInterface {
 public:
  static constexpr TGUID IID = Guid("{9C50B16D-7EAF-4F40-8B8C-3D4E5F60710B}");
  using Base = IInterface;
  virtual bool AtEnd() = 0;
  // The next character, or 0 at the end; Read moves past it.
  virtual char Peek() = 0;
  virtual char Read() = 0;
  virtual void SkipBlanks() = 0;
  // The text up to the next delimiter, which is passed over too; false, with the cursor unmoved, when there
  // is none.
  virtual bool ReadUntil(char delimiter, std::string& text) = 0;
  // Everything that is left.
  virtual std::string Rest() = 0;

 protected:
  ~IStringTokeniser() = default;
};

QX_API InterfacePtr<IStringTokeniser> CreateStringTokeniser(std::string text);

}  // namespace qx
