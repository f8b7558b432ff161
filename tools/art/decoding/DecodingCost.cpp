// Measures what it costs to decode the images at the sizes in which the program shows them.
//
// usage: decoding-cost <folder with the images>

#include <QImageReader>
#include <QSize>
#include <QString>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>

namespace {

constexpr int repetitions = 21;

struct Use {
    const char* name;
    QSize size; // in pixels, at one and at two pixels a point
};

const std::array uses = {
    Use{"DragonIdle", {52, 52}},   Use{"DragonIdle", {104, 104}}, Use{"DragonIdle", {160, 160}},
    Use{"DragonIdle", {320, 320}}, Use{"DragonFly", {180, 140}},  Use{"DragonFly", {360, 280}},
};

/// Milliseconds of this process so far; other programs do not count.
double processorTime() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

/// Milliseconds of processor time that one decoding takes, file access included; negative if it failed.
double decode(const QString& path, const QSize& size) {
    const double start = processorTime();
    QImageReader reader(path);
    reader.setScaledSize(size);
    const QImage image = reader.read();
    return image.size() == size ? processorTime() - start : -1.0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: decoding-cost <folder with the images>\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    for (const Use& use : uses) {
        std::array<double, repetitions> times{};
        for (double& time : times) {
            time = decode(folder + QLatin1Char('/') + QLatin1String(use.name) + QLatin1String(".png"), use.size);
        }
        std::sort(times.begin(), times.end());
        if (times.front() < 0) {
            std::fprintf(stderr, "%s cannot be decoded\n", use.name);
            return 1;
        }
        std::printf("%-10s %3d x %3d  median %5.2f ms  most %5.2f ms  %4d kB in memory\n", use.name, use.size.width(),
                    use.size.height(), times[repetitions / 2], times.back(),
                    use.size.width() * use.size.height() * 4 / 1024);
    }
}
