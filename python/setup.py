"""Builds the wheel: CMake makes the extension and the library, which lie side by side in the package.

The release build is used, or the build directory that QVLIB60_BUILD names; what it has already is not built again.
"""
import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent


def version() -> str:
    header = (ROOT / "include/qvlib60/version.h").read_text()
    return ".".join(re.findall(r"#define QVLIB60_VERSION_(?:MAJOR|MINOR|PATCH) +(\d+)", header))


class Build(build_ext):
    """What CMake builds, and the stubs, which are made from the catalogue."""

    def run(self) -> None:
        package = HERE / "qvlib60" if self.inplace else Path(self.build_lib).resolve() / "qvlib60"
        build = Path(os.environ.get("QVLIB60_BUILD", ROOT / "build/release"))
        options = ["-DQV_BUILD_PYTHON=ON", f"-DPYTHON_EXECUTABLE={sys.executable}"]
        if not (build / "CMakeCache.txt").exists():
            options += ["-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release"]
        subprocess.run(["cmake", "-S", ROOT, "-B", build, *options], check=True, stdout=subprocess.DEVNULL)
        subprocess.run(["cmake", "--build", build, "--target", "qvlib60_python"], check=True)
        package.mkdir(parents=True, exist_ok=True)
        made = (build / "python").glob("_c*.so")
        for file in [*made, build / "libQVLIB60.so.0", *self.bundled(build)]:
            shutil.copy(file, package)
        subprocess.run([sys.executable, HERE / "tools/stubs.py", package], check=True,
                       env={**os.environ, "PYTHONPATH": str(package.parent)})


    def bundled(self, build: Path) -> "list[Path]":
        """The library that splits CSV files, under the name by which it is looked for."""
        found = re.search(r"^QV_LIBCSV:\w+=(.*\.so)$", (build / "CMakeCache.txt").read_text(), re.M)
        return list(Path(found[1]).parent.glob("libcsv.so.[0-9]")) if found else []


setup(
    name="qvlib60",
    version=version(),
    description="Technical analysis: indicators, formulas, backtests, charts",
    long_description=(HERE / "README.md").read_text(),
    long_description_content_type="text/markdown",
    license_files=["../LICENSE"],
    packages=["qvlib60"],
    package_data={"qvlib60": ["py.typed", "*.pyi"]},
    ext_modules=[Extension("qvlib60._core", [])],
    cmdclass={"build_ext": Build},
    python_requires=">=3.9",
    install_requires=["numpy"],
    extras_require={"tables": ["pandas"], "cluster": ["pandas", "distributed"]},
)
