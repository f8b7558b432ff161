#pragma once

#include <functional>
#include <string>

namespace velloran::tests {

/// A folder of the test's own, gone at its end. Every user may write to it.
class Scratch {
public:
    /// `isInMemory` is for what is written thousands of times: where the system has such a folder, no disk is waited
    /// for.
    explicit Scratch(bool isInMemory = false);
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    ~Scratch();

    /// The path of a file in it.
    [[nodiscard]] std::string file(const std::string& name) const;

    [[nodiscard]] const std::string& folder() const { return folder_; }

private:
    std::string folder_;
};

std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& content);

/// Runs `work`, with expectations, in a process of its own, as a user without special rights if this one has them.
/// Expectations that fail there make this one fail.
void inOrdinaryProcess(const std::function<void()>& work);

} // namespace velloran::tests
