#pragma once

#include <QImage>
#include <QString>

namespace velloran::test {

/// How far two pictures are apart.
struct Comparison {
    bool sameSize = false;
    /// Pixels of which some channel differs by more than the tolerance.
    int differingPixels = 0;
    /// The larger of the two in grey, with the differing pixels in red.
    QImage difference;

    /// Whether a person would call them equal: few enough pixels differ.
    [[nodiscard]] bool isClose() const;
};

/// Compares the pictures pixel by pixel.
Comparison compare(const QImage& actual, const QImage& expected);

/// Compares the picture with the reference of that name, drawn at the scale in use. Where they are apart, the picture,
/// the reference and their difference are written into the build folder, and the result says so; an empty text is
/// agreement. With VELLORAN_UPDATE_REFERENCES set in the environment the picture becomes the reference.
QString compareWithReference(const QImage& actual, const QString& name);

} // namespace velloran::test
