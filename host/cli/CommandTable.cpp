#include "host/cli/CommandTable.h"

#include <array>

#include "host/HostArguments.h"
#include "host/cli/Commands.h"
#include "host/settings/HostSettings.h"
#include "platform/Texts.h"

namespace qx::cli {
namespace {

constexpr std::array<std::string_view, 3> kColours{"auto", "always", "never"};
constexpr std::array<std::string_view, 5> kLogStyles{"text", "json", "teamcity", "github", "azure"};
constexpr std::array<std::string_view, 3> kChecks{"fail", "warn", "off"};

constexpr OptionRow kSet{
    "--set", "NAME=VALUE", ValueKind::Assignment,
    {},      true,         "a variable that wins over the project's and the environment's"};
constexpr OptionRow kJson{"--json", "", ValueKind::None, {}, false, "print JSON"};

constexpr std::array kGlobals{
    kPackageOption,
    kOptionsOption,
    OptionRow{"--color", "WHEN", ValueKind::Choice, kColours, false, "colour the log: auto, always or never"},
    kHelpOption,
    kVersionOption,
};

constexpr OperandRow kFile{"FILE", ValueKind::File, 1, 1};

constexpr OptionRow kWait{"--wait", "SECONDS", ValueKind::Seconds,
                          {},       false,     "wait so long for another run to end, instead of not at all"};

constexpr std::array kRunOperands{kFile};
constexpr std::array kOptionalFile{OperandRow{"FILE", ValueKind::File, 0, 1}};
constexpr std::array kRunOptions{
    kSet,
    OptionRow{"--log", "STYLE", ValueKind::Choice, kLogStyles, false,
              "how the log is written: text, json, or with the messages of teamcity, github or azure"},
    OptionRow{"--log-file", "FILE", ValueKind::File, {}, false, "write the log into this file too"},
    OptionRow{"--no-save", "", ValueKind::None, {}, false, "do not save the actions' properties afterwards"},
    OptionRow{"--dry-run",
              "",
              ValueKind::None,
              {},
              false,
              "change nothing; show the programs that would run and a diff of the files that would change"},
    OptionRow{
        "--check-built", "WHAT", ValueKind::Choice, kChecks, false,
        "what becomes of a run that left a program missing, stale or of another version: fail, warn or off"},
    OptionRow{"--baseline",
              "FILE",
              ValueKind::File,
              {},
              false,
              "do not count the errors and warnings that it holds"},
    OptionRow{"--update-baseline",
              "",
              ValueKind::None,
              {},
              false,
              "write this run's errors and warnings into the baseline, when the run succeeds"},
    OptionRow{"--report",
              "FORMAT=FILE",
              ValueKind::Assignment,
              {},
              true,
              "write a report of the run: html, json, junit or sarif"},
    OptionRow{"--timeout", "SECONDS", ValueKind::Seconds, {}, false, "stop the build after this time"},
    kWait,
};
constexpr std::array kValidateOptions{kSet};
constexpr std::array kCheckOptions{kSet, kJson};

constexpr std::array kInitOperands{OperandRow{"SOLUTION", ValueKind::File, 1, 1},
                                   OperandRow{"FILE", ValueKind::File, 0, 1}};
constexpr std::array kInitOptions{
    OptionRow{
        "--configuration", "NAME", ValueKind::Text, {}, false, "build this configuration of the solution"},
    OptionRow{
        "--stamp", "", ValueKind::None, {}, false, "stamp version numbers and raise them with each run"}};
constexpr std::array kAddOperands{kFile, OperandRow{"ACTION", ValueKind::Action, 1, 1},
                                  OperandRow{"NAME=VALUE", ValueKind::Assignment, 0, kAny}};
constexpr std::array kSetOperands{kFile, OperandRow{"NAME=VALUE", ValueKind::Assignment, 1, kAny}};
constexpr std::array kSetOptions{kActionOption};
constexpr std::array<std::string_view, 4> kParts{"major", "minor", "build", "revision"};
constexpr std::array kVersionOperands{kFile, OperandRow{"VERSION", ValueKind::Text, 0, 1}};
constexpr std::array kVersionOptions{
    OptionRow{"--action",
              "N",
              ValueKind::Number,
              {},
              false,
              "which action, counted from 1 (default: the first that keeps versions)"},
    OptionRow{"--bump", "PART", ValueKind::Choice, kParts, false,
              "raise this part by one: major, minor, build or revision; those behind it become 0"},
    kJson};
constexpr OperandRow kNumber{"N", ValueKind::Number, 1, 1};
constexpr std::array kNumberOperands{kFile, kNumber};
constexpr std::array kMoveOperands{kFile, kNumber, OperandRow{"TO", ValueKind::Number, 1, 1}};
constexpr std::array kVariableOperands{kFile, OperandRow{"NAME=VALUE", ValueKind::Assignment, 0, kAny}};
constexpr std::array kVariableOptions{
    OptionRow{"--remove", "NAME", ValueKind::Text, {}, true, "take this variable out"}};
constexpr std::array kHistoryOptions{kJson};
constexpr std::array kRestoreOptions{
    OptionRow{"--run", "N", ValueKind::Number, {}, false, "the run by its number (default: the last)"},
    OptionRow{"--dry-run", "", ValueKind::None, {}, false, "only say what would be done"},
    OptionRow{"--numbers", "", ValueKind::None, {}, false, "take the build project's numbers back, too"},
    OptionRow{"--force", "", ValueKind::None, {}, false, "restore what was changed since, too"},
    kWait,
};
constexpr std::array kShowOptions{
    kJson, OptionRow{"--all", "", ValueKind::None, {}, false, "hidden properties too"}};
constexpr std::array kActionsOptions{kJson};
constexpr std::array kPackageOptions{
    kJson,
    OptionRow{"--no-design", "", ValueKind::None, {}, false, "register without property editors and pages"}};
constexpr std::array kOptionsOperands{OperandRow{"NAME=VALUE", ValueKind::Assignment, 0, kAny}};
constexpr std::array kOptionsOptions{kJson};
constexpr std::array kExpandOperands{OperandRow{"TEXT", ValueKind::Text, 1, 1}};
constexpr std::array kExpandOptions{
    OptionRow{"--project", "FILE", ValueKind::File, {}, false, "take the variables of this build project"},
    kSet};
constexpr std::array kDriveOptions{kActionOption, kPropertyOption, kOptionsPageOption, kInputOption, kSet};
constexpr std::array kScriptOperands{OperandRow{"FILE", ValueKind::File, 0, 1},
                                     OperandRow{"ARGUMENT", ValueKind::Text, 0, kAny}};
constexpr std::array kScriptOptions{
    OptionRow{"-e", "TEXT", ValueKind::Text, {}, false, "run this text instead of a file"}};
constexpr std::array kHelpOperands{OperandRow{"COMMAND", ValueKind::Command, 0, 1}};

constexpr std::array kCommands{
    CommandRow{
        "run", kRunOperands, kRunOptions, "run a build project",
        "Validates every action first; when one finds an error, nothing is executed. Then executes the "
        "actions in order until one fails.\n"
        "The actions' properties, raised numbers among them, are saved whatever the outcome. Ctrl-C, SIGTERM "
        "and the time-out end the running action and its programs. Relative paths are taken from the build "
        "project's folder. A second run of the same file is refused while one is going on.\n"
        "A dry run does everything up to the programs and writes nothing. Its diff names files as seen from "
        "the build project's folder: apply it there with patch -p1. A web server is asked without a user "
        "name, and what would be put on it is shown.\n"
        "Errors and warnings of compilers are counted in the last lines. Those that a baseline holds are "
        "not; they are known again by code, file and message, whatever their line.\n"
        "A report is written when the run has ended, however it ended. html: a page to read. json: the "
        "summary, the errors and warnings, the tests. junit: a case for each action and project, and the "
        "tests. sarif: the errors and warnings, in version 2.1.0.",
        "qxhost run nightly.xml --set CONFIG=Release --timeout 3600",
        "builds with one variable replaced, for an hour at most", RunProject},
    CommandRow{"validate", kRunOperands, kValidateOptions, "check a build project without running it",
               "Prints each validation error as SUBJECT: MESSAGE and exits 3 when there is one.",
               "qxhost validate nightly.xml", "says what is missing before the night", ValidateProject},
    CommandRow{
        "check", kRunOperands, kCheckOptions, "tell what can be known of a run before it",
        "Builds and writes nothing. Says what validating says, and of actions that can tell: whether their "
        "files, configurations and engine are there, which projects the run builds and why not the others, "
        "which files it stamps and whether they can be, and which variables and version numbers are none.\n"
        "An error is what would make the run fail before or at its first file; everything else is a warning. "
        "Exits 3 with an error, 0 with warnings. A run says the same before it begins.",
        "qxhost check nightly.xml --set CONFIG=Release", "says in a second what a night would have told",
        CheckBeforeRun},
    CommandRow{
        "init", kInitOperands, kInitOptions, "make a build project from a solution",
        "FILE is by default the solution's name with .build.xml, beside it; a file that is there is not "
        "overwritten. Chooses the product by the solution's format, a release configuration, and the version "
        "numbers that the sources have now; says what it chose and which command comes next.\n"
        "With --stamp the runs raise the build numbers and write them into the AssemblyInfo files that say a "
        "version and into the version scripts, whose strings are taken over. What would lose something by it "
        "is left out, with a warning.",
        "qxhost init App.sln --stamp", "writes App.build.xml, which qxhost run builds and stamps",
        InitProject},
    CommandRow{"new",
               kRunOperands,
               {},
               "write an empty build project",
               "Refuses to overwrite a file.",
               "qxhost new nightly.xml",
               "makes a project to add actions to",
               NewProject},
    CommandRow{
        "add",
        kAddOperands,
        {},
        "append an action to a build project",
        "ACTION is the display name that `qxhost actions` shows. Properties are set as by `qxhost set`.",
        "qxhost add nightly.xml \"Run MSTest\"",
        "appends an action with its defaults",
        AddAction},
    CommandRow{"set", kSetOperands, kSetOptions, "set properties of an action",
               "Properties are set in the order given, all of them or none. A list takes its items separated "
               "by \";\".",
               "qxhost set nightly.xml --action 2 OutputFileName=tests.trx",
               "changes one property of the second action", SetProperties},
    CommandRow{
        "version", kVersionOperands, kVersionOptions, "show, set or raise an action's version numbers",
        "Without VERSION and --bump shows the numbers as they stand. VERSION has four parts and is given to "
        "all of them, so that assemblies and resource scripts bear the same.\n"
        "A part is at most 65534, which is an assembly's limit; 65535 goes while the action stamps none. "
        "When one part cannot be, nothing is changed.",
        "qxhost version nightly.xml --bump minor", "makes 1.3.0.0 of 1.2.7.1", ShowVersions},
    CommandRow{"remove",
               kNumberOperands,
               {},
               "take an action out of a build project",
               "N is the action's number that `qxhost show` prints. Comments around it stay.",
               "qxhost remove nightly.xml 2",
               "takes the second action out",
               RemoveAction},
    CommandRow{"move",
               kMoveOperands,
               {},
               "move an action to another place",
               "TO is the number that the action has afterwards. Comments right above it go with it.",
               "qxhost move nightly.xml 2 1",
               "lets the second action run first",
               MoveAction},
    CommandRow{"disable",
               kNumberOperands,
               {},
               "keep an action without running it",
               "The action stays with all its properties; `qxhost run` and `qxhost validate` pass it over.",
               "qxhost disable nightly.xml 2",
               "leaves the second action out of the next runs",
               DisableAction},
    CommandRow{"enable",
               kNumberOperands,
               {},
               "run a disabled action again",
               "",
               "qxhost enable nightly.xml 2",
               "takes the second action into the next runs",
               EnableAction},
    CommandRow{
        "var", kVariableOperands, kVariableOptions, "show, set or remove a build project's variables",
        "Without an assignment and --remove shows them. A variable that is there already keeps its place.",
        "qxhost var nightly.xml ROOT=src", "gives %ROOT% in the project's texts this value", ChangeVariables},
    CommandRow{
        "history", kRunOperands, kHistoryOptions,
        "show the runs of a build project and the files they changed",
        "Newest first. Of the last runs, 20 unless the host setting History says otherwise, the files that "
        "they changed are kept as they were before, so that qxhost restore can put them back.",
        "qxhost history nightly.xml", "lists the last runs", ShowHistory},
    CommandRow{
        "restore", kRunOperands, kRestoreOptions, "put the files back as they were before a run",
        "A file that was changed since the run is left alone and named, and the exit code is 1, "
        "unless --force "
        "is given; what that overwrites is kept as a run of its own. A file on a web server is put back "
        "with the login of the action whose solution names that server; where that fails, what it was "
        "is written beside the build project. The backups beside the files stay. Numbers "
        "stay raised without --numbers: a number that was given once may be in the world.",
        "qxhost restore nightly.xml --dry-run", "says what would be put back", RestoreRun},
    CommandRow{
        "show", kRunOperands, kShowOptions, "show a build project's actions and properties",
        "Properties come in the order of declaration; a secret is shown as ***. Of the hidden ones, which "
        "pages edit, those are shown that were set.",
        "qxhost show nightly.xml --all", "lists the hidden properties too", ShowProject},
    CommandRow{
        "edit",
        kOptionalFile,
        {},
        "open the desktop",
        "Starts qxhost-desktop, which stands beside this program or on the PATH, with the same packages "
        "and options and, when one is named, the build project. Does not wait for it on Windows; "
        "elsewhere the desktop takes this program's place.",
        "qxhost edit nightly.xml",
        "opens the project in the desktop",
        EditProject},
    CommandRow{"actions",
               {},
               kActionsOptions,
               "list every action that the packages offer",
               "By category, with the names that `qxhost add` takes.",
               "qxhost actions",
               "shows the catalogue",
               ShowActions},
    CommandRow{"package",
               {},
               kPackageOptions,
               "show what a package registers",
               "Loads the packages and prints how far each came, its unit table and every registration call "
               "in the order it was made.",
               "qxhost --package ./mine.so package",
               "checks a package of one's own",
               ShowPackages},
    CommandRow{
        "options", kOptionsOperands, kOptionsOptions, "show or change the options",
        "Without an assignment shows the options objects of the packages and the host's own settings, which "
        "these are. An empty value takes a setting of the host out.",
        "qxhost options Framework.v2.0=/opt/msbuild", "names the folder of a framework", ShowOptions,
        HostSettingsHelp},
    CommandRow{"expand", kExpandOperands, kExpandOptions, "print a text with its variables expanded",
               "%NAME% is replaced by --set, the project's variables or the environment, in this order; %% "
               "is one percent sign.",
               "qxhost expand \"%ROOT%/App.sln\" --project nightly.xml",
               "shows the path that a build will use", ExpandText},
    CommandRow{
        "drive", kOptionalFile, kDriveOptions, "drive an action's property pages without a screen",
        "Fills the pages, then reads one command a line from standard input and answers each with one line "
        "of JSON. What was wrong with a command stands in its answer; the exit code is 0 all the same.\n"
        "Names of controls stand in the answer to state. A page's name with blanks is written as it is, "
        "without quotes, and a VALUE is the rest of the line: text Some Page.txtName a b. A command goes to "
        "the page that it names.\n"
        "pages: the page names in order; active: the page that the user is on.\n"
        "state [PAGE[.CONTROL]]: every control, or one.\n"
        "text PAGE.CONTROL VALUE: types into an edit, a combo box or a spin edit; picks an item of a list by "
        "its words.\n"
        "click PAGE.CONTROL: clicks a check box, whose tick comes or goes, a radio button or a button.\n"
        "button PAGE.CONTROL N: presses the Nth button inside an edit, counted from 1.\n"
        "select PAGE.CONTROL INDEX: picks an item of a list, counted from 0.\n"
        "tick PAGE.CONTROL INDEX on|off: ticks an item of a check list, counted from 0.\n"
        "cell PAGE.CONTROL COL ROW VALUE: edits a cell of a grid, both counted from 0; row 0 is its "
        "heading.\n"
        "answer file PATH, answer folder PATH, answer cancel: queues the answer to the next picker, so it "
        "goes before the command that opens it.\n"
        "dialogs: every dialog shown since the last time.\n"
        "write: has every page write its values and saves them.\n"
        "quit: ends; what was not written is lost.\n"
        "A command that is wrong answers {\"error\":\"...\"} and changes nothing.",
        "qxhost drive nightly.xml < commands.txt", "changes the first action by the rules of its pages",
        DrivePages},
    CommandRow{
        "script", kScriptOperands, kScriptOptions, "run a Lua script on the options",
        "A script calls the functions that the packages register, and uses the values of their enumerations "
        "by name: VALUE, or ENUMERATION.VALUE where two have the same. "
        "A function gives an options object, whose properties are read and set as fields, or nil. Letter "
        "case does not matter in any of these names.\n"
        "Lua's own libraries are there, except os.exit. Arguments arrive in ... and in the table arg.\n"
        "When the script has ended, the options that it changed are saved; when it fails, its file and line "
        "are named, nothing is saved and the exit code is 1.",
        "qxhost script tools.lua /opt/tools", "runs a script with one argument", RunScriptFile},
    CommandRow{"help",
               kHelpOperands,
               {},
               "show help",
               "",
               "qxhost help run",
               "shows the help of one command",
               ShowHelp},
};

constexpr ProgramRow kProgram{"qxhost", kGlobals, kCommands, {}};

constexpr std::array kExitCodes{
    ExitCodeRow{0, "success"},
    ExitCodeRow{1, "an action or a script failed"},
    ExitCodeRow{2, "usage, or an input that cannot be read"},
    ExitCodeRow{3, "validation failed; nothing was executed"},
    ExitCodeRow{4, "an exception left an action"},
    ExitCodeRow{5, "stopped by the user or the time-out"},
};

}  // namespace

const ProgramRow& TheProgram() { return kProgram; }
std::span<const ExitCodeRow> ExitCodes() { return kExitCodes; }

std::vector<std::string> DetailsOf(const CommandRow& command) {
  std::vector<std::string> paragraphs = SplitLines(command.details);
  if (command.furtherDetails != nullptr) {
    for (std::string& line : SplitLines(command.furtherDetails())) paragraphs.push_back(std::move(line));
  }
  return paragraphs;
}

}  // namespace qx::cli
