#!/usr/bin/python3
"""Compares the device recipe (Android.bp) with the tree.

- libkrvaxservice builds every source under src/ and nothing from platform/ (the host stand-ins);
- korvictl builds every source of tools/korvictl and of src/;
- the device test program builds every test source except those that drive korvictl, which need
  the host tool and are excluded by name or pattern;
- every file listed by name exists and every pattern matches at least one file, except the
  patterns of stand-ins the tree does not have yet;
- the library links the platform libraries its sources use, by their device module names.
Prints one line per problem and exits 1 if there is any. Run from the repository root.
With --test-sources it prints the sources of the device test program instead, one a line.
"""
import re
import sys
from pathlib import Path

from mini_soong.parser import soong

DEVICE_LIBS = [
    "liblog", "libutils", "libcutils", "libbase", "libxml2", "libsqlite", "libcrypto",
    "libstagefright_foundation", "libhidlbase", "vendor.korvi.hardware.tcs@2.0",
    "libsfxparamstorage",
]
TOOL_USE = re.compile(r"\b(runKorvictl\w*|KORVICTL_PATH)\b")

problems = []


def modules(recipe):
    parsed = soong.parseString(Path(recipe).read_text())
    return {m.arguments["name"]: m.arguments for m in parsed if "name" in m.arguments}


def expand(patterns, optional=()):
    """Files named by Soong source patterns ("**" is any number of directories)."""
    files = set()
    for pattern in patterns:
        if any(c in pattern for c in "*?["):
            found = {str(p) for p in Path(".").glob(pattern) if p.is_file()}
            if not found and not any(pattern.startswith(o) for o in optional):
                problems.append(f"pattern {pattern!r} matches no file")
            files |= found
        elif Path(pattern).is_file():
            files.add(pattern)
        else:
            problems.append(f"listed file {pattern!r} does not exist")
    return files


def sources(module, optional=()):
    return expand(module.get("srcs", []), optional) - expand(module.get("exclude_srcs", []))


def tree(pattern):
    return {str(p) for p in Path(".").glob(pattern) if p.is_file()}


def require(what, expected, actual):
    for f in sorted(expected - actual):
        problems.append(f"{what} does not build {f}")
    for f in sorted(actual - expected):
        problems.append(f"{what} builds {f}, which it must not")


def main():
    bp = modules("Android.bp")
    if sys.argv[1:] == ["--test-sources"]:
        srcs = sources(bp["libkrvaxservice_test"])
        print("\n".join(sorted(srcs)))
        return report()
    for name in ("libkrvaxservice", "korvictl", "libkrvaxservice_test"):
        if name not in bp:
            problems.append(f"Android.bp has no module {name}")
    if problems:
        return report()

    lib = bp["libkrvaxservice"]
    require("libkrvaxservice", tree("src/**/*.cpp"), sources(lib))
    if lib.get("vendor") is not True:
        problems.append("libkrvaxservice is not a vendor module")
    for key in ("local_include_dirs", "export_include_dirs"):
        for d in lib.get(key, []):
            if d.startswith("platform"):
                problems.append(f"libkrvaxservice takes {key} {d} from the host stand-ins")
    for d in bp["libkrvaxservice_defaults"].get("local_include_dirs", []):
        if d.startswith("platform"):
            problems.append(f"the shared defaults take include dir {d} from the host stand-ins")
    missing = [l for l in DEVICE_LIBS if l not in lib.get("shared_libs", [])]
    if missing:
        problems.append("libkrvaxservice does not link " + ", ".join(missing))

    tool = bp["korvictl"]
    tool_srcs = {f for f in sources(tool, optional=("platform/",)) if not f.startswith("platform/")}
    require("korvictl", tree("tools/korvictl/*.cpp") | tree("src/**/*.cpp"), tool_srcs)

    tests = bp["libkrvaxservice_test"]
    all_tests = tree("tests/*/*.cpp")
    host_only = {f for f in all_tests if TOOL_USE.search(Path(f).read_text())}
    require("libkrvaxservice_test", all_tests - host_only, sources(tests))
    return report()


def report():
    for p in problems:
        print(f"Android.bp: {p}")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
