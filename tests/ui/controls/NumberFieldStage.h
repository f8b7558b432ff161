#pragma once

#include "harness/Stage.h"

namespace velloran::test {

/// What the text box of the field shows.
inline QString shownText(const Stage& stage) {
    return stage.item("NumberInput").property("text").toString();
}

/// Puts the focus into the text box and replaces the text.
inline void retype(Stage& stage, const QString& text) {
    stage.click(stage.item("NumberInput"));
    stage.key(Qt::Key_A, Qt::ControlModifier);
    if (text.isEmpty()) {
        stage.key(Qt::Key_Delete);
    }
    stage.type(text);
}

} // namespace velloran::test
