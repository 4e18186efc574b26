#include <algorithm>
#include <array>
#include <optional>

#include "engine/front/BuildRequest.h"
#include "engine/front/HandOver.h"
#include "platform/Texts.h"

namespace qx {
namespace {

struct Target {
  std::string_view name;
  Goal goal;
};
constexpr std::array kTargets = {Target{"build", Goal::Build}, Target{"rebuild", Goal::Rebuild},
                                 Target{"clean", Goal::Clean}};

// What changes how much is printed and nothing else.
constexpr std::array<std::string_view, 11> kPassedOver = {
    "nologo", "verbosity",      "v",         "maxcpucount", "m", "consoleloggerparameters",
    "clp",    "noautoresponse", "noautorsp", "nodereuse",   "nr"};

// "%3B" is a semicolon that does not divide.
std::string Unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isEscape =
        text[i] == '%' && i + 2 < text.size() && HexDigit(text[i + 1]) >= 0 && HexDigit(text[i + 2]) >= 0;
    if (!isEscape) {
      plain += text[i];
      continue;
    }
    plain += static_cast<char>(HexDigit(text[i + 1]) * 16 + HexDigit(text[i + 2]));
    i += 2;
  }
  return plain;
}

std::string_view Unquoted(std::string_view text) {
  text = TrimView(text);
  if (text.size() < 2 || text.front() != '"' || text.back() != '"') return text;
  return text.substr(1, text.size() - 2);
}

void ReadProperties(std::string_view list, std::map<std::string, std::string>& properties) {
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(';'), list.size());
    const std::string_view pair = list.substr(0, end);
    list.remove_prefix(std::min(end + 1, list.size()));
    const std::size_t equals = pair.find('=');
    if (equals == std::string_view::npos) continue;
    properties[Trim(pair.substr(0, equals))] = Unescaped(Unquoted(pair.substr(equals + 1)));
  }
}

// Takes a property out, letter case aside.
std::string TakeProperty(std::map<std::string, std::string>& properties, std::string_view name) {
  const auto found =
      std::ranges::find_if(properties, [&](const auto& pair) { return SameText(pair.first, name); });
  if (found == properties.end()) return "";
  std::string value = std::move(found->second);
  properties.erase(found);
  return value;
}

const Target* FindTarget(std::string_view name) {
  const std::string lower = LowerCase(name);
  const auto found = std::ranges::find(kTargets, lower, &Target::name);
  return found == kTargets.end() ? nullptr : &*found;
}

}  // namespace

MsBuildRequest ReadMsBuildArguments(const std::vector<std::string>& arguments) {
  MsBuildRequest request;
  for (const std::string& argument : arguments) {
    if (!IsSwitch(argument)) {
      if (!request.build.file.empty()) request.isUnderstood = false;
      request.build.file = argument;
      continue;
    }
    const std::string_view text = std::string_view(argument).substr(1);
    const std::size_t colon = text.find(':');
    const std::string name = LowerCase(text.substr(0, colon));
    const std::string_view value = colon == std::string_view::npos ? "" : text.substr(colon + 1);
    if (name == "p" || name == "property") {
      ReadProperties(value, request.build.properties);
    } else if (name == "t" || name == "target") {
      const Target* target = FindTarget(Unquoted(value));
      if (target == nullptr) {
        request.isUnderstood = false;
      } else {
        request.build.goal = target->goal;
      }
    } else if (argument.starts_with('@') || std::ranges::find(kPassedOver, name) == kPassedOver.end()) {
      request.isUnderstood = false;
    }
  }
  auto& properties = request.build.properties;
  request.build.configuration = TakeProperty(properties, "Configuration");
  const std::string platform = TakeProperty(properties, "Platform");
  if (!platform.empty()) request.build.configuration += "|" + platform;
  const std::string useEnvironment = TakeProperty(properties, "useenv");
  request.build.usesEnvironment = useEnvironment == "1" || SameText(useEnvironment, "true");
  return request;
}

}  // namespace qx
