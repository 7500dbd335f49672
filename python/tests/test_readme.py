"""The README's Python example runs as it stands."""

import pathlib
import re
import shutil

import vireline
from conftest import EXAMPLES

README = pathlib.Path(__file__).parents[2] / "README.md"


def test_the_five_line_example_runs(tmp_path, monkeypatch, capsys):
    blocks = re.findall(r"```python\n(.*?)```", README.read_text(), re.S)
    example = next(block for block in blocks if block.startswith("import vireline\n"))
    assert len(example.splitlines()) == 5
    shutil.copytree(EXAMPLES / "device-image", tmp_path / "copy-of-device-image", symlinks=True)
    monkeypatch.chdir(tmp_path)
    before = vireline.device_root()
    exec(example, {})
    assert vireline.device_root() == before
    assert capsys.readouterr().out.startswith("en-us /QV/Bulk/LanguagePack/Art/star.png\n")
    assert len((tmp_path / "device.jsonl").read_text().splitlines()) == 141
