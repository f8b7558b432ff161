// Makes the images that the program shows at one pixel a point of the large ones, scaled as the toolkit would scale
// them when the program reads them.
//
// usage: scaled-pictures <folder with the images>

#include <QImageReader>
#include <QSize>
#include <QString>

#include <array>
#include <cstdio>

namespace {

struct Use {
    const char* name;
    QSize size;
};

const std::array uses = {
    Use{"DragonIdle", {52, 52}},   Use{"DragonIdle", {56, 56}},  Use{"DragonIdle", {64, 64}},
    Use{"DragonIdle", {160, 160}}, Use{"DragonFly", {180, 140}},
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: scaled-pictures <folder with the images>\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]) + QLatin1Char('/');
    for (const Use& use : uses) {
        const QString name = folder + QLatin1String(use.name);
        QImageReader reader(name + QLatin1String(".png"));
        reader.setScaledSize(use.size);
        const QImage image = reader.read();
        const QString scaled = QStringLiteral("%1-%2x%3.png").arg(name).arg(use.size.width()).arg(use.size.height());
        constexpr int smallest = 0;
        if (!image.save(scaled, "PNG", smallest)) {
            std::fprintf(stderr, "%s cannot be scaled\n", use.name);
            return 1;
        }
    }
}
