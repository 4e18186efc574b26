"""Whole sessions at the window, as a person has them: a build project is made, set up on its pages, saved, run and
stopped, and what was saved is what the command line makes of the same settings.

usage: session.py FOLDER-OF-PROGRAMS FOLDER-OF-EXAMPLES SCRATCH-FOLDER NAME [EMULATOR]
NAME is one of the functions of editing.py, forms.py, building.py, looking.py, sizes.py and taking_back.py, without "test_"."""

import os
import sys

import building
import editing
import forms
import looking
import sizes
import taking_back
from place import Place

TESTS = {name[5:]: function for module in (editing, forms, building, looking, sizes, taking_back) for name, function in vars(module).items()
         if name.startswith("test_")}


def main():
    programs, examples, scratch, name, *emulator = sys.argv[1:]
    place = Place(os.path.abspath(programs), os.path.abspath(examples), os.path.abspath(scratch), emulator)
    TESTS[name](place)
    print(f"{name}: as it should be")


if __name__ == "__main__":
    main()
