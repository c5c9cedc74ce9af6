# SPDX-License-Identifier: Apache-2.0
"""Builds the wheel of the module orvprint. pip runs it, as pyproject.toml says.

The module is one file without compiled parts, so the standard library suffices, and pip installs it without network.
Nothing is written beside the sources, and the same sources give the same bytes.
"""

import base64
import hashlib
import zipfile
from pathlib import Path

_NAME, _VERSION = "orvprint", "0.1.0"
_INFO = f"{_NAME}-{_VERSION}.dist-info"

_METADATA = f"""\
Metadata-Version: 2.1
Name: {_NAME}
Version: {_VERSION}
Summary: Reads SVG drawings and renders their pages, through liborvprint
License: Apache-2.0
Requires-Python: >=3.9
"""

_WHEEL = """\
Wheel-Version: 1.0
Generator: wheel_backend
Root-Is-Purelib: true
Tag: py3-none-any
"""


def _line_of_record(name, data):
    digest = base64.urlsafe_b64encode(hashlib.sha256(data).digest()).rstrip(b"=").decode()
    return f"{name},sha256={digest},{len(data)}\n"


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    """Writes the wheel into a folder. @return its file name"""
    files = {
        "orvprint.py": Path(__file__).with_name("orvprint.py").read_bytes(),
        f"{_INFO}/METADATA": _METADATA.encode(),
        f"{_INFO}/WHEEL": _WHEEL.encode(),
    }
    record = "".join(_line_of_record(*file) for file in files.items()) + f"{_INFO}/RECORD,,\n"
    files[f"{_INFO}/RECORD"] = record.encode()

    wheel = f"{_NAME}-{_VERSION}-py3-none-any.whl"
    with zipfile.ZipFile(Path(wheel_directory, wheel), "w", zipfile.ZIP_DEFLATED) as archive:
        for name, data in files.items():
            entry = zipfile.ZipInfo(name)  # dated 1980, not now
            entry.external_attr = 0o644 << 16
            archive.writestr(entry, data, zipfile.ZIP_DEFLATED)
    return wheel
