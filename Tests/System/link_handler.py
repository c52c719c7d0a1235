"""A program that a desktop has for links of the product's own scheme."""

SAID = "the handler says something"
HANDLER = """[Desktop Entry]
Type=Application
Name=Handler
Exec=sh -c "echo {said}; echo {said} >&2; echo \\"$1\\" >> {log}" handler %u
MimeType={type};
"""
TYPE = "x-scheme-handler/net.quernaple.lanternfoldx"
OWN = "net.quernaple.LanternfoldX.Widgets.desktop"


def install_handler(folder):
    """Below the session's `folder`. It writes each link into the file that is returned, and SAID to
    both of its streams before."""
    applications, opened = _install(folder)
    _associate(applications, "mimeapps.list", "Default Applications", "handler.desktop")
    _associate(applications, "mimeinfo.cache", "MIME Cache", "handler.desktop")
    return opened


def install_handler_behind(folder, program):
    """The same where no user has chosen, and `program`, as it is installed, happens to be before it."""
    applications, opened = _install(folder)
    (applications / OWN).write_text(
        f"[Desktop Entry]\nType=Application\nName=Widgets\nExec={program} %u\nMimeType={TYPE};\n")
    _associate(applications, "mimeinfo.cache", "MIME Cache", f"{OWN};handler.desktop")
    return opened


def _install(folder):
    applications = folder / "share" / "applications"
    applications.mkdir(parents=True)
    opened = folder / "opened"
    (applications / "handler.desktop").write_text(HANDLER.format(said=SAID, log=opened, type=TYPE))
    return applications, opened


def _associate(applications, name, group, programs):
    (applications / name).write_text(f"[{group}]\n{TYPE}={programs};\n")
