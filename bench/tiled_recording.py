"""A longer recording out of the real one: its trials, one behind the other over and over, cut into other trials."""
import glob
import os
import shutil
import struct

import numpy as np

CHANNELS = 356
SAMPLES_AT, DURATION_AT, TRIALS_AT = 1288, 1304, 1312  # of counts in a .res4 file
RATE = 1200.0
TAG_SIZE = 8


def _write_header(path, trials, samples):
    with open(path, "r+b") as file:
        file.seek(SAMPLES_AT)
        recorded, channels = struct.unpack(">ih", file.read(6))
        if channels != CHANNELS:
            raise SystemExit(f"{path} is of {channels} channels, {CHANNELS} were expected")
        for at, form, value in ((SAMPLES_AT, ">i", samples), (DURATION_AT, ">d", trials * samples / RATE),
                                (TRIALS_AT, ">h", trials)):
            file.seek(at)
            file.write(struct.pack(form, value))
    return recorded


def make(source, folder, trials, samples):
    """Makes folder/tiled.ds of `trials` trials of `samples` samples, and gives its path."""
    stem, target = os.path.basename(source)[:-3], os.path.join(folder, "tiled.ds")
    os.makedirs(target)
    for file in glob.glob(os.path.join(source, "*")):
        if not file.endswith(".meg4"):
            shutil.copyfile(file, os.path.join(target, os.path.basename(file).replace(stem, "tiled")))
    recorded = _write_header(os.path.join(target, "tiled.res4"), trials, samples)
    with open(os.path.join(source, stem + ".meg4"), "rb") as file:
        tag = file.read(TAG_SIZE)
        blocks = np.frombuffer(file.read(), ">i4").reshape(-1, CHANNELS, recorded)
    continuous = np.concatenate(blocks, axis=1)
    total = trials * samples
    tiled = np.tile(continuous, (1, -(-total // continuous.shape[1])))[:, :total]
    with open(os.path.join(target, "tiled.meg4"), "wb") as file:
        file.write(tag)
        for trial in np.split(tiled, trials, axis=1):
            file.write(np.ascontiguousarray(trial).tobytes())
    return target
