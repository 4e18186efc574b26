// qx_view_driver: drives the widgets of property pages with the commands of `qxhost drive`, and takes its
// arguments: FILE or --options-page, --action N, --property NAME, --input FILE, --options FILE,
// --package FILE; --pictures FOLDER besides.
#include <wx/app.h>
#include <wx/init.h>

#include <cstdio>
#include <map>

#include "host/desktop/DriveMode.h"
#include "platform/Arguments.h"
#include "platform/Paths.h"
#include "platform/Texts.h"

namespace qx::desktop {
namespace {

constexpr int kUsageError = 2;

struct Request {
  Host::Settings settings;
  DriveRequest drive;
};

Request Parse(const std::vector<std::string>& words) {
  Request request;
  request.settings.defaultPackage = "vsdotnet";
  request.settings.warn = [](const std::string& text) {
    std::fprintf(stderr, "warning: %s\n", text.c_str());
  };
  const std::map<std::string, std::function<void(const std::string&)>> options{
      {"--action", [&](const std::string& value) { request.drive.action = ToInteger(value).value_or(0); }},
      {"--property", [&](const std::string& value) { request.drive.property = value; }},
      {"--input", [&](const std::string& value) { request.drive.input = value; }},
      {"--pictures", [&](const std::string& value) { request.drive.pictures = ExpandPath("", value); }},
      {"--options", [&](const std::string& value) { request.settings.optionsFile = ExpandPath("", value); }},
      {"--package",
       [&](const std::string& value) { request.settings.packageFiles.push_back(ExpandPath("", value)); }}};
  bool isSubject = false;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const auto option = options.find(words[i]);
    if (option != options.end()) {
      if (++i == words.size()) throw Exception(words[i - 1] + " needs a value");
      option->second(words[i]);
      continue;
    }
    if (words[i] == "drive") continue;
    isSubject = true;
    if (words[i] != "--options-page") request.drive.file = words[i];
  }
  if (!isSubject) throw Exception("FILE or --options-page is needed");
  return request;
}

int Main(int count, char** arguments) {
  Request request = Parse(CommandLineWords(count, arguments));
  wxApp::SetInstance(new wxApp);  // the toolkit's from now on
  int none = 0;
  const wxInitializer toolkit(none, static_cast<char**>(nullptr));
  if (!toolkit.IsOk()) throw Exception("The toolkit cannot be initialised; is there a display?");
  Host host(std::move(request.settings));
  try {
    return DriveViews(host, request.drive);
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "qx_view_driver: %s\n", fault.what());  // here, while its package lives
    return kUsageError;
  }
}

}  // namespace
}  // namespace qx::desktop

int main(int count, char** arguments) {
  try {
    return qx::desktop::Main(count, arguments);
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "qx_view_driver: %s\n", fault.what());
    return qx::desktop::kUsageError;
  }
}
