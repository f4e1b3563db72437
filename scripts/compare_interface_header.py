#!/usr/bin/python3
"""Compares the methods an interface header declares pure virtual, by return type, name and
parameter types (parameter names and namespace qualifiers aside).

Usage: compare_interface_header.py GENERATED_HEADER STANDIN_HEADER
Prints both lists and exits 1 when they differ or the generated header declares none.
"""
import re
import sys

QUALIFIERS = re.compile(r"(::)?\b(android::hardware|android::hidl::base::V1_0|android|std)::")
PURE = re.compile(r"virtual\s+([^;{}]*?)\(([^()]*)\)\s*(const\s*)?=\s*0\s*;", re.S)


def without_comments(text):
    return re.sub(r"//[^\n]*|/\*.*?\*/", " ", text, flags=re.S)


def parameter_type(param):
    param = " ".join(param.split())
    # The last word is the parameter's name when something stands before it.
    match = re.match(r"^(.*[\s&*>])\s*[A-Za-z_]\w*$", param)
    return (match.group(1) if match else param).replace(" &", "&").replace(" *", "*").strip()


def methods(path):
    found = set()
    for head, params, const in PURE.findall(without_comments(open(path).read())):
        head = QUALIFIERS.sub("", " ".join(head.split()))
        params = QUALIFIERS.sub("", params)
        types = [parameter_type(p) for p in params.split(",") if p.strip() and p.strip() != "void"]
        found.add(f"{head}({', '.join(types)}){' const' if const else ''}")
    return found


def main(generated, standin):
    want, have = methods(generated), methods(standin)
    if not want:
        print(f"no pure virtual method found in {generated}")
        return 1
    for m in sorted(want | have):
        side = "both" if m in want and m in have else ("hal only" if m in want else "stand-in only")
        print(f"  {side:>13}: {m}")
    return 0 if want == have else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2]))
