// qxhost-desktop: the host with a window.
#include <wx/app.h>
#include <wx/log.h>
#include <wx/msgdlg.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "host/HostArguments.h"
#include "host/desktop/driving/Probe.h"
#include "host/desktop/views/WxText.h"
#include "host/desktop/views/WxUser.h"
#include "host/desktop/window/MainWindow.h"
#include "host/system/HostProgram.h"
#include "platform/files/Paths.h"

namespace qx::desktop {
namespace {

constexpr cli::OptionRow kProbeOption{
    "--probe",
    "",
    cli::ValueKind::None,
    {},
    false,
    "answers on standard output where its widgets are, for tests that use it as a person does"};
constexpr std::array kOptions{cli::kPackageOption, cli::kOptionsOption, kProbeOption, cli::kHelpOption,
                              cli::kVersionOption};
constexpr std::array kOperands{cli::OperandRow{"FILE", cli::ValueKind::File, 0, 1}};
constexpr cli::ProgramRow kProgram{"qxhost-desktop", kOptions, {}, kOperands};

std::string Usage() {
  return "usage: qxhost-desktop [--package PATH]... [--options FILE] [FILE]\n"
         "Opens a build project in a window. The options are those of qxhost.\n"
         "  --probe    " +
         std::string(kProbeOption.help) + "\n";
}

// Without the program's own name.
std::vector<std::string> WordsOf(int count, wxChar** arguments) {
  std::vector<std::string> words;
  for (int i = 1; i < count; ++i) words.push_back(FromWx(arguments[i]));
  return words;
}

struct Request {
  Host::Settings host;
  std::string file;  // absolute; empty: none
  bool probe = false;
  std::string print;  // to standard output, and nothing else is done
};

// Raises Exception for what it does not know.
Request RequestOf(const std::vector<std::string>& words) {
  const cli::Invocation invocation = cli::ParseArguments(kProgram, words);
  Request request;
  request.host = cli::HostSettingsOf(invocation, QXHOST_DEFAULT_PACKAGE);
  request.probe = invocation.Has(kProbeOption.name);
  if (invocation.Has(cli::kVersionOption.name)) request.print = "qxhost-desktop " QXHOST_VERSION "\n";
  if (invocation.Has(cli::kHelpOption.name)) request.print = Usage();
  if (!invocation.operands.empty()) request.file = ExpandPath("", invocation.operands[0]);
  return request;
}

// False where the stream leads nowhere: on Windows a program with windows has no console.
bool Print(std::FILE* stream, const std::string& text) {
  return std::fputs(text.c_str(), stream) >= 0 && std::fflush(stream) == 0;
}

// To a stream, or into a box.
void Tell(std::FILE* stream, const std::string& text, long style) {
  if (!Print(stream, text)) wxMessageBox(ToWx(text), "qxhost", wxOK | style);
}

std::string SettingsFile() {
  try {
    return ConfigFolder() + "desktop.ini";
  } catch (const Exception&) {  // nowhere to keep places: they are forgotten
    return {};
  }
}

}  // namespace

class App final : public wxApp {
 public:
  // Words that want no window want no display either, which the toolkit looks for first.
  bool Initialize(int& count, wxChar** arguments) override {
    try {
      const Request request = RequestOf(WordsOf(count, arguments));
      if (!request.print.empty() && Print(stdout, request.print)) std::exit(0);
    } catch (const std::exception&) {  // told of once there is a window for it
    }
    return wxApp::Initialize(count, arguments);
  }

  bool OnInit() override {
    SetAppName("qxhost");
    SetAppDisplayName("qxhost");
    KeepFreedMemory();
    try {
      return Begin();
    } catch (const std::exception& fault) {
      const bool isTold = Print(stderr, std::string("qxhost-desktop: ") + fault.what() + "\n");
      if (isWindowed_ || !isTold)
        wxMessageBox(ToWx(fault.what()), "qxhost cannot start", wxOK | wxICON_ERROR);
      code_ = 2;
      delete GetTopWindow();  // before what it works with
      return ExitNow();
    }
  }

  int OnRun() override { return code_ != 0 || isDone_ ? code_ : wxApp::OnRun(); }

  int OnExit() override {
    settings_.reset();
    SetUserInterface(nullptr);
    user_.reset();
    host_.reset();
    return wxApp::OnExit();
  }

  // What leaves a handler is shown, and the window goes on.
  bool OnExceptionInMainLoop() override {
    try {
      throw;
    } catch (const std::exception& fault) {
      wxMessageBox(ToWx(fault.what()), "An error", wxOK | wxICON_ERROR);
    }
    return true;
  }

 private:
  bool ExitNow() { return isDone_ = true; }

  bool Begin() {
    Request request = RequestOf(WordsOf(argc, argv));
    if (!request.print.empty()) {
      Tell(stdout, request.print, wxICON_INFORMATION);
      return ExitNow();
    }
    isWindowed_ = true;
    request.host.warn = [](const std::string& text) {
      Tell(stderr, "qxhost-desktop: warning: " + text + "\n", wxICON_WARNING);
    };
    host_ = std::make_unique<Host>(std::move(request.host));
    user_ = std::make_unique<WxUser>();
    SetUserInterface(user_.get());
    host_->Packages(Registration::Design);
    settings_ = std::make_unique<WindowSettings>(SettingsFile());
    auto* window = new MainWindow(*host_, *settings_);
    window->Show();
    if (request.probe) StartProbe();
    if (!request.file.empty()) window->OpenFile(request.file);
    return true;
  }

  bool isWindowed_ = false;
  bool isDone_ = false;
  int code_ = 0;
  std::unique_ptr<Host> host_;
  std::unique_ptr<WxUser> user_;
  std::unique_ptr<WindowSettings> settings_;
};

}  // namespace qx::desktop

wxIMPLEMENT_APP(qx::desktop::App);
