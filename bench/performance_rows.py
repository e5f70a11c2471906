"""What bench/compare knows of each row of its page besides the figures: the data, the limit, and the reason of a miss.

A limit is megabytes by what must at least be done to them, in the words of LIMITS; the time that they need at the
rates of the same run is the row's limit. Peak memory is that of a process which does nothing but the benchmark named.
"""
import dataclasses

# What limits_bench measures, by the words that the rows use.
LIMITS = {
    "read": ("MemoryRead", "memory read"),
    "copy": ("MemoryCopy", "memory copied"),
    "scale": ("MemoryScale", "memory scaled in place"),
    "write": ("FileWrite/iterations:5/manual_time", "write to a new file"),
    "read file": ("FileRead/iterations:5/manual_time", "file read from the cache"),
}


@dataclasses.dataclass(frozen=True)
class Row:
    data: str
    limit: dict = dataclasses.field(default_factory=dict)
    memory: tuple = ()
    missed: str = ""  # told beside a row that misses its target


def scan(name):
    return Row("10 million samples, 80 MB", {"read": 80}, ("events_bench", f"check/{name}/manual_time"))


def statistic(channels, program, benchmark, missed=""):
    size = channels * 57_600 * 8 / 1e6
    return Row(f"{channels} x 57,600, {size:.0f} MB", {"read": size}, (program, benchmark), missed)


def resampling(benchmark):
    return Row("356 x 72,000, 205 MB", {"read": 154, "copy": 51}, ("resample_bench", benchmark))


def montage(benchmark):
    return Row("128 x 200,000, 205 MB", {"scale": 205}, ("montage_bench", benchmark))


def spectrum(benchmark, limit="scale", missed=""):
    return Row("300 planes of 500 x 60, 72 MB", {limit: 72}, ("spectral_bench", benchmark), missed)


GRADIENT = Row("356 x 72,000, 205 MB", {"scale": 157, "read": 10}, ("gradient_bench", "NoiseReductionToOrder3"))
IMPORT = Row("102 MB of integers into 410 MB", {"read file": 102, "write": 410})
STATISTICS = statistic(356, "samples_bench", "MinMeaMaxSdAllChannels")

ROWS = {
    "plain beside MNE-Python": scan("plain/0"),
    "pro beside MNE-Python": scan("pro/0"),
    "absDc beside MNE-Python": scan("absDc/0"),
    "absDcM beside MNE-Python": scan("absDcM/0"),
    "plain on a line at zero beside the sequential sum": scan("plain/0"),
    "pro on a line at zero beside the sequential sum": scan("pro/0"),
    "absDc on a line at zero beside the sequential sum": scan("absDc/0"),
    "absDcM on a line at zero beside the sequential sum": scan("absDcM/0"),
    "plain on a noisy line beside the sequential sum": scan("plain/50"),
    "pro on a noisy line beside the sequential sum": scan("pro/50"),
    "absDc on a noisy line beside the sequential sum": scan("absDc/50"),
    "absDcM on a noisy line beside the sequential sum": scan("absDcM/50"),
    "order 3 beside NumPy's blocked product": GRADIENT,
    "order 3 beside MNE-Python": GRADIENT,
    "import beside MNE-Python": IMPORT,
    "import beside MNE-Python, processor time": IMPORT,
    "header beside read_raw_ctf": Row("3.3 MB", {"read file": 3.26}, ("res4_bench", "ReadRes4")),
    "MinMeaMaxSdAllChannels beside NumPy": STATISTICS,
    "MinMeaMaxSdAllChannels beside the sequential sum": STATISTICS,
    "MeasureAllChannels beside NumPy": statistic(300, "measure_bench", "MeasureAllChannels"),
    "MeasureSamples beside NumPy without std": statistic(
        300, "measure_bench", "MeasureSamples", "its one pass is bound by memory, as NumPy's are, of which there are several"),
    "picking every 4th beside MNE-Python": resampling("reSampleData/pick/4"),
    "picking every 4th beside the memory's limit": resampling("reSampleData/pick/4"),
    "averaging 4 beside NumPy": resampling("reSampleData/average/4"),
    "averaging 4 beside the memory's limit": resampling("reSampleData/average/4"),
    "average reference beside MNE-Python": montage("AverageReference"),
    "average reference beside NumPy": montage("AverageReference"),
    "single reference beside MNE-Python": montage("SingleReference"),
    "sum planes beside NumPy": spectrum("SumPlanes", "read"),
    "sum planes beside reading": spectrum("SumPlanes", "read"),
    "baseline division beside the memory's limit": spectrum(
        "BaselineDivision", missed="a division of each value, which the processor's divider bounds, and three passes over "
        "rows of 60 values"),
    "scale beside the memory's limit": spectrum("Scale"),
    "logarithm beside NumPy": spectrum("Logarithm"),
    "saving a trial beside plain write()": Row(
        "300 x 72,000 twice, 346 MB", {"write": 346}, ("trial_bench", "SaveTrial/large/manual_time")),
    "opening a trial beside plain read()": Row(
        "300 x 72,000 twice, 346 MB", {"read file": 346}, ("trial_bench", "OpenTrial/large/manual_time")),
    "saving and opening a small trial beside plain calls": Row(
        "356 x 1,200 twice, 6.8 MB", {"write": 6.8, "read file": 6.8}, ("trial_bench", "ChangeTrial/small/manual_time")),
    "shrink buffer beside reading the samples": Row(
        "10 million samples, 80 MB", {"read": 80}, ("trial_bench", "ShrinkBuffer/manual_time")),
    "walking 60 trials beside plain calls": Row(
        "60 trials of 6.8 MB", {"write": 410, "read file": 410}, ("dataset_bench", "WalkTrials/60/manual_time")),
    "writing a block beside plain write()": Row("100 MB", {"write": 100}, ("archive_bench", "blockWriteArchive/real_time")),
    "reading a block beside plain read()": Row("100 MB", {"read file": 100}, ("archive_bench", "blockReadArchive/real_time")),
    "addDataL beside memcpy": Row(
        "356 x 72,000 integers into 410 MB", {"copy": 410}, ("samples_bench", "AddDataL/newArrays:0")),
    "sample array beside new double[]": Row(
        "40 MB", {}, ("memory_bench", "allocateFillRelease/samples/1/5000000")),
}
