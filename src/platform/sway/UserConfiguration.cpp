#include "platform/sway/UserConfiguration.h"

#include <fnmatch.h>
#include <glob.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace velloran::platform::sway {

namespace {

/// Nobody writes more by hand, and what an include names may be anything.
constexpr std::uintmax_t largestFile = std::uintmax_t{1} << 20U;

/// The files that a word stands for; its own name where there are none.
std::vector<std::string> namesOf(const ShellWord& word, const std::string& folder) {
    const std::string before = word.text.starts_with('/') ? std::string() : folder;
    glob_t found{};
    std::vector<std::string> names{before + word.text};
    if (glob((literalPattern(before) + word.pattern).c_str(), 0, nullptr, &found) == 0) {
        names.assign(found.gl_pathv, found.gl_pathv + found.gl_pathc);
    }
    globfree(&found);
    return names;
}

Variables ownEnvironment() {
    Variables variables;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        const std::string_view text(*entry);
        const std::size_t end = text.find('=');
        if (end != std::string_view::npos) {
            variables.emplace(text.substr(0, end), text.substr(end + 1));
        }
    }
    return variables;
}

std::optional<ConfigurationFile> readFile(const std::string& name) {
    std::error_code error;
    const auto path = std::filesystem::canonical(name, error);
    if (error || !std::filesystem::is_regular_file(path, error) ||
        std::filesystem::file_size(path, error) > largestFile) {
        return std::nullopt;
    }
    std::ifstream file(path);
    ConfigurationFile read{path, {std::istreambuf_iterator<char>(file), {}}};
    return file.bad() || !file.is_open() ? std::nullopt : std::optional(std::move(read));
}

} // namespace

std::vector<ConfigurationFile> findIncludedFiles(const std::string& words, const std::string& folder,
                                                 const Variables& environment) {
    std::vector<ConfigurationFile> files;
    for (const ShellWord& word : expandShellWords(words, environment).value_or(std::vector<ShellWord>())) {
        for (const std::string& name : namesOf(word, folder)) {
            if (auto file = readFile(name)) {
                files.push_back(*std::move(file));
            }
        }
    }
    return files;
}

struct UserConfiguration::Question {
    ConfigurationFile main;
    Variables environment;
};

struct UserConfiguration::Shared {
    std::mutex mutex;
    /// Null once nobody listens any more.
    EventLoop* loop;
    std::deque<Question> unread;
};

UserConfiguration::UserConfiguration(EventLoop& loop)
    : shared_(std::make_shared<Shared>()),
      receivers_(std::make_shared<std::deque<Receiver>>()),
      job_("velloran.sway", [shared = shared_, receivers = std::weak_ptr(receivers_)] { work(*shared, receivers); }) {
    shared_->loop = &loop;
    // With a class of characters it looks into the environment, once in the life of a program.
    static_cast<void>(fnmatch("[a]", "a", 0));
}

UserConfiguration::~UserConfiguration() {
    const std::lock_guard lock(shared_->mutex);
    shared_->loop = nullptr;
    shared_->unread.clear();
}

void UserConfiguration::read(ConfigurationFile main, Receiver receiver) {
    receivers_->push_back(std::move(receiver));
    {
        const std::lock_guard lock(shared_->mutex);
        // While another thread reads the environment, this one may not change it.
        shared_->unread.push_back({std::move(main), ownEnvironment()});
    }
    job_.request();
}

void UserConfiguration::work(Shared& shared, const std::weak_ptr<std::deque<Receiver>>& receivers) {
    std::unique_lock lock(shared.mutex);
    while (!shared.unread.empty()) {
        const Question question = std::move(shared.unread.front());
        shared.unread.pop_front();
        lock.unlock();
        auto bindings = userBindings(question.main, [&](const std::string& words, const std::string& folder) {
            return findIncludedFiles(words, folder, question.environment);
        });
        lock.lock();
        if (shared.loop == nullptr) {
            return;
        }
        // Told while the loop is sure to exist: its owner's end waits for the lock.
        shared.loop->postFromAnyThread([receivers, bindings = std::move(bindings)] {
            if (const auto waiting = receivers.lock()) {
                const Receiver receiver = std::move(waiting->front());
                waiting->pop_front();
                receiver(bindings);
            }
        });
    }
}

} // namespace velloran::platform::sway
