#include "platform/gnome/Accelerator.h"

#include "platform/HotKeys.h"

#include <gtest/gtest.h>

#include <string>

namespace velloran::platform::gnome {
namespace {

TEST(AcceleratorTest, IsReadInEachWayInWhichItWasEverWritten) {
    const Accelerator wanted{controlModifier | optionModifier, "s"};
    for (const std::string written : {"<Control><Alt>s", "<Primary><Alt>s", "<Alt><Ctrl>S", "<ctl><mod1>s"}) {
        EXPECT_EQ(Accelerator::read(written), wanted) << written;
    }
    EXPECT_EQ(Accelerator::read("<Shift><Super>F8"), (Accelerator{shiftModifier | commandModifier, "F8"}));
    EXPECT_EQ(Accelerator::read("<Shft><Mod4>f8"), (Accelerator{shiftModifier | commandModifier, "F8"}));
    EXPECT_EQ(Accelerator::read("Print"), (Accelerator{0, "Print"}));
}

TEST(AcceleratorTest, OthersAreOthers) {
    const Accelerator wanted{controlModifier, "F8"};
    for (const std::string written : {"F8", "<Alt>F8", "<Control><Shift>F8", "<Control>F9"}) {
        EXPECT_NE(Accelerator::read(written), wanted) << written;
    }
    for (const std::string written :
         {"", "<Control>", "<Control", "<Control>F8 F9", "<Hyper>F8", "<>F8", "F8<Control>"}) {
        EXPECT_EQ(Accelerator::read(written), std::nullopt) << written;
    }
}

TEST(AcceleratorTest, IsWrittenForTheDesktopAndForPeople) {
    const Accelerator all{controlModifier | optionModifier | shiftModifier | commandModifier, "s"};
    EXPECT_EQ(all.written(), "<Control><Alt><Shift><Super>s");
    EXPECT_EQ(all.words(), "Ctrl+Alt+Shift+Super+S");
    // The desktop knows keys by names in which each letter counts.
    EXPECT_EQ((Accelerator{0, "KP_Enter"}).written(), "KP_Enter");
    EXPECT_EQ((Accelerator{0, "F8"}).words(), "F8");
}

} // namespace
} // namespace velloran::platform::gnome
