// SPDX-License-Identifier: Apache-2.0
#include "tests/apps/tool_run.h"
#include "tests/support/test_texts.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>

namespace fs = std::filesystem;

namespace {

/// In the child: opens a file as `descriptor`.
void Redirect(const fs::path& path, int flags, int descriptor) {
    const int file = open(path.c_str(), flags, 0600);
    if (file < 0 || dup2(file, descriptor) < 0) _exit(126);
    close(file);
}

/// The libraries' own tests look for leaks: the leak checker sometimes fails in short-lived processes.
const int withoutLeaks = [] {
    const char* options = std::getenv("ASAN_OPTIONS");
    return setenv("ASAN_OPTIONS", (std::string(options ? options : "") + ":detect_leaks=0").c_str(), 1);
}();

}  // namespace

ToolRun ToolTest::Run(const std::vector<std::string>& arguments, const std::string& input) const {
    std::vector<std::string> command{ORV_TOOL_PATH};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return RunProgram(command, input);
}

ToolRun ToolTest::RunProgram(const std::vector<std::string>& command, const std::string& input) const {
    return WaitFor(StartProgram(command, input));
}

RunningTool ToolTest::StartProgram(const std::vector<std::string>& command, const std::string& input) const {
    // The streams are files beside the folder, so that it holds only what the command makes.
    RunningTool running;
    running.in = Folder().string() + ".in";
    running.out = Folder().string() + ".out";
    running.err = Folder().string() + ".err";
    std::ofstream(running.in, std::ios::binary) << input;
    running.pid = fork();
    if (running.pid == 0) {
        TakeDefaultSignals();
        Redirect(running.in, O_RDONLY, STDIN_FILENO);
        Redirect(running.out, O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
        Redirect(running.err, O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
        if (chdir(Folder().c_str()) != 0) _exit(126);
        std::vector<char*> arguments;
        for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
        arguments.push_back(nullptr);
        execvp(arguments.front(), arguments.data());
        _exit(127);
    }
    return running;
}

void ToolTest::TakeDefaultSignals() {
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGPIPE}) std::signal(signal, SIG_DFL);
}

ToolRun ToolTest::WaitFor(const RunningTool& running) {
    int status = 0;
    ToolRun run;
    if (running.pid > 0 && waitpid(running.pid, &status, 0) == running.pid) {
        if (WIFEXITED(status)) run.exitCode = WEXITSTATUS(status);
        if (WIFSIGNALED(status)) run.signal = WTERMSIG(status);
    }
    run.output = ReadAll(running.out);
    run.errors = ReadAll(running.err);
    for (const fs::path& path : {running.in, running.out, running.err}) fs::remove(path);
    return run;
}

void ToolTest::WriteFile(const std::string& name, const std::string& content) const {
    fs::create_directories((Folder() / name).parent_path());
    std::ofstream(Folder() / name, std::ios::binary) << content;
}

std::string ToolTest::ReadFile(const std::string& name) const { return ReadAll(Folder() / name); }

std::vector<std::string> ToolTest::Files() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(Folder())) names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

std::string ToolTest::Example(const std::string& name) { return std::string(ORV_EXAMPLES_PATH "/") + name; }

std::string SmallDrawing(const std::string& content) {
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='90' "
           "height='45'>" +
           content + "</svg>";
}
