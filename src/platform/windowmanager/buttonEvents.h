#pragma once

namespace velloran::platform::windowmanager {

/// Keeps the toolkit asleep while mouse buttons go down and up elsewhere: to the server they are part of the keyboard's
/// state, and it tells the toolkit of every change of that. Keys and modifiers are told as before. Does nothing where
/// the window system is another. To be called once there is an application.
void leaveOutButtonsOfOthers();

} // namespace velloran::platform::windowmanager
