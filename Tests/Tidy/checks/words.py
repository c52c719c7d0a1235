"""What a line of the tree may not say, and what stands in its place."""

import re

# Files that state the rules have to name what they forbid.
RULES = "Tests/Tidy/"

# In every text file. The reader of this tree has this tree and nothing else.
EVERYWHERE = [
    (r"\bParts?\s+[0-9]", "cites a numbered part of a document that no reader has"),
    (r"(?i)\b(the|this|our|per|its)\s+spec(ification)?s?\b", "cites a document that no reader has"),
    (r"(?i)\bspec\.md\b", "cites a document that no reader has"),
    (r"(?<![\w.<])/(home|root|work|farm|Users|mnt|tmp/briefs)/", "a path of one machine"),
    (r"(?i)\b(deb|ftp|security|registry|mirror|archive)\.[a-z]+\.(org|com|io|net)\b",
     "a registry's host; apt knows its own"),
    (r"\b(TO" r"DO|FIX" r"ME|XX" r"X|HA" r"CK)\b", "left open; finish it or name it in CHANGELOG.md"),
]

# In C++ code, comments and strings apart: what it is, what to use, and where it may stand.
PRODUCT = re.compile(r"^(?!Tests/|Fuzz/|Benchmarks/)")
ANYWHERE = re.compile("")
NOWHERE = re.compile(r"(?!)")
BANNED_CALLS = [
    (r"\b(sprintf|vsprintf)\s*\(", "fmt::format or std::snprintf", ANYWHERE, NOWHERE),
    (r"\b(strcpy|strcat|gets|strtok)\s*\(", "std::string or std::span", ANYWHERE, NOWHERE),
    (r"\bstrn(cpy|cat)\s*\(", "std::string or std::span", PRODUCT, NOWHERE),
    (r"\b(atoi|atol|atoll|atof|strtol|strtoul|strtoll|strtoull|stoi|stol|stoul|stoll)\s*\(",
     "std::from_chars", ANYWHERE, NOWHERE),
    (r"(?<![\w.>])(std::)?(system|popen)\s*\(", "posix_spawn with an argument list", PRODUCT,
     NOWHERE),
    (r"(?<![\w.>])(std::)?s?rand\s*\(", "std::mt19937 with a seed that the test prints", ANYWHERE,
     NOWHERE),
    (r"(?<![\w.>])(std::)?(abort|terminate|quick_exit)\s*\(", "fatalError(\"which rule was broken\")",
     PRODUCT, re.compile(r"^Support/FatalError\.cpp$")),
    (r"(?<![\w.>_])(std::)?exit\s*\(", "a return value that main hands on", PRODUCT, NOWHERE),
    (r"(?<!static_)\bassert\s*\(", "fatalError(\"which rule was broken\")", PRODUCT, NOWHERE),
    (r"\b(localtime|gmtime|asctime|ctime|inet_ntoa|strerror|gethostbyname)\s*\(",
     "the re-entrant operation of the same name", PRODUCT, NOWHERE),
    (r"\b(sleep_for|sleep_until|usleep|nanosleep)\s*\(", "DispatchQueue::after", PRODUCT,
     re.compile(r"^PlatformLinux/System/SystemClock\.h$")),
    (r"\b(system_clock|steady_clock)::now\s*\(|= *(std::chrono::)?(system|steady)_clock\s*;",
     "the Clock seam", PRODUCT,  # nor by a name of its own, behind which now() would not be found
     re.compile(r"^(PlatformLinux|Wiring/(Linux|ProcessHostStarter))")),
    (r"(?<![\w.>])(std::|secure_)?getenv\s*\(", "a value that the program's main hands in", PRODUCT,
     re.compile(r"^(PlatformLinux/|Wiring/|CommandLine/|HostProgram/HostEnvironment\.cpp$)")),
    (r"\bstd::(cout|cerr|clog)\b", "the DiagnosticLog seam; a library does not print", PRODUCT,
     re.compile(r"^CommandLine/|main\.cpp$")),
    (r"\bconst_cast\s*<", "an interface that says what it changes", PRODUCT, NOWHERE),
    (r"\bgoto\b", "a function with a return", ANYWHERE, NOWHERE),
]

# Tests that cannot fail.
SKIPPING = re.compile(r"\bGTEST_SKIP\s*\(|\bDISABLED_\w|\bSUCCEED\s*\(|\b(EXPECT|ASSERT)_TRUE\(true\)")
# The one place that decides whether a system test may stand aside: never for root.
MAY_SKIP = re.compile(r"^Tests/PlatformLinux/NetworkNamespace\.h$")


def check(tree):
    """Findings of the whole tree."""
    for file in tree.text_files:
        path = str(file.path)
        if "Corpus" in file.path.parts or path == "LICENSE":
            continue
        if not path.startswith(RULES):
            yield from _check_lines(file)
        if file.is_cpp:
            yield from _check_code(file)


def _check_lines(file):
    for pattern, why in EVERYWHERE:
        for number, line in enumerate(file.lines, start=1):
            match = re.search(pattern, line)
            if match:
                yield file.finding(number, f'"{match.group().strip()}": {why}')


def _check_code(file):
    path = str(file.path)
    for number, line in enumerate(file.code.splitlines(), start=1):
        for pattern, instead, where, apart_from in BANNED_CALLS:
            match = re.search(pattern, line)
            if match and where.search(path) and not apart_from.search(path):
                yield file.finding(number, f'"{match.group().strip()}" is not used here; use {instead}')
        match = SKIPPING.search(line)
        if match and not MAY_SKIP.search(path):
            yield file.finding(number, f'"{match.group()}": a test that cannot fail')
