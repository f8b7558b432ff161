#pragma once

#include <functional>
#include <string>
#include <thread>

namespace velloran {

/// Starts a thread that carries the label (cut to the 15 characters the system keeps). Signals to the process are the
/// main thread's business: this one takes none. When the system grants no thread, the result cannot be joined and
/// `work` is not called.
std::thread startThread(const std::string& label, std::function<void()> work);

} // namespace velloran
