"""Files stay within 400 lines and functions within 70."""

import re

from tree import line_of

LONGEST_FILE = 400
LONGEST_FUNCTION = 70
CHECKED_SUFFIXES = {".h", ".cpp", ".py", ".cmake", ".sh"}

_SCOPE = re.compile(r"\b(namespace|class|struct|union|enum|extern)\b")


def check(tree):
    """Findings of the whole tree."""
    for file in tree.files:
        if file.path.suffix not in CHECKED_SUFFIXES or is_fixture(file):
            continue
        if len(file.lines) > LONGEST_FILE:
            yield file.finding(1, f"{len(file.lines)} lines; a file has one concept and at most "
                               f"{LONGEST_FILE} lines")
        if file.is_cpp:
            for first, last in functions(file.code):
                if last - first + 1 > LONGEST_FUNCTION:
                    yield file.finding(first, f"a function of {last - first + 1} lines; at most "
                                       f"{LONGEST_FUNCTION}")


def is_fixture(file):
    """Recorded or tabulated data, as long as what it records."""
    return "Fixtures" in file.path.parts or "Corpus" in file.path.parts


def functions(code):
    """The first and last line of every function at namespace or class scope."""
    code = _without_nested_in_parentheses(_without_directives(code))
    open_braces = []  # for each: what it began and on which line
    inside = 0  # how many of them belong to a function or an initialiser
    start = 0
    begun = None  # the line of a constructor whose members are initialised with braces
    for match in re.finditer(r"[{};]", code):
        if match.group() == "{":
            head = code[start:match.start()]
            kind = "inner" if inside else "function" if begun else _kind(head)
            open_braces.append((kind, begun or line_of(code, start + _indent(head))))
            inside += kind != "scope"
            begun = None
        elif match.group() == "}" and open_braces:
            kind, line = open_braces.pop()
            inside -= kind != "scope"
            if kind == "function" and re.match(r"\s*[,{]", code[match.end():match.end() + 200]):
                begun = line
            elif kind == "function":
                yield line, line_of(code, match.start())
        start = match.end()


def _indent(text):
    return len(text) - len(text.lstrip())


def _without_directives(code):
    return re.sub(r"^[ \t]*#(?:[^\n]*\\\n)*[^\n]*", lambda match: "\n" * match.group().count("\n"),
                  code, flags=re.MULTILINE)


def _without_nested_in_parentheses(code):
    """Blanks braces and semicolons of lambdas, loops and default arguments."""
    depth = 0
    result = []
    for character in code:
        depth += (character == "(") - (character == ")")
        result.append(" " if depth > 0 and character in "{};" else character)
    return "".join(result)


def _kind(head):
    before_parameters = re.sub(r"\btemplate\s*<[^{}]*>\s*(?=\w|\[)", "", head).split("(", 1)[0]
    initialiser = "=" in before_parameters and "operator" not in before_parameters
    if "(" in head and not initialiser and not _SCOPE.search(before_parameters):
        return "function"
    return "scope" if _SCOPE.search(head) else "inner"
