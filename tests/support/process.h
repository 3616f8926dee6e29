#pragma once

#include <signal.h>
#include <sys/wait.h>

#include <cstdio>
#include <string>
#include <utility>

/// A program that runs beside the test, in a process group of its own; killed with it.
class Process {
public:
    /// Starts a command of the shell.
    explicit Process(const std::string& command)
        : output_(popen(("echo $$; exec setsid " + command).c_str(), "re")), pid_(std::stoi(line())) {}
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process() { end(SIGKILL); }

    /// The next line of its standard output.
    std::string line() {
        std::string text;
        for (int c = 0; (c = std::fgetc(output_)) != EOF && c != '\n';) text += static_cast<char>(c);
        return text;
    }

    [[nodiscard]] bool alive() const {
        siginfo_t ended{};
        waitid(P_PID, static_cast<id_t>(pid_), &ended, WEXITED | WNOHANG | WNOWAIT);
        return ended.si_pid == 0;
    }
    void send(int signal) { kill(-pid_, signal); }

    /// Ends it by that signal, or waits for its end (0); its exit status as wait gives it.
    int end(int signal) {
        if (output_ == nullptr) return -1;
        send(signal);
        return pclose(std::exchange(output_, nullptr));
    }

private:
    std::FILE* output_;
    pid_t pid_;
};
