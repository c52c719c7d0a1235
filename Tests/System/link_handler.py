"""A program that a desktop has for links of the product's own scheme."""

SAID = "the handler says something"
HANDLER = """[Desktop Entry]
Type=Application
Name=Handler
Exec=sh -c "echo {said}; echo {said} >&2; echo \\"$1\\" >> {log}" handler %u
MimeType=x-scheme-handler/net.quernaple.lanternfoldx;
"""


def install_handler(folder):
    """Below the session's `folder`. It writes each link into the file that is returned, and SAID to
    both of its streams before."""
    applications = folder / "share" / "applications"
    applications.mkdir(parents=True)
    opened = folder / "opened"
    (applications / "handler.desktop").write_text(HANDLER.format(said=SAID, log=opened))
    for name, header in (("mimeapps.list", "Default Applications"), ("mimeinfo.cache", "MIME Cache")):
        (applications / name).write_text(
            f"[{header}]\nx-scheme-handler/net.quernaple.lanternfoldx=handler.desktop;\n")
    return opened
