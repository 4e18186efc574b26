// Programs that a script starts (os.execute, io.popen) end with the host, however that ends; what goes on when the
// script is through may live on. One source a system: ScriptProcessesPosix.cpp, ScriptProcessesWindows.cpp.
#pragma once

#include <lua.hpp>
#include <memory>

namespace qx {

// Around a script's life; the libraries are open already.
class ScriptProcesses {
 public:
  explicit ScriptProcesses(lua_State* lua);
  ~ScriptProcesses();
  ScriptProcesses(const ScriptProcesses&) = delete;
  ScriptProcesses& operator=(const ScriptProcesses&) = delete;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace qx
