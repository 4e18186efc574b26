#!/usr/bin/python3
"""What vsinspect reads from built programs, compared field by field with what other people's readers find in the same
files: pefile for headers and version resources, monodis for assembly names, windres for the numbers of native programs.
The files are this system's own: those of mono, MinGW-w64 and Wine, of 32 and 64 bits, managed and native.

usage: programs_read.py VSINSPECT [HOW-MANY]     exit code 77: a reader or enough files are missing
"""
import json
import os
import re
import shutil
import subprocess
import sys

FOLDERS = ["/usr/lib/x86_64-linux-gnu/wine", "/usr/x86_64-w64-mingw32", "/usr/i686-w64-mingw32", "/usr/lib/gcc",
           "/usr/share/nsis", "/usr/lib/mono"]
ENDINGS = (".dll", ".exe", ".ocx", ".cpl", ".acm", ".drv", ".sys", ".netmodule")
MACHINES = {0x14C: "x86", 0x8664: "x64", 0x1C0: "arm", 0x1C2: "arm", 0x1C4: "arm", 0xAA64: "arm64", 0x200: "ia64"}


def skip(reason):
    print("SKIPPED: " + reason)
    sys.exit(77)


def choose(wanted):
    """All of the small collections, and of the large ones every n-th file."""
    found = []
    for folder in FOLDERS:
        for place, _, names in sorted(os.walk(folder)):
            files = [os.path.join(place, name) for name in sorted(names) if name.lower().endswith(ENDINGS)]
            found += [file for file in files if not os.path.islink(file)]
    if len(found) <= wanted:
        return found
    return [found[i * len(found) // wanted] for i in range(wanted)]


def text(value):
    return value.decode("utf-8", "replace") if isinstance(value, bytes) else value


def numbers(high, low):
    return ".".join(str(n) for n in (high >> 16, high & 0xFFFF, low >> 16, low & 0xFFFF))


def as_pefile_has_it(pefile, path):
    image = pefile.PE(path, fast_load=True)
    image.parse_data_directories(directories=[pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_RESOURCE"]])
    machine = image.FILE_HEADER.Machine
    clr = [d for d in image.OPTIONAL_HEADER.DATA_DIRECTORY if d.name == "IMAGE_DIRECTORY_ENTRY_COM_DESCRIPTOR"]
    said = {"machine": MACHINES.get(machine, "0x%04X" % machine), "managed": bool(clr and clr[0].VirtualAddress and clr[0].Size),
            "fileVersion": "", "productVersion": "", "stringTables": [], "translations": []}
    fixed = getattr(image, "VS_FIXEDFILEINFO", [])
    if fixed and fixed[0].Signature == 0xFEEF04BD:
        block = fixed[0]
        said["fileVersion"] = numbers(block.FileVersionMS, block.FileVersionLS)
        said["productVersion"] = numbers(block.ProductVersionMS, block.ProductVersionLS)
        said["fixed"] = {"flagsMask": block.FileFlagsMask, "flags": block.FileFlags, "os": block.FileOS,
                         "type": block.FileType, "subtype": block.FileSubtype}
    for part in (getattr(image, "FileInfo", []) or [[]])[0]:
        for table in getattr(part, "StringTable", []):
            said["stringTables"].append({"key": text(table.LangID),
                                         "strings": {text(k): text(v) for k, v in table.entries.items()}})
        for variable in getattr(part, "Var", []):
            for value in variable.entry.get(b"Translation", "").split(","):
                language, page = (int(n, 16) for n in value.split())
                said["translations"].append({"language": "%04X" % language, "codePage": page})
    return said


def as_monodis_has_it(path):
    answer = subprocess.run(["monodis", "--assembly", path], capture_output=True)
    if answer.returncode != 0:
        return None
    found = dict(re.findall(r"^(Name|Version|Culture):[ \t]*(.*?)[ \t]*$", answer.stdout.decode("utf-8", "replace"), re.M))
    return {"assemblyName": found.get("Name", ""), "assemblyVersion": found.get("Version", ""),
            "culture": found.get("Culture", "")}


def as_windres_has_it(windres, path):
    answer = subprocess.run([windres, "-J", "coff", "-O", "rc", "-i", path], capture_output=True, errors="replace")
    found = dict(re.findall(r"^\s*(FILEVERSION|PRODUCTVERSION) ([0-9, ]+)", answer.stdout, re.M))
    dotted = {name: ".".join(n.strip() for n in value.split(",")) for name, value in found.items()}
    return {"fileVersion": dotted["FILEVERSION"], "productVersion": dotted["PRODUCTVERSION"]} if len(dotted) == 2 else None


def main():
    vsinspect, wanted = sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 1000
    try:
        import pefile
    except ImportError:
        skip("python3-pefile is not installed")
    if not shutil.which("monodis"):
        skip("monodis (mono-utils) is not installed")
    windres = shutil.which("x86_64-w64-mingw32-windres") or skip("x86_64-w64-mingw32-windres is not installed")
    paths = choose(wanted)
    if len(paths) < min(wanted, 100):
        skip("this system has only %d programs to read" % len(paths))

    compared = {"pefile": 0, "monodis": 0, "windres": 0}
    differences, refused = [], 0
    for path in paths:
        answer = subprocess.run([vsinspect, "binary", path, "--json"], capture_output=True)
        try:
            expected = as_pefile_has_it(pefile, path)
        except pefile.PEFormatError as error:
            if answer.returncode != 2:
                differences.append("%s: read, but pefile says %s" % (path, error))
            refused += 1
            continue
        if answer.returncode != 0:
            differences.append("%s: %s" % (path, answer.stderr.decode().strip()))
            continue
        found = json.loads(answer.stdout)
        compared["pefile"] += 1
        others = {"monodis": as_monodis_has_it(path) if expected["managed"] else None,
                  "windres": as_windres_has_it(windres, path) if not expected["managed"] and expected["fileVersion"] else None}
        for name, said in others.items():
            if said is not None:
                compared[name] += 1
                expected.update(said)
        for field, value in expected.items():
            if found.get(field, [] if isinstance(value, list) else None) != value:
                differences.append("%s: %s is %r, expected %r" % (path, field, found.get(field), value))
    print("%d files: compared with %s; refused by both: %d" % (
        len(paths), ", ".join("%s %d" % pair for pair in compared.items()), refused))
    for line in differences[:40]:
        print("FAILED: " + line)
    sys.exit(1 if differences or min(compared.values()) == 0 else 0)


main()
