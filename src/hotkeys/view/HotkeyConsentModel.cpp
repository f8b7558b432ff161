#include "hotkeys/view/HotkeyConsentModel.h"

#include <utility>

namespace velloran {

namespace {

constexpr auto agreedKey = "velloran.hotkeyConsent";

} // namespace

HotkeyConsentModel::HotkeyConsentModel(platform::Preferences& preferences, QObject* parent)
    : QObject(parent), preferences_(preferences) {}

Subscription HotkeyConsentModel::ask(const std::string& shortcut, Answered answered) {
    if (preferences_.bytes(agreedKey) == Bytes(shortcut.begin(), shortcut.end())) {
        answered(true);
        return {};
    }
    const auto question = std::make_shared<Answered>(std::move(answered));
    question_ = question;
    shortcut_ = shortcut;
    emit questionChanged();
    return Subscription([this, observed = std::weak_ptr(question)] {
        const auto ending = observed.lock();
        if (ending && ending == question_) {
            question_.reset();
            emit questionChanged();
        }
    });
}

void HotkeyConsentModel::agree() {
    if (isAsking()) {
        preferences_.setBytes(agreedKey, Bytes(shortcut_.begin(), shortcut_.end()));
        answer(true);
    }
}

void HotkeyConsentModel::answer(bool agreed) {
    if (const auto question = std::exchange(question_, nullptr)) {
        emit questionChanged();
        (*question)(agreed);
    }
}

} // namespace velloran
