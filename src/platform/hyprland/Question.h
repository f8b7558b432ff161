#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace velloran::platform::hyprland {

/// One request on Hyprland's socket, on a connection of its own: each is answered once, and Hyprland does nothing else
/// while one is open that has not said what it wants. Only `wait` waits.
class Question {
public:
    /// Null where nobody listens at `socket`, or nobody has taken in what was asked before.
    static std::unique_ptr<Question> ask(const std::string& socket, const std::string& words);

    Question(const Question&) = delete;
    Question& operator=(const Question&) = delete;
    ~Question();

    /// Waits until something more has come, or the other side has ended, at most until then. Whether it did.
    bool wait(std::chrono::steady_clock::time_point end);

    /// What has come so far; empty again where that is more than any answer.
    [[nodiscard]] const std::string& answer() const { return answer_; }

    /// Whether nothing more comes.
    [[nodiscard]] bool isOver() const { return isOver_; }

private:
    explicit Question(int socket) : socket_(socket) {}

    void read();

    const int socket_;
    std::string answer_;
    bool isOver_ = false;
};

} // namespace velloran::platform::hyprland
