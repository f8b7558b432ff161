#include "platform/FallbackFileChooser.h"

#include <gtest/gtest.h>

#include <optional>
#include <utility>

namespace velloran::tests {
namespace {

using namespace platform;
using Outcome = FileAnswer::Outcome;

/// Writes down what it is asked, and answers when a test says so.
class FakeFileChooser final : public FileChooser {
public:
    std::unique_ptr<FileDialog> ask(const FileQuestion& question, Done theDone) override {
        struct Dialog final : FileDialog {
            explicit Dialog(FakeFileChooser& owner) : chooser(owner) { chooser.isOpen = true; }

            ~Dialog() override { chooser.isOpen = false; }

            FakeFileChooser& chooser;
        };

        title = question.title;
        done = std::move(theDone);
        return std::make_unique<Dialog>(*this);
    }

    std::string title;
    Done done;
    bool isOpen = false;
};

class FallbackFileChooserTest : public testing::Test {
protected:
    void SetUp() override {
        dialog = chooser.ask({FileQuestion::Purpose::open, "Import", {}}, [this](const FileAnswer& now) {
            answer = now;
            dialog.reset();
        });
    }

    FakeFileChooser first;
    FakeFileChooser second;
    FallbackFileChooser chooser{first, second};
    std::optional<FileAnswer> answer;
    std::unique_ptr<FileDialog> dialog;
};

TEST_F(FallbackFileChooserTest, TheFirstIsEnoughWhereThereIsOne) {
    EXPECT_EQ(first.title, "Import");
    std::exchange(first.done, nullptr)({Outcome::chosen, "/one.json"});
    EXPECT_EQ(answer, (FileAnswer{Outcome::chosen, "/one.json"}));
    EXPECT_EQ(second.title, "");
    EXPECT_FALSE(first.isOpen);
}

TEST_F(FallbackFileChooserTest, ACancelledOneIsAnAnswer) {
    std::exchange(first.done, nullptr)({Outcome::cancelled, {}});
    EXPECT_EQ(answer, (FileAnswer{Outcome::cancelled, {}}));
    EXPECT_EQ(second.title, "");
}

TEST_F(FallbackFileChooserTest, TheSecondTakesThePlaceOfOneThatIsUnavailable) {
    std::exchange(first.done, nullptr)({Outcome::unavailable, {}});
    EXPECT_FALSE(answer.has_value());
    EXPECT_FALSE(first.isOpen);
    EXPECT_TRUE(second.isOpen);
    EXPECT_EQ(second.title, "Import");
    std::exchange(second.done, nullptr)({Outcome::chosen, "/two.json"});
    EXPECT_EQ(answer, (FileAnswer{Outcome::chosen, "/two.json"}));
    EXPECT_FALSE(second.isOpen);
}

TEST_F(FallbackFileChooserTest, DestroyingTheDialogTakesAwayTheOneThatIsShown) {
    std::exchange(first.done, nullptr)({Outcome::unavailable, {}});
    dialog.reset();
    EXPECT_FALSE(second.isOpen);
}

} // namespace
} // namespace velloran::tests
