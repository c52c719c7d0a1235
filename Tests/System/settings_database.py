"""Entries in the settings' database, as another program or an earlier time may have left them. The
format is that of Docs/formats/defaults-database.md."""

import contextlib
import sqlite3
import time

APPLICATION_ID = 0x4C664458
GROUP = "7RKM3PW2ZB.net.quernaple.LanternfoldX"
STORAGE, DATE = "CachedPublicInfoStorage", "CachedPublicInfoDate"
DAY_SECONDS = 24 * 3600


def path_of(data, suite=GROUP):
    return data / "defaults" / f"{suite}.sqlite"


def write(data, *rows, suite=GROUP):
    """Adds rows of (key, kind, value) to the database, which is made when there is none."""
    path = path_of(data, suite)
    path.parent.mkdir(parents=True, exist_ok=True, mode=0o700)
    with contextlib.closing(sqlite3.connect(path)) as database, database:
        if not database.execute("SELECT 1 FROM sqlite_master").fetchone():
            database.execute("PRAGMA journal_mode = wal")
            database.execute(f"PRAGMA application_id = {APPLICATION_ID}")
            database.execute("PRAGMA user_version = 1")
            database.execute("CREATE TABLE setting (key TEXT PRIMARY KEY NOT NULL, "
                             "kind TEXT NOT NULL, value NOT NULL)")
        database.executemany("INSERT OR REPLACE INTO setting VALUES (?, ?, ?)", rows)


def write_version(data, number):
    """Of the format, as a later program would."""
    with contextlib.closing(sqlite3.connect(path_of(data))) as database:
        database.execute(f"PRAGMA user_version = {number}")


def read(data, suite=GROUP):
    """Key to (kind, value)."""
    with contextlib.closing(sqlite3.connect(path_of(data, suite))) as database:
        return {key: (kind, value) for key, kind, value in
                database.execute("SELECT key, kind, value FROM setting")}


def nanoseconds(seconds_ago=0):
    """A moment as the database holds it."""
    return time.time_ns() - round(seconds_ago * 1_000_000_000)


def dictionary(value):
    """The bytes of a dictionary of texts (CBOR); other values go in as lists and numbers."""
    return _head(5, len(value)) + b"".join(
        _encoded(key) + _encoded(each) for key, each in value.items())


def _encoded(value):
    if isinstance(value, dict):
        return dictionary(value)
    if isinstance(value, list):
        return _head(4, len(value)) + b"".join(map(_encoded, value))
    if isinstance(value, bytes):
        return _head(2, len(value)) + value
    if isinstance(value, str):
        return _head(3, len(value.encode())) + value.encode()
    return _head(0, value)


def _head(kind, number):
    if number < 24:
        return bytes([kind << 5 | number])
    return bytes([kind << 5 | 25]) + number.to_bytes(2, "big")


def stored(answer, seconds_ago=0):
    """The rows of an answer that was stored a while ago."""
    return ((STORAGE, "dictionary", dictionary(answer)), (DATE, "date", nanoseconds(seconds_ago)))
