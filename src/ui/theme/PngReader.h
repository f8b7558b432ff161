#pragma once

#include <QImageReader>
#include <QString>

namespace velloran {

/// A reader of one of the program's own pictures, all of which are PNG files. Asked to find out the format by itself,
/// the toolkit would load every library for pictures that is installed.
class PngReader : public QImageReader {
public:
    explicit PngReader(const QString& path) : QImageReader(path, "png") { setAutoDetectImageFormat(false); }
};

} // namespace velloran
