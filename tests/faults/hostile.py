#!/usr/bin/env python3
"""Gives hostile files to the programs that look at them, and looks whether what is promised holds.

usage: hostile.py BIN-FOLDER [COUNT [SEED]]

Each input is a solution with its projects, sources and scripts, a build project and an options store, made from
whole ones and then spoilt: cut, doubled, bytes changed, numbers and names made extreme, texts that lead elsewhere or
mean something to a terminal. vsinspect, check, validate and a dry run get each. None may crash, take longer than ten
seconds, write a file anywhere, or print a control character. Prints what was done; exit code 1 at a broken promise.
"""
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile

CS, VC = "{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}", "{8BC9CEB8-8B4A-11D0-8D11-00A0C91BC942}"
NASTY = ["", " ", "\0", "..", "..\\..\\..\\victim.txt", "../../victim.txt", "/etc/passwd", "C:\\", "\\\\server\\share\\x",
         "http://127.0.0.1:1/x/y.csproj", "\x1b]0;owned\x07", "\u202egpj.exe", "\x9b31m", "%PATH%", "%A%", "%%", "%",
         "A" * 5000, "99999999999999999999", "-1", "65536", "*", "1|2|3|4|5", '"', "'", "<", "&amp;", "&#0;", "]]>",
         "{", "}", "{00000000-0000-0000-0000-000000000000}", "\r", "\n", "\ufeff", "\ud7ff", "AssemblyInfo.\\..\\..\\x",
         "con", "nul", "aux.cs", "/dev/zero", "/dev/stdin", "/proc/self/mem", "a\tb", "BEGIN", "END", "BLOCK", "0x", "L"]
KNOWN = {"victim.txt"}

SOLUTION = (
    "Microsoft Visual Studio Solution File, Format Version FORMAT\r\n"
    'Project("' + CS + '") = "Lib", "Lib\\Lib.csproj", "{11111111-0000-0000-0000-000000000001}"\r\nEndProject\r\n'
    'Project("' + VC + '") = "Tool", "Tool\\Tool.vcproj", "{11111111-0000-0000-0000-000000000002}"\r\nEndProject\r\n'
    "Global\r\n\tGlobalSection(SolutionConfigurationSUFFIX) = preSolution\r\n\t\tRelease = Release\r\n"
    "\tEndGlobalSection\r\nEndGlobal\r\n")
FILES = {
    "Lib/Lib.csproj": "<VisualStudioProject><CSHARP><Files><Include><File RelPath = \"AssemblyInfo.cs\" "
                      "SubType = \"Code\" BuildAction = \"Compile\" /></Include></Files></CSHARP></VisualStudioProject>\r\n",
    "Lib/AssemblyInfo.cs": "using System.Reflection;\r\n[assembly: AssemblyTitle(\"x\")]\r\n"
                           "[assembly: AssemblyVersion(\"1.0.*\")]\r\n// end\r\n",
    "Tool/Tool.vcproj": "<?xml version=\"1.0\" encoding=\"Windows-1252\"?>\r\n<VisualStudioProject Name=\"Tool\"><Files>"
                        "<Filter Name=\"r\"><File RelativePath=\"Tool.rc\"/></Filter></Files></VisualStudioProject>\r\n",
    "Tool/Tool.rc": "#include <winver.h>\r\n1 VERSIONINFO\r\n FILEVERSION 1,2,0,45\r\n FILEFLAGS 0x2L\r\nBEGIN\r\n"
                    " BLOCK \"StringFileInfo\"\r\n BEGIN\r\n BLOCK \"040904b0\"\r\n BEGIN\r\n"
                    " VALUE \"CompanyName\", \"A\"\r\n END\r\n END\r\nEND\r\n",
}


def build_project():
    properties = {
        "Solution": "all.sln", "SolutionConFiguration": "Release", "VStudioVersion": "vs2003", "UpdateAssemblyInfo": "True",
        "UpdateAssemblyVersion": "True", "AssemblyVersion": "2|1|0|0", "AutoIncAssemblyRevisionNo": "True",
        "UpdateWin32Resource": "True", "VersionInfoKeys": "CompanyName=A\nFileVersion=1"}
    text = "".join(f'      <Property name="{name}">{value}</Property>\n' for name, value in properties.items())
    return ('<?xml version="1.0" encoding="utf-8"?>\n<BuildProject version="1">\n  <Variables>\n'
            '    <Variable name="A">%B%</Variable>\n    <Variable name="B">x</Variable>\n  </Variables>\n  <Actions>\n'
            f'    <Action type="Build VS.Net Solution">\n{text}    </Action>\n  </Actions>\n</BuildProject>\n')


def spoil(rng, data):
    """The bytes with one thing wrong."""
    kind = rng.randrange(8)
    if not data:
        return os.urandom(rng.randrange(40))
    at, to = sorted((rng.randrange(len(data) + 1), rng.randrange(len(data) + 1)))
    nasty = rng.choice(NASTY).encode("utf-8", "surrogatepass")
    if kind == 0:
        return data[:at]
    if kind == 1:
        return data[:at] + data[to:]
    if kind == 2:
        return data[:to] + data[at:to] * rng.choice([1, 2, 50]) + data[to:]
    if kind == 3:
        return data[:at] + bytes([rng.randrange(256)]) + data[at + 1:]
    if kind == 4:
        return data[:at] + nasty + data[at:]
    if kind == 5:  # the text between two quotes
        places = [m.span(1) for m in re.finditer(rb'"([^"\r\n]*)"', data)]
        begin, end = rng.choice(places) if places else (at, to)
        return data[:begin] + nasty + data[end:]
    if kind == 6:  # the text of an element or a number
        places = [m.span(1) for m in re.finditer(rb">([^<>]+)<|", data) if m.group(1)] or [(at, to)]
        begin, end = rng.choice(places)
        return data[:begin] + nasty + data[end:]
    return rng.choice([data.decode("latin-1").encode("utf-16"), b"\xef\xbb\xbf" + data, b"\xff\xfe" + data,
                       data.replace(b"\r\n", b"\n"), data.replace(b"\n", b"\r"), data * 20])


def make(rng, folder):
    """A tree of files, some of which are spoilt."""
    form = rng.choice([("7.00", ""), ("8.00", ""), ("9.00", "Platforms")])
    files = dict(FILES)
    files["all.sln"] = SOLUTION.replace("FORMAT", form[0]).replace("SUFFIX", form[1])
    files["p.xml"] = build_project()
    files["o.xml"] = ('<?xml version="1.0" encoding="utf-8"?>\n<Options version="1">\n  <Host>\n    <Option name="CheckBuilt">off</Option>\n'
                      '  </Host>\n  <Section key="VisualStudioDotNet">\n    <Option name="MSDevPath2003">' + folder +
                      '</Option>\n  </Section>\n</Options>\n')
    data = {name: text.encode() for name, text in files.items()}
    for name in rng.sample(sorted(data), rng.choice([1, 1, 1, 2, 3])):
        for _ in range(rng.choice([1, 1, 2, 4])):
            data[name] = spoil(rng, data[name])
    for name, content in data.items():
        path = pathlib.Path(folder, "tree", name)
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)


def state_of(folder):
    return {str(path): path.read_bytes() for path in sorted(pathlib.Path(folder).rglob("*")) if path.is_file()}


def hidden_in(out):
    text = out.decode("utf-8", "replace")
    return [c for c in text if (ord(c) < 32 and c not in "\t\r\n") or 0x7f <= ord(c) < 0xa0
            or c in "\u202a\u202b\u202c\u202d\u202e\u2066\u2067\u2068\u2069\u2028\u2029"]


def look(programs, folder, words):
    """What is broken when the program looks at the tree."""
    tree = folder + "/tree"
    environment = dict(os.environ, HOME=folder, XDG_STATE_HOME=folder + "/state", XDG_CONFIG_HOME=folder + "/config",
                       TMPDIR=folder + "/tmp")
    try:
        done = subprocess.run([programs + "/" + words[0]] + words[1:], cwd=tree, env=environment, timeout=10,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    except subprocess.TimeoutExpired:
        return ["it hangs"]
    broken = []
    if done.returncode < 0 or done.returncode > 5:
        broken.append(f"exit code {done.returncode}: {done.stderr[-300:]!r}")
    isExact = "--dry-run" in words  # its diff goes to patch, byte for byte, where no terminal reads it
    if hidden_in(done.stderr) or (not isExact and hidden_in(done.stdout)):
        broken.append(f"control characters: {hidden_in(done.stdout + done.stderr)[:5]!r}")
    return broken


def main():
    programs = os.path.abspath(sys.argv[1])
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 100
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else random.randrange(10**9)
    print(f"seed {seed}", flush=True)
    host = ["qxhost", "--options", "o.xml"]
    commands = [["vsinspect", "solution", "all.sln"], ["vsinspect", "version-info", "Tool/Tool.rc"],
                ["vsinspect", "built", "all.sln", "--configuration", "Release"],
                host + ["check", "p.xml"], host + ["show", "p.xml", "--all"], host + ["run", "p.xml", "--dry-run"],
                host + ["init", "all.sln", "/dev/null/none.xml"]]
    good = runs = 0
    for number in range(count):
        rng = random.Random(f"{seed} {number}")
        with tempfile.TemporaryDirectory(prefix="qx-hostile-") as folder:
            pathlib.Path(folder, "tmp").mkdir()
            pathlib.Path(folder, "victim.txt").write_text("mine")
            make(rng, folder)
            before = state_of(folder)
            broken = []
            for words in [rng.choice(commands[:3]), rng.choice(commands[3:5]), rng.choice(commands[5:])]:
                runs += 1
                broken += [f"{' '.join(words)}: {line}" for line in look(programs, folder, words)]
                if state_of(folder) != before:
                    broken.append(f"{' '.join(words)}: files changed: "
                                  f"{sorted(set(state_of(folder).items()) ^ set(before.items()))[:3]!r}")
                    break
            for line in broken:
                print(f"BROKEN (input {number}): {line}", flush=True)
            good += not broken
    print(f"{count} hostile inputs, {runs} runs: " + ("nothing broken" if good == count else f"{count - good} BROKEN"))
    return 0 if good == count else 1


if __name__ == "__main__":
    sys.exit(main())
