"""The numbers of products: each is given once, whoever asks and whatever becomes of the build.

Buildbot numbers the builds of each builder, but from 1, of one builder only, and anew when its database is lost. A
product that is thirty years old goes on where it stands, may be built by two builders, and has its numbers in a file
of its own that is easy to keep and to look at.
"""

from __future__ import annotations

import fcntl
import os
from pathlib import Path

LARGEST = 65534
"""What a part of an assembly's version can be at most."""


class NumbersUsedUp(Exception):
    """The product has no number left: somebody has to raise its major or minor version and set the file back."""


def take(folder: str | os.PathLike[str], product: str, first: int = 1) -> int:
    """Gives the product's next number, at least ``first``, and notes it on the disk before it returns.

    The file ``product`` in the folder holds the number that was given last. May be called by any number of threads and
    processes at once, on one machine. Raises NumbersUsedUp, ValueError for a file that holds no number, OSError.
    """
    place = Path(folder)
    place.mkdir(parents=True, exist_ok=True)
    with open(place / f"{product}.lock", "a", encoding="ascii") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        note = place / product
        last = int(note.read_text(encoding="ascii")) if note.exists() else 0
        number = max(last + 1, first)
        if number > LARGEST:
            raise NumbersUsedUp(f"{note}: {product} has used its numbers up to {LARGEST}; raise its minor version, "
                                "then write 0 into this file")
        _place(note, f"{number}\n")
        return number


def _place(note: Path, text: str) -> None:
    """Puts the text in the file's place, so that after a power cut it is the old one or the new one."""
    fresh = note.with_name(note.name + ".new")
    with open(fresh, "w", encoding="ascii") as out:
        out.write(text)
        out.flush()
        os.fsync(out.fileno())
    os.replace(fresh, note)
    folder = os.open(note.parent, os.O_RDONLY)
    try:
        os.fsync(folder)
    finally:
        os.close(folder)
