"""Versions, checksums, system paths, assets, profiles, content lists and the manufacturing record."""

import zlib

import pytest

import vireline


@pytest.mark.parametrize("a, b, sign", [("1.10", "1.9", 1), ("2.0", "2.0.1", 0), ("", "1", 0), ("1_2", "1.2", 0),
                                        ("010", "10", 1), ("1.2", "1.3", -1)])
def test_compare_version_orders_as_the_devices_do(a, b, sign):
    result = vireline.compare_version(a, b)
    assert (result > 0) - (result < 0) == sign


def test_checksums(device):
    data = (device / "QV/Bulk/settings.cfg").read_bytes()
    assert vireline.calculate_checksum("/QV/Bulk/settings.cfg") == zlib.crc32(data)
    (device / "QV/Bulk/Data/only").mkdir()
    (device / "QV/Bulk/Data/only/a.crc").write_bytes(b"1234")
    assert vireline.calculate_checksum("/QV/Bulk/Data/only", vireline.FileSelect.ALL) == 0
    vireline.write_checksum("/QV/Bulk/Data/s.crc", 0x01020304)
    assert (device / "QV/Bulk/Data/s.crc").read_bytes() == b"\x04\x03\x02\x01"
    assert vireline.read_checksum("/QV/Bulk/Data/s.crc") == 0x01020304


def test_system_paths_and_assets(device):
    data = vireline.SystemData()
    assert data.root_path == "/QV/"
    assert data.downloads_path.endswith("/")
    assert data.locale_code == "en-us"
    assert data.data_profile_path(1) == "/QV/Bulk/Data/Local/1/"
    assert data.find_art("star.png") == "/QV/Bulk/LanguagePack/Art/star.png"
    assert data.find_art("nothing.png") == "/QV/Bulk/LanguagePack/Art/missingAsset.png"
    assert data.find_video("nothing.avi") is None


def test_profiles(device):
    maya = vireline.PlayerProfile(0)
    assert maya.valid and maya.name == "Maya" and maya.id == 1 and maya.grade == 2
    assert maya.theme == "Jungle" and maya.badges == 4 and maya.pet_on_ui
    maya.theme = "Ocean"
    assert vireline.KeyValueFile("/QV/Bulk/Data/Local/0/profile_private.dsc")["Theme"] == "Ocean"
    assert vireline.PROFILE_KEYS["theme"] == "Theme"


def test_installed_packages(device):
    apps = vireline.apps()
    assert any(path.rstrip("/").endswith("MathMountain") for path in apps)
    meta = vireline.MetaInfFile(next(p for p in apps if p.rstrip("/").endswith("MathMountain")))
    assert meta.is_valid()


def test_manufacturing_record(device):
    with vireline.MfgData() as mfg:
        fields = mfg.as_dict()
        assert fields["checksum_results"][0] in (0, 1)
        assert len(fields["serial_number_raw"]) == 24 and len(fields["sku"]) == 11
        assert len(fields["ts_cal_data"]) == 7 and len(fields["accelerometer_cal_data"]) == 10
        assert len(mfg.serial_number) == 20
        with pytest.raises(vireline.MfgError) as raised:
            mfg.update()  # not in manufacturing mode
        assert raised.value.code == 15
        with pytest.raises(ValueError):
            mfg.sku = b"short"
