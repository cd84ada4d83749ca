#include "Selvane/Platform/macOS/Osascript.h"

#include "SelvaneCore/Log.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <thread>
#include <utility>

extern char** environ;

namespace selvane {

namespace {

/// Where a process finds its open files.
class NullDevices {
public:
    NullDevices() {
        ::posix_spawn_file_actions_init(&_actions);
        for (const int output : {STDOUT_FILENO, STDERR_FILENO})
            ::posix_spawn_file_actions_addopen(&_actions, output, "/dev/null", O_WRONLY, 0);
    }
    NullDevices(const NullDevices&) = delete;
    NullDevices& operator=(const NullDevices&) = delete;
    ~NullDevices() { ::posix_spawn_file_actions_destroy(&_actions); }

    [[nodiscard]] const posix_spawn_file_actions_t* actions() const { return &_actions; }

private:
    posix_spawn_file_actions_t _actions{};
};

void tellFailure(int error) {
    Log::line("osascript failed: " + std::generic_category().message(error));
}

/// Waits for the process's end and tells of a bad one.
void watch(pid_t process) {
    int state = 0;
    while (::waitpid(process, &state, 0) < 0) {
        if (errno != EINTR)
            return;
    }
    // For a process that a signal ended this is the signal.
    const int status = WIFEXITED(state) ? WEXITSTATUS(state) : WTERMSIG(state);
    if (status != 0)
        Log::line("osascript exited with status " + std::to_string(status));
}

} // namespace

Osascript::Osascript(std::filesystem::path executable) : _executable(std::move(executable)) {}

std::vector<std::string> Osascript::arguments(const PlayerScript& script) {
    std::vector<std::string> result;
    for (const std::string& line : script.lines) {
        result.emplace_back("-e");
        result.push_back(line);
    }
    if (!script.arguments.empty()) {
        // What follows is no option, whatever it begins with.
        result.emplace_back("--");
        result.insert(result.end(), script.arguments.begin(), script.arguments.end());
    }
    return result;
}

void Osascript::run(const PlayerScript& script) const {
    std::vector<std::string> words = arguments(script);
    words.insert(words.begin(), _executable.string());
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);

    const NullDevices outputs;
    pid_t process = 0;
    const int error =
        ::posix_spawn(&process, _executable.c_str(), outputs.actions(), nullptr, pointers.data(), environ);
    if (error != 0)
        return tellFailure(error);
    try {
        std::thread(watch, process).detach();
    } catch (const std::system_error& exception) {
        // The script runs all the same.
        tellFailure(exception.code().value());
    }
}

} // namespace selvane
