// What the programs of the host take on their command lines alike: which packages, which options store, and
// how property pages are opened to be driven.
#pragma once

#include "host/Host.h"
#include "platform/commandline/Invocation.h"

namespace qx::cli {

inline constexpr OptionRow kPackageOption{
    "--package", "PATH", ValueKind::File,
    {},          true,   "load this package library instead of the one beside the program"};
inline constexpr OptionRow kOptionsOption{
    "--options",
    "FILE",
    ValueKind::File,
    {},
    false,
    "the options store (default: $QXHOST_OPTIONS, else options.xml in the user's configuration)"};

inline constexpr OptionRow kActionOption{"--action", "N",   ValueKind::Number,
                                         {},         false, "which action, counted from 1 (default: 1)"};
inline constexpr OptionRow kPropertyOption{
    "--property", "NAME", ValueKind::Text, {}, false, "open at the page that this property's editor names"};
inline constexpr OptionRow kOptionsPageOption{
    "--options-page", "", ValueKind::None, {}, false, "the pages of the options instead"};
inline constexpr OptionRow kInputOption{"--input", "COMMANDS", ValueKind::File,
                                        {},        false,      "read the commands from this file"};

// What --package and --options say; names are made absolute, for a run changes the current folder.
Host::Settings HostSettingsOf(const Invocation& invocation, std::string defaultPackage);
// What --action says, 1 without it.
int ActionNumber(const Invocation& invocation);

}  // namespace qx::cli
