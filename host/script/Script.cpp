#include "host/script/Script.h"

#include <algorithm>
#include <limits>
#include <lua.hpp>
#include <memory>
#include <new>

#include "host/actions/PropertyText.h"
#include "host/script/ScriptProcesses.h"
#include "platform/Nearest.h"
#include "platform/Texts.h"
#include "platform/files/Paths.h"
#include "platform/files/TextFile.h"

namespace qx {
namespace {

const char* const kObjectType = "options object";

// What the functions below work on; they find it through the state's extra space.
struct Surroundings {
  Catalogue& catalogue;
  const std::function<void(std::string_view)>& print;
};

Surroundings& SurroundingsOf(lua_State* lua) { return **static_cast<Surroundings**>(lua_getextraspace(lua)); }

void Push(lua_State* lua, std::string_view text) { lua_pushlstring(lua, text.data(), text.size()); }

std::string_view TextAt(lua_State* lua, int index) {
  std::size_t length = 0;
  const char* text = lua_tolstring(lua, index, &length);
  return text == nullptr ? std::string_view() : std::string_view(text, length);
}

// A C function of the script made from one that may raise Exception. Lua's own error leaves the function by a
// jump that destroys nothing, so it is raised here, when everything of ours is gone.
template <int (*Body)(lua_State*)>
int Guarded(lua_State* lua) {
  try {
    return Body(lua);
  } catch (const Exception& fault) {
    luaL_where(lua, 1);
    Push(lua, fault.Message());
    lua_concat(lua, 2);
  }
  return lua_error(lua);
}

// Values.

std::string TypeAt(lua_State* lua, int index) { return lua_typename(lua, lua_type(lua, index)); }

[[noreturn]] void Refuse(lua_State* lua, int index, const PublishedProperty& property, const char* wanted) {
  throw Exception(std::string(property.name) + " takes " + wanted + ", not a " + TypeAt(lua, index));
}

void PushValue(lua_State* lua, const PublishedProperty& property, const PropertyValue& value) {
  if (property.storage == PropertyStorage::Secret)
    throw Exception(std::string(property.name) + " is a secret: a script can set it and not read it");
  if (const auto* text = std::get_if<std::string>(&value)) {
    Push(lua, *text);
  } else if (const auto* number = std::get_if<std::int32_t>(&value)) {
    lua_pushinteger(lua, *number);
  } else if (const auto* truth = std::get_if<bool>(&value)) {
    lua_pushboolean(lua, *truth ? 1 : 0);
  } else if (const auto* ordinal = std::get_if<EnumerationValue>(&value)) {
    lua_pushinteger(lua, ordinal->ordinal);
  } else {
    lua_newtable(lua);
    lua_Integer index = 0;
    for (const std::string& item : std::get<TStringList>(value).Items()) {
      Push(lua, item);
      lua_rawseti(lua, -2, ++index);
    }
  }
}

std::int32_t IntegerAt(lua_State* lua, int index, const PublishedProperty& property) {
  int isInteger = 0;
  const lua_Integer number = lua_tointegerx(lua, index, &isInteger);
  if (isInteger == 0 || lua_type(lua, index) != LUA_TNUMBER) Refuse(lua, index, property, "a whole number");
  using Limits = std::numeric_limits<std::int32_t>;
  if (number < Limits::min() || number > Limits::max())
    throw Exception(std::string(property.name) + " cannot hold " + std::to_string(number));
  return static_cast<std::int32_t>(number);
}

EnumerationValue EnumerationAt(lua_State* lua, int index, const PublishedProperty& property) {
  if (lua_type(lua, index) == LUA_TSTRING)
    return std::get<EnumerationValue>(PropertyFromText(property, TextAt(lua, index)));
  const std::int32_t ordinal = IntegerAt(lua, index, property);
  const auto count = static_cast<std::int32_t>(property.valueNames.size());
  if (ordinal < 0 || ordinal >= count)
    throw Exception(std::string(property.name) + " has no value " + std::to_string(ordinal) +
                    " (nearest: " + std::to_string(std::clamp(ordinal, 0, count - 1)) + ")");
  return {ordinal};
}

TStringList ListAt(lua_State* lua, int index, const PublishedProperty& property) {
  if (!lua_istable(lua, index)) Refuse(lua, index, property, "a table of texts");
  TStringList list;
  const auto count = static_cast<lua_Integer>(lua_rawlen(lua, index));
  for (lua_Integer i = 1; i <= count; ++i) {
    if (lua_rawgeti(lua, index, i) != LUA_TSTRING) Refuse(lua, -1, property, "a table of texts");
    list.Add(std::string(TextAt(lua, -1)));
    lua_pop(lua, 1);
  }
  return list;
}

PropertyValue ValueAt(lua_State* lua, int index, const PublishedProperty& property) {
  switch (property.kind) {
    case PropertyKind::Text:
      if (lua_type(lua, index) != LUA_TSTRING) Refuse(lua, index, property, "a text");
      return std::string(TextAt(lua, index));
    case PropertyKind::Integer:
      return IntegerAt(lua, index, property);
    case PropertyKind::Boolean:
      if (!lua_isboolean(lua, index)) Refuse(lua, index, property, "true or false");
      return lua_toboolean(lua, index) != 0;
    case PropertyKind::Enumeration:
      return EnumerationAt(lua, index, property);
    case PropertyKind::TextList:
      return ListAt(lua, index, property);
  }
  throw Exception(std::string(property.name) + " has no kind");
}

// Options objects. The script's value holds the host's pointer and owns nothing.
struct Held {
  TQXOptionsObject* object;
};

TQXOptionsObject& ObjectAt(lua_State* lua, int index) {
  const auto* held = static_cast<const Held*>(luaL_testudata(lua, index, kObjectType));
  if (held == nullptr) throw Exception("This is no options object but a " + TypeAt(lua, index));
  return *held->object;
}

const PublishedProperty& PropertyAt(lua_State* lua, int index, const TQXOptionsObject& object) {
  if (lua_type(lua, index) != LUA_TSTRING)
    throw Exception("A property has a name, which a " + TypeAt(lua, index) + " is not");
  return NeedProperty(object.GetOptionsClass().properties, TextAt(lua, index));
}

int GetField(lua_State* lua) {
  TQXOptionsObject& object = ObjectAt(lua, 1);
  const PublishedProperty& property = PropertyAt(lua, 2, object);
  PushValue(lua, property, property.get(object));
  return 1;
}

int SetField(lua_State* lua) {
  TQXOptionsObject& object = ObjectAt(lua, 1);
  const PublishedProperty& property = PropertyAt(lua, 2, object);
  property.set(object, ValueAt(lua, 3, property));
  return 0;
}

int ObjectText(lua_State* lua) {
  Push(lua, ObjectAt(lua, 1).GetOptionType());
  return 1;
}

int IsSameObject(lua_State* lua) {
  lua_pushboolean(lua, &ObjectAt(lua, 1) == &ObjectAt(lua, 2) ? 1 : 0);
  return 1;
}

void MakeObjectType(lua_State* lua) {
  luaL_newmetatable(lua, kObjectType);
  static constexpr luaL_Reg operations[] = {{"__index", Guarded<GetField>},
                                            {"__newindex", Guarded<SetField>},
                                            {"__tostring", Guarded<ObjectText>},
                                            {"__eq", Guarded<IsSameObject>},
                                            {nullptr, nullptr}};
  luaL_setfuncs(lua, operations, 0);
  lua_pop(lua, 1);
}

// Functions and enumerations, which are globals of any letter case.

int CallRegistered(lua_State* lua) {
  const std::string name(TextAt(lua, lua_upvalueindex(1)));
  TQXOptionsObject* object = SurroundingsOf(lua).catalogue.CallFunction(name);
  if (object == nullptr) {
    lua_pushnil(lua);
    return 1;
  }
  new (lua_newuserdatauv(lua, sizeof(Held), 0)) Held{object};
  luaL_setmetatable(lua, kObjectType);
  return 1;
}

// A name that the enumeration does not have as it stands: in another letter case, or not at all.
int FindValue(lua_State* lua) {
  const std::string enumeration(TextAt(lua, lua_upvalueindex(1)));
  if (lua_type(lua, 2) != LUA_TSTRING) {
    lua_pushnil(lua);
    return 1;
  }
  const std::string name(TextAt(lua, 2));
  std::vector<std::string> names;
  for (const RegisteredEnumeration& known : SurroundingsOf(lua).catalogue.Enumerations()) {
    if (known.name == enumeration) names = known.values;
  }
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (!SameText(names[i], name)) continue;
    lua_pushinteger(lua, static_cast<lua_Integer>(i));
    return 1;
  }
  throw Exception(enumeration + " has no value " + Quoted(name) + NameAdvice(name, names));
}

void PushEnumeration(lua_State* lua, const RegisteredEnumeration& enumeration) {
  lua_newtable(lua);
  for (std::size_t i = 0; i < enumeration.values.size(); ++i) {
    const auto ordinal = static_cast<lua_Integer>(i);
    Push(lua, enumeration.values[i]);
    lua_pushinteger(lua, ordinal);
    lua_rawset(lua, -3);
    Push(lua, enumeration.values[i]);
    lua_rawseti(lua, -2, ordinal);
  }
  lua_newtable(lua);
  Push(lua, enumeration.name);
  lua_pushcclosure(lua, Guarded<FindValue>, 1);
  lua_setfield(lua, -2, "__index");
  lua_setmetatable(lua, -2);
}

// A global that the script has not set.
int FindGlobal(lua_State* lua) {
  if (lua_type(lua, 2) == LUA_TSTRING) {
    const std::string name(TextAt(lua, 2));
    const Catalogue& catalogue = SurroundingsOf(lua).catalogue;
    for (const RegisteredFunction& function : catalogue.Functions()) {
      if (!SameText(function.name, name)) continue;
      Push(lua, function.name);
      lua_pushcclosure(lua, Guarded<CallRegistered>, 1);
      return 1;
    }
    for (const RegisteredEnumeration& enumeration : catalogue.Enumerations()) {
      if (!SameText(enumeration.name, name)) continue;
      PushEnumeration(lua, enumeration);
      return 1;
    }
    for (const RegisteredEnumeration& enumeration : catalogue.Enumerations()) {
      for (std::size_t i = 0; i < enumeration.values.size(); ++i) {
        if (!SameText(enumeration.values[i], name)) continue;
        lua_pushinteger(lua, static_cast<lua_Integer>(i));
        return 1;
      }
    }
  }
  lua_pushnil(lua);
  return 1;
}

// As Lua's own, to where the host writes.
int Print(lua_State* lua) {
  const int count = lua_gettop(lua);
  luaL_Buffer line;
  luaL_buffinit(lua, &line);
  for (int i = 1; i <= count; ++i) {
    if (i > 1) luaL_addchar(&line, '\t');
    luaL_tolstring(lua, i, nullptr);
    luaL_addvalue(&line);
  }
  luaL_addchar(&line, '\n');
  luaL_pushresult(&line);
  SurroundingsOf(lua).print(TextAt(lua, -1));
  return 0;
}

void MakeGlobals(lua_State* lua, const Script& script) {
  luaL_openlibs(lua);
  MakeObjectType(lua);
  lua_pushglobaltable(lua);
  lua_pushcfunction(lua, Guarded<Print>);
  lua_setfield(lua, -2, "print");
  lua_getfield(lua, -1, "os");
  lua_pushnil(lua);
  lua_setfield(lua, -2, "exit");  // it would end the host without saving
  lua_pop(lua, 1);
  lua_newtable(lua);
  lua_pushcfunction(lua, Guarded<FindGlobal>);
  lua_setfield(lua, -2, "__index");
  lua_setmetatable(lua, -2);
  lua_newtable(lua);
  Push(lua, script.name);
  lua_rawseti(lua, -2, 0);
  for (std::size_t i = 0; i < script.arguments.size(); ++i) {
    Push(lua, script.arguments[i]);
    lua_rawseti(lua, -2, static_cast<lua_Integer>(i) + 1);
  }
  lua_setfield(lua, -2, "arg");
  lua_pop(lua, 1);
}

// The error as a text. One that does not begin with a place gets the place where it arose. Lua has no other
// sign of a place than "FILE:LINE:" at the text's beginning; the words behind it are never looked at.
int Describe(lua_State* lua) {
  luaL_tolstring(lua, 1, nullptr);
  lua_replace(lua, 1);
  lua_settop(lua, 1);
  lua_Debug frame;
  for (int level = 1; lua_getstack(lua, level, &frame) != 0; ++level) {
    lua_getinfo(lua, "Sl", &frame);
    if (frame.currentline <= 0) continue;
    lua_pushfstring(lua, "%s:", frame.short_src);
    if (TextAt(lua, 1).starts_with(TextAt(lua, 2))) break;
    lua_pop(lua, 1);
    lua_pushfstring(lua, "%s:%d: ", frame.short_src, frame.currentline);
    lua_insert(lua, 1);
    lua_concat(lua, 2);
    break;
  }
  lua_settop(lua, 1);
  return 1;
}

// The text that is compiled, its lines numbered as in the file.
std::string_view Body(std::string_view text) {
  text = WithoutUtf8Mark(text);
  if (text.starts_with('#')) text.remove_prefix(std::min(text.find('\n'), text.size()));
  return text;
}

}  // namespace

void RunScript(Catalogue& catalogue, const Script& script,
               const std::function<void(std::string_view)>& print) {
  const std::unique_ptr<lua_State, decltype(&lua_close)> state(luaL_newstate(), lua_close);
  if (state == nullptr) throw Exception("There is no memory for a script");
  lua_State* lua = state.get();
  Surroundings surroundings{catalogue, print};
  *static_cast<Surroundings**>(lua_getextraspace(lua)) = &surroundings;
  MakeGlobals(lua, script);
  const ScriptProcesses processes(lua);

  // Lua shortens long names of files; by the last part of its name the script is told from chunks that it
  // loads.
  const std::string shortName = FilePart(script.name);
  const std::string_view text = Body(script.text);
  lua_pushcfunction(lua, Describe);
  int failed = luaL_loadbufferx(lua, text.data(), text.size(), ("@" + shortName).c_str(), "t");
  if (failed == LUA_OK) {
    const int count = static_cast<int>(script.arguments.size());
    if (lua_checkstack(lua, count) == 0) throw Exception(script.name + ": there are too many arguments");
    for (const std::string& argument : script.arguments) Push(lua, argument);
    failed = lua_pcall(lua, count, 0, 1);
  }
  if (failed == LUA_OK) return;
  const std::string message(TextAt(lua, -1));
  const bool hasPlace = message.starts_with(shortName + ":");
  throw Exception(script.name + (hasPlace ? message.substr(shortName.size()) : ": " + message));
}

}  // namespace qx
