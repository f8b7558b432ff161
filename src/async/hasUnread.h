#pragma once

namespace velloran {

/// Whether something that was written to that socket has yet to be read at its other end, which is on this machine.
/// What is not known counts as read. Does not wait. From any thread.
bool hasUnread(int socket);

} // namespace velloran
