"""Sources of other projects for the tests: fetched when the network allows, kept
in a directory of downloads, never committed.

Each function returns a directory, or None when the package isn't to be had.
"""

import glob
import os
import shutil
import subprocess
import tempfile

TIME_LIMIT = 300  # seconds a download may take


def _run(command, cwd):
    try:
        return subprocess.run(command, cwd=cwd, stdin=subprocess.DEVNULL, capture_output=True,
                              timeout=TIME_LIMIT).returncode == 0
    except (OSError, subprocess.TimeoutExpired):
        return False


def _download(command, pattern, downloads):
    """The file of the pattern, which the command puts into its working directory."""
    downloads = os.path.abspath(downloads)
    os.makedirs(downloads, exist_ok=True)
    found = glob.glob(os.path.join(downloads, pattern))
    if found:
        return found[0]
    with tempfile.TemporaryDirectory(dir=downloads) as cwd:
        if not _run(command, cwd):
            return None
        found = glob.glob(os.path.join(cwd, pattern))
        if not found:
            return None
        return shutil.move(found[0], downloads)


def _unpacked(name, downloads, unpack):
    """The directory that unpack(directory) fills; it's there only when complete."""
    downloads = os.path.abspath(downloads)
    target = os.path.join(downloads, name)
    if os.path.isdir(target):
        return target
    with tempfile.TemporaryDirectory(dir=downloads) as work:
        inner = os.path.join(work, "inner")
        os.mkdir(inner)
        if not unpack(inner):
            return None
        if not os.path.isdir(target):
            os.rename(inner, target)
    return target


def debian_package(name, downloads):
    """What the package would install."""
    archive = _download(["apt-get", "download", name], name + "_*.deb", downloads)
    if not archive:
        return None
    return _unpacked(name, downloads, lambda directory: _run(
        ["dpkg-deb", "-x", archive, directory], downloads))


def npm_package(name, version, downloads):
    """The contents of a package of the npm registry."""
    archive = _download(["npm", "pack", "--silent", "%s@%s" % (name, version)],
                        "%s-%s.tgz" % (name, version), downloads)
    if not archive:
        return None
    return _unpacked(name, downloads, lambda directory: _run(
        ["tar", "-xzf", archive, "-C", directory, "--strip-components=1"],
        downloads))


def c_torture(downloads):
    """The C torture programs of gcc 12: the directories compile and execute."""
    package = debian_package("gcc-12-source", downloads)
    if not package:
        return None
    archives = glob.glob(os.path.join(package, "usr/src/gcc-12/gcc-*.tar.xz"))
    if not archives:
        return None
    return _unpacked("gcc.c-torture", downloads, lambda directory: _run(
        ["tar", "-xJf", archives[0], "-C", directory, "--strip-components=4",
         "--wildcards", "*/gcc/testsuite/gcc.c-torture/*"], downloads))
