// Objects of other programs, bound by their moniker and read late bound, by the names of their properties.
// One source a system: ComObjectWindows.cpp; ComObjectPosix.cpp, where nothing can be bound.
#pragma once

#include <memory>
#include <string>

namespace qx {

// One bound object. Used on the thread that bound it.
class ComObject {
 public:
  virtual ~ComObject() = default;
  // The property as text; a number as the system writes it. Raises Exception naming the property and the reason.
  virtual std::string GetText(const std::string& property) = 0;
};

// Binds what the moniker names ("IIS://server/w3svc/1/ROOT"); null when that fails, for whatever reason.
std::unique_ptr<ComObject> BindComObject(const std::string& moniker);

}  // namespace qx
