"""What a shell offers for the word at the end of a line, with the installed files: asked for as a user
does, by keys at a terminal."""

import os
import pty
import select
import subprocess
import tempfile
import time
from pathlib import Path

# Every line of input is followed by the key that has the shell complete it and tell what it found.
KEY = "\x18"
PROMPT = "lanternfold ready> "

# Alt-* puts everything that is offered into the line.
BASH = """
PS1="$READY"
. "$COMPLETIONS"
tell() { printf '%s\\n' "${READLINE_LINE#"$LINE"}" >"$TOLD"; exit; }
bind 'set enable-bracketed-paste off'
bind -x '"\\C-xt": tell'
bind '"\\C-x\\C-x": "\\e*\\C-xt"'
"""

# What is offered goes through compadd, which keeps it beside.
ZSH = """
PS1="$READY"; fpath=("$COMPLETIONS" $fpath); unset zle_bracketed_paste; unsetopt beep prompt_cr
autoload -Uz compinit; compinit -u -d "$ZDOTDIR/dump"
compadd() {
  [[ " ${@[1,(i)(-|--)]} " == *\\ -[OAD]\\ * ]] && { builtin compadd "$@"; return }
  local -a offered; builtin compadd -A offered "$@"; print -rl -- $offered >>"$TOLD"
  builtin compadd "$@"
}
tell() { zle complete-word; BUFFER=exit; zle accept-line }
zle -N tell; bindkey '^X^X' tell
"""


def _bash(share, line, environment, folder):
    word = line.rsplit(" ", 1)[1]
    completions = share / "bash-completion" / "completions" / line.split(" ")[0]
    told = _at_a_terminal(["bash", "--noprofile", "-i"], ".bashrc", BASH, line, folder,
                          environment | {"COMPLETIONS": str(completions),
                                         "LINE": line.removesuffix(word)})
    offered = set(told.split())
    return set() if offered == {word} else offered  # the word stays when nothing is offered


def _zsh(share, line, environment, folder):
    completions = share / "zsh" / "site-functions"
    told = _at_a_terminal(["zsh", "-d", "-i"], ".zshrc", ZSH, line, folder,
                          environment | {"COMPLETIONS": str(completions)})
    return set(told.split("\n")) - {""}


def _fish(share, line, environment, folder):
    completions = share / "fish" / "vendor_completions.d" / f"{line.split(' ')[0]}.fish"
    done = subprocess.run(
        ["fish", "--no-config", "-c", "source $argv[1]; complete --do-complete $argv[2]",
         str(completions), line], stdin=subprocess.DEVNULL, capture_output=True, text=True,
        timeout=60, env=environment, cwd=folder)
    if done.returncode != 0 or done.stderr:
        raise AssertionError(f"fish: {done.stderr}")
    return {offered.split("\t")[0] for offered in done.stdout.splitlines()}


SHELLS = {"bash": _bash, "fish": _fish, "zsh": _zsh}


def offers(installed, shell, *words, folder="/"):
    """The words that may stand in the place of the last one, which may be empty."""
    environment = installed.environment | {
        "PATH": f"{installed.prefix / 'bin'}:{installed.environment['PATH']}"}
    return SHELLS[shell](installed.share, " ".join(words), environment, folder)


def _at_a_terminal(command, rc_name, rc, line, folder, environment):
    """What the shell has told of the line; it is given half a minute."""
    with tempfile.TemporaryDirectory(prefix="lanternfold shell ") as home:
        told = Path(home) / "told"
        told.touch()
        (Path(home) / rc_name).write_text(rc)
        controller, terminal = pty.openpty()
        process = subprocess.Popen(
            command, stdin=terminal, stdout=terminal, stderr=terminal, cwd=folder,
            start_new_session=True,
            env=environment | {"HOME": home, "ZDOTDIR": home, "TOLD": str(told), "TERM": "dumb",
                               "READY": PROMPT})
        os.close(terminal)
        try:
            shown = _read_until(controller, process, lambda text: PROMPT in text)
            os.write(controller, (line + KEY + KEY).encode())
            shown += _read_until(controller, process, lambda _: False)
            if process.wait(timeout=5) != 0:
                raise AssertionError(f"{command[0]}: {shown}")
        finally:
            process.kill()
            process.wait()
            os.close(controller)
        return told.read_text()


def _read_until(terminal, process, is_enough):
    """What the shell shows until it is enough or the shell ends."""
    shown, deadline = "", time.monotonic() + 30
    while not is_enough(shown):
        readable, _, _ = select.select([terminal], [], [], max(0, deadline - time.monotonic()))
        if not readable:
            process.kill()
            raise AssertionError(f"the shell waits: {shown}")
        try:
            text = os.read(terminal, 4096).decode(errors="replace")
        except OSError:  # the shell has closed its side
            return shown
        shown += text
    return shown
