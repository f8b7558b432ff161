#include "model/ClickerStatus.h"

#include <algorithm>

namespace velloran {

namespace {

struct Words {
    std::string_view rawValue;
    std::string_view headline;
    std::string_view accentColorName;
};

constexpr Words words(ClickerStatus status) {
    switch (status) {
    case ClickerStatus::idle:
        return {"idle", "Ready", "statusIdle"};
    case ClickerStatus::arming:
        return {"arming", "Armed", "statusArming"};
    case ClickerStatus::delayed:
        return {"delayed", "Delayed Start", "statusDelayed"};
    case ClickerStatus::running:
        return {"running", "Running", "statusRunning"};
    case ClickerStatus::paused:
        return {"paused", "Paused", "statusPaused"};
    case ClickerStatus::completed:
        return {"completed", "Completed", "statusCompleted"};
    case ClickerStatus::error:
        return {"error", "Error", "statusError"};
    }
    return {};
}

} // namespace

std::string_view rawValue(ClickerStatus status) {
    return words(status).rawValue;
}

std::string_view headline(ClickerStatus status) {
    return words(status).headline;
}

std::string_view accentColorName(ClickerStatus status) {
    return words(status).accentColorName;
}

bool isActive(ClickerStatus status) {
    switch (status) {
    case ClickerStatus::arming:
    case ClickerStatus::delayed:
    case ClickerStatus::running:
    case ClickerStatus::paused:
        return true;
    case ClickerStatus::idle:
    case ClickerStatus::completed:
    case ClickerStatus::error:
        return false;
    }
    return false;
}

template<>
std::optional<ClickerStatus> fromRawValue(std::string_view text) {
    const auto found = std::find_if(allClickerStatuses.begin(), allClickerStatuses.end(),
                                    [text](ClickerStatus status) { return rawValue(status) == text; });
    return found != allClickerStatuses.end() ? std::optional(*found) : std::nullopt;
}

} // namespace velloran
