#pragma once

namespace velloran::platform::posix {

/// From now on a limit on the size of files is an error for whoever writes, as a full disk is, and does not end the
/// program. Programs that it starts meet it as usual.
void outliveFileSizeLimit();

} // namespace velloran::platform::posix
