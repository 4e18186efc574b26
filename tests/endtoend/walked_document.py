#!/usr/bin/env python3
"""Types what a document has its reader type, and compares what comes with what the document shows.

usage: walked_document.py PROGRAMS DOCUMENT EXAMPLES TREES SCRATCH [--write]

In an indented block a line that begins with "$ " is a command, with the lines after it that continue it, and what follows is
what it prints. A line "..." stands for any lines. In a row of a table each text between backquotes that begins with one of the
programs is a command that has to succeed. Everything is typed into one shell, in a home of its own: /home/me there, with a
copy of EXAMPLES in it. apt-get takes sources out of TREES (or $QX_REAL_TREES) instead of the archive. Seconds, dates and the
folder of the engine are not compared. --write puts what came into the document."""
import os
import pathlib
import re
import shutil
import subprocess
import sys

HOME, ENGINE, END = "/home/me", "/usr/lib/qxhost/engine", "\x1e"
# What a source package unpacks to, and the tree that it is taken from.
SOURCES = {"cmigemo": "cmigemo-1.2+gh0.20150404", "libidn": "libidn-1.41"}
APT_GET = """#!/bin/bash
# The archive's part, played by trees that are there: apt-get -qq source [--tar-only] NAME.
name=${{!#}}
case "$name" in {cases} *) exit 100 ;; esac
cp -r "{trees}/$name" "$folder"
case " $* " in *' --tar-only '*) tar -czf "${{folder/-/_}}.orig.tar.gz" "$folder" && rm -r "$folder" ;; esac
"""


def steps(lines):
    """(first line of the command, first of its output, end of the output, command) of each step of a document."""
    found, at = [], 0
    while at < len(lines):
        if lines[at].startswith("| "):
            found += [(at, None, None, command.replace("\\|", "|"))
                      for command in re.findall(r"`((?:qxhost|vsinspect) [^`]*)`", lines[at])]
        elif lines[at].startswith("    $ "):
            first, command = at, lines[at][6:]
            while command.endswith("\\"):
                at += 1
                command = command[:-1] + lines[at].strip()
            end = at + 1
            while is_output(lines, end):
                end += 1
            found.append((first, at + 1, end, command))
            at = end - 1
        at += 1
    return found


def is_output(lines, at):
    """Whether this line is printed by the command above it; a blank one is where the next that is not blank is."""
    line = next((line for line in lines[at:] if line), "")
    return line.startswith("    ") and not line.startswith("    $ ")


def typed(commands, home, programs, trees):
    """What each command prints, and its exit code."""
    tools = home.parent / "tools"
    tools.mkdir()
    cases = " ".join(f"{name}) folder={folder} ;;" for name, folder in SOURCES.items())
    (tools / "apt-get").write_text(APT_GET.format(cases=cases, trees=trees))
    (tools / "apt-get").chmod(0o755)
    shell = "".join(f"{command}\nprintf '{END}%d{END}' $?\n" for command in commands)
    environment = {name: value for name, value in os.environ.items()
                   if name in ("LANG", "LC_ALL", "TMPDIR", "CCACHE_DIR", "TERM")}
    environment |= {"HOME": str(home), "PATH": f"{tools}:{programs}:{os.environ['PATH']}", "NO_COLOR": "1"}
    (home.parent / "typed").write_text(shell)
    result = subprocess.run(["bash", str(home.parent / "typed")], cwd=home, env=environment, stdin=subprocess.DEVNULL,
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    parts = result.stdout.decode("utf-8", "replace").split(END)
    return list(zip(parts[0::2], map(int, parts[1::2])))


def shown(text, home, programs):
    """A command's output as a document shows it."""
    text = text.replace(f"{programs}/engine", ENGINE).replace(str(home), HOME)
    text = text.replace(str(home)[1:], HOME[1:])  # as a diff names files
    return [line.rstrip() for line in text.replace("\t", "    ").splitlines()]


def agrees(wanted, came):
    """Whether the lines that came are those of the document."""
    pattern = ""
    for line in wanted:
        line = re.escape(line)
        line = re.sub(r"\d+\\\.\d\\ s\b", r"\\d+\\.\\d s", line)
        line = re.sub(r"\b\d\d:\d\d\b", r"(\\d{4}-\\d\\d-\\d\\d )?\\d\\d:\\d\\d", line)
        pattern += r"(.*\n)*" if line == r"\.\.\." else line + "\n"
    return re.fullmatch(pattern, "".join(line + "\n" for line in came)) is not None


def missing(programs, trees, document):
    """Why the document cannot be walked here, or nothing."""
    for tool in ("ninja", "i686-w64-mingw32-g++", "i686-w64-mingw32-windres", "mcs", "xbuild"):
        if not shutil.which(tool):
            return f"no {tool} on this machine"
    if not (programs / "engine" / "devenv.com").exists():
        return "the engine is not built for this system"
    for name in SOURCES:
        if f"apt-get -qq source {name}" in document or f"--tar-only {name}" in document:
            if not (trees / name).is_dir():
                return f"there is no {trees / name}"
    return ""


def main():
    programs, path, examples, trees, scratch = (pathlib.Path(argument).resolve() for argument in sys.argv[1:6])
    trees = pathlib.Path(os.environ.get("QX_REAL_TREES", trees))
    lines = path.read_text(encoding="utf-8").split("\n")
    reason = missing(programs, trees, "\n".join(lines))
    if reason:
        print(f"SKIPPED: {reason}")
        return 77
    shutil.rmtree(scratch, ignore_errors=True)
    home = scratch / "home"
    home.mkdir(parents=True)
    shutil.copytree(examples, home / "examples")
    walk = steps(lines)
    results = typed([step[3] for step in walk], home, programs, trees)
    failed = 0 if len(results) == len(walk) else 1
    for (first, begin, end, command), (output, code) in reversed(list(zip(walk, results))):
        came = shown(output, home, programs)
        if begin is None:
            good = code == 0
        else:
            good = agrees([line[4:] for line in lines[begin:end]], came)
            if "--write" in sys.argv and not good:
                lines[begin:end] = ["    " + line if line else "" for line in came]
        if not good:
            failed += 1
            print(f"{path}:{first + 1}: $ {command}\n  exit code {code}\n" + "".join(f"    {line}\n" for line in came))
    if "--write" in sys.argv:
        path.write_text("\n".join(lines), encoding="utf-8")
    print(f"{len(walk)} commands of {path.name}, {failed} do not do as it says")
    return 1 if failed or len(walk) < 5 else 0


if __name__ == "__main__":
    sys.exit(main())
