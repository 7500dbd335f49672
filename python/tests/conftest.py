"""Each test works on its own copy of the sample device image, set as the device root."""

import os
import pathlib
import shutil

import pytest

import vireline

EXAMPLES = pathlib.Path(os.environ.get("VIRELINE_EXAMPLES_DIR", pathlib.Path(__file__).parents[2] / "examples"))


@pytest.fixture
def device(tmp_path):
    """A copy of the sample image as the device root; the host folder is yielded."""
    image = tmp_path / "device-image"
    shutil.copytree(EXAMPLES / "device-image", image, symlinks=True)
    with vireline.DeviceRoot(image):
        yield image
