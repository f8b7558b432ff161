#include "platform/sway/UserConfiguration.h"

#include <wordexp.h>

#include <cctype>
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

/// A folder's name as the shell has to be told it.
std::string escaped(const std::string& text) {
    constexpr std::string_view plain = "/._-+,:@%";
    std::string result;
    for (const char character : text) {
        const bool isPlain =
            std::isalnum(static_cast<unsigned char>(character)) != 0 || plain.find(character) != std::string_view::npos;
        result += isPlain ? std::string{character} : std::string{'\\', character};
    }
    return result;
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

std::vector<ConfigurationFile> findIncludedFiles(const std::string& words, const std::string& folder) {
    constexpr std::string_view beginningsOfWholePaths = "/~$\"";
    const bool isWhole = !words.empty() && beginningsOfWholePaths.find(words.front()) != std::string_view::npos;
    wordexp_t expanded{};
    std::vector<ConfigurationFile> files;
    if (wordexp((isWhole ? words : escaped(folder) + words).c_str(), &expanded, WRDE_NOCMD) == 0) {
        for (std::size_t i = 0; i < expanded.we_wordc; ++i) {
            if (auto file = readFile(expanded.we_wordv[i])) {
                files.push_back(*std::move(file));
            }
        }
    }
    wordfree(&expanded);
    return files;
}

struct UserConfiguration::Shared {
    std::mutex mutex;
    /// Null once nobody listens any more.
    EventLoop* loop;
    std::deque<ConfigurationFile> unread;
};

UserConfiguration::UserConfiguration(EventLoop& loop)
    : shared_(std::make_shared<Shared>()),
      receivers_(std::make_shared<std::deque<Receiver>>()),
      job_("velloran.sway", [shared = shared_, receivers = std::weak_ptr(receivers_)] { work(*shared, receivers); }) {
    shared_->loop = &loop;
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
        shared_->unread.push_back(std::move(main));
    }
    job_.request();
}

void UserConfiguration::work(Shared& shared, const std::weak_ptr<std::deque<Receiver>>& receivers) {
    std::unique_lock lock(shared.mutex);
    while (!shared.unread.empty()) {
        const ConfigurationFile main = std::move(shared.unread.front());
        shared.unread.pop_front();
        lock.unlock();
        auto bindings = userBindings(main, findIncludedFiles);
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
