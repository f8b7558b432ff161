#include "engine/RunPlay.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdlib>
#include <iostream>
#include <vector>

// Random sequences of what can happen to a run, made as short as possible where one fails. What they began with is
// printed, and with a failure what repeats it. RC_PARAMS in the environment sets how many there are and what they begin
// with, for instance RC_PARAMS="max_success=100000 seed=7".

namespace velloran {

namespace {

/// Few and always the same, unless the environment wants it otherwise. Read by the library before its first property.
const int areParametersSet = setenv("RC_PARAMS", "max_success=1000 seed=2026", 0);

struct Figures {
    std::int64_t sequences = 0;
    std::int64_t events = 0;
    std::int64_t clicks = 0;
    std::int64_t interruptions = 0;
};

rc::Gen<std::vector<RunEvent>> sequences(std::size_t interruptionWeight) {
    using Kind = RunEvent::Kind;
    const auto kinds = rc::gen::weightedElement<Kind>({
        {8, Kind::start},
        {4, Kind::stop},
        {16, Kind::pass},
        {4, Kind::press},
        {3, Kind::limit},
        {3, Kind::interval},
        {3, Kind::delay},
        {3, Kind::stillness},
        {2, Kind::apply},
        {2, Kind::jump},
        {2, Kind::moving},
        {2, Kind::forbid},
        {3, Kind::permit},
        {3, Kind::report},
        {2, Kind::refresh},
        {1, Kind::clock},
        {interruptionWeight, Kind::interrupt},
    });
    const auto event =
        rc::gen::map(rc::gen::pair(kinds, rc::gen::inRange(0, RunEvent::values)), [](const std::pair<Kind, int>& made) {
            return RunEvent{made.first, made.second};
        });
    // No more than forty: see how `RunPlay` keeps moments apart.
    return rc::gen::resize(40, rc::gen::container<std::vector<RunEvent>>(event));
}

void play(const std::vector<RunEvent>& events, Figures& figures) {
    RunPlay run;
    const auto wrong = run.play(events);
    ++figures.sequences;
    figures.events += static_cast<std::int64_t>(events.size());
    figures.clicks += run.clicks();
    figures.interruptions += run.interrupted();
    if (wrong) {
        RC_FAIL(*wrong);
    }
}

void print(const Figures& figures) {
    std::cout << figures.sequences << " sequences of " << figures.events << " events with " << figures.clicks
              << " clicks and " << figures.interruptions << " interruptions\n";
}

} // namespace

TEST(RunSequences, AreWhatTheReferenceSays) {
    Figures figures;
    rc::detail::checkGTest([&] { play(*sequences(0), figures); });
    print(figures);
    EXPECT_GT(figures.clicks, figures.sequences);
}

TEST(RunSequences, KeepTheRulesWhoeverInterrupts) {
    Figures figures;
    rc::detail::checkGTest([&] { play(*sequences(8), figures); });
    print(figures);
    EXPECT_GT(figures.clicks, figures.sequences);
    EXPECT_GT(figures.interruptions, figures.sequences / 2);
}

} // namespace velloran
