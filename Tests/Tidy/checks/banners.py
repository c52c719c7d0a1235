"""Every header opens by saying what it is, and is guarded."""

LONGEST_BANNER = 12


def check(tree):
    """Findings of the whole tree."""
    for file in tree.cpp_files:
        if file.path.suffix != ".h":
            continue
        banner = 0
        while banner < len(file.lines) and file.lines[banner].startswith("//"):
            banner += 1
        if banner == 0:
            yield file.finding(1, "a header opens with a banner: what it is, who makes it, who "
                               "reads it")
        elif banner > LONGEST_BANNER:
            yield file.finding(1, f"a banner of {banner} lines; details belong to the declarations")
        if "#pragma once" not in file.lines[banner:banner + 2]:
            yield file.finding(banner + 1, "#pragma once follows the banner")
