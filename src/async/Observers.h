#pragma once

#include "async/Subscription.h"

#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <utility>

namespace velloran {

/// A list of functions that are told of something, in the order in which they were attached. Attaching, detaching
/// (oneself or another) and notifying again from inside a notification are all allowed: one attached during a
/// notification is not told of it, one detached during it is not called any more.
template<typename... Arguments>
class Observers {
public:
    using Function = std::function<void(Arguments...)>;

    Observers() : entries_(std::make_shared<Entries>()) {}

    /// Attaches `function` for as long as the result exists.
    Subscription attach(Function function) {
        auto entry = std::make_shared<Entry>(Entry{std::move(function), true});
        entries_->push_back(entry);
        return Subscription([entries = std::weak_ptr(entries_), entry = std::weak_ptr(entry)] {
            const auto attached = entry.lock();
            if (!attached) {
                return;
            }
            attached->isAttached = false;
            if (const auto list = entries.lock()) {
                list->remove(attached);
            }
        });
    }

    /// Whether nothing is attached.
    [[nodiscard]] bool isEmpty() const { return entries_->empty(); }

    /// Calls every attached function.
    void notify(const Arguments&... arguments) const {
        if (isEmpty()) {
            return;
        }
        // The copy keeps the functions alive while they run, even when they detach themselves or destroy this list.
        const Entries attachedNow = *entries_;
        for (const auto& entry : attachedNow) {
            if (entry->isAttached) {
                entry->function(arguments...);
            }
        }
    }

private:
    struct Entry {
        Function function;
        bool isAttached;
    };

    using Entries = std::list<std::shared_ptr<Entry>>;

    std::shared_ptr<Entries> entries_;
};

} // namespace velloran
