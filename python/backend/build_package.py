"""Builds the package's wheel and source archive: pure Python, with the standard library alone."""

from __future__ import annotations

import base64
import hashlib
import re
import tarfile
import zipfile
from pathlib import Path
from typing import Any, Iterator

ROOT = Path(__file__).resolve().parent.parent
WHEEL = "Wheel-Version: 1.0\nGenerator: quorl\nRoot-Is-Purelib: true\nTag: py3-none-any\n"


def _project() -> dict[str, str]:
    """The plain fields of [project]."""
    text = (ROOT / "pyproject.toml").read_text(encoding="utf-8").split("[build-system]")[0]
    return dict(re.findall(r'^([\w-]+) = "(.*)"$', text, re.MULTILINE))


def _metadata() -> str:
    project = _project()
    fields = {"Metadata-Version": "2.1", "Name": project["name"], "Version": project["version"],
              "Summary": project["description"], "Requires-Python": project["requires-python"],
              "Description-Content-Type": "text/markdown"}
    head = "".join(f"{name}: {value}\n" for name, value in fields.items())
    return f"{head}\n{(ROOT / 'README.md').read_text(encoding='utf-8')}"


def _full_name() -> str:
    return "{name}-{version}".format(**_project())


def _sources(folder: str) -> Iterator[Path]:
    found = sorted((ROOT / folder).rglob("*"))
    return (path for path in found if path.is_file() and path.suffix != ".pyc")


def _record(name: str, content: bytes) -> str:
    digest = base64.urlsafe_b64encode(hashlib.sha256(content).digest()).rstrip(b"=").decode()
    return f"{name},sha256={digest},{len(content)}\n"


def _write_wheel(folder: str, content: dict[str, bytes]) -> str:
    info = f"{_full_name()}.dist-info"
    content = {**content, f"{info}/METADATA": _metadata().encode(), f"{info}/WHEEL": WHEEL.encode()}
    records = "".join(_record(name, data) for name, data in content.items())
    file_name = f"{_full_name()}-py3-none-any.whl"
    with zipfile.ZipFile(Path(folder) / file_name, "w", zipfile.ZIP_DEFLATED) as wheel:
        for name, data in content.items():
            wheel.writestr(name, data)
        wheel.writestr(f"{info}/RECORD", f"{records}{info}/RECORD,,\n")
    return file_name


def build_wheel(wheel_directory: str, config_settings: Any = None,
                metadata_directory: Any = None) -> str:
    """The wheel that pip installs."""
    paths = _sources("quorl")
    return _write_wheel(wheel_directory,
                        {path.relative_to(ROOT).as_posix(): path.read_bytes() for path in paths})


def build_editable(wheel_directory: str, config_settings: Any = None,
                   metadata_directory: Any = None) -> str:
    """The wheel of `pip install --editable`: a path to this folder."""
    return _write_wheel(wheel_directory, {"quorl.pth": f"{ROOT}\n".encode()})


def build_sdist(sdist_directory: str, config_settings: Any = None) -> str:
    """The source archive, from which the wheel can be built again."""
    file_name = f"{_full_name()}.tar.gz"
    with tarfile.open(Path(sdist_directory) / file_name, "w:gz") as archive:
        files = [ROOT / "pyproject.toml", ROOT / "README.md",
                 *_sources("backend"), *_sources("quorl")]
        for path in files:
            archive.add(path, f"{_full_name()}/{path.relative_to(ROOT).as_posix()}")
    return file_name
