"""What a shell offers at the end of a line, asked of the shell itself with the installed files."""

BASH = """
source "$COMPLETIONS/bash-completion/completions/lanternfold-widgets" || exit
COMP_WORDS=("$@")
COMP_CWORD=$(($# - 1))
_lanternfold "$1" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
printf '%s\\n' "${COMPREPLY[@]}"
"""
FISH = """
source $COMPLETIONS/fish/vendor_completions.d/lanternfold-widgets.fish; or exit
complete -C (string join ' ' -- $argv)
"""
# What its completion system is told, and from which it filters by what is typed.
ZSH = """
compadd() { for word; do [[ $word == -- ]] || print -r -- $word; done }
_describe() { print -rl -- ${(P)@[-1]} }
_files() { print -rl -- *(N) }
words=("$@")
CURRENT=$#
source $COMPLETIONS/zsh/site-functions/_lanternfold-widgets
true
"""
SHELLS = {"bash": ["bash", "--norc", "-c", BASH, "bash"],
          "fish": ["fish", "--no-config", "-c", FISH],
          "zsh": ["zsh", "-f", "-c", ZSH, "zsh"]}


def offers(installed, shell, *words, folder="/"):
    """The words that may stand in the place of the last one, which may be empty."""
    environment = installed.environment | {
        "COMPLETIONS": str(installed.share), "PATH":
        f"{installed.prefix / 'bin'}:{installed.environment['PATH']}"}
    written = installed.output(*SHELLS[shell], *words, env=environment, cwd=folder)
    separator = ":" if shell == "zsh" else "\t"
    found = {line.split(separator)[0] for line in written.splitlines()} - {""}
    return {word for word in found if word.startswith(words[-1])}
