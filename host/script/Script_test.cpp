#include "host/script/Script.h"

#include <gtest/gtest.h>

#include <array>

namespace qx {
namespace {

enum class TFlavour { flSweet, flSour };

class Kitchen final : public TQXOptionsObject {
 public:
  Kitchen();
  std::string GetPlace() const { return place; }
  void SetPlace(const std::string& value) {
    if (value == "nowhere") throw Exception("There is no such place");
    place = value;
  }
  std::int32_t GetSeats() const { return seats; }
  void SetSeats(std::int32_t value) { seats = value; }
  bool GetOpen() const { return open; }
  void SetOpen(bool value) { open = value; }
  TFlavour GetFlavour() const { return flavour; }
  void SetFlavour(TFlavour value) { flavour = value; }
  TStringList GetDishes() const { return dishes; }
  void SetDishes(const TStringList& value) { dishes = value; }
  std::string GetRecipe() const { return recipe; }
  void SetRecipe(const std::string& value) { recipe = value; }

  std::string place = "here";
  std::int32_t seats = 4;
  bool open = true;
  TFlavour flavour = TFlavour::flSour;
  TStringList dishes{std::vector<std::string>{"soup", "pie"}};
  std::string recipe;
};

}  // namespace

template <>
inline constexpr std::array<std::string_view, 2> ValueNames<TFlavour>{"flSweet", "flSour"};

namespace {

constexpr std::array kProperties{
    Property<&Kitchen::GetPlace, &Kitchen::SetPlace>("Place"),
    Property<&Kitchen::GetSeats, &Kitchen::SetSeats>("Seats"),
    Property<&Kitchen::GetOpen, &Kitchen::SetOpen>("Open"),
    Property<&Kitchen::GetFlavour, &Kitchen::SetFlavour>("Flavour"),
    Property<&Kitchen::GetDishes, &Kitchen::SetDishes>("Dishes"),
    Property<&Kitchen::GetRecipe, &Kitchen::SetRecipe>("Recipe", PropertyStorage::Secret),
};
constexpr TQXOptionsClass kKitchen{
    "TKitchen",
    [] { return std::string("Kitchen"); },
    [] { return std::string("House"); },
    [] { return std::string("KitchenKey"); },
    kProperties,
    []() -> std::unique_ptr<TQXOptionsObject> { return std::make_unique<Kitchen>(); }};
Kitchen::Kitchen() : TQXOptionsObject(kKitchen) {}

Kitchen* g_kitchen = nullptr;  // what the script function gives

class Scripts : public testing::Test {
 protected:
  Scripts() {
    g_kitchen = &kitchen_;
    catalogue_.RegisterFunction("Kitchen", [](IQXScriptCall& call) { call.SetResult(g_kitchen); });
    catalogue_.RegisterFunction("Trouble", [](IQXScriptCall&) { throw Exception("The roof leaks"); });
    catalogue_.RegisterEnumeration("TFlavour", ValueNames<TFlavour>);
  }
  // What the script prints.
  std::string Run(const std::string& text, std::vector<std::string> arguments = {}) {
    std::string printed;
    RunScript(catalogue_, {"folder/s.lua", text, std::move(arguments)},
              [&](std::string_view line) { printed += line; });
    return printed;
  }
  // How the script fails.
  std::string Fault(const std::string& text) {
    try {
      Run(text);
    } catch (const Exception& fault) {
      return fault.Message();
    }
    return "";
  }

  Kitchen kitchen_;
  Catalogue catalogue_;
};

TEST_F(Scripts, ReadThePropertiesOfAnOptionsObject) {
  EXPECT_EQ(
      Run("local k = Kitchen() print(k.Place, k.Seats, k.Open, k.Flavour, table.concat(k.Dishes, '+'), k)"),
      "here\t4\ttrue\t1\tsoup+pie\tTKitchen\n");
}

TEST_F(Scripts, WriteThemThroughTheirSetters) {
  Run("local k = Kitchen() k.Place = 'there' k.Seats = 6.0 k.Open = false k.Flavour = TFlavour.flSweet "
      "k.Dishes = {'a', 'b c'} k.Recipe = 'salt'");
  EXPECT_EQ(kitchen_.place, "there");
  EXPECT_EQ(kitchen_.seats, 6);
  EXPECT_FALSE(kitchen_.open);
  EXPECT_EQ(kitchen_.flavour, TFlavour::flSweet);
  EXPECT_EQ(kitchen_.dishes.Items(), (std::vector<std::string>{"a", "b c"}));
  EXPECT_EQ(kitchen_.recipe, "salt");
  Run("Kitchen().Flavour = 'FLSOUR' Kitchen().Dishes = {}");
  EXPECT_EQ(kitchen_.flavour, TFlavour::flSour);
  EXPECT_EQ(kitchen_.dishes.Count(), 0);
}

TEST_F(Scripts, KnowTheOneObjectAgain) {
  EXPECT_EQ(Run("print(Kitchen() == Kitchen(), Kitchen() ~= Kitchen(), Kitchen() == 1)"),
            "true\tfalse\tfalse\n");
}

TEST_F(Scripts, PassOverLetterCase) {
  EXPECT_EQ(Run("print(KITCHEN().pLACE, tflavour.FLSWEET, type(kitchen))"), "here\t0\tfunction\n");
}

TEST_F(Scripts, GetNothingWhereThereIsNoOptionsObject) {
  g_kitchen = nullptr;
  EXPECT_EQ(Run("print(Kitchen(), Kitchen() == nil, NoSuchFunction)"), "nil\ttrue\tnil\n");
  EXPECT_TRUE(Fault("return Kitchen().Place").starts_with("folder/s.lua:1: attempt to index a nil value"));
}

TEST_F(Scripts, CountAnEnumerationsValuesFromZeroAndNameThem) {
  EXPECT_EQ(Run("print(TFlavour.flSweet, TFlavour.flSour, TFlavour[1], TFlavour[2])"), "0\t1\tflSour\tnil\n");
  EXPECT_EQ(Run("print(flSweet, flSour, FLSOUR, Kitchen().Flavour == flSour)"), "0\t1\t1\ttrue\n");
  EXPECT_EQ(
      Fault("return TFlavour.flSower"),
      "folder/s.lua:1: TFlavour has no value \"flSower\"; supported: flSweet, flSour (nearest: flSour)");
}

TEST_F(Scripts, TakeArguments) {
  EXPECT_EQ(Run("print(select('#', ...), ..., arg[0], arg[2])", {"x", "y z"}), "2\tx\tfolder/s.lua\ty z\n");
}

TEST_F(Scripts, TakeManyArguments) {
  EXPECT_EQ(Run("print(select('#', ...))", std::vector<std::string>(1000, "x")), "1000\n");
}

TEST_F(Scripts, AreReadFromFilesOfEveryManner) {
  EXPECT_EQ(Run("\xEF\xBB\xBF#!/usr/bin/lua\r\nprint('x')"), "x\n");
  EXPECT_EQ(Run(""), "");
  EXPECT_EQ(Fault("#!x\n\nerror('here')"), "folder/s.lua:3: here");
}

TEST_F(Scripts, FailWithFileAndLine) {
  struct Row {
    const char* text;
    const char* fault;
  };
  for (const Row& row : std::initializer_list<Row>{
           {"\nlocal = 1", "folder/s.lua:2: <name> expected near '='"},
           {"\n\nerror('no')", "folder/s.lua:3: no"},
           {"\nerror('no', 0)", "folder/s.lua:2: no"},
           {"error('s.lua is bad', 0)", "folder/s.lua:1: s.lua is bad"},
           {"load('\\nerror()', '=other')()", "folder/s.lua: other:2: nil"},
           {"error({})", "folder/s.lua:1: table: "},
           {"\nTrouble()", "folder/s.lua:2: The roof leaks"},
           {"Kitchen().Place = 'nowhere'", "folder/s.lua:1: There is no such place"},
           {"Kitchen().Plaice = 'x'", "folder/s.lua:1: There is no property \"Plaice\""},
           {"return Kitchen()[1]", "folder/s.lua:1: A property has a name, which a number is not"},
           {"Kitchen().Place = 1", "folder/s.lua:1: Place takes a text, not a number"},
           {"Kitchen().Seats = '1'", "folder/s.lua:1: Seats takes a whole number, not a string"},
           {"Kitchen().Seats = 1.5", "folder/s.lua:1: Seats takes a whole number, not a number"},
           {"Kitchen().Seats = 1 << 31", "folder/s.lua:1: Seats cannot hold 2147483648"},
           {"Kitchen().Open = 1", "folder/s.lua:1: Open takes true or false, not a number"},
           {"Kitchen().Flavour = 2", "folder/s.lua:1: Flavour has no value 2 (nearest: 1)"},
           {"Kitchen().Flavour = 'flBitter'",
            "folder/s.lua:1: Flavour: \"flBitter\" is no value of it; supported: flSweet, flSour"},
           {"Kitchen().Dishes = 'x'", "folder/s.lua:1: Dishes takes a table of texts, not a string"},
           {"Kitchen().Dishes = {1}", "folder/s.lua:1: Dishes takes a table of texts, not a number"},
           {"return Kitchen().Recipe",
            "folder/s.lua:1: Recipe is a secret: a script can set it and not read it"},
           {"os.exit(0)", "folder/s.lua:1: attempt to call a nil value (field 'exit')"}}) {
    EXPECT_TRUE(Fault(row.text).starts_with(row.fault)) << row.text << "\n" << Fault(row.text);
  }
  EXPECT_EQ(kitchen_.place, "here");
}

TEST_F(Scripts, AFaultCanBeCaught) { EXPECT_EQ(Run("print(pcall(Trouble))"), "false\tThe roof leaks\n"); }

TEST_F(Scripts, APropertyOfAnotherValueIsNone) {
  EXPECT_EQ(Fault("getmetatable(Kitchen()).__index({}, 'Place')"),
            "folder/s.lua:1: This is no options object but a table");
}

TEST_F(Scripts, CompiledTextIsRefused) { EXPECT_TRUE(Fault("\x1BLua").starts_with("folder/s.lua:")); }

TEST_F(Scripts, ReadWhatProgramsPrint) {
  EXPECT_EQ(Run("local p = io.popen('echo hi') print(p:read()) print(p:close())"), "hi\ntrue\texit\t0\n");
  EXPECT_EQ(Run("print(os.execute())"), "true\n");
}

}  // namespace
}  // namespace qx
