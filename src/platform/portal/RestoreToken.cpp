#include "platform/portal/RestoreToken.h"

#include <QStandardPaths>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <mutex>
#include <utility>

namespace velloran::platform::portal {

namespace {

using namespace std::chrono_literals;

/// What is longer is no token.
constexpr std::size_t longestToken = 4096;

/// What others could have put there, or changed, is not the user's permission.
bool isUsersOwn(int file) {
    struct stat state {};

    return fstat(file, &state) == 0 && S_ISREG(state.st_mode) && state.st_uid == geteuid() &&
           (state.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

std::string readToken(const std::string& path) {
    // Without waiting, should it be a pipe.
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) {
        return {};
    }
    std::string content(longestToken + 1, '\0');
    const ssize_t length = isUsersOwn(file) ? read(file, content.data(), content.size()) : 0;
    close(file);
    if (length <= 0 || static_cast<std::size_t>(length) > longestToken) {
        return {};
    }
    content.resize(static_cast<std::size_t>(length));
    return content.substr(0, content.find('\n'));
}

bool writeWhole(const std::string& path, const std::string& content) {
    // Made anew, so that nobody else ever has it open or may read it.
    unlink(path.c_str());
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0) {
        return false;
    }
    const ssize_t written = write(file, content.data(), content.size());
    return (close(file) == 0) && written == static_cast<ssize_t>(content.size());
}

} // namespace

/// Shared with the thread, which goes on for as long as the disk holds it up.
struct RestoreToken::File {
    std::string path;
    std::mutex mutex;
    std::string content;

    void write() {
        std::string token;
        {
            const std::lock_guard lock(mutex);
            token = content;
        }
        if (token.empty()) {
            unlink(path.c_str());
            return;
        }
        std::error_code error;
        std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
        const std::string next = path + ".new";
        if (!writeWhole(next, token + '\n') || std::rename(next.c_str(), path.c_str()) != 0) {
            unlink(next.c_str());
        }
    }
};

RestoreToken::RestoreToken(std::string path)
    : token_(readToken(path)),
      file_(std::make_shared<File>()),
      writing_("velloran.token", [file = file_] { file->write(); }) {
    file_->path = std::move(path);
}

RestoreToken::~RestoreToken() {
    [[maybe_unused]] const bool isWritten = writing_.waitUntilDone(1s);
}

std::string RestoreToken::defaultPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation).toStdString() +
           "/velloran/remote-desktop-token";
}

void RestoreToken::set(const std::string& token) {
    if (token.size() > longestToken) {
        return;
    }
    token_ = token;
    {
        const std::lock_guard lock(file_->mutex);
        file_->content = token;
    }
    writing_.request();
}

} // namespace velloran::platform::portal
