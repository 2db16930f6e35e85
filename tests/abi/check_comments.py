#!/usr/bin/env python3
"""Checks that every exported function is documented in the header: by a comment right above it, or by that of its group,
which goes from @{ to @}."""

import pathlib
import re
import sys

DOC_COMMENT = r"/\*\*(?P<comment>.*?)\*/"
OTHER_COMMENT = r"/\*.*?\*/"
FUNCTION = r"KORVANE_API\s[^;]*?\b(?P<name>korvane_\w+)\([^;]*;"
OTHER_CODE = r"[^\s/]+|/"


def documented(header: str) -> set[str]:
    names: set[str] = set()
    above = in_group = False
    for token in re.finditer("|".join((DOC_COMMENT, OTHER_COMMENT, FUNCTION, OTHER_CODE)), header, flags=re.S):
        comment, name = token["comment"], token["name"]
        if comment is not None:
            above = re.search(r"[A-Za-z]", re.sub(r"@\w+|@[{}]", "", comment)) is not None
            if "@{" in comment:
                in_group = above
            if "@}" in comment:
                in_group = above = False
            continue
        if name and (above or in_group):
            names.add(name)
        above = False
    return names


SAMPLE = """
/** One. */
KORVANE_API int korvane_one(void);
KORVANE_API int korvane_bare(int a, int b);
/* Not for readers. */
KORVANE_API int korvane_remark(void);
/** A group.
 * @{ */
KORVANE_API int korvane_first(
    int a);
KORVANE_API int korvane_second(void);
/** @} */
KORVANE_API int korvane_after(void);
/** @{ */
KORVANE_API int korvane_of_an_empty_group(void);
/** @} */
/** Of a type. */
typedef int korvane_type_t;
KORVANE_API int korvane_below_a_type(void);
"""


def self_test() -> int:
    found = documented(SAMPLE)
    print(sorted(found))
    return 0 if found == {"korvane_one", "korvane_first", "korvane_second"} else 1


def main() -> int:
    if sys.argv[1:] == ["--self-test"]:
        return self_test()
    header, exports = (pathlib.Path(name).read_text() for name in sys.argv[1:])
    lacking = sorted(set(exports.split()) - documented(header))
    print("\n".join(f"{name} has no comment" for name in lacking) or f"{len(exports.split())} functions have a comment")
    return 1 if lacking or not exports.split() else 0


if __name__ == "__main__":
    sys.exit(main())
