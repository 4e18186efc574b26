// os.execute and io.popen as Lua has them, but each program has a keeper, and Ctrl-C is not ignored meanwhile.
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/process/KeeperPosix.h"
#include "host/script/ScriptProcesses.h"
#include "platform/Posix.h"

namespace qx {
namespace {

constexpr const char* kShell = "/bin/sh";

// An errno, 0 when it runs.
int StartShell(Keeper& keeper, const char* text, const system::SpawnOrders& orders) {
  std::vector<std::string> words{kShell, "-c", text};
  return keeper.Start({kShell, system::Pointers(words).data(), environ, orders});
}

// As waitpid gives it; -1 when nobody can tell.
int WaitForEnd(Keeper& keeper) {
  while (!keeper.Look()) {
    pollfd waited{keeper.Channel(), POLLIN, 0};
    poll(&waited, 1, -1);
  }
  const int status = keeper.Status().value_or(-1);
  keeper.Release();
  return status;
}

int Execute(lua_State* lua) {
  const char* text = luaL_optstring(lua, 1, nullptr);
  if (text == nullptr) return lua_pushboolean(lua, access(kShell, X_OK) == 0 ? 1 : 0), 1;
  std::fflush(nullptr);
  int status = -1;
  {
    Keeper keeper;
    const system::SpawnOrders orders(0);
    const int failure = StartShell(keeper, text, orders);
    if (failure == 0) status = WaitForEnd(keeper);
    errno = failure;
  }
  return luaL_execresult(lua, status);
}

// Lua's own value of a stream, with the program's keeper behind it.
struct Pipe {
  luaL_Stream stream;
  Keeper* keeper;
};

int ClosePipe(lua_State* lua) {
  auto* pipe = static_cast<Pipe*>(luaL_checkudata(lua, 1, LUA_FILEHANDLE));
  std::fclose(pipe->stream.f);
  int status = 0;
  {
    const std::unique_ptr<Keeper> keeper(pipe->keeper);
    status = WaitForEnd(*keeper);
  }
  errno = 0;  // the status tells what there is to tell
  return luaL_execresult(lua, status);
}

// An errno; 0, with the pipe filled in, when the program runs.
int OpenPipe(Pipe& pipe, const char* text, bool reads) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return errno;
  system::Descriptor own(ends[reads ? 0 : 1]);
  const system::Descriptor programs(ends[reads ? 1 : 0]);
  system::SpawnOrders orders(0);
  posix_spawn_file_actions_adddup2(&orders.actions, programs.Number(), reads ? STDOUT_FILENO : STDIN_FILENO);
  auto keeper = std::make_unique<Keeper>();
  if (const int failure = StartShell(*keeper, text, orders); failure != 0) return failure;
  pipe.stream.f = fdopen(own.Release(), reads ? "r" : "w");
  pipe.stream.closef = ClosePipe;
  pipe.keeper = keeper.release();
  return 0;
}

int Popen(lua_State* lua) {
  const char* text = luaL_checkstring(lua, 1);
  const std::string_view mode = luaL_optstring(lua, 2, "r");
  luaL_argcheck(lua, mode == "r" || mode == "w", 2, "invalid mode");
  auto* pipe = static_cast<Pipe*>(lua_newuserdatauv(lua, sizeof(Pipe), 0));
  pipe->stream.closef = nullptr;  // closed, until it is open
  luaL_setmetatable(lua, LUA_FILEHANDLE);
  std::fflush(nullptr);
  errno = OpenPipe(*pipe, text, mode == "r");
  return errno == 0 ? 1 : luaL_fileresult(lua, 0, text);
}

}  // namespace

struct ScriptProcesses::State {};

ScriptProcesses::ScriptProcesses(lua_State* lua) {
  lua_getglobal(lua, "os");
  lua_pushcfunction(lua, Execute);
  lua_setfield(lua, -2, "execute");
  lua_getglobal(lua, "io");
  lua_pushcfunction(lua, Popen);
  lua_setfield(lua, -2, "popen");
  lua_pop(lua, 2);
}

ScriptProcesses::~ScriptProcesses() = default;

}  // namespace qx
