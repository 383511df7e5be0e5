#!/usr/bin/env python3
"""Inspects the plug-in for macOS that scripts/build-macos has built, without running any of it.

   bundle_inspection_test.py BUNDLE [--whatever-its-age] [--built-on-a-mac]

The exit status is 77, for "skipped", if there is no bundle or it is older than its sources.

A bundle that scripts/check-mac has built on a Mac uses the system's C++ library, is for newer
systems, and is linked by Apple's linker."""
import copy
import functools
import pathlib
import plistlib
import re
import sys
import unittest

import code_signature
import macho
import unwind
from bundle_interface import (CATCHING, CLASS_HOMES, CLASSES, CXX_HANDLER, IMPORTED, LATE_CALLS,
                              LIBRARIES, NSOBJECT_HOME, OBJC_HANDLER, OWN_METHODS, SYSTEM)

project = pathlib.Path(__file__).resolve().parents[3]
bundle = None
BOOLEAN = {"x86_64": "c", "arm64": "B"}
OLDEST = {"x86_64": "10.7", "arm64": "11.0"}
OLDEST_ON_A_MAC = {"x86_64": "10.13", "arm64": "11.0"}
CXX = "/usr/lib/libc++.1.dylib"
built_on_a_mac = False


def compact(encoding):
    """A type encoding without offsets, receiver and selector."""
    types = re.sub(r"[0-9]+", "", encoding)
    result, _, arguments = types.partition("@:")
    return result + arguments


def executable():
    return bundle / "Contents/MacOS/WENLOLIB"


class Bundle(unittest.TestCase):
    def test_has_apples_tree(self):
        files = {str(path.relative_to(bundle)) for path in bundle.rglob("*") if not path.is_dir()}
        self.assertEqual(files, {"Contents/Info.plist", "Contents/MacOS/WENLOLIB"})

    def test_tells_what_it_is(self):
        with open(bundle / "Contents/Info.plist", "rb") as file:
            information = plistlib.load(file)
        self.assertEqual(information["CFBundleExecutable"], "WENLOLIB")
        self.assertEqual(information["CFBundlePackageType"], "BNDL")
        self.assertEqual(information["CFBundleIdentifier"], "com.orvan.printing.WENLOLIB")
        self.assertEqual(information["NSPrincipalClass"], "WENLOLIB")
        for key in ("CFBundleShortVersionString", "CFBundleVersion"):
            self.assertRegex(information[key], r"^[0-9]+\.[0-9]+\.[0-9]+$")


def for_each_slice(check):
    """Makes a test of a check of one architecture's image."""
    @functools.wraps(check)
    def test(self):
        for architecture, image in self.images.items():
            with self.subTest(architecture):
                check(self, architecture, image)
    return test


class Executable(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.images = macho.slices(executable().read_bytes())

    def test_is_a_bundle_for_both_architectures(self):
        self.assertEqual(set(self.images), {"x86_64", "arm64"})
        for architecture, image in self.images.items():
            self.assertEqual(image.kind, macho.BUNDLE)
            oldest = OLDEST_ON_A_MAC if built_on_a_mac else OLDEST
            self.assertEqual(image.oldest, oldest[architecture])

    def test_is_signed_for_arm_page_by_page(self):
        image = self.images["arm64"]
        self.assertEqual(code_signature.complaints(image), [])
        end, _ = image.signature
        for place in (0, 24, end // 2, end - 1):
            changed = bytearray(image.data)
            changed[place] ^= 1
            image_changed = copy.copy(image)
            image_changed.data = bytes(changed)
            self.assertRegex("; ".join(code_signature.complaints(image_changed)),
                             "^page [0-9]+ has another digest$")

    @for_each_slice
    def test_exports_its_list(self, _, image):
        lines = (project / "product/exports.txt").read_text().split("\n")
        names = {"_" + line for line in lines if re.fullmatch(r"\w+", line)}
        self.assertEqual(len(names), 12)
        for name in CLASSES:
            names |= {f"_OBJC_CLASS_$_{name}", f"_OBJC_METACLASS_$_{name}"}
        self.assertEqual(image.exported(), names)

    @for_each_slice
    def test_loads_nothing_but_the_system(self, _, image):
        libraries = {**LIBRARIES, CXX: False} if built_on_a_mac else LIBRARIES
        self.assertEqual(dict(image.libraries), libraries)

    @for_each_slice
    def test_imports_what_is_meant(self, architecture, image):
        libraries = IMPORTED[architecture]
        imported = {each for each in image.imported()
                    if each[1] in libraries and not each[0].startswith("_OBJC_METACLASS_$_")}
        meant = {(name, library, LIBRARIES[library])
                 for library, names in libraries.items() for name in names}
        if built_on_a_mac:  # Apple's frameworks offer each other's names
            elsewhere = {("_OBJC_CLASS_$_NSObject", False)}
            imported = {(name, weak) for name, _, weak in imported} - elsewhere
            meant = {(name, weak) for name, _, weak in meant} - elsewhere
        self.assertEqual(imported, meant)

    @for_each_slice
    def test_finds_each_class_where_the_oldest_system_has_it(self, architecture, image):
        homes = {name: library for name, library, _, _ in image.bindings.values()
                 if name.startswith(("_OBJC_CLASS_", "_OBJC_METACLASS_", "_OBJC_EHTYPE_"))}
        expected = {"_OBJC_CLASS_$_" + name: library for name, library in CLASS_HOMES.items()}
        for kind in ("CLASS", "METACLASS"):
            expected[f"_OBJC_{kind}_$_NSObject"] = NSOBJECT_HOME[architecture]
        expected["_OBJC_EHTYPE_$_NSException"] = CLASS_HOMES["NSException"]
        if built_on_a_mac:  # for newer systems, which have NSObject elsewhere
            homes, expected = homes.keys(), expected.keys()
        self.assertEqual(homes, expected)

    @for_each_slice
    def test_binds_its_imports_when_it_is_loaded(self, _, image):
        bound = image.bindings.values()
        self.assertEqual([name for name, _, _, is_lazy in bound if is_lazy], [])
        binder = ("dyld_stub_binder", SYSTEM, False)  # what lazy imports would need
        self.assertEqual({each[:3] for each in bound} | {binder}, image.imported() | {binder})

    @for_each_slice
    def test_passes_exceptions_through_every_function(self, architecture, image):
        table = unwind.Table(architecture, image)
        self.assertEqual(list(table.broken.items())[:9], [], f"{len(table.broken)} functions")
        self.assertGreater(len(table.handling), 900)

    @for_each_slice
    def test_catches_what_is_raised(self, architecture, image):
        table = unwind.Table(architecture, image)
        areas = {function: each.area for function, each in table.handling.items() if each.area}
        self.assertEqual(areas, table.areas)
        start, size = image.sections["__gcc_except_tab"]
        self.assertEqual([area for area in areas.values() if not start <= area < start + size], [])
        self.assertEqual({table.handling[function].personality for function in areas},
                         {CXX_HANDLER, OBJC_HANDLER})
        functions = image.functions()
        own = [function for function in areas
               if any(re.search(r"8wenlolib|\[", name) for name in functions[function])]
        self.assertGreater(len(own), 150)
        catching = {name: table.handling[function].personality for function, area in areas.items()
                    if table.catches(area) for name in functions[function]}
        self.assertEqual({name: catching.get(name) for name in CATCHING}, CATCHING)

    @for_each_slice
    def test_imports_no_cxx(self, _, image):
        names = {name for name, path, _ in image.imported() if path == SYSTEM}
        self.assertGreater(len(names), 50)
        libraries = {path for name, path, _ in image.imported() if name.startswith("__Z")}
        self.assertEqual(libraries, {CXX} if built_on_a_mac else set())

    def test_can_do_without_what_came_late(self):
        weak = {name for name, path, weak in self.images["x86_64"].imported()
                if path == SYSTEM and weak}
        self.assertEqual(weak, set() if built_on_a_mac else LATE_CALLS)

    @for_each_slice
    def test_has_its_classes(self, architecture, image):
        classes = image.classes()
        self.assertEqual(set(classes), set(CLASSES))
        for name, expected in CLASSES.items():
            self.assertEqual(classes[name]["variables"], expected["variables"])
            for kind in "+-":
                self.assert_methods(classes[name][kind], expected[kind], architecture)

    @for_each_slice
    def test_groups_the_records_operations_in_a_category(self, _, image):
        categories = image.classes()["WENLOLIB"]["categories"]
        if built_on_a_mac and not categories:
            return  # Apple's linker merges a category into its class
        self.assertEqual(set(categories), {"WENLOLIBMethods"})
        self.assertLessEqual(set(CLASSES["WENLOLIB"]["-"]), categories["WENLOLIBMethods"])

    def assert_methods(self, methods, expected, architecture):
        found = {selector: compact(types) for selector, types in methods.items()
                 if OWN_METHODS.get(selector) != compact(types)}
        wanted = {selector: types.replace("Z", BOOLEAN[architecture])
                  for selector, types in expected.items()}
        self.assertEqual(found, wanted)


def main():
    global bundle, built_on_a_mac
    bundle = pathlib.Path(sys.argv.pop(1))
    if not executable().exists():
        print("skipped: there is no plug-in for macOS; scripts/build-macos builds it")
        return 77
    built = executable().stat().st_mtime
    sources = [project / "CMakeLists.txt"]
    for folder in ("src", "product", "cmake", "tests/apple_stubs"):
        sources += (path for path in (project / folder).rglob("*") if path.is_file())
    newer = [path for path in sources if path.stat().st_mtime > built]
    if newer and "--whatever-its-age" not in sys.argv:
        print(f"skipped: the plug-in for macOS is older than {newer[0].relative_to(project)}; "
              "scripts/build-macos builds it")
        return 77
    built_on_a_mac = "--built-on-a-mac" in sys.argv
    sys.argv = [each for each in sys.argv if each not in ("--whatever-its-age", "--built-on-a-mac")]
    return unittest.main()


if __name__ == "__main__":
    sys.exit(main())
