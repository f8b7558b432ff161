#include "visual/StateSheet.h"

#include <QFont>
#include <QPainter>

namespace velloran::test {
namespace {

constexpr int nameWidth = 130;

} // namespace

void StateSheet::add(const QString& state, const QByteArray& qml, const std::function<void(Stage&)>& pose) {
    Stage stage(qml, size_);
    if (pose) {
        pose(stage);
    }
    cells_.append({state, stage.grab()});
}

QImage StateSheet::picture() const {
    const double scale = cells_.first().picture.devicePixelRatio();
    const QSize points(nameWidth + size_.width(), size_.height() * static_cast<int>(cells_.size()));
    QImage sheet((QSizeF(points) * scale).toSize(), QImage::Format_RGB32);
    sheet.setDevicePixelRatio(scale);
    sheet.fill(QColor("#202020"));
    QPainter painter(&sheet);
    QFont font("Inter");
    font.setPixelSize(11);
    painter.setFont(font);
    painter.setPen(Qt::white);
    int y = 0;
    for (const Cell& cell : cells_) {
        painter.drawText(QRect(8, y, nameWidth - 16, size_.height()), Qt::AlignVCenter | Qt::TextWordWrap, cell.state);
        painter.drawImage(QPoint(nameWidth, y), cell.picture);
        y += size_.height();
    }
    return sheet;
}

} // namespace velloran::test
