#include "tests/kit/Program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <thread>

namespace megset::kit {

namespace {

using TemporaryFile = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

TemporaryFile temporaryFile()
{
    TemporaryFile file(std::tmpfile(), &std::fclose);
    if (!file) {
        throw std::runtime_error("no temporary file for a program's output");
    }
    return file;
}

std::string content(std::FILE* file)
{
    std::string text;
    std::rewind(file);
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
        text.push_back(static_cast<char>(c));
    }
    return text;
}

// The list that exec wants: pointers to the words, then null.
std::vector<char*> pointers(std::vector<std::string>& words)
{
    std::vector<char*> list;
    for (std::string& word : words) {
        list.push_back(word.data());
    }
    list.push_back(nullptr);
    return list;
}

bool setsSameName(const std::string& setting, const std::string& other)
{
    return other.starts_with(setting.substr(0, setting.find('=') + 1));
}

// The test's own environment, without what the settings replace.
std::vector<std::string> environmentWith(std::vector<std::string> settings)
{
    const auto given = static_cast<std::ptrdiff_t>(settings.size());
    for (char** own = environ; *own != nullptr; ++own) {
        if (std::none_of(settings.begin(), settings.begin() + given,
                         [&](const std::string& setting) { return setsSameName(setting, *own); })) {
            settings.emplace_back(*own);
        }
    }
    return settings;
}

} // namespace

namespace {

// What a program prints, and its process.
class Running
{
public:
    Running(const std::string& path, const std::vector<std::string>& arguments,
            const std::vector<std::string>& environment)
        : m_output(temporaryFile()), m_errors(temporaryFile())
    {
        std::vector<std::string> words{path};
        words.insert(words.end(), arguments.begin(), arguments.end());
        std::vector<std::string> settings = environmentWith(environment);
        posix_spawn_file_actions_t streams;
        posix_spawn_file_actions_init(&streams);
        posix_spawn_file_actions_addopen(&streams, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&streams, fileno(m_output.get()), STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&streams, fileno(m_errors.get()), STDERR_FILENO);
        const int fault =
            posix_spawn(&m_child, path.c_str(), &streams, nullptr, pointers(words).data(), pointers(settings).data());
        posix_spawn_file_actions_destroy(&streams);
        if (fault != 0) {
            throw std::runtime_error("can't start " + path);
        }
    }

    void kill(int signal) const { ::kill(m_child, signal); }

    ProgramResult wait()
    {
        int status = 0;
        waitpid(m_child, &status, 0);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, content(m_output.get()), content(m_errors.get())};
    }

private:
    TemporaryFile m_output;
    TemporaryFile m_errors;
    pid_t m_child = 0;
};

} // namespace

ProgramResult runProgram(const std::string& path, const std::vector<std::string>& arguments,
                         const std::vector<std::string>& environment)
{
    return Running(path, arguments, environment).wait();
}

ProgramResult runAndKillProgram(const std::string& path, const std::vector<std::string>& arguments,
                                std::chrono::microseconds after, int signal)
{
    Running running(path, arguments, {});
    std::this_thread::sleep_for(after);
    running.kill(signal);
    return running.wait();
}

} // namespace megset::kit
