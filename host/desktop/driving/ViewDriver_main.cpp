// qx_view_driver: drives the widgets of property pages with the commands of `qxhost drive`, and takes its
// arguments, without variables and with --pictures besides.
#include <wx/app.h>
#include <wx/init.h>

#include <array>
#include <cstdio>

#include "host/HostArguments.h"
#include "host/desktop/driving/DriveMode.h"
#include "platform/Arguments.h"
#include "platform/files/Paths.h"

namespace qx::desktop {
namespace {

constexpr int kUsageError = 2;

constexpr cli::OptionRow kPicturesOption{
    "--pictures", "FOLDER", cli::ValueKind::File,
    {},           false,    "takes a picture of every page, after the commands"};
constexpr std::array kOptions{cli::kPackageOption, cli::kOptionsOption};
constexpr std::array kDriveOptions{cli::kActionOption, cli::kPropertyOption, cli::kOptionsPageOption,
                                   cli::kInputOption, kPicturesOption};
constexpr std::array kOperands{cli::OperandRow{"FILE", cli::ValueKind::File, 0, 1}};
constexpr std::array kCommands{cli::CommandRow{"drive", kOperands, kDriveOptions, "", "", "", "", nullptr}};
constexpr cli::ProgramRow kProgram{"qx_view_driver", kOptions, kCommands, {}};

struct Request {
  Host::Settings settings;
  DriveRequest drive;
};

Request RequestOf(const std::vector<std::string>& words) {
  const cli::Invocation invocation = cli::ParseArguments(kProgram, words);
  const bool isOptionsPage = invocation.Has(cli::kOptionsPageOption.name);
  if (isOptionsPage == !invocation.operands.empty()) throw Exception("FILE or --options-page is needed");
  Request request;
  request.settings = cli::HostSettingsOf(invocation, QXHOST_DEFAULT_PACKAGE);
  request.settings.warn = [](const std::string& text) {
    std::fprintf(stderr, "warning: %s\n", text.c_str());
  };
  request.drive.action = cli::ActionNumber(invocation);
  request.drive.property = invocation.Value(cli::kPropertyOption.name);
  request.drive.input = invocation.Value(cli::kInputOption.name);
  if (const auto folder = invocation.Value(kPicturesOption.name))
    request.drive.pictures = ExpandPath("", *folder);
  if (!isOptionsPage) request.drive.file = invocation.operands[0];
  return request;
}

int Main(int count, char** arguments) {
  Request request = RequestOf(CommandLineWords(count, arguments));
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
