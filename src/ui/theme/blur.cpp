#include "ui/theme/blur.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <vector>

namespace velloran {
namespace {

// The widths of three averages that together have the variance of the Gaussian: odd numbers, two neighbours at most.
std::array<int, 3> averageWidths(double deviation) {
    constexpr double passes = 3;
    const double variance = 12 * deviation * deviation;
    int lower = static_cast<int>(std::floor(std::sqrt(variance / passes + 1)));
    lower -= lower % 2 == 0 ? 1 : 0;
    const double narrow =
        std::round((variance - passes * lower * lower - 4 * passes * lower - 3 * passes) / (-4.0 * lower - 4));
    std::array<int, 3> widths{};
    for (std::size_t pass = 0; pass < widths.size(); ++pass) {
        widths[pass] = static_cast<double>(pass) < narrow ? lower : lower + 2;
    }
    return widths;
}

// One moving average over `line`, `width` values wide and centred.
void average(std::span<const float> line, std::span<float> result, int width) {
    const std::size_t half = static_cast<std::size_t>(width / 2);
    float sum = 0;
    for (std::size_t i = 0; i < std::min(half, line.size()); ++i) {
        sum += line[i];
    }
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (i + half < line.size()) {
            sum += line[i + half];
        }
        if (i > half) {
            sum -= line[i - half - 1];
        }
        result[i] = sum / static_cast<float>(width);
    }
}

void blurLine(std::vector<float>& line, const std::array<int, 3>& widths, std::vector<float>& scratch) {
    scratch.resize(line.size());
    for (const int width : widths) {
        average(line, scratch, width);
        std::swap(line, scratch);
    }
}

} // namespace

void blur(QImage& alpha, double deviation) {
    const std::array<int, 3> widths = averageWidths(deviation);
    const auto columns = static_cast<std::size_t>(alpha.width());
    const auto rows = static_cast<std::size_t>(alpha.height());
    // Fractions are kept between the two directions: rounding twice shows as rings in so faint a picture.
    std::vector<float> values(columns * rows);
    std::vector<float> line;
    std::vector<float> scratch;
    for (std::size_t y = 0; y < rows; ++y) {
        const uchar* source = alpha.constScanLine(static_cast<int>(y));
        // Most rows of a shape with straight sides are as the one above.
        if (y == 0 || !std::equal(source, source + columns, alpha.constScanLine(static_cast<int>(y - 1)))) {
            line.assign(source, source + columns);
            blurLine(line, widths, scratch);
        }
        std::copy(line.begin(), line.end(), values.begin() + static_cast<std::ptrdiff_t>(y * columns));
    }
    line.resize(rows);
    for (std::size_t x = 0; x < columns; ++x) {
        for (std::size_t y = 0; y < rows; ++y) {
            line[y] = values[y * columns + x];
        }
        blurLine(line, widths, scratch);
        for (std::size_t y = 0; y < rows; ++y) {
            alpha.scanLine(static_cast<int>(y))[x] = static_cast<uchar>(std::lround(line[y]));
        }
    }
}

} // namespace velloran
