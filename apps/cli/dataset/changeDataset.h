#pragma once
// What all commands that change a dataset share: where the result goes, and who answers questions.

#include "apps/cli/dataset/CreatedFiles.h"
#include "apps/cli/dataset/openDataset.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <string>

namespace megset::cli {

struct ChangeArguments
{
    std::string dataset;
    std::string out; ///< path of the new dataset; empty: none was named
    bool inPlace = false;
    bool yes = false;
    bool no = false;
};

/// Headings of the options in a command's help.
inline constexpr const char* targetHeading = "Where the result goes";
inline constexpr const char* answersHeading = "What questions are answered";

/// DATASET, --out, --in-place, --yes and --no.
void addChangeOptions(CLI::App& command, ChangeArguments& arguments);

/// --out and --in-place alone, for commands that change another kind of file: `what` names it.
void addTargetOptions(CLI::App& command, ChangeArguments& arguments, const std::string& what);

/// --yes and --no alone, for commands that make something new.
void addAnswerOptions(CLI::App& command, bool& yes, bool& no);

/// Opens the dataset, or first copies it with its trials to the new place, calls `change` on it, and stores it. What
/// the library asks is answered as told, else asked on a terminal, else No. When something fails, a copy is removed,
/// and a std::runtime_error tells why; a dataset that is changed in place is stored only after `change` returned.
void changeDataset(const ChangeArguments& arguments, const std::function<void(OpenDataset&)>& change);

/// Throws a std::runtime_error that asks for --out or --in-place when neither is given: `what` is changed.
[[noreturn]] void failWithoutTarget(const std::string& path, const std::string& what);

/// Copies a dataset with its trials to another name; both paths are absolute. All that is made is noted in `created`.
/// Throws std::runtime_error.
void copyDataset(const std::filesystem::path& from, const std::filesystem::path& target, CreatedFiles& created);

/// Writes the dataset's file, in one step: a failure leaves the former file. Throws std::runtime_error; trials that
/// could not be saved are told.
void storeDataset(OpenDataset& open);

} // namespace megset::cli
