#pragma once

namespace velloran {

/// For a thread that does little whenever it wakes: from now on the calling one begins as soon as it wakes, even where
/// others keep every core busy, and takes no more of the time than before. It has its timers without slack, and asks
/// the scheduler for short turns, which come first. A system that knows of no such turns (Linux before 6.12) leaves it
/// as it is.
void wakePromptly();

} // namespace velloran
