#include <algorithm>
#include <array>

#include "engine/vc/CompilerArguments.h"
#include "engine/vc/DefFile.h"
#include "engine/vc/Libraries.h"
#include "engine/vc/Planner.h"
#include "platform/Texts.h"
#include "platform/files/Files.h"

namespace qx {
namespace {

constexpr std::string_view kLinker = "VCLinkerTool";
constexpr std::string_view kLibrarian = "VCLibrarianTool";

// Entry points that the run-time library brings, and what makes gcc's begin where they do.
constexpr std::array<std::string_view, 2> kWideEntries = {"wmainCRTStartup", "wWinMainCRTStartup"};
constexpr std::array<std::string_view, 6> kUsualEntries = {
    "mainCRTStartup",        "WinMainCRTStartup", "_DllMainCRTStartup",
    "_DllMainCRTStartup@12", "WinMain",           "DllMain"};

template <class Items>
bool Contains(const Items& items, std::string_view item) {
  return std::find(items.begin(), items.end(), item) != items.end();
}

void AddUnique(std::vector<std::string>& items, std::string item) {
  if (!Contains(items, item)) items.push_back(std::move(item));
}

// Where libraries are looked for: the listed folders, then the project's own.
std::vector<std::string> LibraryFolders(Planner& planner, std::string_view tool) {
  const VcSettings& settings = planner.settings;
  PathFinder finder;  // not the planner's, which may have looked before they were made
  std::vector<std::string> folders{settings.ProjectFolder()};
  std::vector<std::string> written = settings.List(tool, "AdditionalLibraryDirectories", VcList::Folders);
  for (const std::string& option : settings.List(tool, "AdditionalOptions", VcList::Options)) {
    if (UpperCase(option.substr(0, 9)) == "/LIBPATH:") written.push_back(option.substr(9));
  }
  for (const std::string& each : written) {
    const std::string found = finder.Find(settings.FullPath(each));
    if (!found.empty()) AddUnique(folders, WithTrailingDelimiter(found));
  }
  folders.push_back(planner.plan.places.folder);
  folders.push_back(settings.IntermediateFolder());
  return folders;
}

// The libraries that the project names.
std::vector<std::string> NamedLibraries(const VcSettings& settings, std::string_view tool) {
  std::vector<std::string> named = settings.List(tool, "AdditionalDependencies", VcList::Files);
  for (const std::string& option : settings.List(tool, "AdditionalOptions", VcList::Options)) {
    if (HasExtension(option, ".lib") && option[0] != '/' && option[0] != '-') named.push_back(option);
  }
  return named;
}

// Until a library is there that a project before this one makes, though the solution does not say so.
void AwaitLibraries(const Planner& planner, const std::vector<std::string>& named) {
  if (planner.task.neighbours == nullptr) return;
  std::vector<std::string> files;
  for (const auto* names : {&named, &planner.pragmaLibraries}) {
    for (const std::string& name : *names) files.push_back(FileOfLibrary(name));
  }
  for (const VcSource& source : planner.sources) {
    if (source.work == VcWork::Link) files.push_back(FilePart(source.path));
  }
  planner.task.neighbours->Await([&](const std::string& made) {
    return std::ranges::any_of(files,
                               [&](const std::string& file) { return SameText(FilePart(made), file); });
  });
}

// Every library that the project names, lists as a file or asks for in a source, then those of what it needs.
std::vector<std::string> FindLibraries(Planner& planner, std::string_view tool) {
  const std::vector<std::string> named = NamedLibraries(planner.settings, tool);
  AwaitLibraries(planner, named);
  LibraryFinder finder(LibraryFolders(planner, tool), planner.task.needs, planner.tools);
  std::vector<std::string> libraries;
  for (const VcSource& source : planner.sources) {
    if (source.work != VcWork::Link) continue;
    std::string path = source.path;
    if (PathFinder().FindFile(path)) {
      AddUnique(libraries, path);
    } else {
      planner.plan.linkErrors.push_back("cannot open file '" + source.file->path + "'");
    }
  }
  for (const std::string& name : named) {
    const LibraryFinder::Library library = finder.Find(name);
    if (library.found == LibraryFinder::Found::Missing) {
      planner.plan.linkErrors.push_back("cannot open file '" + name + "'");
    } else if (!library.argument.empty()) {
      AddUnique(libraries, library.argument);
    }
  }
  // A source asks for them on conditions that nobody has looked at: one that is not there is no fault yet.
  for (const std::string& name : planner.pragmaLibraries) {
    const LibraryFinder::Library library = finder.Find(name);
    if (!library.argument.empty()) AddUnique(libraries, library.argument);
  }
  for (auto need = planner.task.needs.rbegin(); need != planner.task.needs.rend(); ++need) {
    const BuiltProject& built = **need;
    const bool isStatic = HasExtension(built.output, ".lib") || HasExtension(built.output, ".a");
    if (isStatic) AddUnique(libraries, built.output);
    if (!built.importLibrary.empty()) AddUnique(libraries, built.importLibrary);
    for (const std::string& library : built.libraries) AddUnique(libraries, library);
  }
  return libraries;
}

// The .def file, and what /EXPORT options add to it; empty: there is neither.
std::string Definitions(Planner& planner) {
  const VcSettings& settings = planner.settings;
  std::string text;
  const std::string written = settings.Text(kLinker, "ModuleDefinitionFile");
  if (!TrimView(written).empty()) {
    std::string path = settings.FullPath(written);
    if (planner.finder.FindFile(path)) {
      text = DefFileForLd(ReadFile(path));
      planner.plan.inputs.push_back(path);
    } else {
      planner.plan.linkErrors.push_back("cannot open file '" + written + "'");
    }
  }
  for (const std::string& option : settings.List(kLinker, "AdditionalOptions", VcList::Options)) {
    if (UpperCase(option.substr(0, 8)) != "/EXPORT:") continue;
    std::string exported = option.substr(8);
    std::replace(exported.begin(), exported.end(), ',', ' ');
    const std::string line = DefFileForLd("EXPORTS\n" + exported);
    text += text.empty() ? line : line.substr(line.find('\n') + 1);
  }
  planner.plan.exports = text;
  return text.empty() ? std::string() : planner.Write("exports.def", text);
}

void AddLinkerOption(std::vector<std::string>& command, std::initializer_list<std::string> options) {
  for (const std::string& option : options) {
    command.push_back("-Xlinker");  // and not -Wl,: a path may hold a comma
    command.push_back(option);
  }
}

void AddEntry(Planner& planner, std::vector<std::string>& command) {
  const std::string entry = planner.settings.Text(kLinker, "EntryPointSymbol");
  const bool isProgram = planner.settings.Type() == VcType::Application;
  if (isProgram && (Contains(kWideEntries, entry) || (entry.empty() && planner.wideEntry))) {
    command.push_back("-municode");
  } else if (!entry.empty() && !Contains(kUsualEntries, entry)) {
    const bool decorated = planner.tools.prefix.starts_with("i686");
    AddLinkerOption(command, {"-e", (decorated ? "_" : "") + entry});
  }
}

std::vector<std::string> LinkCommand(Planner& planner) {
  const VcSettings& settings = planner.settings;
  // Statically, so that a program runs where no file of the compiler is.
  std::vector<std::string> command = {planner.tools.cpp, "-static", "-fdiagnostics-color=never"};
  if (settings.Type() == VcType::DynamicLibrary) command.push_back("-shared");
  command.push_back(settings.Text(kLinker, "SubSystem") == "2" ? "-mwindows" : "-mconsole");
  AddEntry(planner, command);
  if (planner.tools.prefix.starts_with("i686")) AddLinkerOption(command, {"--enable-stdcall-fixup"});
  if (!planner.plan.places.importLibrary.empty()) {
    AddLinkerOption(command, {"--out-implib", planner.plan.places.importLibrary});
  }
  const std::string& map = planner.plan.places.map;
  if (!map.empty()) AddLinkerOption(command, {"-Map", map});
  const std::string stack = settings.Text(kLinker, "StackReserveSize");
  if (!stack.empty() && stack != "0") AddLinkerOption(command, {"--stack", stack});
  if (settings.Text(kLinker, "LargeAddressAware") == "2") AddLinkerOption(command, {"--large-address-aware"});
  const std::string base = settings.Text(kLinker, "BaseAddress");
  if (base.starts_with("0x")) AddLinkerOption(command, {"--image-base", base});
  for (const std::string& option : settings.List(kLinker, "AdditionalOptions", VcList::Options)) {
    if (UpperCase(option).starts_with("/FORCE")) AddLinkerOption(command, {"--allow-multiple-definition"});
  }
  return command;
}

void PlanProgram(Planner& planner) {
  for (const std::string& name : planner.settings.List(kLinker, "DelayLoadDLLs", VcList::Folders)) {
    planner.plan.notes.push_back(name +
                                 " is loaded at the start, not when it is first used: ld delays nothing");
  }
  std::vector<std::string> command = LinkCommand(planner);
  std::vector<std::string> inputs = planner.objects;
  if (const std::string definitions = Definitions(planner); !definitions.empty())
    inputs.push_back(definitions);
  std::vector<std::string> files, libraries;
  for (const std::string& library : FindLibraries(planner, kLinker)) {
    (library.starts_with("-l") ? libraries : files).push_back(library);
    if (!library.starts_with("-l")) planner.plan.inputs.push_back(library);
  }
  planner.ninja.Rule(
      "link", {{"command", NinjaFile::Escaped(ShellQuoted(command)) + " -o $out @link.rsp"},
               {"rspfile", "link.rsp"},
               {"rspfile_content", "$in_newline -Wl,--start-group $files $libraries -Wl,--end-group"}});
  planner.ninja.Build({"link",
                       {planner.plan.places.output},
                       inputs,
                       files,
                       {kObjectsTarget},
                       {{"files", NinjaFile::Escaped(ShellQuoted(files))},
                        {"libraries", NinjaFile::Escaped(ShellQuoted(libraries))},
                        {"description", "Linking..."}}});
}

// Libraries among its inputs are not put into it: who links it links them besides.
void PlanLibrary(Planner& planner) {
  std::vector<std::string> inputs = planner.objects;
  for (const std::string& library : FindLibraries(planner, kLibrarian)) {
    if (HasExtension(library, ".obj") || HasExtension(library, ".o")) {
      inputs.push_back(library);
      planner.plan.inputs.push_back(library);
    } else {
      planner.plan.libraries.push_back(library);
    }
  }
  planner.ninja.Rule("library",
                     {{"command", "rm -f $out && " + NinjaFile::Escaped(ShellQuoted(planner.tools.ar)) +
                                      " qcsD $out @library.rsp"},
                      {"rspfile", "library.rsp"},
                      {"rspfile_content", "$in_newline"}});
  planner.ninja.Build({"library",
                       {planner.plan.places.output},
                       inputs,
                       {},
                       {kObjectsTarget},
                       {{"description", NinjaFile::Escaped("Creating library...")}}});
}

}  // namespace

void PlanLinking(Planner& planner) {
  const VcType type = planner.settings.Type();
  std::vector<std::string> last{kObjectsTarget};
  if (type == VcType::Application || type == VcType::DynamicLibrary) PlanProgram(planner);
  if (type == VcType::StaticLibrary) PlanLibrary(planner);
  if (type != VcType::Utility) last.push_back(planner.plan.places.output);
  planner.ninja.Build({"phony", {kAllTarget}, last, {}, {}, {}});
  planner.ninja.Default(kAllTarget);
}

}  // namespace qx
