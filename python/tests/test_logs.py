"""The play-log reader and the JSON Lines export, read back by pandas."""

import glob
import io
import json
import os
import pathlib
import subprocess

import pandas as pd
import pytest

import vireline

README = pathlib.Path(__file__).parents[2] / "README.md"
LOG0 = "QV/Bulk/Data/Uploads/0/profile.log"


def header_serial(log_file):
    """The serial number bytes of a log header, read without the library."""
    return log_file.read_bytes()[48:88].split(b"\0")[0].decode()


def test_reader_yields_named_tuples_lazily(device):
    reader = vireline.LogReader(0)
    assert reader.path == "/" + LOG0
    assert reader.status == "valid"
    assert reader.header["serial"] == header_serial(device / LOG0)
    assert reader.header["log_number"] == 0
    first = next(reader)
    assert isinstance(first, vireline.LogRecord)
    assert first.class_name == "CTimeSync" and first.offset == 104 and first.type == 1
    records = list(reader)
    starts = [r for r in records if r.class_name == "CTitleStart"]
    assert starts[0].fields == {"titleId": 0x00170042, "title": "MathMountain", "version": "1.4.0", "mode": 0}
    assert starts[0]._asdict()["fields"]["title"] == "MathMountain"
    assert not reader.torn and reader.torn_offset is None


def test_a_torn_tail_is_reported_after_the_complete_records(device):
    log = device / LOG0
    whole = log.read_bytes()
    complete = len(list(vireline.LogReader(0)))
    log.write_bytes(whole[:-3])
    reader = vireline.LogReader("/" + LOG0)
    assert len(list(reader)) == complete - 1
    assert reader.torn
    assert reader.torn_bytes_present == len(whole) - 3 - reader.torn_offset


def test_logs_that_cannot_be_read_raise(device):
    with pytest.raises(vireline.OpenError):
        vireline.LogReader("/QV/Bulk/Data/none.log")
    (device / "QV/Bulk/Data/short.log").write_bytes(b"x" * 10)
    with pytest.raises(vireline.FormatError):
        vireline.LogReader("/QV/Bulk/Data/short.log")
    with pytest.raises(ValueError):
        vireline.LogReader(3)


def export_lines(targets=()):
    out = io.StringIO()
    outcomes = vireline.export_log(targets, out)
    return out.getvalue().splitlines(), outcomes


def test_export_carries_serial_slot_class_title_and_fields(device):
    lines, outcomes = export_lines([0])
    assert [o["records"] for o in outcomes] == [len(lines)]
    records = [json.loads(line) for line in lines]
    serial = header_serial(device / LOG0)
    assert all(r["serial"] == serial and r["slot"] == 0 for r in records)
    answer = next(r for r in records if r["class"] == "CCorrectAnswerTimed")
    assert answer["title"] == "MathMountain"
    assert answer["fields"] == {"questionId": 1, "question": "2+3", "answer": "5", "time": 5100}
    assert records[0]["class"] == "CTimeSync" and records[0]["title"] is None
    first_log_out = next(r for r in records if r["class"] == "CUserLogOut")
    assert first_log_out["title"] is None  # after the title's exit


def test_export_reports_a_torn_tail_and_keeps_the_records_before_it(device):
    log = device / "QV/Bulk/Data/Uploads/1/profile.log"
    log.write_bytes(log.read_bytes()[:-2])
    lines, outcomes = export_lines([1])
    assert outcomes[0]["torn"] and outcomes[0]["records"] == len(lines) > 0


@pytest.mark.skipif("VIRELINE_TOOL" not in os.environ, reason="the inspector was not built")
def test_export_is_what_the_inspector_prints(device):
    lines, _ = export_lines()
    printed = subprocess.run([os.environ["VIRELINE_TOOL"], "--root", str(device), "log", "export", "--jsonl"],
                             check=True, capture_output=True, text=True).stdout
    assert printed.splitlines() == lines


def readme_query():
    """The README's one-line pandas query of a folder of exported logs."""
    lines = [line for line in README.read_text().splitlines() if line.startswith("correct_per_title = ")]
    assert len(lines) == 1
    return lines[0]


def test_readme_query_counts_correct_answers_per_title_over_many_devices(device, tmp_path, monkeypatch):
    exports = tmp_path / "exports"
    exports.mkdir()
    first_serial = header_serial(device / LOG0)
    with open(exports / "device1.jsonl", "w") as out:
        vireline.export_log(file=out)
    # A second device: the same play, another serial number (all digits, as some models write them).
    for slot in range(3):
        log = device / f"QV/Bulk/Data/Uploads/{slot}/profile.log"
        data = bytearray(log.read_bytes())
        data[48:88] = b"17000100000000000002".ljust(40, b"\0")
        log.write_bytes(bytes(data))
    with open(exports / "device2.jsonl", "w") as out:
        vireline.export_log(file=out)
    monkeypatch.chdir(tmp_path)
    scope = {"glob": glob, "pd": pd}
    exec(readme_query(), scope)
    assert scope["correct_per_title"].to_dict() == {"MathMountain": 20, "StoryTime": 4, "ZooKeeper": 6}
    frame = pd.concat(pd.read_json(f, lines=True, dtype={"serial": str}) for f in glob.glob("exports/*.jsonl"))
    assert sorted(frame["serial"].unique()) == sorted([first_serial, "17000100000000000002"])
