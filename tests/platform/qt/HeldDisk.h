#pragma once

namespace velloran::tests {

/// In this program a disk takes what it is given at once, until one of these exists: then whoever asks it to keep
/// something waits, until the test says that it may. The toolkit asks by `fdatasync`, which this program replaces.
class HeldDisk {
public:
    HeldDisk();
    HeldDisk(const HeldDisk&) = delete;
    HeldDisk& operator=(const HeldDisk&) = delete;
    /// Lets everybody go on.
    ~HeldDisk();

    /// Lets everybody go on from now on.
    void release();

    /// Waits until somebody waits for the disk. False when nobody comes.
    [[nodiscard]] bool waitUntilAsked();

    /// False when somebody waited for so long that the test itself must have been waiting, and was let go.
    [[nodiscard]] bool holds() const;

    /// How many files other than locks it was asked to keep.
    [[nodiscard]] int writes() const;
};

} // namespace velloran::tests
