#!/usr/bin/env python3
# The engine beside Ninja and make: a generated solution of C++ projects, built cold, with nothing to do, and after one
# source changed. Ninja and make are given the engine's own commands in one file written beforehand, which is the floor.
#   bench/engine_solution.py ENGINE [--projects 50] [--sources 20] [--runs 5] [--folder DIR] [--link static|program] [--idle]
# ENGINE: devenv.com. Prints medians and their ratios to Ninja; empties DIR first (a tmpfs is best).
# --idle: with compilers that make an empty file at once, so that only what the engine itself does is left.
import argparse
import os
import pathlib
import shutil
import statistics
import subprocess
import time

GUID = "{{{:08X}-0000-4000-8000-000000000000}}"
KIND = "{8BC9CEB8-8B4A-11D0-8D11-00A0C91BC942}"
PROJECT = """<?xml version="1.0" encoding="UTF-8"?>
<VisualStudioProject ProjectType="Visual C++" Version="8.00" Name="p{n}" ProjectGUID="{guid}">
<Platforms><Platform Name="Win32"/></Platforms><Configurations><Configuration Name="Release|Win32"
OutputDirectory="Release" IntermediateDirectory="Release" ConfigurationType="{kind}" CharacterSet="2">
<Tool Name="VCCLCompilerTool" Optimization="0" AdditionalIncludeDirectories="include"
PreprocessorDefinitions="WIN32;NDEBUG"/></Configuration></Configurations><Files>{files}</Files></VisualStudioProject>
"""


IDLE_TOOL = r"""
#include <stdio.h>
#include <string.h>
int main(int count, char** all) {
  const char *output = 0, *source = "", *depfile = 0;
  for (int i = 1; i < count; ++i) {
    const char* next = i + 1 < count ? all[i + 1] : "";
    if (!strcmp(all[i], "-print-search-dirs")) puts("libraries: =/usr/i686-w64-mingw32/lib/");
    if (!strcmp(all[i], "-o") || !strcmp(all[i], "qcsD")) output = next;
    if (!strcmp(all[i], "-c")) source = next;
    if (!strcmp(all[i], "-MF")) depfile = next;
  }
  if (output) fclose(fopen(output, "w"));
  if (depfile) {
    FILE* file = fopen(depfile, "w");
    fprintf(file, "%s: %s\n", output, source);
    fclose(file);
  }
  return 0;
}
"""


def idle_tools(folder):
    """A folder of such compilers, to stand first on the PATH."""
    folder.mkdir(parents=True)
    program = folder / "idle"
    subprocess.run(["cc", "-O2", "-static", "-x", "c", "-", "-o", program], input=IDLE_TOOL, text=True, check=True)
    for name in ("gcc", "g++", "windres", "ar", "nm", "dlltool"):
        (folder / f"i686-w64-mingw32-{name}-posix").symlink_to(program)
    os.environ["PATH"] = f"{folder}:{os.environ['PATH']}"


def generate(folder, projects, sources, kind):
    lines = ["Microsoft Visual Studio Solution File, Format Version 9.00", "# Visual Studio 2005"]
    mapping = []
    for n in range(projects):
        place = folder / f"p{n}"
        (place / "include").mkdir(parents=True)
        for s in range(sources):
            (place / "include" / f"h{s}.h").write_text(f"struct S{s} {{ int value; }};\n")
            includes = "".join(f'#include "h{(s + k) % sources}.h"\n' for k in range(3))
            body = f"int f{n}_{s}(int x) {{ std::vector<int> v(x); return int(v.size()) + {s}; }}\n"
            main = "int main() { return 0; }\n" if s == 0 else ""
            (place / f"s{s}.cpp").write_text(f"#include <vector>\n{includes}{body}{main}")
        files = "".join(f'<File RelativePath=".\\s{s}.cpp"/>' for s in range(sources))
        guid = GUID.format(n + 1)
        (place / f"p{n}.vcproj").write_text(PROJECT.format(n=n, guid=guid, files=files, kind=kind))
        lines += [f'Project("{KIND}") = "p{n}", "p{n}\\p{n}.vcproj", "{guid}"', "EndProject"]
        mapping += [f"\t\t{guid}.Release|Win32.{part} = Release|Win32" for part in ("ActiveCfg", "Build.0")]
    lines += ["Global", "\tGlobalSection(SolutionConfigurationPlatforms) = preSolution", "\t\tRelease|Win32 = Release|Win32",
              "\tEndGlobalSection", "\tGlobalSection(ProjectConfigurationPlatforms) = postSolution", *mapping,
              "\tEndGlobalSection", "EndGlobal"]
    (folder / "all.sln").write_text("\r\n".join(lines) + "\r\n")


def commands(folder):
    """Every command that the engine has Ninja run: (project folder, output, inputs, command, response file's text)."""
    found = []
    for build in sorted(folder.glob("p*/Release/*.objects")):
        listed = subprocess.run(["ninja", "-C", build, "-t", "commands"], capture_output=True, text=True, check=True)
        for command in listed.stdout.splitlines():
            if command.startswith("ninja:"):
                continue
            # Without the turn that the shell takes before it and gives back behind it.
            found.append((build, command.split("; ", 1)[1].rsplit("; code=", 1)[0]))
    return found


def write_peers(folder):
    """build.ninja and Makefile of the same commands, in one file each, as somebody would write them by hand."""
    ninja = ["rule run", "  command = cd $place && $line", "  depfile = $dep", "  deps = gcc", "rule link", "  command = cd $place && $line"]
    make = ["all:"]
    outputs = []
    for build, command in commands(folder):
        words = command.split()
        if "-c" in words:
            output = build / "floor" / words[words.index("-o") + 1]
            output.parent.mkdir(exist_ok=True)
            source = words[words.index("-c") + 1]
            line = command.replace(f"-o {words[-1]}", f"-o {output}").replace(f"-MF {words[words.index('-MF') + 1]}",
                                                                               f"-MF {output}.d")
            ninja += [f"build {output}: run {source}", f"  place = {build}", f"  line = {line}", f"  dep = {output}.d"]
            make += [f"{output}: {source}", f"\tcd {build} && {line}", f"-include {output}.d"]
            continue
        objects = sorted(str(build / "floor" / o.name) for o in build.glob("*.obj"))
        final = build / "floor" / pathlib.Path(words[words.index("-o") + 1] if "-o" in words else "out.lib").name
        response = build / "floor" / "link.rsp"
        libraries = (build / "build.ninja").read_text().split("libraries = ")[-1].split("\n")[0]
        response.write_text("\n".join(objects) + f" -Wl,--start-group {libraries} -Wl,--end-group"
                            if "-o" in words else "\n".join(objects))
        if "-o" in words:
            line = command.replace(words[words.index("-o") + 1], str(final)).replace("@link.rsp", f"@{response}")
        else:
            line = f"rm -f {final} && {words[words.index('&&') + 1]} qcsD {final} @{response}"
        ninja += [f"build {final}: link {' '.join(objects)}", f"  place = {build}", f"  line = {line}"]
        make += [f"{final}: {' '.join(objects)}", f"\tcd {build} && {line}"]
        outputs.append(str(final))
    make.insert(1, f"all: {' '.join(outputs)}")
    (folder / "build.ninja").write_text("\n".join(ninja) + "\n")
    (folder / "Makefile").write_text("\n".join(make) + "\n")


def clean(folder, who):
    for build in folder.glob("p*/Release"):
        if who == "engine":
            for each in list(build.iterdir()):
                if each.is_dir():
                    for part in list(each.iterdir()):
                        if part.name != "floor":
                            shutil.rmtree(part) if part.is_dir() else part.unlink()
                else:
                    each.unlink()
        else:
            for made in build.glob("*/floor/*"):
                if made.name != "link.rsp":
                    made.unlink()
    if who != "engine":
        for name in (".ninja_log", ".ninja_deps"):
            (folder / name).unlink(missing_ok=True)


def timed(command, folder):
    """Seconds of wall time and of processor time."""
    used, begin = os.times(), time.perf_counter()
    subprocess.run(command, cwd=folder, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    wall, now = time.perf_counter() - begin, os.times()
    return wall, now.children_user + now.children_system - used.children_user - used.children_system


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("engine")
    arguments.add_argument("--projects", type=int, default=50)
    arguments.add_argument("--sources", type=int, default=20)
    arguments.add_argument("--runs", type=int, default=5)
    arguments.add_argument("--folder", default="/dev/shm/engine-bench")
    arguments.add_argument("--link", choices=("static", "program"), default="program")
    arguments.add_argument("--idle", action="store_true")
    options = arguments.parse_args()
    folder = pathlib.Path(options.folder)
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    if options.idle:
        idle_tools(folder / "tools")
    generate(folder, options.projects, options.sources, "1" if options.link == "program" else "4")
    jobs = os.cpu_count() + (1 if os.cpu_count() < 3 else 2)  # as many as Ninja starts by itself
    peers = {"ninja": ["ninja"], "make": ["make", "-s", "-j", str(jobs)],
             "engine": [options.engine, "/build", "Release|Win32", "all.sln"]}
    timed(peers["engine"], folder)
    write_peers(folder)
    times, cpu = {}, {}
    changed = folder / "p0" / "s1.cpp"

    def measure(case, who):
        wall, processor = timed(peers[who], folder)
        times.setdefault((case, who), []).append(wall)
        cpu.setdefault((case, who), []).append(processor)

    for _ in range(options.runs):
        for who in peers:
            clean(folder, who)
            measure("cold", who)
            for _ in range(5):
                measure("nothing to do", who)
            changed.write_text(changed.read_text() + "// changed\n")
            measure("one source", who)
    print(f"{options.projects} projects of {options.sources} sources, {options.runs} runs, {os.cpu_count()} processors")
    print("case            peer     wall ms  ratio   cpu ms  ratio")
    for case in ("cold", "nothing to do", "one source"):
        for who in peers:
            wall, processor = (statistics.median(table[case, who]) * 1000 for table in (times, cpu))
            floor, floor_cpu = (statistics.median(table[case, "ninja"]) * 1000 for table in (times, cpu))
            print(f"{case:15} {who:7} {wall:8.1f} {wall / floor:6.2f} {processor:8.1f} {processor / floor_cpu:6.2f}")


main()
