#include "ui/theme/firstFonts.h"

#include "harness/WindowTest.h"

#include <QFont>
#include <QQuickItem>

#include <set>
#include <string>

namespace velloran::tests {

namespace {

class FirstFontsTest : public WindowTest {
protected:
    static std::string described(const QFont& font) {
        return font.family().toStdString() + " " + std::to_string(font.pixelSize()) + " " +
               std::to_string(font.weight());
    }

    /// Of everything that may show text.
    static void collect(const QQuickItem& item, std::set<std::string>& fonts) {
        if (item.inherits("QQuickText") || item.inherits("QQuickTextInput")) {
            fonts.insert(described(item.property("font").value<QFont>()));
        }
        for (const QQuickItem* const child : item.childItems()) {
            collect(*child, fonts);
        }
    }
};

} // namespace

TEST_F(FirstFontsTest, AreThoseThatTheWindowOpensWith) {
    openMainWindow();
    std::set<std::string> shown;
    collect(*window->contentItem(), shown);
    std::set<std::string> expected;
    for (const QFont& font : firstFonts()) {
        expected.insert(described(font));
    }
    EXPECT_EQ(shown, expected);
}

} // namespace velloran::tests
