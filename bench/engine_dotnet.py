#!/usr/bin/env python3
# The engine beside bare calls of mcs: a generated solution of 2003 with C# projects, each of which needs the one before it,
# built cold, with nothing to do, and after one source changed. The calls are the engine's own, one after another.
#   bench/engine_dotnet.py ENGINE [--projects 20] [--sources 20] [--runs 5] [--folder DIR]
# ENGINE: devenv.com. Prints medians and their ratios to mcs; empties DIR first (a tmpfs is best).
import argparse
import os
import pathlib
import shutil
import statistics
import subprocess
import time

GUID = "{{{:08X}-0000-4000-8000-000000000000}}"
KIND = "{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}"
PROJECT = """<VisualStudioProject>
    <CSHARP ProjectType="Local" ProductVersion="7.10.3077" SchemaVersion="2.0" ProjectGuid="{guid}">
        <Build>
            <Settings AssemblyName="P{n}" OutputType="Library" RootNamespace="P{n}">
                <Config Name="Release" DefineConstants="TRACE" Optimize="true" OutputPath="bin\\Release\\" WarningLevel="4"/>
            </Settings>
            <References>
                <Reference Name="System" AssemblyName="System"/>
                {needs}
            </References>
        </Build>
        <Files><Include>
            {files}
        </Include></Files>
    </CSHARP>
</VisualStudioProject>
"""
SOURCE = """using System;
using System.Collections;
namespace P{n} {{
  public class C{s} {{
    public static int Sum(int[] values) {{
      ArrayList list = new ArrayList();
      foreach (int value in values) list.Add(value + {s});
      return list.Count{more};
    }}
  }}
}}
"""


def generate(folder, projects, sources):
    lines = ["Microsoft Visual Studio Solution File, Format Version 8.00"]
    mapping = []
    for n in range(projects):
        place = folder / f"P{n}"
        place.mkdir()
        for s in range(sources):
            more = f" + P{n - 1}.C{s}.Sum(values)" if n > 0 else ""
            (place / f"C{s}.cs").write_text(SOURCE.format(n=n, s=s, more=more))
        needs = "".join(f'<Reference Name="P{k}" Project="{GUID.format(k + 1)}" Package="{KIND}"/>' for k in range(max(0, n - 1), n))
        files = "".join(f'<File RelPath="C{s}.cs" SubType="Code" BuildAction="Compile"/>' for s in range(sources))
        guid = GUID.format(n + 1)
        (place / f"P{n}.csproj").write_text(PROJECT.format(n=n, guid=guid, needs=needs, files=files))
        lines += [f'Project("{KIND}") = "P{n}", "P{n}\\P{n}.csproj", "{guid}"', "EndProject"]
        mapping += [f"\t\t{guid}.Release.{part} = Release|.NET" for part in ("ActiveCfg", "Build.0")]
    lines += ["Global", "\tGlobalSection(SolutionConfiguration) = preSolution", "\t\tRelease = Release", "\tEndGlobalSection",
              "\tGlobalSection(ProjectConfiguration) = postSolution", *mapping, "\tEndGlobalSection", "EndGlobal"]
    (folder / "all.sln").write_text("\r\n".join(lines) + "\r\n")


def write_peer(folder, projects):
    """The engine's own calls, with the program put where the next one looks for it."""
    lines = ["set -e"]
    for n in range(projects):
        place = f"P{n}/obj/Release"
        (folder / f"P{n}.rsp").write_text((folder / place / f"P{n}.dll.rsp").read_text())
        lines.append(f"mkdir -p {place}/new P{n}/bin/Release; cd P{n}; mcs @../P{n}.rsp; cd ..; cp {place}/new/P{n}.dll P{n}/bin/Release")
    (folder / "calls.sh").write_text("\n".join(lines) + "\n")


def clean(folder):
    for each in [*folder.glob("P*/obj"), *folder.glob("P*/bin")]:
        shutil.rmtree(each)


def timed(command, folder):
    """Seconds of wall time and of processor time."""
    used, begin = os.times(), time.perf_counter()
    subprocess.run(command, cwd=folder, check=True, stdout=subprocess.DEVNULL)
    wall, now = time.perf_counter() - begin, os.times()
    return wall, now.children_user + now.children_system - used.children_user - used.children_system


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("engine")
    arguments.add_argument("--projects", type=int, default=20)
    arguments.add_argument("--sources", type=int, default=20)
    arguments.add_argument("--runs", type=int, default=5)
    arguments.add_argument("--folder", default="/dev/shm/engine-dotnet-bench")
    options = arguments.parse_args()
    folder = pathlib.Path(options.folder)
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    generate(folder, options.projects, options.sources)
    engine = [pathlib.Path(options.engine).resolve(), "/build", "Release", "all.sln"]
    timed(engine, folder)
    write_peer(folder, options.projects)
    seen = {}

    def measure(case, command):
        seen.setdefault(case, []).append(timed(command, folder))

    for _ in range(options.runs):
        clean(folder)
        measure("mcs, cold", ["sh", "calls.sh"])
        clean(folder)
        measure("engine, cold", engine)
        measure("engine, nothing to do", engine)
        last = folder / f"P{options.projects - 1}" / "C0.cs"
        last.write_text(last.read_text() + "// changed\n")
        measure("engine, one source", engine)
    print(f"{options.projects} projects of {options.sources} sources, {options.runs} runs, {os.cpu_count()} processors")
    print("case                    wall ms  ratio   cpu ms  ratio")
    floor = [statistics.median(column) for column in zip(*seen["mcs, cold"])]
    for case, values in seen.items():
        wall, processor = (statistics.median(column) for column in zip(*values))
        print(f"{case:22} {wall * 1000:8.1f} {wall / floor[0]:6.2f} {processor * 1000:8.1f} {processor / floor[1]:6.2f}")


main()
