#include <windows.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <vector>

#include "host/process/RunningChild.h"
#include "platform/WindowsText.h"

namespace qx {
namespace {

using system::Handle;

// How often an abandoned pipe is still read: far more than a pipe holds.
constexpr int kLastReads = 32;

struct Pipe {
  Handle readEnd;
  std::atomic<bool> abandoned = false;
  int lastReads = 0;
  std::atomic<HANDLE> reader = nullptr;  // the reading thread, so that its read can be cancelled
};

// What CreateProcess is told, beside texts: which handles the child gets, and no others.
struct StartOrders {
  explicit StartOrders(std::array<HANDLE, 3> streams) {
    info.StartupInfo.cb = sizeof info;
    info.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    info.StartupInfo.hStdInput = streams[0];
    info.StartupInfo.hStdOutput = streams[1];
    info.StartupInfo.hStdError = streams[2];
    for (const HANDLE stream : streams) {  // a handle may stand in the list only once
      const bool usable = stream != nullptr && stream != INVALID_HANDLE_VALUE;
      if (usable && std::find(inherited.begin(), inherited.end(), stream) == inherited.end()) {
        inherited.push_back(stream);
      }
    }
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    memory.resize(size);
    info.lpAttributeList = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory.data());
    InitializeProcThreadAttributeList(info.lpAttributeList, 1, 0, &size);
    UpdateProcThreadAttribute(info.lpAttributeList, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, inherited.data(),
                              inherited.size() * sizeof(HANDLE), nullptr, nullptr);
  }
  ~StartOrders() { DeleteProcThreadAttributeList(info.lpAttributeList); }
  StartOrders(const StartOrders&) = delete;
  StartOrders& operator=(const StartOrders&) = delete;

  STARTUPINFOEXW info{};
  std::vector<HANDLE> inherited;
  std::vector<char> memory;
};

[[noreturn]] void RaiseCannotStart(const ChildProcess& what, DWORD error) {
  const std::string beginning = "Cannot start \"" + what.executable + "\"";
  const DWORD folder = what.directory.empty() ? FILE_ATTRIBUTE_DIRECTORY
                                              : GetFileAttributesW(system::ToWide(what.directory).c_str());
  const bool folderIsBad = folder == INVALID_FILE_ATTRIBUTES || (folder & FILE_ATTRIBUTE_DIRECTORY) == 0;
  if (folderIsBad || error == ERROR_DIRECTORY) {
    throw Exception(beginning + " in the folder \"" + what.directory +
                    "\": " + system::ErrorText(ERROR_DIRECTORY));
  }
  throw Exception(beginning + ": " + system::ErrorText(error));
}

void CheckTexts(const ChildProcess& what) {
  for (const std::string* text : {&what.executable, &what.parameters, &what.directory}) {
    if (text->find('\0') == std::string::npos) continue;
    throw Exception("Cannot start \"" + std::string(what.executable.c_str()) +
                    "\": a zero byte in its command line");
  }
  if (what.executable.find('"') != std::string::npos) RaiseCannotStart(what, ERROR_INVALID_NAME);
}

// The executable in quotes, and behind it the parameters exactly as they are.
std::wstring CommandLine(const ChildProcess& what) {
  std::string executable = what.executable;
  for (char& c : executable) {
    if (c == '/') c = '\\';
  }
  return system::ToWide("\"" + executable + "\"" + (what.parameters.empty() ? "" : " ") + what.parameters);
}

// A handle that the child may inherit, to the same object as one of the host's own streams.
Handle Inheritable(DWORD stream) {
  const HANDLE own = GetStdHandle(stream);
  HANDLE copy = nullptr;
  DuplicateHandle(GetCurrentProcess(), own, GetCurrentProcess(), &copy, 0, TRUE, DUPLICATE_SAME_ACCESS);
  return Handle(copy);
}

struct Asked {
  const std::vector<DWORD>& members;
  bool anybody = false;
};

BOOL CALLBACK AskWindowToClose(HWND window, LPARAM parameter) {
  Asked& asked = *reinterpret_cast<Asked*>(parameter);
  DWORD owner = 0;
  GetWindowThreadProcessId(window, &owner);
  if (std::find(asked.members.begin(), asked.members.end(), owner) != asked.members.end()) {
    asked.anybody = PostMessageW(window, WM_CLOSE, 0, 0) || asked.anybody;
  }
  return TRUE;
}

}  // namespace

struct RunningChild::System {
  std::string executable;
  Handle process;
  DWORD processId = 0;
  // None where the host stands in a job that forbids others (Windows 7): then only the child ends.
  Handle job;
  bool sharesConsole = false;
  bool over = false;
  std::array<Pipe, 2> pipes;

  Pipe& PipeOf(OutputStream stream) { return pipes[static_cast<std::size_t>(stream)]; }
  Handle OpenPipe(OutputStream stream);
  void Start(const ChildProcess& what);
  void PutIntoJob();
  std::vector<DWORD> Members() const;
};

// Keeps the end to read from; the other, which the child inherits, is the result.
Handle RunningChild::System::OpenPipe(OutputStream stream) {
  HANDLE readEnd = nullptr;
  HANDLE writeEnd = nullptr;
  if (!CreatePipe(&readEnd, &writeEnd, nullptr, static_cast<DWORD>(LineSplitter::kReadSize))) {
    throw Exception("Cannot start \"" + executable + "\": " + system::LastError());
  }
  PipeOf(stream).readEnd = Handle(readEnd);
  SetHandleInformation(writeEnd, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
  return Handle(writeEnd);
}

void RunningChild::System::Start(const ChildProcess& what) {
  CheckTexts(what);
  SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
  const Handle input(CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable,
                                 OPEN_EXISTING, 0, nullptr));
  const Handle output = what.redirectOutput ? OpenPipe(OutputStream::Output) : Inheritable(STD_OUTPUT_HANDLE);
  const Handle error = what.redirectOutput ? OpenPipe(OutputStream::Error) : Inheritable(STD_ERROR_HANDLE);
  StartOrders orders({input.Get(), output.Get(), error.Get()});
  sharesConsole = !what.hideWindow;
  // Suspended, so that it cannot start others before it is in its job; a group of its own, so that Ctrl-Break
  // can be sent to it alone.
  const DWORD flags = CREATE_SUSPENDED | EXTENDED_STARTUPINFO_PRESENT | CREATE_NEW_PROCESS_GROUP |
                      (what.hideWindow ? CREATE_NO_WINDOW : 0);
  std::wstring commandLine = CommandLine(what);
  const std::wstring folder = system::ToWide(what.directory);
  PROCESS_INFORMATION started{};
  if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, flags, nullptr,
                      folder.empty() ? nullptr : folder.c_str(), &orders.info.StartupInfo, &started)) {
    RaiseCannotStart(what, GetLastError());
  }
  process = Handle(started.hProcess);
  processId = started.dwProcessId;
  const Handle thread(started.hThread);
  PutIntoJob();
  ResumeThread(thread.Get());
}

// From its first moment the child is in a job; what it starts is in it too, and ends with it if the host crashes.
void RunningChild::System::PutIntoJob() {
  job = Handle(CreateJobObjectW(nullptr, nullptr));
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  SetInformationJobObject(job.Get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
  if (!AssignProcessToJobObject(job.Get(), process.Get())) job = Handle();
}

std::vector<DWORD> RunningChild::System::Members() const {
  constexpr std::size_t kMost = 1024;
  if (!job.IsOpen()) return {processId};
  std::vector<char> memory(sizeof(JOBOBJECT_BASIC_PROCESS_ID_LIST) + kMost * sizeof(ULONG_PTR));
  auto* const list = reinterpret_cast<JOBOBJECT_BASIC_PROCESS_ID_LIST*>(memory.data());
  if (!QueryInformationJobObject(job.Get(), JobObjectBasicProcessIdList, list,
                                 static_cast<DWORD>(memory.size()), nullptr) &&
      GetLastError() != ERROR_MORE_DATA) {
    return {processId};
  }
  std::vector<DWORD> members;
  for (DWORD i = 0; i < list->NumberOfProcessIdsInList; ++i) {
    members.push_back(static_cast<DWORD>(list->ProcessIdList[i]));
  }
  return members;
}

RunningChild::RunningChild(const ChildProcess& what) : system_(std::make_unique<System>()) {
  system_->executable = what.executable;
  system_->Start(what);
}

RunningChild::~RunningChild() {
  if (!system_->over) KillTree();
  for (Pipe& pipe : system_->pipes) {
    if (const HANDLE reader = pipe.reader) CloseHandle(reader);
  }
}

std::size_t RunningChild::Read(OutputStream stream, std::span<char> space) {
  Pipe& pipe = system_->PipeOf(stream);
  if (pipe.reader == nullptr) {
    HANDLE reader = nullptr;
    DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &reader, 0, FALSE,
                    DUPLICATE_SAME_ACCESS);
    pipe.reader = reader;
  }
  for (;;) {
    DWORD count = 0;
    DWORD waiting = 0;
    // An abandoned pipe is read as long as that does not block.
    if (pipe.abandoned &&
        (++pipe.lastReads > kLastReads ||
         !PeekNamedPipe(pipe.readEnd.Get(), nullptr, 0, nullptr, &waiting, nullptr) || waiting == 0)) {
      return 0;
    }
    if (ReadFile(pipe.readEnd.Get(), space.data(), static_cast<DWORD>(space.size()), &count, nullptr)) {
      if (count > 0) return count;  // an empty write is no end
      continue;
    }
    if (GetLastError() != ERROR_OPERATION_ABORTED || !pipe.abandoned) return 0;
  }
}

Woken RunningChild::Wait(TEvent* stop, TEvent& notice, bool forExit, std::chrono::milliseconds patience) {
  std::array<HANDLE, 3> waited{};
  std::array<Woken, 3> meaning{};
  DWORD count = 0;
  const auto add = [&](HANDLE handle, Woken why) {
    waited[count] = handle;
    meaning[count++] = why;
  };
  if (stop != nullptr) add(reinterpret_cast<HANDLE>(stop->NativeHandle()), Woken::Stop);
  add(reinterpret_cast<HANDLE>(notice.NativeHandle()), Woken::Notice);
  if (forExit) add(system_->process.Get(), Woken::Exit);
  const DWORD woken =
      WaitForMultipleObjects(count, waited.data(), FALSE, static_cast<DWORD>(patience.count()));
  return woken < WAIT_OBJECT_0 + count ? meaning[woken - WAIT_OBJECT_0] : Woken::Time;
}

// A child with the host's console hears Ctrl-Break; one with windows, its window's closing. A console program
// without a console window hears neither: there is no grace to give.
bool RunningChild::AskTreeToEnd() {
  const std::vector<DWORD> members = system_->Members();
  Asked asked{members};
  EnumWindows(AskWindowToClose, reinterpret_cast<LPARAM>(&asked));
  if (system_->sharesConsole && GenerateConsoleCtrlEvent(CTRL_BREAK_EVENT, system_->processId)) {
    asked.anybody = true;
  }
  return asked.anybody;
}

void RunningChild::KillTree() {
  if (system_->job.IsOpen()) {
    TerminateJobObject(system_->job.Get(), kTerminatedExitCode);
  } else {
    TerminateProcess(system_->process.Get(), kTerminatedExitCode);
  }
}

bool RunningChild::TreeIsAlive() {
  JOBOBJECT_BASIC_ACCOUNTING_INFORMATION accounts{};
  if (system_->job.IsOpen() &&
      QueryInformationJobObject(system_->job.Get(), JobObjectBasicAccountingInformation, &accounts,
                                sizeof accounts, nullptr)) {
    return accounts.ActiveProcesses > 0;
  }
  return WaitForSingleObject(system_->process.Get(), 0) == WAIT_TIMEOUT;
}

void RunningChild::AbandonPipes() {
  for (Pipe& pipe : system_->pipes) {
    pipe.abandoned = true;
    // The reader may not be in its read yet, or again: the caller repeats this.
    if (const HANDLE reader = pipe.reader) CancelSynchronousIo(reader);
  }
}

// What outlives a child that ended by itself may live on, as everywhere.
int RunningChild::ExitCode() {
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION noLimits{};
  if (system_->job.IsOpen()) {
    SetInformationJobObject(system_->job.Get(), JobObjectExtendedLimitInformation, &noLimits,
                            sizeof noLimits);
  }
  system_->over = true;
  DWORD code = 0;
  GetExitCodeProcess(system_->process.Get(), &code);
  return static_cast<int>(code);
}

}  // namespace qx
