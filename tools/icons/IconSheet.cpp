// Draws every icon of a folder at the sizes and in the colours that the program uses, on one PNG.
//
// usage: icon-sheet <folder with *.svg> <sheet.png> [enlargement, 1 unless given [first row [rows]]]

#include <QColor>
#include <QDir>
#include <QFileInfo>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QStringList>
#include <QSvgRenderer>

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>

namespace {

constexpr std::array sizes = {9, 10, 11, 12, 13, 14, 15, 16, 18, 36};
constexpr int nameWidth = 190;
constexpr int cellPadding = 8;
constexpr int rowHeight = 42;
constexpr int headerHeight = 24;

const QColor cardFill = QColor::fromRgbF(0.067F, 0.098F, 0.176F);
const QColor textSecondary = QColor::fromRgbF(0.64F, 0.69F, 0.78F);
const QColor accentBlue = QColor::fromRgbF(0.33F, 0.55F, 1.0F);

/// The icon at `size` x `size` pixels, its shape filled with `colour`.
QImage tinted(QSvgRenderer& icon, int size, const QColor& colour) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    icon.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), colour);
    return image;
}

int columnsWidth() {
    int width = 0;
    for (const int size : sizes) {
        width += size + 2 * cellPadding;
    }
    return width;
}

/// Draws one row; nothing when the file holds no drawing that QtSvg understands.
bool drawRow(QPainter& painter, const QFileInfo& file, int top) {
    QSvgRenderer icon(file.filePath());
    if (!icon.isValid() || icon.viewBoxF() != QRectF(0, 0, 24, 24)) {
        std::fprintf(stderr, "%s: not a drawing on the 24 x 24 grid\n", qPrintable(file.filePath()));
        return false;
    }
    painter.setPen(textSecondary);
    painter.drawText(QRect(8, top, nameWidth - 8, rowHeight), Qt::AlignVCenter, file.completeBaseName());
    int left = nameWidth;
    for (const QColor& colour : {textSecondary, accentBlue}) {
        for (const int size : sizes) {
            painter.drawImage(left + cellPadding, top + (rowHeight - size) / 2, tinted(icon, size, colour));
            left += size + 2 * cellPadding;
        }
    }
    return true;
}

/// The whole sheet, or nothing when an icon cannot be drawn.
std::optional<QImage> drawSheet(const QFileInfoList& files) {
    const int count = static_cast<int>(files.size());
    QImage sheet(nameWidth + 2 * columnsWidth(), headerHeight + count * rowHeight, QImage::Format_RGB32);
    sheet.fill(cardFill);
    QPainter painter(&sheet);
    QFont font = painter.font();
    font.setPixelSize(11);
    painter.setFont(font);
    painter.setPen(textSecondary);
    int left = nameWidth;
    for (int tint = 0; tint < 2; ++tint) {
        for (const int size : sizes) {
            const QRect cell(left, 0, size + 2 * cellPadding, headerHeight);
            painter.drawText(cell, Qt::AlignCenter, QString::number(size));
            left += cell.width();
        }
    }
    int top = headerHeight;
    for (const QFileInfo& file : files) {
        if (!drawRow(painter, file, top)) {
            return std::nullopt;
        }
        top += rowHeight;
    }
    return sheet;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() < 3) {
        std::fprintf(stderr, "usage: icon-sheet <folder> <sheet.png> [enlargement [first row [rows]]]\n");
        return 2;
    }
    QFileInfoList files = QDir(arguments[1]).entryInfoList({QStringLiteral("*.svg")}, QDir::Files, QDir::Name);
    if (arguments.size() > 4) {
        files = files.mid(arguments[4].toInt(), arguments.size() > 5 ? arguments[5].toInt() : -1);
    }
    if (files.isEmpty()) {
        std::fprintf(stderr, "%s: no icons\n", qPrintable(arguments[1]));
        return 1;
    }
    const std::optional<QImage> sheet = drawSheet(files);
    if (!sheet) {
        return 1;
    }
    const int enlargement = arguments.size() > 3 ? std::max(1, arguments[3].toInt()) : 1;
    if (!sheet->scaled(sheet->size() * enlargement).save(arguments[2], "PNG", 0)) {
        std::fprintf(stderr, "%s: cannot be written\n", qPrintable(arguments[2]));
        return 1;
    }
    return 0;
}
