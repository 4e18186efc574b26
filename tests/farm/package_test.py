#!/usr/bin/python3
"""What the Python package promises without a farm: the log that is read, the verdict, numbers, build projects, settings."""

import json
import multiprocessing
import sys
import tempfile
import unittest
from pathlib import Path
from unittest import mock

sys.path.insert(0, str(Path(__file__).resolve().parent))
from local_farm import ROOT, why_not  # noqa: E402

if __name__ == "__main__" and (reason := why_not()):
    print(f"SKIPPED: {reason}")
    sys.exit(77)

sys.path.insert(0, str(ROOT / "packaging/buildbot"))
from buildbot.config import ConfigErrors  # noqa: E402
from buildbot.process.results import CANCELLED, EXCEPTION, FAILURE, SUCCESS, WARNINGS  # noqa: E402
from qxhost_buildbot import NumbersUsedUp, configure, take  # noqa: E402
from qxhost_buildbot import numbers as numbers_module  # noqa: E402
from qxhost_buildbot.projects import numbered, parse, takes_number  # noqa: E402
from qxhost_buildbot.runlog import Progress, is_problem  # noqa: E402
from qxhost_buildbot.settings import SettingsFault, load  # noqa: E402
from qxhost_buildbot.verdict import judge, stamped_version  # noqa: E402


def project_of(*properties: str, disabled: str = "") -> bytes:
    inside = "".join(f'<Property name="{each.split("=")[0]}">{each.split("=", 1)[1]}</Property>' for each in properties)
    return (f'<BuildProject version="1"><Variables><Variable name="CONFIGURATION">Release</Variable></Variables><Actions>'
            f'{disabled}<Action type="Build VS.Net Solution">{inside}</Action></Actions></BuildProject>').encode()


def summary_of(**changes: object) -> dict:
    return {"success": True, "versions": [{"to": "1.2.7.0"}], "files": [{"changed": True}],
            "projects": [{"name": "App", "status": "ok"}], "warnings": 0, **changes}


class Log(unittest.TestCase):
    def test_every_line_is_told_and_the_run_is_followed(self):
        seen = Progress()
        lines = [
            {"action": 1, "kind": "status", "heading": "Updating", "details": ["One", "Two"]},
            {"action": 1, "kind": "status", "heading": "", "details": ["------ Build started: Project: App, Configuration: Release ------"]},
            {"action": 1, "kind": "message", "text": "1>a.cpp(3) : error C2065: 'x' : undeclared"},
            {"action": 1, "kind": "message", "text": "b.cs(3,4): warning CS0168: unused"},
            {"action": 1, "kind": "result", "name": "Build", "success": True, "seconds": 1},
            {"kind": "summary", "success": True},
        ]
        told = [text for line in lines for text in seen.read(json.dumps(line))]
        self.assertEqual(told[:3], ["Updating", "One", "Two"])
        self.assertEqual(len(told), 6)
        self.assertEqual((seen.action, seen.project, seen.projects, seen.errors, seen.warnings), (1, "App", 1, 1, 1))
        self.assertEqual((seen.results, seen.summary["success"], seen.cut), ([True], True, 0))

    def test_a_line_that_was_cut_is_shown_and_decides_nothing(self):
        seen = Progress()
        self.assertEqual(seen.read('{"action":1,"kind":"result","name":"Bu'), ['{"action":1,"kind":"result","name":"Bu [...]'])
        self.assertEqual((seen.cut, seen.results, seen.read("")), (1, [], []))

    def test_what_only_speaks_of_errors_is_none(self):
        for line in ("App - 0 error(s), 0 warning(s)", "    0 Warning(s)", "error_handling.cpp"):
            self.assertFalse(is_problem(line), line)
        for line in ("LINK : fatal error LNK1104: cannot open", "a.c:3:4: error: no", "Project : warning PRJ0041 : missing"):
            self.assertTrue(is_problem(line), line)


class Verdicts(unittest.TestCase):
    def judged(self, code, summary=None, results=(True,), number=None):
        return judge(code, Progress(results=list(results)), summary, number).result

    def test_exit_codes(self):
        expected = {2: FAILURE, 3: EXCEPTION, 4: EXCEPTION, 5: CANCELLED, None: EXCEPTION, -9: EXCEPTION, 137: EXCEPTION}
        for code, result in expected.items():
            self.assertEqual(self.judged(code, summary_of()), result, code)
        self.assertEqual(self.judged(0, summary_of()), SUCCESS)
        self.assertEqual(self.judged(0, summary_of(warnings=2)), WARNINGS)
        self.assertEqual(self.judged(1, summary_of(success=False), results=[False]), FAILURE)

    def test_no_green_without_a_report_or_a_program(self):
        self.assertEqual(self.judged(0, None), EXCEPTION)
        self.assertEqual(self.judged(0, summary_of(projects=[{"name": "App", "status": "missing"}])), FAILURE)
        self.assertEqual(self.judged(0, summary_of(success=False)), FAILURE)

    def test_a_program_of_which_nobody_can_tell_is_no_green(self):
        self.assertEqual(self.judged(0, summary_of(projects=[{"name": "App", "status": "unknown"}])), WARNINGS)

    def test_what_the_check_alone_found_is_a_warning(self):
        stale = summary_of(success=False, projects=[{"name": "App", "status": "stale"}])
        self.assertEqual(self.judged(1, stale), WARNINGS)
        self.assertEqual(self.judged(1, stale, results=[False]), FAILURE)
        self.assertEqual(self.judged(1, stale, results=[]), FAILURE)

    def test_the_number_is_read_back(self):
        self.assertEqual(self.judged(0, summary_of(), number=7), SUCCESS)
        self.assertEqual(self.judged(0, summary_of(), number=8), FAILURE)
        self.assertEqual(self.judged(0, summary_of(), number=77), FAILURE)
        self.assertEqual(self.judged(0, summary_of(files=[]), number=8), SUCCESS)
        self.assertEqual(stamped_version(summary_of(versions=[{"to": "1.0.0.0"}, {"to": "1.2.7.0"}]), 7), "1.2.7.0")
        self.assertEqual(stamped_version(summary_of(files=[]), 7), "")


def take_some(folder: str) -> list[int]:
    return [take(folder, "App", 100) for _ in range(10)]


class Numbers(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = scratch.name

    def test_two_hundred_at_once_get_two_hundred_numbers(self):
        with multiprocessing.Pool(20) as pool:
            taken = [number for some in pool.map(take_some, [self.folder] * 20, chunksize=1) for number in some]
        self.assertEqual(sorted(taken), list(range(100, 300)))

    def test_products_count_for_themselves_and_go_on_where_they_stood(self):
        self.assertEqual([take(self.folder, "App"), take(self.folder, "Core", 418), take(self.folder, "App")], [1, 418, 2])
        self.assertEqual(take(self.folder, "App", 50), 50)
        self.assertEqual(take(self.folder, "App", 3), 51)

    def test_a_number_that_cannot_be_noted_is_not_given(self):
        take(self.folder, "App")
        with mock.patch.object(numbers_module.os, "fsync", side_effect=OSError(28, "No space left on device")):
            self.assertRaises(OSError, take, self.folder, "App")
        self.assertEqual(take(self.folder, "App"), 2)

    def test_there_is_a_last_number(self):
        (Path(self.folder) / "App").write_text("65533\n")
        self.assertEqual(take(self.folder, "App"), 65534)
        self.assertRaises(NumbersUsedUp, take, self.folder, "App")

    def test_a_damaged_note_gives_no_number(self):
        (Path(self.folder) / "App").write_text("")
        self.assertRaises(ValueError, take, self.folder, "App")


class Projects(unittest.TestCase):
    def test_the_part_that_is_raised_takes_the_number(self):
        project = parse(project_of("AssemblyVersion=1|2|0|9", "AutoIncAssemblyBuildNumber=True", "AutoIncBuild=True",
                                   disabled='<Action type="x" enabled="False"><Property name="AutoIncBuild">True</Property></Action>'), "App")
        self.assertEqual(numbered(project, 417), {2: [
            "AutoIncAssemblyBuildNumber=False", "AssemblyVersion=1|2|%BUILD_NUMBER%|9", "AutoIncBuild=False", "BuildVersion=417"]})
        self.assertTrue(takes_number(project))

    def test_two_parts_of_one_version(self):
        project = parse(project_of("AssemblyVersion=1|2", "AutoIncAssemblyBuildNumber=True", "AutoIncAssemblyRevisionNo=True"), "App")
        self.assertIn("AssemblyVersion=1|2|%BUILD_NUMBER%|%BUILD_NUMBER%", numbered(project, 1)[1])

    def test_without_increments_the_variable_takes_it_or_nothing_does(self):
        self.assertTrue(takes_number(parse(project_of("AssemblyVersion=1|2|%BUILD_NUMBER%|0"), "App")))
        self.assertFalse(takes_number(parse(project_of("AssemblyVersion=1|2|3|0"), "App")))

    def test_what_is_no_build_project_is_refused(self):
        for text in (b"<Project/>", b"<BuildProject", b""):
            self.assertRaises(ValueError, parse, text, "App")


class Configuration(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = Path(scratch.name)
        self.settings = self.folder / "farm.toml"
        for name in ("a", "b"):
            (self.folder / f"{name}.password").write_text("secret\n")
            (self.folder / f"{name}.password").chmod(0o600)

    def project(self, name, product):
        (self.folder / f"{name}.build.xml").write_bytes(project_of(f"VStudioVersion={product}"))

    def configured(self, text):
        self.settings.write_text('repository = "r.git"\n' + text)
        return configure(self.folder, self.settings)

    WORKERS = '[workers.a]\npassword_file = "a.password"\n[workers.b]\npassword_file = "b.password"\ntags = ["vs2003"]\n'

    def test_builders_go_to_the_workers_that_can(self):
        self.project("New", "vs2005")
        self.project("Old", "vs2003")
        builders = {each.name: each for each in self.configured(self.WORKERS)["builders"]}
        self.assertEqual(builders["New"].workernames, ["a"])
        self.assertEqual(builders["Old"].workernames, ["a", "b"])
        self.assertEqual(len(builders["Old"].locks), 1)
        self.assertEqual(builders["nightly"].workernames, ["coordinator"])

    def test_a_force_scheduler_offers_the_variables(self):
        self.project("App", "vs2005")
        force = [each for each in self.configured(self.WORKERS)["schedulers"] if each.name == "force-App"][0]
        self.assertIn("set_CONFIGURATION", [each.name for each in force.forcedProperties])

    def test_a_project_that_nobody_can_build_is_told(self):
        self.project("App", "vs2005")
        with self.assertRaises(ConfigErrors) as caught:
            self.configured('[workers.b]\npassword_file = "b.password"\ntags = ["vs2003"]\n')
        self.assertIn("App.build.xml needs vs2005, and no worker has it", str(caught.exception))

    def test_a_ring_is_told(self):
        self.project("A", "vs2005")
        self.project("B", "vs2005")
        with self.assertRaises(ConfigErrors) as caught:
            self.configured(self.WORKERS + '[projects.A]\nafter = ["B"]\n[projects.B]\nafter = ["A"]\n')
        self.assertIn("these build projects wait for one another: A, B", str(caught.exception))

    def test_strangers_get_builders_without_number_outputs_and_trusted_workers(self):
        self.project("App", "vs2005")
        text = '[workers.a]\npassword_file = "a.password"\n[workers.b]\npassword_file = "b.password"\ntrusted = false\n'
        builders = {each.name: each for each in self.configured(text + '[projects.App]\noutputs = ["bin"]\n')["builders"]}
        names = {name: [step.factory.__name__ for step in each.factory.steps] for name, each in builders.items()}
        self.assertEqual((builders["App"].workernames, builders["App-branch"].workernames), (["a"], ["b"]))
        self.assertIn("Number", names["App"])
        self.assertEqual(names["App-branch"], ["Admit", "Free", "Git", "QxHost"])

    def test_a_password_that_others_can_read_is_refused(self):
        (self.folder / "a.password").chmod(0o640)
        self.settings.write_text('repository = "r"\n' + self.WORKERS)
        self.assertRaisesRegex(SettingsFault, "others may read the password of a; chmod 600", load, self.settings)

    def test_an_unknown_setting_is_named(self):
        self.settings.write_text('repository = "r"\nretrys = 3\n' + self.WORKERS)
        self.assertRaisesRegex(SettingsFault, "there is no setting retrys; there are repository,", load, self.settings)

    def test_a_password_is_never_printed(self):
        self.settings.write_text('repository = "r"\n' + self.WORKERS)
        self.assertNotIn("secret", repr(load(self.settings)))


if __name__ == "__main__":
    unittest.main()
