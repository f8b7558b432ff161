#include "ui/theme/pictureRequest.h"

namespace velloran {

PictureRequest::PictureRequest(const QString& address)
    : name(address.section(u'?', 0, 0)), values(address.section(u'?', 1)) {}

int PictureRequest::number(const QString& key) const {
    return values.queryItemValue(key).toInt();
}

QColor PictureRequest::color() const {
    const QString text = values.queryItemValue("color", QUrl::FullyDecoded);
    return QColor::fromString(text.startsWith(u'#') ? text : u'#' + text);
}

} // namespace velloran
