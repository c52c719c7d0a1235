"""All five widgets while what they keep on the disk cannot be kept: they show what is true, say why
they cannot keep it, and go on."""

import settings_database as settings
from extension_situation import NO_SOURCE, SituationTest
from extension_test import ADAPTER, texts_of
from namespaces import mount, unmount
from recording import DataFolder, write_lock

MS_READ_ONLY, MS_REMOUNT = 1, 32


class StorageTest(SituationTest):
    def setUp(self):
        super().setUp()
        self.add_adapter()
        self.data.mkdir()

    def mount(self, folder):
        mount("none", str(folder), "tmpfs", data="size=256k,mode=700")
        self.addCleanup(unmount, str(folder))

    def make_read_only(self, folder):
        mount("none", str(folder), "tmpfs", MS_READ_ONLY | MS_REMOUNT)

    def assert_all_but_stored(self, host, *reasons):
        """Twice: what cannot be written is shown all the same, and every line gives a reason."""
        for _ in range(2):
            entries = self.timelines(host)
            self.assert_public(entries)
            self.assert_adapter(entries)
        lines = host.extension.wait_for_diagnostics(2 * len(reasons))
        for line in lines:
            self.assertTrue(any(reason in line for reason in reasons), line)
        for reason in reasons:
            self.assertIn(reason, "".join(lines))

    def test_the_lock_is_held_by_another_process(self):
        folder = DataFolder(self.data)
        lock = folder.metrics / folder.lock.name
        host = self.host(services=self.start_services())
        self.assert_adapter(self.timelines(host))
        write_lock(lock, 3600)
        (_, entry), = self.finish(host, self.begin(host, [ADAPTER]))
        self.assertEqual(NO_SOURCE, texts_of(entry))
        line, = host.extension.wait_for_diagnostics()
        self.assertRegex(line, rf"\AAdapters are left out this time, [^\n]* remove {lock}\n\Z")
        write_lock(folder.lock, 3600)
        entries = self.timelines(host)
        self.assert_public(entries)
        self.assert_no_adapter(entries)
        lock.unlink()
        folder.lock.unlink()
        self.assert_adapter(self.timelines(host))

    def test_the_settings_are_read_only(self):
        (self.data / "defaults").mkdir(mode=0o700)
        self.mount(self.data / "defaults")
        settings.write(self.data, *settings.stored({"ip": "127.0.0.1", "isp": "Former Telecom"},
                                                   seconds_ago=4 * settings.DAY_SECONDS))
        self.make_read_only(self.data / "defaults")
        self.assert_all_but_stored(self.host(services=self.start_services()), "cannot be brought to the disk")

    def test_the_data_folder_is_read_only(self):
        self.mount(self.data)
        self.make_read_only(self.data)
        self.assert_all_but_stored(self.host(services=self.start_services()), "cannot be brought to the disk",
                                   "Traffic is shown but not recorded")

    def test_the_disk_is_full(self):
        self.mount(self.data)
        with open(self.data / "filler", "wb", buffering=0) as filler:
            try:
                while filler.write(bytes(4096)):
                    pass
            except OSError:
                pass
        host = self.host(services=self.start_services())
        self.assert_all_but_stored(host, "cannot be brought to the disk", "Traffic is shown but not recorded")
        folder = DataFolder(self.data)
        self.assertFalse(folder.file.exists())
        (self.data / "filler").unlink()
        self.assert_adapter(self.timelines(host))
        self.assertIn("en0", folder.recorded())
