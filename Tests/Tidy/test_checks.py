"""Every check finds a planted fault, and finds nothing where there is none."""

import shutil
import unittest

import run_check
from checks.fixtures import real_literals
from checks.lengths import functions
from planted import HEADER, PlantedTree
from tree import strip_comments_and_strings


class PlantedTest(unittest.TestCase):
    def setUp(self):
        self.tree = PlantedTree()
        self.addCleanup(self.tree.close)

    def assert_found(self, check, *expected):
        """Exactly these findings, each named by its place and a piece of its sentence."""
        found = self.tree.findings(check)
        self.assertEqual(len(expected), len(found), found)
        for (place, piece), line in zip(expected, found):
            self.assertTrue(line.startswith(place + ": "), line)
            self.assertIn(piece, line)

    def include_in(self, path, header):
        """Plants a file with one more #include, on line 3 of a header and line 1 of a source."""
        text = HEADER.replace("namespace", f"#include {header}\n\nnamespace", 1)
        self.tree.add(path, text if path.endswith(".h") else f"#include {header}\n")


class ContentTree(PlantedTest):
    def test_no_check_finds_anything(self):
        for check in run_check.CHECKS:
            with self.subTest(check=check):
                self.assertEqual([], self.tree.findings(check))


class Layering(PlantedTest):
    def test_a_room_may_use_what_its_list_names(self):
        self.include_in("NetBase/Other.cpp", '"Platform/Seam.h"')
        self.assert_found("layering")

    def test_a_room_below(self):
        self.include_in("Platform/Other.h", '"NetBase/Tool.h"')
        self.assert_found("layering", ("Platform/Other.h:4", "Platform may not use NetBase"))

    def test_a_room_may_use_the_folder_that_its_list_names(self):
        self.include_in("PlatformLinux/Other.cpp", '"NetworkMonitor/Metrics/Reader.h"')
        self.assert_found("layering")

    def test_the_rest_of_a_room_of_which_the_list_names_a_folder(self):
        self.include_in("PlatformLinux/Other.cpp", '"NetworkMonitor/State.h"')
        self.assert_found("layering",
                          ("PlatformLinux/Other.cpp:1", "may not use NetworkMonitor"))

    def test_a_folder_whose_name_only_begins_like_the_one_in_the_list(self):
        self.tree.add("NetworkMonitor/MetricsStore/Store.h", HEADER)
        self.include_in("PlatformLinux/Other.cpp", '"NetworkMonitor/MetricsStore/Store.h"')
        self.assert_found("layering", ("PlatformLinux/Other.cpp:1",
                                       "may not use NetworkMonitor/MetricsStore"))

    def test_a_list_that_names_a_folder_of_the_production_side(self):
        self.tree.add("CMake/Rooms.cmake", "lanternfold_room(Support)\nlanternfold_room(Platform "
                      "USES Support)\nlanternfold_room(PlatformLinux USES Platform)\n"
                      "lanternfold_room(NetBase USES PlatformLinux/System Platform Support)\n")
        self.assert_found("layering", ("CMake/Rooms.cmake:4", "only composition roots may"))

    def test_the_production_side_outside_a_composition_root(self):
        self.include_in("NetworkMonitor/Other.cpp", '"PlatformLinux/Side.h"')
        self.assert_found("layering",
                          ("NetworkMonitor/Other.cpp:1", "may not use PlatformLinux"))

    def test_a_list_that_names_the_production_side(self):
        self.tree.add("CMake/Rooms.cmake", "lanternfold_room(Support)\nlanternfold_room(Platform "
                      "USES Support)\nlanternfold_room(PlatformLinux USES Platform)\n"
                      "lanternfold_room(NetBase USES PlatformLinux Platform Support)\n")
        self.assert_found("layering", ("CMake/Rooms.cmake:4", "only composition roots may"))

    def test_a_list_that_names_a_room_below_it(self):
        self.tree.add("CMake/Rooms.cmake", "lanternfold_room(Support USES Platform)\n"
                      "lanternfold_room(Platform USES Support)\n")
        self.assert_found("layering", ("CMake/Rooms.cmake:1", "does not stand above it"))

    def test_a_test_of_one_room_that_uses_another(self):
        self.include_in("Tests/NetBase/ToolTest.cpp", '"PlatformLinux/Side.h"')
        self.assert_found("layering",
                          ("Tests/NetBase/ToolTest.cpp:1", "may not use PlatformLinux"))

    def test_a_fuzz_target_beyond_its_list(self):
        self.include_in("Fuzz/LinkMessage.cpp", '"NetBase/Tool.h"')
        self.assert_found("layering", ("Fuzz/LinkMessage.cpp:1", "Fuzz may not use NetBase"))

    def test_product_code_that_includes_a_test(self):
        self.tree.add("Tests/Support/Fake.h", HEADER)
        self.include_in("CommandLine/main.cpp", '"Tests/Support/Fake.h"')
        found = self.tree.findings("layering")
        self.assertTrue(any("includes a test's header" in line for line in found), found)

    def test_an_operating_system_header_in_a_seam(self):
        self.include_in("Platform/Other.h", "<sys/socket.h>")
        self.assert_found("layering", ("Platform/Other.h:4", "a header of the operating system"))

    def test_an_operating_system_header_in_a_rule(self):
        self.include_in("NetBase/Other.cpp", "<unistd.h>")
        self.assert_found("layering", ("NetBase/Other.cpp:1", "a header of the operating system"))

    def test_a_decoder_that_reaches_the_system(self):
        self.include_in("PlatformLinux/Netlink/Message.cpp", "<unistd.h>")
        self.assert_found("layering",
                          ("PlatformLinux/Netlink/Message.cpp:1", "a decoder takes bytes"))

    def test_a_decoder_that_calls_a_socket(self):
        self.tree.add("PlatformLinux/Netlink/Message.cpp", "int read() { return recv(0); }\n")
        self.assert_found("layering", ("PlatformLinux/Netlink/Message.cpp:1", '"recv("'))

    def test_the_other_kernels_decoder_with_this_systems_header(self):
        self.include_in("PlatformDarwin/Message.cpp", "<sys/socket.h>")
        self.assert_found("layering", ("PlatformDarwin/Message.cpp:1", "a decoder takes bytes"))

    def test_a_library_that_the_room_does_not_link(self):
        self.include_in("NetBase/Other.cpp", "<nlohmann/json.hpp>")
        self.assert_found("layering", ("NetBase/Other.cpp:1", "nlohmann_json::nlohmann_json"))

    def test_a_library_that_leaks_through_a_header_of_another_room(self):
        self.include_in("PlatformLinux/Inner.h", "<asio/io_context.hpp>")
        self.include_in("PlatformLinux/Side.h", '"PlatformLinux/Inner.h"')
        self.include_in("CommandLine/main.cpp", '"PlatformLinux/Side.h"')
        self.assert_found("layering", ("CommandLine/main.cpp:1", "brings in Threads::Threads"))

    def test_an_include_that_does_not_count_from_the_top(self):
        self.include_in("NetBase/Other.cpp", '"Tool.h"')
        found = self.tree.findings("layering")
        self.assertIn('"Tool.h" is no file counted from the top of the tree', found[0])


class Lengths(PlantedTest):
    def test_a_file_of_more_than_400_lines(self):
        self.tree.add("Support/Long.cpp", "int x;\n" * 401)
        self.assert_found("lengths", ("Support/Long.cpp:1", "401 lines"))

    def test_a_file_of_400_lines(self):
        self.tree.add("Support/Long.cpp", "int x;\n" * 400)
        self.assert_found("lengths")

    def test_a_long_fixture(self):
        self.tree.add("Tests/NetBase/Fixtures/Table.h", "int x;\n" * 500)
        self.assert_found("lengths")

    def test_a_function_of_more_than_70_lines(self):
        body = "  step();\n" * 69
        self.tree.add("Support/Long.cpp", "namespace a {\n\nvoid f(int a) {\n" + body + "}\n}\n")
        self.assert_found("lengths", ("Support/Long.cpp:3", "a function of 71 lines"))

    def test_a_function_of_70_lines(self):
        self.tree.add("Support/Long.cpp", "void f(int a) {\n" + "  step();\n" * 68 + "}\n")
        self.assert_found("lengths")


class Functions(unittest.TestCase):
    def lines(self, code):
        return list(functions(strip_comments_and_strings(code)))

    def test_members_and_free_functions(self):
        self.assertEqual([(2, 4), (6, 6)], self.lines(
            "class A {\n  int a() const {\n    return 1;\n  }\n};\nint b() { return 2; }\n"))

    def test_a_constructor_that_initialises_with_braces(self):
        self.assertEqual([(1, 5)], self.lines("A::A(int a)\n    : a_{a}, b_{a} {\n  f();\n\n}\n"))

    def test_a_default_argument_of_braces(self):
        self.assertEqual([(1, 3)], self.lines("void f(Options o = {}) {\n  g();\n}\n"))

    def test_a_table_is_no_function(self):
        self.assertEqual([], self.lines("constexpr std::array table = {\n  f(1),\n  g(2),\n};\n"))

    def test_a_lambda_belongs_to_its_function(self):
        self.assertEqual([(1, 4)], self.lines("void f() {\n  g([] { h(); });\n  auto k = [] {};\n}\n"))

    def test_braces_in_comments_and_texts(self):
        self.assertEqual([(1, 4)], self.lines("void f() {\n  // }\n  g(\"}\", '}', R\"(})\");\n}\n"))

    def test_a_template_with_a_class_parameter(self):
        self.assertEqual([(1, 2)], self.lines("template <class T> void f(T a) {\n}\n"))

    def test_an_operator(self):
        self.assertEqual([(1, 2)], self.lines("bool operator==(const A& a, const A& b) {\n}\n"))


class Words(PlantedTest):
    def test_words_that_no_line_may_say(self):
        for text in ["as P" + "art 3.1 says", "th" + "e spec says", "the speci" + "fication",
                     "see spec" + ".md", "cp /wo" + "rk/main .", "curl https://de" + "b.example.org",
                     "// TO" + "DO: later", "// FIX" + "ME", "in /home/" + "someone/x"]:
            with self.subTest(text=text):
                self.tree.add("Docs/MAP.md", f"# Map\n\n## The rooms\n\n{text}\n")
                self.assertEqual(1, len(self.tree.findings("words")))

    def test_words_that_only_look_like_them(self):
        self.tree.add("Docs/MAP.md", "# Map\n## The rooms\na part of it, a specific number, a "
                      "framework/work folder, RFC 4291, the specified key\n")
        self.assert_found("words")

    def test_banned_calls(self):
        for call in ["sprintf(a, b);", "strcpy(a, b);", 'std::system("ip");', "std::rand();",
                     "std::abort();", "exit(1);", "assert(a);", "std::atoi(a);",
                     "std::this_thread::sleep_for(a);", "std::chrono::system_clock::now();",
                     "using Moment = std::chrono::steady_clock;",
                     "inet_ntoa(a);", 'std::getenv("A");', "std::cout << a;"]:
            with self.subTest(call=call):
                self.tree.add("NetBase/Other.cpp", f"void f() {{ {call} }}\n")
                self.assertEqual(1, len(self.tree.findings("words")), call)

    def test_calls_that_only_look_like_them(self):
        self.tree.add("NetBase/Other.cpp", "// std::abort() is for fatalError\n"
                      "void f() { path.system(); snprintf(a, 1, b); static_assert(true); "
                      'g("exit(1)"); _exit(1); my_exit(2); }\n')
        self.assert_found("words")

    def test_the_only_place_that_aborts(self):
        self.tree.add("Support/FatalError.cpp", "void f() { std::abort(); }\n")
        self.assert_found("words")

    def test_tests_that_cannot_fail(self):
        for text in ["GTEST_SKIP()", "DISABLED_Name", "EXPECT_TRUE(true)", "SUCCEED()"]:
            with self.subTest(text=text):
                self.tree.add("Tests/NetBase/ToolTest.cpp", f"void f() {{ {text}; }}\n")
                self.assertEqual(1, len(self.tree.findings("words")))


class Fixtures(PlantedTest):
    def test_an_address_that_belongs_to_somebody(self):
        self.tree.add("Tests/NetBase/ToolTest.cpp", 'const char* a = "93.184.' + '216.34";\n')
        self.assert_found("fixtures", ("Tests/NetBase/ToolTest.cpp:1", "may be somebody's"))

    def test_which_literals_are_real(self):
        for literal, is_real in [
                ("192.0.2.1", False), ("10.1.2.3", False), ("127.0.0.1", False),
                ("255.255.254.0", False), ("8.8.8.8", False), ("12.34.56.78", False),
                ("93.184.216.34", True), ("9.9.9.9", True), ("1.2.3.4.5", False),
                ("02:00:5e:10:00:01", False), ("12:34:56:ab:cd:ef", False),
                ("00:00:5e:00:53:01", False), ("00:1b:21:aa:bb:cc", True),
                ("2001:db8::1", False), ("fe80::1", False), ("::1", False),
                ("2606:4700::1111", True), ("std::byte", False)]:
            with self.subTest(literal=literal):
                self.assertEqual(is_real, bool(list(real_literals(f'x = "{literal}";'))))


class Links(PlantedTest):
    def test_a_link_to_nowhere(self):
        self.tree.add("README.md", "# House\n\nSee [it](Docs/NONE.md).\n")
        self.assert_found("links", ("README.md:3", "leads nowhere"))

    def test_a_link_to_a_heading_that_is_gone(self):
        self.tree.add("README.md", "# House\n\nSee [it](Docs/MAP.md#the-garden).\n")
        self.assert_found("links", ("README.md:3", "has no heading #the-garden"))

    def test_a_path_that_is_gone(self):
        self.tree.add("README.md", "# House\n\n`Support/Gone.h`\n")
        self.assert_found("links", ("README.md:3", "`Support/Gone.h` does not exist"))

    def test_links_out_of_the_tree_are_left_alone(self):
        self.tree.add("README.md", "# House\n\n[a](mailto:a@example.org)\n```\n[b](gone.md)\n```\n")
        self.assert_found("links")


class Banners(PlantedTest):
    def test_a_header_without_a_banner(self):
        self.tree.add("Support/Bare.h", "#pragma once\n")
        self.assert_found("banners", ("Support/Bare.h:1", "opens with a banner"))

    def test_a_header_without_a_guard(self):
        self.tree.add("Support/Bare.h", "// A number.\n\nint x;\n")
        self.assert_found("banners", ("Support/Bare.h:2", "#pragma once"))


class Scripts(PlantedTest):
    def test_a_script_that_does_not_parse(self):
        self.tree.add("Scripts/go", "#!/usr/bin/env bash\n# Goes.\nif true; then\n")
        self.assert_found("scripts", ("Scripts/go:1", "syntax error"))

    def test_a_script_that_cannot_be_executed(self):
        (self.tree.root / "Scripts/go").chmod(0o644)
        self.assert_found("scripts", ("Scripts/go:1", "chmod +x"))

    def test_a_script_that_does_not_say_what_it_does(self):
        self.tree.add("Scripts/go", "#!/usr/bin/env bash\ntrue\n")
        self.assert_found("scripts", ("Scripts/go:2", "says in its first lines"))


class Names(PlantedTest):
    def setUp(self):
        super().setUp()
        self.tree.add("PlatformLinux/Wifi/WifiFacts.h", HEADER)
        self.tree.add("PlatformLinux/Wifi/WifiNames.h", HEADER)

    def test_a_command_that_sees_what_the_kernel_tells(self):
        self.include_in("CommandLine/Wifi.cpp", '"PlatformLinux/Wifi/WifiFacts.h"')
        self.assert_found("names", ("CommandLine/Wifi.cpp:1", "whatever the user's consent is"))

    def test_a_command_that_sees_it_through_another_header(self):
        self.include_in("PlatformLinux/Wifi/Memory.h", '"PlatformLinux/Wifi/WifiFacts.h"')
        self.include_in("CommandLine/Wifi.cpp", '"PlatformLinux/Wifi/Memory.h"')
        self.assert_found("names", ("CommandLine/Wifi.cpp:1", "whatever the user's consent is"))

    def test_names_made_a_text_elsewhere(self):
        self.include_in("PlatformLinux/Wifi/WifiSecurity.cpp", '"PlatformLinux/Wifi/WifiNames.h"')
        self.assert_found("names", ("PlatformLinux/Wifi/WifiSecurity.cpp:1", "makes texts"))

    def test_a_name_read_elsewhere(self):
        for use in ("log(facts.interface.ssid);", "auto text = *cell->bssid;",
                    "if (same(cell.peerAddress)) return;", "return facts.interface.ssid;",
                    "if (cell.ssid && print(*cell.ssid)) return;"):
            self.tree.add("PlatformLinux/System/Other.cpp", f"void read() {{ {use} }}\n")
            self.assert_found("names", ("PlatformLinux/System/Other.cpp:1", "reads a name"))

    def test_whether_there_is_a_name_may_be_asked(self):
        self.tree.add("PlatformLinux/System/Other.cpp",
                      "bool a() { return facts.interface.ssid || !facts.joinedCells.empty(); }\n"
                      "bool b() { return cell.ssid.has_value(); }\n"
                      "int c() { return chosen.front().ssid ? 1 : 2; }\n"
                      "int d() { if (!elements.ssid) return 1; return 2; }\n"
                      "int e() { if (!joined.empty() || !interface.ssid) return 1; return 2; }\n")
        self.assert_found("names")


class Formatting(PlantedTest):
    def test_a_file_that_is_not_formatted(self):
        self.tree.add("Support/Wild.cpp", "int  x;\n")
        self.assert_found("formatting", ("Support/Wild.cpp:1", "not formatted"))

    def test_a_machine_without_the_formatter(self):
        which = shutil.which
        self.addCleanup(setattr, shutil, "which", which)
        shutil.which = lambda name: None
        self.assert_found("formatting", (".clang-format:1", "make setup"))


if __name__ == "__main__":
    unittest.main()
