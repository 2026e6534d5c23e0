#include "common/Logger.hpp"
#include "common/ResultStatus.hpp"
#include "common/Stopwatch.hpp"
#include "common/Util.hpp"
#include "modules/bmc/engine/Interpreter.hpp"
#include "modules/bmc/engine/Text.hpp"
#include "modules/bmc/engine/ThrowNames.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

// Instructions by which a script calls a script, waits for one, or fails.

namespace Module::BMCConfig {

namespace {

/// Rounds of a Poll and the seconds between them: a long wait is refused, a middling one becomes a minute.
struct PollPlan {
    static constexpr long refusedSeconds = 181;
    static constexpr long cappedSeconds = 101;
    static constexpr long mostRounds = 1'000'000;

    PollPlan(long count, long delay) : rounds(std::clamp(count, 0L, mostRounds)), pause(delay)
    {
        const long total = rounds * std::clamp(pause, -mostRounds, mostRounds);
        if (total >= refusedSeconds) {
            rounds = 0;
        } else if (total >= cappedSeconds) {
            rounds = 10;
            pause = 6;
        }
    }

    long rounds;
    long pause;
};

} // namespace

bool Interpreter::guarded(const std::function<void()>& call)
{
    const _INTERPRETER_STATE before = state;
    const std::size_t framesBefore = frames.size();
    try {
        call();
        return true;
    } catch (const ResultStatus&) {
        // a script that has used up its steps ends, whoever called it
        if (stepsLeft == 0)
            throw;
        frames.resize(framesBefore);
        state = before;
        return false;
    }
}

void Interpreter::callTemplate(const std::string& query)
{
    const common::Stopwatch watch;
    try {
        SymbolMap results;
        router(results, query);
        table[resultName] = just_leaves(results[query]);
        table.mark_as_stinking_garbage(resultName);
        table[$(query)] = std::move(results[query]);
    } catch (const ResultStatus&) {
        HW_LOG(LOGGER::Category::First, "Failed: Template \"%s\" exec time is %d msec", query.c_str(),
               watch.milliseconds());
        throw;
    }
    HW_LOG(LOGGER::Category::First, "Success: Template \"%s\" exec time is %d msec", query.c_str(),
           watch.milliseconds());
}

int Interpreter::Evaluate_Template(const Function& function)
{
    callTemplate(getText(function.arguments.values[0]));
    return 0;
}

int Interpreter::Evaluate_Template_with_Catch(const Function& function)
{
    const std::string query = getText(function.arguments.values[0]);
    if (!guarded([&] { callTemplate(query); })) {
        store(resultName, Symbol("FAILURE"));
        table.mark_as_stinking_garbage(resultName);
    }
    return 0;
}

int Interpreter::Evaluate_Poll(const Function& function)
{
    const std::vector<std::string>& operands = function.arguments.values;
    const std::string query = getText(operands[0]);
    const std::string expected = getText(operands[1]);
    const long count = toDecimal(getText(operands[2]));
    const PollPlan plan(count, Util::string_to_long(getText(operands[3]), 10));
    // an answer from memory would never change
    const bool memoBefore = std::exchange(memo, false);
    bool met = false;
    for (long round = 1; round <= plan.rounds && !met; ++round) {
        spendStep();
        HW_LOG(LOGGER::Category::First, "Polling %ld time with sleep of %ld second for %s query", round, plan.pause,
               query.c_str());
        guarded([&] { met = pollOnce(query, expected, plan.pause); });
    }
    memo = memoBefore;
    store(operands[4], Symbol(met ? "TRUE" : "FALSE"));
    return 0;
}

bool Interpreter::pollOnce(const std::string& query, const std::string& expected, long pauseSeconds)
{
    SymbolMap results;
    router(results, query);
    store(resultName, just_leaves(results[query]));
    if (value(resultName).text().starts_with(expected))
        return true;
    if (pauseSeconds > 0 && pauseSeconds <= longestSleepSeconds)
        current<Clock>().sleepFor(std::chrono::seconds(pauseSeconds));
    return false;
}

int Interpreter::Evaluate_Throw(const Function& function)
{
    const int code = throwCode(getText(function.arguments.values[0]));
    throwError(static_cast<unsigned short>(code), "", COMMAND_UNKNOWN);
}

} // namespace Module::BMCConfig
