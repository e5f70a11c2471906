#pragma once

#include <CLI/CLI.hpp>

namespace megset::cli {

// Every command is a file of its own with one function that adds it to the program; main.cpp calls them all. A
// command does its work in its callback and throws a std::exception when that fails: the program then shows what()
// on standard error and ends with 1.

/// `--version`: library version, compiler and processor path, a line each.
void addVersion(CLI::App& program);

/// `inspect FILE`: the records and fields of a file as a tree, and where a broken file ends making sense.
void addInspect(CLI::App& program);

/// `info DATASET`: session, trials, channels, rate, marks and sizes.
void addInfo(CLI::App& program);

/// `check DATASET`: whether a dataset and its trials are whole and agree.
void addCheck(CLI::App& program);

/// `export DATASET`: samples as a NumPy or text file.
void addExport(CLI::App& program);

/// `phantom DEST.ds|DEST.mega`: a simulated recording, in the CTF format or as an acquisition.
void addPhantom(CLI::App& program);

/// `import SOURCE.ds|SOURCE.mega DEST.meg`: a dataset of a recording.
void addImport(CLI::App& program);

/// `demo [DIR]`: a session from the recording to clean samples, on a phantom.
void addDemo(CLI::App& program);

/// `measure DATASET`: what the signal of channels does in a range.
void addMeasure(CLI::App& program);

/// `triggers DATASET`: the stimuli on the trigger channels.
void addTriggers(CLI::App& program);

/// `marks DATASET`: triggers, marks and bad segments listed, added, removed.
void addMarks(CLI::App& program);

/// `blank DATASET --segments`: bad segments blanked in the samples.
void addBlank(CLI::App& program);

/// `spectrum DATASET`: spectra over time and frequency.
void addSpectrum(CLI::App& program);

/// `gradient DATASET --order N`: noise reduction by the reference channels.
void addGradient(CLI::App& program);

/// `resample DATASET --factor N`: a lower sampling rate.
void addResample(CLI::App& program);

/// `montage DATASET`: channels referred to others.
void addMontage(CLI::App& program);

/// `channels DATASET`: good, shown and selected channels.
void addChannels(CLI::App& program);

/// `head DATASET --frame FRAME`: the frame that sensors work in.
void addHead(CLI::App& program);

/// `restore DATASET`: back to the samples as recorded.
void addRestore(CLI::App& program);

/// `man` and `completion SHELL`, of all commands that the program has.
void addManual(CLI::App& program);

/// `layout DATASET --svg FILE`: the sensors on the plane.
void addLayout(CLI::App& program);

/// `electrodes DATASET`: EEG electrodes, their files and standard places.
void addElectrodes(CLI::App& program);

/// `seeg DATASET`: depth probes, their files, and the channels of their contacts.
void addSeeg(CLI::App& program);

/// `array FILE`: several datasets in one file.
void addArray(CLI::App& program);

} // namespace megset::cli
