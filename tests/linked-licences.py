#!/usr/bin/env python3
"""The licences of what the program links, against desktop/linked-licences.txt.

Usage: linked-licences.py LIST BINARY...  (the program and each of its modules)

Every library a binary needs (its NEEDED entries) and every library those
bring in turn (ldd) must be listed, with the Debian package that installed it
on this machine. A library a binary needs itself must not be under the GPL
alone; one that comes in through another may be, when its note names the
library that brings it ("through libX.so.1") and that library needs it."""

import re
import subprocess
import sys


def fail(message):
    print("FAIL:", message)
    sys.exit(1)


def read_list(path):
    entries = {}
    with open(path, encoding="utf-8") as f:
        for number, line in enumerate(f, 1):
            if not line.strip() or line.startswith("#"):
                continue
            parts = [p.strip() for p in line.split("|")]
            if len(parts) != 4 or not all(parts[:3]):
                fail("%s:%d: not LIBRARY | PACKAGE | LICENCE | NOTE" % (path, number))
            if parts[0] in entries:
                fail("%s:%d: %s is listed twice" % (path, number, parts[0]))
            entries[parts[0]] = {"package": parts[1], "licence": parts[2], "note": parts[3]}
    return entries


def gpl_only(licence):
    """GPL with no alternative and no linking exception (LGPL is not GPL)."""
    return (re.match(r"GPL-\d", licence) is not None and " or " not in licence
            and "exception" not in licence.lower())


def needed(path):
    out = subprocess.run(["readelf", "-d", "-W", path], capture_output=True, text=True, check=True).stdout
    return re.findall(r"\(NEEDED\)\s+Shared library: \[([^\]]+)\]", out)


def resolved(path):
    """The libraries ldd finds for the file: soname -> path."""
    out = subprocess.run(["ldd", path], capture_output=True, text=True, check=True).stdout
    return dict(re.findall(r"^\s*(\S+) => (/\S+)", out, re.M))


def owners(paths):
    """The Debian package of each file, tried on both sides of the merged /usr."""
    tries = {}
    for p in paths:
        tries[p] = [p, "/usr" + p if p.startswith("/lib") else p.replace("/usr", "", 1)]
    out = subprocess.run(["dpkg", "-S"] + [t for ts in tries.values() for t in ts],
                         capture_output=True, text=True).stdout
    found = {}
    for line in out.splitlines():
        if ": /" in line and not line.startswith("diversion by"):
            packages, file = line.split(": ", 1)
            found[file] = packages.split(",")[0].split(":")[0]
    return {p: next((found[t] for t in ts if t in found), None) for p, ts in tries.items()}


def main():
    entries = read_list(sys.argv[1])
    binaries = sys.argv[2:]
    direct, loaded = {}, {}
    for binary in binaries:
        for lib in needed(binary):
            direct.setdefault(lib, []).append(binary)
        loaded.update(resolved(binary))
    for lib in direct:
        if lib not in loaded:
            fail("%s needs %s, which ldd does not find" % (direct[lib][0], lib))
    for lib in sorted(loaded):
        if lib not in entries:
            fail("%s is loaded (%s) but not in the list: look at its licence and add it"
                 % (lib, ", ".join(direct.get(lib, ["brought in by another library"]))))
    package_of = owners(sorted(loaded.values()))
    for lib, path in sorted(loaded.items()):
        entry = entries[lib]
        if package_of[path] != entry["package"]:
            fail("%s comes from %s, the list says %s" % (lib, package_of[path], entry["package"]))
        if not gpl_only(entry["licence"]):
            continue
        if lib in direct:
            fail("%s links %s, which is under the GPL alone (%s)" % (direct[lib][0], lib, entry["licence"]))
        through = re.match(r"through (\S+)", entry["note"])
        if not through or through.group(1) not in loaded or lib not in needed(loaded[through.group(1)]):
            fail("%s is under the GPL alone, and the list does not say which library brings it in" % lib)
    stale = sorted(set(entries) - set(loaded))
    if stale:
        fail("listed but loaded by nothing: %s" % ", ".join(stale))
    print("%d libraries linked, %d of them directly, each with its package and licence; none directly under "
          "the GPL alone" % (len(loaded), len(direct)))


if __name__ == "__main__":
    main()
