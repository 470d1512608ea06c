#!/usr/bin/env python3
"""The Debian packages, and an installation: what is in them, and that they work where there is no build tree."""
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ["NEBTRACE_BUILD"])
HERE = pathlib.Path(__file__).resolve().parent
NAMES = ("libnebtrace1", "nebtrace", "libnebtrace-dev")

FRONT_ENDS = ["libEGL.so", "libEGL.so.1", "libGLES_CM.so", "libGLESv1_CM.so", "libGLESv1_CM.so.1", "libGLESv2.so",
              "libGLESv2.so.2"]
HEADERS = ["api/egl.def", "api/es1.def", "api/es2.def", "api/types.h", "profiler/data_path.h", "profiler/npl.h",
           "support/export.h", "wrappers/egl.h", "wrappers/es1.h", "wrappers/es2.h"]

# Where the build tree and the sources are, there is nothing.
HIDDEN = """
mount -t tmpfs none "$1" && { test ! -d "$2" || mount -t tmpfs none "$2"; } || exit 90
test -z "$(ls "$1" "$2" 2>/dev/null | grep -v :)" || exit 91
shift 2
exec "$@"
"""


def output(*command, **options):
    done = subprocess.run(command, capture_output=True, text=True, **options)
    if done.returncode != 0:
        raise AssertionError(f"{command}: {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def files_below(folder):
    return {str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_symlink() or not path.is_dir()}


def expected_files(library):
    """What each package has, below its prefix. The library's folder is the build's own choice."""
    pages = [path.relative_to(BUILD / "manual") for path in (BUILD / "manual").glob("man?/*")]
    return {
        "libnebtrace1": {f"{library}/libNEBTrace.so.1"} | {f"{library}/nebtrace/frontends/{f}" for f in FRONT_ENDS},
        "nebtrace": {"bin/nebtrace", "share/bash-completion/completions/nebtrace",
                     "share/zsh/vendor-completions/_nebtrace"} | {f"share/man/{page}" for page in pages},
        "libnebtrace-dev": {f"{library}/libNEBTrace.so", f"{library}/pkgconfig/nebtrace.pc"}
                           | {f"include/nebtrace/{header}" for header in HEADERS},
    }


class Packages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        cls.root = cls.folder / "root"
        cls.prefix = cls.folder / "prefix"
        output("cpack", "--config", BUILD / "CPackConfig.cmake", "-B", cls.folder / "packages", cwd=BUILD)
        cls.packages = {path.name.split("_")[0]: path for path in (cls.folder / "packages").glob("*.deb")}
        for package in cls.packages.values():
            output("dpkg", "-x", package, cls.root)
        output("cmake", "--install", BUILD, "--prefix", cls.prefix)
        cls.library = next(cls.root.rglob("libNEBTrace.so.1")).parent.relative_to(cls.root / "usr")
        # The one thing that is not of the packages.
        cls.cube = cls.folder / "cube"
        shutil.copy(BUILD / "examples/cube", cls.cube)

    def field(self, package, name):
        return output("dpkg-deb", "-f", self.packages[package], name).strip()

    def programs(self):
        return [path for path in self.root.rglob("*") if path.is_file() and not path.is_symlink()
                and path.read_bytes()[:4] == b"\x7fELF"]

    def run_hidden(self, *command, **environment):
        """Runs a command where neither build tree nor sources can be seen."""
        env = {key: value for key, value in os.environ.items()
               if key not in ("LD_LIBRARY_PATH", "DISPLAY", "WAYLAND_DISPLAY", "NEBTRACE_BUILD")}
        env.update(LIBGL_ALWAYS_SOFTWARE="1", EGL_PLATFORM="surfaceless", **environment)
        unshare = ["unshare", "--mount"] + ([] if os.geteuid() == 0 else ["--map-root-user"])
        folder = tempfile.mkdtemp(dir=self.folder)
        return output(*unshare, "sh", "-c", HIDDEN, "sh", BUILD, SOURCE, *command, cwd=folder, env=env)

    def record_and_replay(self, nebtrace):
        trace = pathlib.Path(tempfile.mkdtemp(dir=self.folder)) / "cube.nebt"
        self.run_hidden(nebtrace, "record", "--frames", "10-19", "--save-frames", "-o", trace, "--", self.cube,
                        "--frames", "21")
        self.assertIn("frames        10,", self.run_hidden(nebtrace, "info", trace))
        self.assertIn("eglSwapBuffers", self.run_hidden(nebtrace, "dump", "--frames", "0-0", trace))
        self.assertIn("10 frames compared, 0 differ", self.run_hidden(nebtrace, "replay", "--verify", trace))

    def test_there_are_three_packages_of_one_version(self):
        self.assertEqual(set(self.packages), set(NAMES))
        self.assertEqual(len({self.field(name, "Version") for name in NAMES}), 1)
        for name in NAMES:
            self.assertEqual(self.field(name, "Package"), name)
            for field in ("Maintainer", "Section", "Description", "Installed-Size"):
                self.assertNotEqual(self.field(name, field), "", (name, field))

    def test_each_package_has_its_files_and_no_others(self):
        for name, expected in expected_files(self.library).items():
            with self.subTest(package=name):
                folder = self.folder / name
                output("dpkg", "-x", self.packages[name], folder)
                self.assertEqual(files_below(folder), {f"usr/{file}" for file in expected})

    def test_packages_need_each_other_and_what_they_are_linked_with(self):
        version = self.field("nebtrace", "Version")
        self.assertIn(f"libnebtrace1 (= {version})", self.field("nebtrace", "Depends"))
        self.assertIn(f"libnebtrace1 (= {version})", self.field("libnebtrace-dev", "Depends"))
        self.assertIn("libegl-dev", self.field("libnebtrace-dev", "Depends"))
        self.assertIn("libpng16-16", self.field("nebtrace", "Depends"))
        self.assertIn("libc6", self.field("libnebtrace1", "Depends"))
        for name in ("libnebtrace1", "nebtrace"):
            self.assertNotRegex(self.field(name, "Depends"), "libegl|libgles|libx11")
            self.assertIn("libegl1", self.field(name, "Recommends"))

    # Another package's program must not be told that it can have libEGL.so.1 from here.
    def test_no_package_says_that_its_front_ends_are_the_machines_libraries(self):
        for name in NAMES:
            self.assertNotIn("shlibs", output("dpkg-deb", "-I", self.packages[name]))

    def test_packages_hold_no_trace_of_the_build(self):
        self.assertGreaterEqual(len(self.programs()), 5)
        for path in self.root.rglob("*"):
            if path.is_file():
                content = path.read_bytes()
                self.assertNotIn(str(SOURCE).encode(), content, path)
                self.assertNotIn(str(BUILD).encode(), content, path)
        for program in self.programs():
            sections = output("readelf", "-SW", program)
            self.assertNotRegex(sections, r"\.debug_|\.symtab", program)
            for run_path in re.findall(r"(?:RUNPATH|RPATH).*\[(.*)\]", output("readelf", "-dW", program)):
                for folder in run_path.split(":"):
                    self.assertTrue(folder.startswith("$ORIGIN/"), (program, run_path))

    def test_packages_are_no_larger_than_they_need_to_be(self):
        for name, package in self.packages.items():
            self.assertLess(package.stat().st_size, 2 << 20, name)

    def test_packages_record_and_replay_without_the_build_tree(self):
        self.record_and_replay(self.root / "usr/bin/nebtrace")

    def test_an_installation_has_the_same_files_and_works_as_well(self):
        self.assertEqual(files_below(self.prefix), set().union(*expected_files(self.library).values()))
        self.record_and_replay(self.prefix / "bin/nebtrace")

    def test_a_program_is_built_with_what_is_installed(self):
        sources = self.folder / "program"
        sources.mkdir()
        shutil.copy(HERE / "public_headers.cpp", sources)
        for prefix in (self.root / "usr", self.prefix):
            with self.subTest(prefix=prefix.name):
                library = prefix / self.library
                flags = output("pkg-config", "--cflags", "--libs", "nebtrace",
                               env=dict(os.environ, PKG_CONFIG_PATH=str(library / "pkgconfig"))).split()
                program = sources / prefix.name
                self.run_hidden(os.environ["NEBTRACE_CXX"], "-std=c++17", "-Wall", "-Wextra", "-Wpedantic", "-Werror",
                                sources / "public_headers.cpp", "-o", program, *flags)
                # The variable keeps the recorder from looking for its configuration.
                told = self.run_hidden(program, LD_LIBRARY_PATH=str(library), NEBTRACE_INSTALLER_HOST_QUERY_WD48LZ="1")
                self.assertEqual(told, "linked 0x3000 0 0\n")

    def test_each_public_header_stands_by_itself(self):
        include = self.root / "usr/include/nebtrace"
        for header in HEADERS:
            if header.endswith(".h"):
                with self.subTest(header=header):
                    self.run_hidden(os.environ["NEBTRACE_CXX"], "-std=c++17", "-fsyntax-only", "-Wall", "-Wextra",
                                    "-Wpedantic", "-Werror", f"-I{include}", "-include", header, "-x", "c++",
                                    "/dev/null")


if __name__ == "__main__":
    unittest.main()
