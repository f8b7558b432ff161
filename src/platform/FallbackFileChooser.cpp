#include "platform/FallbackFileChooser.h"

#include <utility>

namespace velloran::platform {

namespace {

/// Holds the dialog of the way that is being tried.
struct Attempt final : FileDialog {
    std::unique_ptr<FileDialog> dialog;
};

} // namespace

std::unique_ptr<FileDialog> FallbackFileChooser::ask(const FileQuestion& question, Done done) {
    auto attempt = std::make_unique<Attempt>();
    attempt->dialog = first_.ask(question, [attempt = attempt.get(), &second = second_, question,
                                            done = std::move(done)](const FileAnswer& answer) {
        if (answer.outcome == FileAnswer::Outcome::unavailable) {
            attempt->dialog = second.ask(question, done);
        } else {
            done(answer);
        }
    });
    return attempt;
}

} // namespace velloran::platform
