"""A solution of many projects, and a compiler that stands in: it notes which versions it finds in the sources, takes as long as it
is told, and makes the programs only when it is told to."""

from __future__ import annotations

import re
import subprocess
import uuid
from pathlib import Path

_PROJECT = """<?xml version="1.0" encoding="utf-8"?>
<Project DefaultTargets="Build" xmlns="http://schemas.microsoft.com/developer/msbuild/2003">
  <PropertyGroup><OutputType>Library</OutputType><AssemblyName>{name}</AssemblyName><OutputPath>bin\\Release\\</OutputPath></PropertyGroup>
  <ItemGroup><Compile Include="AssemblyInfo.cs" /></ItemGroup>
  <Import Project="$(MSBuildBinPath)\\Microsoft.CSharp.targets" />
</Project>
"""
_ENTRY = 'Project("{{FAE04EC0-301F-11D3-BF4B-00C04F79EFBC}}") = "{name}", "{name}\\{name}.csproj", "{{{guid}}}"\r\nEndProject\r\n'
_MAPPED = "\t\t{{{guid}}}.Release|Any CPU.ActiveCfg = Release|Any CPU\r\n\t\t{{{guid}}}.Release|Any CPU.Build.0 = Release|Any CPU\r\n"

# QX_SEEN takes a line a build, QX_SECONDS is how long it takes, QX_HALF makes it stop in the middle of a line of its log.
_COMPILER = r"""#!/bin/sh
found=$(grep -ho 'AssemblyVersion("[0-9.]*")' */AssemblyInfo.cs | sort | uniq -c | tr -s ' \n' ' ')
echo "$found" >>"$QX_SEEN"
echo '------ Build started: Project: P1, Configuration: Release Any CPU ------'
[ -z "$QX_HALF" ] || { printf 'half of a line'; sleep "$QX_SECONDS"; echo ', and its end'; }
sleep "$QX_SECONDS"
echo '========== Build: 1 succeeded, 0 failed, 0 skipped =========='
"""


def solution(folder: Path, projects: int, name: str = "Many") -> None:
    """Makes NAME.build.xml with a solution of so many C# projects, each with an AssemblyInfo file of version 3.1.0.0."""
    place = folder / name
    place.mkdir(parents=True)
    entries, mapped = "", ""
    for at in range(1, projects + 1):
        each = place / f"P{at}"
        each.mkdir()
        guid = str(uuid.uuid5(uuid.NAMESPACE_OID, f"{name}{at}")).upper()
        (each / f"P{at}.csproj").write_text(_PROJECT.format(name=f"P{at}"))
        (each / "AssemblyInfo.cs").write_text('using System.Reflection;\r\n[assembly: AssemblyVersion("3.1.0.0")]\r\n', newline="")
        entries += _ENTRY.format(name=f"P{at}", guid=guid)
        mapped += _MAPPED.format(guid=guid)
    text = ("Microsoft Visual Studio Solution File, Format Version 9.00\r\n# Visual Studio 2005\r\n" + entries + "Global\r\n"
            "\tGlobalSection(SolutionConfigurationPlatforms) = preSolution\r\n\t\tRelease|Any CPU = Release|Any CPU\r\n"
            "\tEndGlobalSection\r\n\tGlobalSection(ProjectConfigurationPlatforms) = postSolution\r\n" + mapped +
            "\tEndGlobalSection\r\nEndGlobal\r\n")
    (place / f"{name}.sln").write_text(text, newline="")
    (folder / f"{name}.build.xml").write_text(f"""<?xml version="1.0" encoding="utf-8"?>
<BuildProject version="1">
  <Actions>
    <Action type="Build VS.Net Solution">
      <Property name="Solution">{name}\\{name}.sln</Property>
      <Property name="SolutionConFiguration">Release|Any CPU</Property>
      <Property name="UpdateAssemblyInfo">True</Property>
      <Property name="BuildType">btAllProjects</Property>
      <Property name="BuildAction">baBuild</Property>
      <Property name="VStudioVersion">vs2005</Property>
      <Property name="UpdateAssemblyVersion">True</Property>
      <Property name="AutoIncAssemblyBuildNumber">True</Property>
      <Property name="AssemblyVersion">3|1|0|0</Property>
      <Property name="UseMSBuild">True</Property>
    </Action>
  </Actions>
</BuildProject>
""")


def compiler(folder: Path, qxhost: str, options: Path, text: str = _COMPILER) -> None:
    """Puts the compiler into the folder and into the options."""
    folder.mkdir(parents=True, exist_ok=True)
    program = folder / "MSBuild.exe"
    program.write_text(text)
    program.chmod(0o755)
    subprocess.run([qxhost, "--options", str(options), "options", f"Framework.v2.0={folder}"], check=True, stdout=subprocess.DEVNULL)


def seen(file: Path) -> list[dict[int, int]]:
    """What each build found: how many files bore which number."""
    lines = file.read_text().splitlines() if file.exists() else []
    return [{int(number): int(count) for count, number in re.findall(r'(\d+) AssemblyVersion\("3\.1\.(\d+)\.0"\)', line)}
            for line in lines]
