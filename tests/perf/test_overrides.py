"""The stages examples under `nebtrace perf`: what each override does to the picture, field by field, that the picture is
as before when the override is off again, and that the counters say what the example knows it did.

With NEBTRACE_PICTURES=FOLDER the pictures are kept there, for docs/profiling.md.
"""

import json
import os
import shutil
import signal
import subprocess
import sys
import unittest

from PIL import Image

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "e2e"))
sys.path.insert(0, os.path.dirname(__file__))
from perf_support import enter_namespace  # noqa: E402
from support import BUILD, LONGEST, NEBTRACE, ScratchTest  # noqa: E402

SIZE = (480, 360)
FIELD = 120  # pixels on each side
CLEAR = (26, 31, 41)
ORANGE, GREEN, VIOLET = (230, 128, 26), (51, 179, 77), (153, 77, 204)
VEIL, MAGENTA = (51, 102, 255), (255, 0, 255)
REDS = [(0x64, 0x40, 0x40), (0x8C, 0x64, 0x64), (0xC8, 0x8C, 0x8C), (0xFF, 0xC8, 0xC8)]

# Column and row of each field, from the top left one.
FIELDS = {
    "blending": (0, 0), "depth": (1, 0), "stencil": (2, 0), "scissor": (3, 0),
    "culled": (0, 1), "not culled": (1, 1), "texture": (2, 1), "cube map": (3, 1),
    "changed texture": (0, 2), "discard": (1, 2), "rendered texture": (2, 2), "primitives": (3, 2),
}
ES1_FIELDS = {name: place for name, place in FIELDS.items() if name not in ("cube map", "discard", "rendered texture")}
ES1_FIELDS["alpha test"] = (1, 2)


class Picture:
    def __init__(self, path):
        with Image.open(path) as image:
            self.rgba = image.convert("RGBA")
        self.image = self.rgba.convert("RGB")

    def field(self, place):
        left, top = place[0] * FIELD, place[1] * FIELD
        return self.image.crop((left, top, left + FIELD, top + FIELD))

    def colours(self, place=None):
        image = self.image if place is None else self.field(place)
        return {colour for _, colour in image.getcolors(SIZE[0] * SIZE[1])}

    def at(self, place, x, y):
        """The colour at a point of a field, from -1 to 1 each way, as the scene's own coordinates go."""
        return self.field(place).getpixel((int((x + 1) * FIELD / 2), int((1 - y) * FIELD / 2)))


class Application:
    """An example that draws a frame when it is told to."""

    def __init__(self, test, example):
        self.test = test
        self.pictures = test.path("pictures")
        os.makedirs(self.pictures, exist_ok=True)
        self.process = subprocess.Popen(
            [NEBTRACE, "record", "--profile", "--", os.path.join(BUILD, "examples", example), "--step", "--tally",
             "--frames", "1000000", "--size", f"{SIZE[0]}x{SIZE[1]}", "--pictures", self.pictures],
            cwd=test.folder, env=test.environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT, text=True, start_new_session=True)
        test.addCleanup(self.end)
        self.lines = []

    def frame(self):
        """Draws one; its picture's path, and what the example knows of its counters."""
        self.process.stdin.write("\n")
        self.process.stdin.flush()
        tally = {}
        for line in self.process.stdout:
            self.lines.append(line)
            words = line.split(maxsplit=2)
            if words and words[0] == "tally":
                tally[words[2].strip()] = int(words[1])
            if words and words[0] == "drawn":
                return os.path.join(self.pictures, f"frame_{int(words[1]):05}.png"), tally
        raise AssertionError("the example ended:\n" + "".join(self.lines))

    def picture(self):
        return Picture(self.frame()[0])

    def end(self):
        self.process.stdin.close()
        try:
            self.process.wait(LONGEST)
        finally:
            if self.process.returncode is None:
                os.killpg(self.process.pid, signal.SIGKILL)
            self.process.stdout.close()


class Overrides(ScratchTest):
    example = "stages"
    fields = FIELDS

    def setUp(self):
        super().setUp()
        self.application = Application(self, self.example)

    def serve(self, *arguments):
        """Runs the performance server for a few frames, in which the example draws all the time; its lines."""
        server = subprocess.Popen([NEBTRACE, "perf", "--json", "--frames", "4", *arguments], cwd=self.folder,
                                  env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                  stderr=subprocess.PIPE, text=True)
        self.addCleanup(server.kill)
        tally = {}
        while server.poll() is None:
            tally = self.application.frame()[1]
        output, errors = server.communicate()
        self.assertEqual(server.returncode, 0, errors)
        self.assertRegex(errors, rf"^nebtrace: \d+ {self.example}: connected\n$")
        return [json.loads(line) for line in output.splitlines()], tally

    def keep(self, path, name):
        folder = os.environ.get("NEBTRACE_PICTURES")
        if folder:
            with Image.open(path) as image:
                image.convert("RGB").resize((320, 240), Image.LANCZOS).save(
                    os.path.join(folder, f"{self.example}-{name}.png"), optimize=True)

    def override(self, item, value, off, name):
        """The pictures without the override and with it; it changed nothing for good."""
        before_path = self.application.frame()[0]
        before = Picture(before_path)
        self.keep(before_path, "plain")
        self.serve("--set", f"{item}={value}")
        path = self.application.frame()[0]
        self.keep(path, name)
        switched = Picture(path)
        self.serve("--set", f"{item}={off}")
        self.assertEqual(self.application.picture().rgba.tobytes(), before.rgba.tobytes(), f"after {item}")
        return before, switched

    def switch(self, item, name):
        return self.override(item, "1", "0", name)

    def cull(self, mode):
        return self.override("Culling mode", mode, "App defined", "culling-" + mode.lower())

    def check_changed(self, before, after, *names):
        """These fields differ, and all others are as they were, to the last pixel."""
        changed = {name for name, place in self.fields.items()
                   if before.field(place).tobytes() != after.field(place).tobytes()}
        self.assertEqual(changed, set(names))

    # The scene is what the other tests take it for.
    def test_the_plain_picture(self):
        picture = self.application.picture()
        self.assertEqual(picture.image.size, SIZE)
        for name in ("culled", "stencil"):
            self.assertEqual(picture.colours(self.fields[name]), {CLEAR, GREEN}, name)
        self.assertEqual(picture.colours(self.fields["not culled"]), {CLEAR, GREEN, ORANGE})
        self.assertEqual(picture.colours(self.fields["depth"]), {CLEAR, ORANGE, VIOLET})
        self.assertEqual(picture.colours(self.fields["scissor"]), {CLEAR, VIOLET})

    # What the server sees of a frame is what the example did in it, and nothing else.
    def test_the_counters_are_what_the_example_did(self):
        frames, tally = self.serve()
        self.assertEqual(len(frames), 4)
        tally["Frame buffer accesses"] = 1 + SIZE[0] * SIZE[1] * 4  # the picture is read: calls and bytes together
        for frame in frames:
            counters = dict(frame["counters"])
            self.assertEqual(len(counters), 27)
            self.assertGreater(counters.pop("CPU driver time (us)"), 0)
            self.assertEqual({name: count for name, count in counters.items() if count}, tally)

    # Nothing is drawn where there is no viewport, but for wide points: all of them are at the corner, and the driver
    # may draw the quarter of them that lies within the picture.
    def test_zero_viewport(self):
        _, picture = self.switch("Force zero viewport", "zero-viewport")
        picture.image.paste(CLEAR, (0, SIZE[1] - 2, 2, SIZE[1]))
        self.assertEqual(picture.colours(), {CLEAR})

    # The clear colour alone.
    def test_draw_calls(self):
        _, picture = self.switch("Disable draw calls", "draw-calls")
        self.assertEqual(picture.colours(), {CLEAR})

    # The veil is as solid as what it lies over.
    def test_blending(self):
        before, picture = self.switch("Disable blending", "blending")
        self.check_changed(before, picture, "blending")
        self.assertEqual(picture.colours(self.fields["blending"]), {CLEAR, ORANGE, VEIL})

    # The square that comes last wins, although it lies behind.
    def test_depth_test(self):
        before, picture = self.switch("Disable depth test", "depth-test")
        self.check_changed(before, picture, "depth")
        self.assertEqual(picture.colours(self.fields["depth"]), {CLEAR, VIOLET})

    # The square is drawn beyond the triangle that was marked for it.
    def test_stencil_test(self):
        before, picture = self.switch("Disable stencil test", "stencil-test")
        self.check_changed(before, picture, "stencil")
        self.check_square("stencil", picture, GREEN)

    # The square is drawn beyond its cut.
    def test_scissor_test(self):
        before, picture = self.switch("Disable scissor test", "scissor-test")
        self.check_changed(before, picture, "scissor")
        self.check_square("scissor", picture, VIOLET)

    def check_square(self, name, picture, colour):
        """The whole square of four fifths of a field, and nothing around it."""
        expected = Image.new("RGB", (FIELD, FIELD), CLEAR)
        expected.paste(colour, (12, 12, FIELD - 12, FIELD - 12))
        self.assertEqual(picture.field(self.fields[name]).tobytes(), expected.tobytes())

    # The sub-image never comes: the texture stays as it was uploaded.
    def test_texture_modifications(self):
        before, picture = self.switch("Disable texture modifications", "texture-modifications")
        self.check_changed(before, picture, "changed texture")
        self.assertEqual(picture.colours(self.fields["changed texture"]), {CLEAR, (128, 128, 128)})

    # The picture, which the example reads from the frame buffer, is what its memory was before.
    def test_frame_buffer_accesses(self):
        _, picture = self.switch("Disable frame buffer accesses", "frame-buffer-accesses")
        self.assertEqual(set(picture.rgba.tobytes()), {0})

    # To the eye, waiting for the driver makes no difference.
    def test_flush_and_finish(self):
        before, picture = self.switch("Disable flush and finish", "flush-and-finish")
        self.check_changed(before, picture)

    # Back faces show where the application culls them.
    def test_culling_none(self):
        before, picture = self.cull("None")
        self.check_changed(before, picture, "culled")
        self.assertEqual(picture.colours(self.fields["culled"]), {CLEAR, GREEN, ORANGE})

    # Back faces are gone where the application draws them.
    def test_culling_back(self):
        before, picture = self.cull("Back")
        self.check_changed(before, picture, "not culled")
        self.assertEqual(picture.colours(self.fields["not culled"]), {CLEAR, GREEN})

    # Only back faces, points and lines are left.
    def test_culling_front(self):
        before, picture = self.cull("Front")
        self.check_changed(before, picture, *self.fields)
        for name, place in self.fields.items():
            left = {"culled": {ORANGE}, "not culled": {ORANGE}, "primitives": {GREEN}}.get(name, set())
            self.assertEqual(picture.colours(place), {CLEAR} | left, name)

    def check_2x2(self, picture):
        """Each quarter of a texture that is not filtered is one of the four pixels; others are their mixtures."""
        changed = self.fields["changed texture"]
        corners = [picture.at(changed, x, y) for x, y in ((-0.4, -0.4), (0.4, -0.4), (-0.4, 0.4), (0.4, 0.4))]
        self.assertEqual(corners, REDS)
        self.assertEqual(picture.colours(changed), {CLEAR, *REDS})
        for red, green, blue in picture.colours(self.fields["texture"]) - {CLEAR}:
            self.assertTrue(green == blue < red, (red, green, blue))


class OverridesOfEs2(Overrides):
    # A picture of four pixels in each texture, but in no render target.
    def test_2x2_textures(self):
        before, picture = self.switch("Force 2x2 textures", "2x2-textures")
        self.check_changed(before, picture, "texture", "cube map", "changed texture")
        self.check_2x2(picture)
        blues = picture.colours(self.fields["cube map"]) - {CLEAR}
        self.assertGreater(len(blues), 4)
        for red, green, blue in blues:
            self.assertTrue(red == green < blue, (red, green, blue))

    # Hard edges, and no colour but those of the texels.
    def test_texture_filtering(self):
        before, picture = self.switch("Disable texture filtering", "texture-filtering")
        self.check_changed(before, picture, "texture", "cube map", "rendered texture")
        texels = {CLEAR, (20, 60, 110), (250, 240, 120)}
        self.assertEqual(picture.colours(self.fields["texture"]), texels)
        self.assertEqual(picture.colours(self.fields["cube map"]), texels)
        self.assertEqual(picture.colours(self.fields["rendered texture"]), {CLEAR, GREEN, (102, 26, 128)})

    # What is discarded shows as magenta.
    def test_discard(self):
        before, picture = self.switch("Disable discard / alpha test", "discard")
        self.check_changed(before, picture, "discard")
        self.assertEqual(picture.colours(self.fields["discard"]), {CLEAR, ORANGE, MAGENTA})

    # A colour for each program, whatever it draws.
    def test_flat_colour(self):
        before, picture = self.switch("Force flat colour frag shader", "flat-colour")
        self.assertEqual(len(picture.colours()), 1 + 4)
        colours = {}
        for name, place in self.fields.items():
            colour, = picture.colours(place) - {CLEAR}
            colours[name] = colour
        for name in ("texture", "cube map", "discard", "changed texture", "rendered texture"):
            self.check_square(name, picture, colours[name])
        by_program = (("blending", "depth", "stencil", "scissor", "culled", "not culled", "primitives"),
                      ("texture", "changed texture", "rendered texture"), ("cube map",), ("discard",))
        for names in by_program:
            self.assertEqual(len({colours[name] for name in names}), 1, names)
        self.assertEqual(len({colours[names[0]] for names in by_program}), 4)
        self.assertNotEqual(before.image.tobytes(), picture.image.tobytes())


class OverridesOfEs1(Overrides):
    example = "stages_es1"
    fields = ES1_FIELDS

    # A picture of four pixels in each texture.
    def test_2x2_textures(self):
        before, picture = self.switch("Force 2x2 textures", "2x2-textures")
        self.check_changed(before, picture, "texture", "changed texture")
        self.check_2x2(picture)

    # Hard edges, and no colour but those of the texels.
    def test_texture_filtering(self):
        before, picture = self.switch("Disable texture filtering", "texture-filtering")
        self.check_changed(before, picture, "texture")
        self.assertEqual(picture.colours(self.fields["texture"]), {CLEAR, (20, 60, 110), (250, 240, 120)})

    # What the alpha test kept away is there.
    def test_alpha_test(self):
        before, picture = self.switch("Disable discard / alpha test", "alpha-test")
        self.check_changed(before, picture, "alpha test")
        self.assertEqual(picture.colours(self.fields["alpha test"]), {CLEAR, VEIL, ORANGE})

    # There are no fragment shaders to replace.
    def test_flat_colour(self):
        before, picture = self.switch("Force flat colour frag shader", "flat-colour")
        self.check_changed(before, picture)


del Overrides  # what both have in common is no test of its own

if __name__ == "__main__":
    enter_namespace()
    unittest.main()
