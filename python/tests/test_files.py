"""The device root, key=value files and JSON files."""

import collections.abc

import pytest

import vireline


def test_device_root_is_set_for_the_block_and_restored_after(tmp_path):
    before = vireline.device_root()
    with vireline.DeviceRoot(tmp_path) as root:
        assert root == str(tmp_path)
        assert vireline.device_root() == str(tmp_path)
    assert vireline.device_root() == before


def test_device_root_is_restored_when_the_block_raises(tmp_path):
    before = vireline.device_root()
    with pytest.raises(RuntimeError):
        with vireline.DeviceRoot(tmp_path):
            raise RuntimeError("boom")
    assert vireline.device_root() == before


def test_key_value_file_reads_as_a_mapping_in_file_order(device):
    settings = vireline.KeyValueFile("/QV/Bulk/settings.cfg")
    assert isinstance(settings, collections.abc.MutableMapping)
    assert settings.path == "/QV/Bulk/settings.cfg"
    assert list(settings)[:2] == ["SerialNumber", "Locale"]
    assert settings["Locale"] == "en-us"
    assert settings.get_uint("Contrast") == 0x32
    assert settings.get_uint("Locale") is None
    assert "Locale" in settings and "Nope" not in settings
    assert settings.get("Nope", "fallback") == "fallback"
    with pytest.raises(KeyError):
        settings["Nope"]


def test_key_value_changes_reach_the_file_only_on_write(device):
    path = "/QV/Bulk/settings.cfg"
    settings = vireline.KeyValueFile(path)
    settings["Locale"] = "fr-fr"
    settings.set_uint("Contrast", 31)
    del settings["ClockInUI"]
    assert vireline.KeyValueFile(path)["Locale"] == "en-us"
    settings.write()
    again = vireline.KeyValueFile(path)
    assert again["Locale"] == "fr-fr"
    assert "ClockInUI" not in again
    assert (device / "QV/Bulk/settings.cfg").read_text().count("Contrast=0x0000001F\n") == 1


def test_uint_lists_are_written_in_decimal_and_read_in_hex(device):
    file = vireline.KeyValueFile("/QV/Bulk/Data/lists.cfg")
    assert file.get_uint_list("Items") is None
    file.set_uint_list("Items", [10, 20])
    assert file["Items"] == "10,20"
    assert file.get_uint_list("Items") == [16, 32]
    file.set_str_list("Names", ["a", "b"])
    assert file.get_str_list("Names") == ["a", "b"]
    with pytest.raises(vireline.RefusedError):
        file.set_str_list("Names", [])
    file.write()
    assert (device / "QV/Bulk/Data/lists.cfg").read_text() == "Items=10,20\nNames=a,b\n"


def test_bytes_that_are_not_utf8_survive_a_round_trip(device):
    (device / "QV/Bulk/Data/odd.cfg").write_bytes(b"Name=caf\xe9\n")
    file = vireline.KeyValueFile("/QV/Bulk/Data/odd.cfg")
    assert file["Name"].encode("utf-8", "surrogateescape") == b"caf\xe9"
    file["Other"] = "x"
    file.write()
    assert (device / "QV/Bulk/Data/odd.cfg").read_bytes() == b"Name=caf\xe9\nOther=x\n"


def test_quoted_values_keep_their_quotes(device):
    meta = vireline.KeyValueFile("/QV/Bulk/Downloads/MathFacts1/meta.inf")
    assert ("Name", "Adding to Ten", True, False) in meta.entries()


def test_a_write_that_fails_raises_write_error(device):
    (device / "QV/Bulk/Data/blocker").write_text("a file where a folder is needed")
    file = vireline.KeyValueFile("/QV/Bulk/Data/blocker/inside.cfg")
    file["Key"] = "value"
    with pytest.raises(vireline.WriteError) as raised:
        file.write()
    assert isinstance(raised.value, OSError)


def test_meta_inf_properties(device):
    meta = vireline.MetaInfFile("/QV/Bulk/Downloads/MathFacts1")
    assert meta.package_id == "CYO-MATH-0001"
    assert meta.package_name == "Adding to Ten"
    assert meta.package_type == "Download"
    assert meta.package_version == "1.0"
    assert meta.device_access == 1
    assert meta.product_id is None
    assert meta.hidden  # no "Hidden" key counts as hidden
    assert meta.is_valid()
    assert meta.profile_has_access(3)
    with pytest.raises(vireline.RefusedError):
        meta.package_type = "*"
    assert meta.package_type == "Download"
    meta.profile_access = [1, 3]
    meta.hidden = False
    meta.write()
    again = vireline.MetaInfFile("/QV/Bulk/Downloads/MathFacts1")
    assert again.profile_access == [1, 3]
    assert not again.hidden
    assert not again.profile_has_access(2)


def test_json_load_and_save_as_plain_objects(device):
    document = vireline.load_json("/QV/Bulk/Data/LanguageSample.json")
    assert document["LanguageSettingText"] == "Language"
    assert document["LanguageSelectionAudio"] == ["choose_en.ogg", "choose_fr.ogg"]
    value = {"a": 1, "big": 2**63, "neg": -5, "f": 1.5, "t": True, "n": None, "list": [1, "x", {"k": []}]}
    vireline.save_json("/QV/Bulk/Data/new.json", value)
    assert vireline.load_json("/QV/Bulk/Data/new.json") == value
    assert (device / "QV/Bulk/Data/new.json").read_text().endswith("}\n\n")


def test_json_failures_raise(device):
    with pytest.raises(vireline.LoadError) as raised:
        vireline.load_json("/QV/Bulk/Data/missing.json")
    assert raised.value.code == 1
    assert vireline.load_json("/QV/Bulk/Data/created.json", create_if_missing=True) == {}
    (device / "QV/Bulk/Data/bad.json").write_text("{not json")
    with pytest.raises(vireline.LoadError):
        vireline.load_json("/QV/Bulk/Data/bad.json")
    (device / "QV/Bulk/Data/blocker").write_text("x")
    with pytest.raises(vireline.WriteError) as raised:
        vireline.save_json("/QV/Bulk/Data/blocker/x.json", {})
    assert raised.value.code == 0x10001005
    with pytest.raises(TypeError):
        vireline.save_json("/QV/Bulk/Data/x.json", {1: "key must be str"})
    with pytest.raises(TypeError):
        vireline.save_json("/QV/Bulk/Data/x.json", object())


def test_the_rest_of_the_mapping_interface_is_the_standard_one(device):
    file = vireline.KeyValueFile("/QV/Bulk/Data/mixins.cfg")
    file.update({"A": "1", "B": "2"})
    assert file.setdefault("A", "9") == "1"
    assert list(file.values()) == ["1", "2"]
    assert file.pop("A") == "1"
    assert dict(file.items()) == {"B": "2"}
    file.clear()
    assert len(file) == 0
    assert 5 not in file
