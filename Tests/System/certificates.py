"""Certificates of a test's own, made with the openssl command."""

import ssl
import subprocess

# For the addresses of the servers.
NAMES = "IP:127.0.0.1,IP:::1"
CONFIGURATION = """
[ca]
default_ca = own
[own]
database = {folder}/index.txt
new_certs_dir = {folder}
serial = {folder}/serial
unique_subject = no
default_md = sha256
default_days = 30
policy = any
[any]
commonName = supplied
"""


class Authority:
    """Signs certificates; `certificate` is the file by which it is trusted."""

    def __init__(self, folder, name="Test Authority"):
        folder.mkdir()
        self._folder = folder
        self.certificate = folder / "authority.pem"
        self._key = folder / "authority.key"
        self._configuration = folder / "openssl.cnf"
        self._configuration.write_text(CONFIGURATION.format(folder=folder))
        (folder / "index.txt").touch()
        (folder / "serial").write_text("01\n")
        openssl("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", self._key,
                "-out", self.certificate, "-days", "30", "-subj", f"/CN={name}",
                "-addext", "basicConstraints=critical,CA:TRUE",
                "-addext", "keyUsage=critical,keyCertSign,cRLSign")

    def server_context(self, name, *dates, names=NAMES):
        """A server's side of TLS with a certificate for `names`; `dates`: from when until when, as
        YYYYMMDDHHMMSSZ."""
        key, request, signed = (self._folder / f"{name}.{end}" for end in ("key", "csr", "pem"))
        extensions = self._folder / f"{name}.ext"
        extensions.write_text(f"subjectAltName={names}\nbasicConstraints=CA:FALSE\n")
        openssl("req", "-newkey", "rsa:2048", "-nodes", "-keyout", key, "-out", request,
                "-subj", f"/CN={name}")
        limits = ["-startdate", dates[0], "-enddate", dates[1]] if dates else []
        openssl("ca", "-batch", "-notext", "-config", self._configuration, "-cert",
                self.certificate, "-keyfile", self._key, "-in", request, "-out", signed,
                "-extfile", extensions, *limits)
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(signed, key)
        return context


def openssl(*arguments):
    done = subprocess.run(["openssl", *map(str, arguments)], capture_output=True, text=True,
                          stdin=subprocess.DEVNULL, timeout=60)
    if done.returncode != 0:
        raise AssertionError(f"openssl {arguments[0]}: {done.stderr.strip()[-500:]}")
