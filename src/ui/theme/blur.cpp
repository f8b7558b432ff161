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

// One moving average over lines that lie beside each other, `width` values wide and centred: value after value of all
// of them, as that is the order in which they lie in memory.
void average(std::span<const float> values, std::span<float> result, std::size_t lines, int width) {
    const std::size_t half = static_cast<std::size_t>(width / 2);
    const std::size_t length = values.size() / lines;
    std::vector<float> sums(lines);
    const auto add = [&](std::size_t at) {
        for (std::size_t line = 0; line < lines; ++line) {
            sums[line] += values[at * lines + line];
        }
    };
    for (std::size_t i = 0; i < std::min(half, length); ++i) {
        add(i);
    }
    for (std::size_t i = 0; i < length; ++i) {
        if (i + half < length) {
            add(i + half);
        }
        if (i > half) {
            for (std::size_t line = 0; line < lines; ++line) {
                sums[line] -= values[(i - half - 1) * lines + line];
            }
        }
        for (std::size_t line = 0; line < lines; ++line) {
            result[i * lines + line] = sums[line] / static_cast<float>(width);
        }
    }
}

void blurLines(std::vector<float>& values, std::size_t lines, const std::array<int, 3>& widths,
               std::vector<float>& scratch) {
    scratch.resize(values.size());
    for (const int width : widths) {
        average(values, scratch, lines, width);
        std::swap(values, scratch);
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
            blurLines(line, 1, widths, scratch);
        }
        std::copy(line.begin(), line.end(), values.begin() + static_cast<std::ptrdiff_t>(y * columns));
    }
    blurLines(values, columns, widths, scratch);
    for (std::size_t y = 0; y < rows; ++y) {
        uchar* const target = alpha.scanLine(static_cast<int>(y));
        for (std::size_t x = 0; x < columns; ++x) {
            target[x] = static_cast<uchar>(std::lround(values[y * columns + x]));
        }
    }
}

} // namespace velloran
