#pragma once

#include <cstdint>
#include <limits>

namespace velloran::tests {

/// In this program a disk takes everything, until one of these exists: then files take so many bytes more and no more,
/// or nothing is kept, and the error is that one. The names by which the toolkit asks are replaced.
class FailingDisk {
public:
    static constexpr std::int64_t everything = std::numeric_limits<std::int64_t>::max();

    /// With room for all bytes it is the keeping that fails, which is when some disks find out.
    explicit FailingDisk(int error, std::int64_t room = everything);
    FailingDisk(const FailingDisk&) = delete;
    FailingDisk& operator=(const FailingDisk&) = delete;
    ~FailingDisk();

    /// Whether what was written is kept; otherwise `errno` says why not.
    [[nodiscard]] static bool keeps();
};

} // namespace velloran::tests
