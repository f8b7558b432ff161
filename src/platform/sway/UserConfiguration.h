#pragma once

#include "async/BackgroundJob.h"
#include "async/EventLoop.h"
#include "platform/sway/UserBindings.h"
#include "platform/sway/shellWords.h"

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace velloran::platform::sway {

/// The files that an `include` names: its words are expanded as a shell with that environment does, except that no
/// command is run, and beginning at `folder`. Those that cannot be read are left out. Waits for the disk.
std::vector<ConfigurationFile> findIncludedFiles(const std::string& words, const std::string& folder,
                                                 const Variables& environment);

/// Finds out what the user's files bind, on a thread of its own ("velloran.sway"), since a disk may take any time. Main
/// thread.
class UserConfiguration {
public:
    using Receiver = std::function<void(const std::vector<UserBinding>&)>;

    explicit UserConfiguration(EventLoop& loop);
    UserConfiguration(const UserConfiguration&) = delete;
    UserConfiguration& operator=(const UserConfiguration&) = delete;
    /// Waits for nothing. No receiver is called any more.
    ~UserConfiguration();

    /// Reads what `main` includes, by the environment at this moment. `receiver` is called in a later turn of the loop;
    /// several are in their order.
    void read(ConfigurationFile main, Receiver receiver);

private:
    struct Question;
    struct Shared;

    static void work(Shared& shared, const std::weak_ptr<std::deque<Receiver>>& receivers);

    std::shared_ptr<Shared> shared_;
    /// Of what is being read, in order. Main thread only.
    std::shared_ptr<std::deque<Receiver>> receivers_;
    BackgroundJob job_;
};

} // namespace velloran::platform::sway
