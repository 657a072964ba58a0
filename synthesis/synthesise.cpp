#include "synthesis/synthesise.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "synthesis/ladder_attempt.h"

namespace kavrel {

namespace {

// All that can be tried for a request, in this order. is_worth_a_run says what is run: mostly the first one or two;
// is_better, what is kept.
constexpr LadderAttempt attempts[] = {
    {.direction = Direction::two_way},
    {.direction = Direction::forward, .quadruplets = QuadrupletPlace::first},
    {.direction = Direction::forward, .quadruplets = QuadrupletPlace::behind_shunts},
    {.direction = Direction::forward, .quadruplets = QuadrupletPlace::last},
    {.direction = Direction::reverse, .quadruplets = QuadrupletPlace::first},
    {.direction = Direction::reverse, .quadruplets = QuadrupletPlace::behind_shunts},
    {.direction = Direction::reverse, .quadruplets = QuadrupletPlace::last},
    {.direction = Direction::forward, .searched = true},
    {.direction = Direction::reverse, .searched = true},
    {.direction = Direction::forward, .searched = true, .dual = true},
    {.direction = Direction::reverse, .searched = true, .dual = true},
};

constexpr int halvings = 4;
constexpr double met_ratio = 1e-3;  // of terminations: up to where it is the one asked for

// What an attempt has come to.
struct Tried {
    LadderAttempt attempt;
    SynthesisFault fault = SynthesisFault::none;
    int negative_elements = 0;
    SearchVerdict search = SearchVerdict::found;

    [[nodiscard]] bool was_positive_search() const { return attempt.searched && attempt.bounds.negative_elements == 0; }
    [[nodiscard]] bool from_one_end() const { return attempt.direction != Direction::two_way; }
    [[nodiscard]] bool came_off() const { return fault == SynthesisFault::none; }
};

struct Course {
    std::vector<Tried> tried;
    std::optional<LadderOutcome> best;

    [[nodiscard]] bool came_off() const { return best && best->came_off(); }
};

[[nodiscard]] bool has_real_zero(const LadderProblem& problem);
[[nodiscard]] int complex_zeros(const LadderProblem& problem);
[[nodiscard]] bool is_worth_a_run(const LadderAttempt& attempt, const LadderTask& task, const Course& course);
[[nodiscard]] bool may_begin(Direction direction, const LadderTask& task);
[[nodiscard]] bool search_is_due(const LadderAttempt& attempt, const LadderTask& task, const Course& course);
[[nodiscard]] bool nearest_is_wanted(const LadderTask& task);
void search_with_negative_elements(const LadderTask& task, Course& course);
void note(const LadderAttempt& attempt, const LadderTask& task, const LadderOutcome& trial, Course& course);
[[nodiscard]] bool is_better(const LadderOutcome& trial, const LadderOutcome& best, bool nearest);
// Of the ratio of terminations from the one asked for, as difference of logarithms.
[[nodiscard]] double distance(const SynthesisState& state);
// Whether the best one has the ratio asked for, and the trial another; or the trial alone an extreme one.
[[nodiscard]] bool spoils_terminations(const SynthesisState& trial, const SynthesisState& best);
void remark_on_search(const Course& course, SynthesisState& state);

}  // namespace

SynthesisVerdict synthesise(const XPlane& xp, const FilterSpec& spec, const SynthesisRequest& request,
                            SynthesisState& state, Circuit& circuit) {
    Unwatched nobody;
    return synthesise(xp, spec, request, nobody, state, circuit);
}

SynthesisVerdict synthesise(const XPlane& xp, const FilterSpec& spec, const SynthesisRequest& request, Watcher& watcher,
                            SynthesisState& state, Circuit& circuit) {
    state = {};
    const bool formed = ladder_problem(xp, spec, watcher, state.problem);
    if (watcher.stopped()) return {SynthesisFault::stopped};
    if (has_real_zero(state.problem)) return {SynthesisFault::real_zero};
    if (complex_zeros(state.problem) > quadruplet_limit) return {SynthesisFault::too_many_quadruplets};
    if (!formed) return {SynthesisFault::polynomials_missing};

    const LadderProblem problem = state.problem;
    const LadderTask task{xp, spec, request, problem, circuit, watcher};
    Course course;
    for (const LadderAttempt& attempt : attempts) {
        if (watcher.stopped()) break;
        if (is_worth_a_run(attempt, task, course)) note(attempt, task, run_attempt(task, attempt), course);
    }
    search_with_negative_elements(task, course);
    if (watcher.stopped()) return {SynthesisFault::stopped};
    state = course.best->state;
    if (!course.came_off()) return {course.best->fault};
    remark_on_search(course, state);
    circuit = course.best->circuit;
    return {};
}

namespace {

bool has_real_zero(const LadderProblem& problem) {
    for (int i = 1; i <= problem.zero_count; ++i) {
        if (problem.is_complex(i) && problem.zero_x_im(i).sign() == 0) return true;
    }
    return false;
}

int complex_zeros(const LadderProblem& problem) {
    int count = 0;
    for (int i = 1; i <= problem.zero_count; ++i) count += problem.is_complex(i) ? 1 : 0;
    return count;
}

bool has_positive(const Course& course, Direction direction) {
    return std::any_of(course.tried.begin(), course.tried.end(), [&](const Tried& tried) {
        return tried.attempt.direction == direction && tried.came_off() && tried.negative_elements == 0;
    });
}

// Once there is a ladder without negative elements, another one is wanted only where it may have nearer terminations,
// and then one from each end. A fixed order has places to choose from where there are quadruplets.
bool is_worth_a_run(const LadderAttempt& attempt, const LadderTask& task, const Course& course) {
    if (!may_begin(attempt.direction, task)) return false;
    const bool from_one_end = has_positive(course, Direction::forward) || has_positive(course, Direction::reverse);
    const bool found = from_one_end || has_positive(course, Direction::two_way);
    if (found && !nearest_is_wanted(task)) return false;
    if (attempt.searched) return !from_one_end && search_is_due(attempt, task, course);
    if (attempt.quadruplets != QuadrupletPlace::first && complex_zeros(task.problem) == 0) return false;
    return !has_positive(course, attempt.direction);
}

// The end asked for alone, or any that the filter has.
bool may_begin(Direction direction, const LadderTask& task) {
    if (task.request.direction != Direction::automatic) return direction == task.request.direction;
    if (direction == Direction::forward) return true;
    if (task.problem.single_termination) return false;
    return direction == Direction::reverse ||
           (!task.request.manual_selection && task.problem.polynomials.degree >= two_way_degree);
}

// Where the fixed orders leave a negative element, or the first one is refused. The other end has the same orders,
// backwards: but where the work runs out, one may be met sooner from there. The dual network has the same losses, and,
// when they are equal, the same terminations.
bool search_is_due(const LadderAttempt& attempt, const LadderTask& task, const Course& course) {
    const std::vector<Tried>& tried = course.tried;
    const bool came_off =
        std::any_of(tried.begin(), tried.end(), [](const Tried& t) { return t.from_one_end() && t.came_off(); });
    const auto first = std::find_if(tried.begin(), tried.end(), [](const Tried& t) { return t.from_one_end(); });
    if (!came_off && first->fault != SynthesisFault::script_refused) return false;
    if (task.problem.zero_count == 0) return false;

    const SynthesisRequest& request = task.request;
    const bool other_end = attempt.direction == Direction::reverse && request.direction == Direction::automatic;
    if (other_end && tried.back().search != SearchVerdict::given_up) return false;
    return !attempt.dual || (!request.manual_selection && task.spec.sourceResistance == task.spec.loadResistance);
}

// Where neither frequency zero nor infinity passes a signal, which would fix the ratio of the terminations, ladders
// with different orders of removals have different ones. Lines are a quarter wave long at infinity. The nearest one is
// looked for where both ends are begun at.
bool nearest_is_wanted(const LadderTask& task) {
    const LadderProblem& problem = task.problem;
    return may_begin(Direction::two_way, task) && problem.zeros_at_zero > 0 &&
           (problem.zeros_at_infinity > 0 || problem.unit_elements > 0);
}

// Where the search without them has failed: with any number from either end if there is no ladder yet, then halving
// between too few and the fewest so far.
void search_with_negative_elements(const LadderTask& task, Course& course) {
    if (std::none_of(course.tried.begin(), course.tried.end(),
                     [](const Tried& tried) { return tried.was_positive_search(); })) {
        return;
    }
    const auto found_within = [&](const SearchBounds& bounds) {
        bool found = false;
        for (const Direction direction : {Direction::forward, Direction::reverse}) {
            if (found || task.watcher.stopped() || !may_begin(direction, task)) continue;
            const LadderAttempt attempt{.direction = direction, .searched = true, .bounds = bounds};
            note(attempt, task, run_attempt(task, attempt), course);
            found = course.came_off() && course.best->state.negative_elements <= bounds.negative_elements;
        }
        return found;
    };
    // One of a fixed order has few of them: what can be saved shows soon.
    const int work = course.came_off() ? search_limit / 16 : search_limit / 2;
    if (!course.came_off() && !found_within({.negative_elements = any_number})) return;
    int too_few = 0;
    for (int turn = 0; turn < halvings && course.best->state.negative_elements > too_few + 1; ++turn) {
        const int enough = (too_few + course.best->state.negative_elements) / 2;
        if (!found_within({.negative_elements = enough, .work = work})) too_few = enough;
        if (task.watcher.stopped()) return;
    }
}

// Unasked, a ladder from both ends is taken when its loss is beyond doubt; one of a search that has negative elements
// all the same, when it does not spoil the terminations for fewer of them.
void note(const LadderAttempt& attempt, const LadderTask& task, const LadderOutcome& trial, Course& course) {
    const bool unasked = task.request.direction == Direction::automatic && attempt.direction == Direction::two_way;
    if (unasked && !(trial.came_off() && trial.is_trusted())) return;
    course.tried.push_back({attempt, trial.fault, trial.state.negative_elements, trial.state.search});
    const bool searched_in_vain = attempt.searched && trial.state.negative_elements > 0;
    if (course.came_off() && searched_in_vain && spoils_terminations(trial.state, course.best->state)) return;
    if (!course.best || is_better(trial, *course.best, nearest_is_wanted(task))) course.best = trial;
}

double distance(const SynthesisState& state) {
    return std::fabs(std::log(std::fabs(state.available_ratio / state.requested_ratio)));
}

bool spoils_terminations(const SynthesisState& trial, const SynthesisState& best) {
    if (best.problem.single_termination) return false;
    if (trial.termination_is_extreme() && !best.termination_is_extreme()) return true;
    return distance(best) <= met_ratio && distance(trial) > distance(best) + same_ratio;
}

// A ladder rather than a fault; one from one end in place of one from both with negative elements, or, with a trusted
// loss, in place of any; fewer negative elements; where it is wanted, the nearer ratio of terminations. Of equal ones,
// the first.
bool is_better(const LadderOutcome& trial, const LadderOutcome& best, bool nearest) {
    if (!trial.came_off() || !best.came_off()) return trial.came_off() && !best.came_off();
    if (best.state.two_way && best.state.negative_elements > 0) return !trial.state.two_way;
    if (best.state.two_way && !trial.is_trusted()) return false;
    if (trial.state.negative_elements != best.state.negative_elements) {
        return trial.state.negative_elements < best.state.negative_elements;
    }
    return nearest && distance(trial.state) < distance(best.state) - same_ratio;
}

// To a ladder with negative elements how the searches without them have ended.
void remark_on_search(const Course& course, SynthesisState& state) {
    if (state.negative_elements == 0) return;
    for (const Tried& tried : course.tried) {
        if (!tried.was_positive_search()) continue;
        const bool given_up =
            tried.search == SearchVerdict::given_up || (state.searched && state.search == SearchVerdict::given_up);
        state.searched = true;
        state.search = given_up ? SearchVerdict::given_up : SearchVerdict::none_exists;
    }
}

}  // namespace

}  // namespace kavrel
