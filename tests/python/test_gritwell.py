"""The Python module against the plug-in as the host drives it (through
ctypes, the host's seven-argument calls), and its refusals of bad input."""
import ctypes
import os
import random
import struct
from concurrent.futures import ThreadPoolExecutor

import numpy as np
import pytest

import gritwell

HOST_CALL = ctypes.CFUNCTYPE(ctypes.c_float, ctypes.c_void_p, ctypes.c_double, ctypes.c_void_p, ctypes.c_int,
                             ctypes.c_void_p, ctypes.c_int, ctypes.c_void_p)


class Plugin:
    def __init__(self, path):
        self.lib = ctypes.CDLL(path)
        self.calls = {name: HOST_CALL((name, self.lib)) for name in ("beginSession", "continueSession", "endSession")}

    def values(self, record, points, flags=2):
        """One session over the record, the points sent as one count-prefixed batch."""
        block = ctypes.create_string_buffer(bytes(record), 256)
        # The transform record: flags word, overall scale, offsets, scales, angles.
        transforms = ctypes.create_string_buffer(struct.pack("<iffffffffff", flags, 1, 0, 0, 0, 1, 1, 1, 0, 0, 0), 44)
        points = np.ascontiguousarray(points, dtype=np.float32)
        batch = np.empty(1 + points.size, dtype=np.float32)
        batch[:1].view(np.int32)[0] = len(points)
        batch[1:] = points.ravel()
        out = np.full(len(points), np.nan, dtype=np.float32)
        self.calls["beginSession"](None, 0, ctypes.addressof(block), 256, ctypes.addressof(transforms), 44, None)
        self.calls["continueSession"](None, 0, out.ctypes.data, out.nbytes, batch.ctypes.data, batch.nbytes, None)
        self.calls["endSession"](None, 0, None, 0, None, 0, None)
        return out


@pytest.fixture(scope="module")
def plugin():
    return Plugin(os.environ["GRITWELL_PLUGIN"])


def random_fields(texture, rng):
    """Every field at a random value of its type, counts and modes past their ranges included."""
    fields = {}
    for name, value in texture.fields.items():
        if isinstance(value, bool):
            fields[name] = rng.random() < 0.5
        elif isinstance(value, int):
            fields[name] = rng.randint(-1, 9)
        else:
            fields[name] = rng.uniform(-2, 8)
    return fields


@pytest.mark.parametrize("name", gritwell.generators())
@pytest.mark.parametrize("flags", [2, 4])
def test_random_records_give_the_plugins_bits(plugin, name, flags):
    rng = random.Random(f"{name}/{flags}")
    texture = gritwell.Texture(name, **random_fields(gritwell.Texture(name), rng))
    texture.flags = flags
    points = np.random.default_rng(rng.randrange(1 << 30)).uniform(-10, 10, (500, 3)).astype(np.float32)
    expected = plugin.values(texture.record, points, flags)
    assert texture(points).view(np.uint32).tolist() == expected.view(np.uint32).tolist()
    reopened = gritwell.Texture.from_record(texture.record)
    reopened.flags = flags
    assert reopened.record == texture.record
    assert reopened(points).view(np.uint32).tolist() == expected.view(np.uint32).tolist()


def test_fields_keep_their_types_and_values():
    brick = gritwell.Texture("Brick", brickWidth=0.5, randomizeColors=False)
    fields = brick.fields
    assert fields["brickWidth"] == 0.5 and fields["randomizeColors"] is False
    brick.set(brickWidth=2)  # an integer stands for a float
    assert brick.fields["brickWidth"] == 2.0
    assert {type(v) for v in gritwell.Texture("Voronoi").fields.values()} <= {int, float, bool}
    assert brick.name == "Brick" and "brickWidth=2," in repr(brick)


def test_lists_and_float32_arrays_agree():
    texture = gritwell.Texture("Wood")
    points = [[0.1, 0.2, 0.3], [1.5, -2.0, 0.25]]
    from_list = texture(points)
    assert from_list.dtype == np.float32 and from_list.shape == (2,)
    assert from_list.tolist() == texture(np.array(points, dtype=np.float32)).tolist()
    assert texture(np.empty((0, 3), dtype=np.float32)).shape == (0,)


def test_render_is_the_slice_top_row_first():
    texture = gritwell.Texture("Perlin Noise")
    image = gritwell.render(texture, 8, z=0.3, extent=4.0)
    assert image.shape == (8, 8) and image.dtype == np.float32
    corners = np.array([[0.25, 3.75, 0.3], [3.75, 0.25, 0.3]], dtype=np.float32)
    assert texture(corners).tolist() == [image[0, 0], image[-1, -1]] and image[0, 0] != image[-1, -1]


def test_threads_evaluate_distinct_textures_alike():
    points = np.random.default_rng(5).uniform(-10, 10, (20000, 3)).astype(np.float32)
    names = ["FBM", "Voronoi", "Granite", "Snakeskin"]
    with ThreadPoolExecutor(len(names)) as pool:
        together = list(pool.map(lambda name: gritwell.Texture(name)(points), names))
    for name, values in zip(names, together):
        assert values.view(np.uint32).tolist() == gritwell.Texture(name)(points).view(np.uint32).tolist()


BRICK = gritwell.Texture("Brick")
POINTS = np.zeros((4, 3), dtype=np.float32)


@pytest.mark.parametrize("call, error, says", [
    (lambda: gritwell.Texture("Brik"), ValueError, "Brik"),
    (lambda: gritwell.Texture("Brick", width=1.0), ValueError, "brickWidth"),
    (lambda: gritwell.Texture("Brick", brickWidth="wide"), TypeError, "float, not str"),
    (lambda: gritwell.Texture("Brick", randomizeColors=1), TypeError, "bool, not int"),
    (lambda: gritwell.Texture("Voronoi", type=1.5), TypeError, "int32, not float"),
    (lambda: gritwell.Texture("Voronoi", type=True), TypeError, "int32, not bool"),
    (lambda: gritwell.Texture("Voronoi", type=1 << 40), ValueError, "out of its range"),
    (lambda: BRICK(POINTS.astype(np.float64)), TypeError, "float32"),
    (lambda: BRICK(POINTS[:, :2]), ValueError, "(n, 3), not (4, 2)"),
    (lambda: BRICK(POINTS.ravel()), ValueError, "not (12,)"),
    (lambda: BRICK(np.zeros((4, 6), dtype=np.float32)[:, ::2]), ValueError, "contiguous"),
    (lambda: BRICK("points"), TypeError, "(n, 3)"),
    (lambda: gritwell.Texture.from_record(BRICK.record[:-4]), ValueError, "byte 0"),
    (lambda: gritwell.Texture.from_record(BRICK.record[:20]), ValueError, "header"),
    (lambda: gritwell.Texture.from_record(42), TypeError, ""),
    (lambda: gritwell.render(BRICK, 0), ValueError, "1 to 16384, not 0"),
    (lambda: gritwell.render(BRICK, 1 << 20), ValueError, "not 1048576"),
])
def test_bad_input_raises_with_a_clear_message(call, error, says):
    with pytest.raises(error) as raised:
        call()
    assert says in str(raised.value)
