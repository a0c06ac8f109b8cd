#include "stress/run.h"

#include <fmt/format.h>
#include <unistd.h>

namespace stress
{

using namespace std::chrono_literals;

namespace
{

constexpr auto settling = 60s; // only catches what never settles

void hang(Actor& actor)
{
    actor.progress.begin("hang");
    actor.progress.step("a wait that never ends");
    std::promise<void> never;
    never.get_future().wait();
}

} // namespace

std::string Options::to_text() const
{
    return fmt::format("--seed {} --seconds {} --threads {} --fault-ms {}{}", seed, seconds,
                       threads, fault_ms, only.empty() ? "" : fmt::format(" --only '{}'", only));
}

Run::Run(const Options& wanted)
    : options(wanted), watchdog(std::chrono::seconds(options.patience),
                                "to run it again: velto_stress " + options.to_text(),
                                [this] { simulator.kill_for_good(); }),
      doors(simulator.address() + 1, simulator.address()), world(doors, verdict, options.limits),
      own_progress(watchdog.watch("the main thread")),
      judge(world, most_threads - 1, options.seed, own_progress),
      actions(actions_with(options.only))
{
    own_progress.begin("set up");
    raise_descriptor_limit();
    at_start = figures();
    while (world.connections.size() < world.limits.connections) {
        open_connection(judge);
    }
    const auto all = world.connections.all();
    judge.run(NAMED(velto_wait_until_connected), all.front()->handle);
    VeltoListHandle list = 0;
    judge.call(NAMED(velto_open_clip_list), never_fails, *all.front(), &list);
    for (;;) {
        TextOut name;
        velto_get_clip_name(list, name.buffer());
        if (name.text().empty()) {
            break;
        }
        world.first_clips.insert(name.text());
    }
    velto_close_clip_list(list);
    judge.check(!world.first_clips.empty(), "the simulator has no clips");
    own_progress.end();
}

Run::~Run()
{
    stop();
    own_progress.end();
}

void Run::begin()
{
    for (std::uint32_t number = 0; number < options.threads; ++number) {
        Progress& progress = watchdog.watch(fmt::format("thread {}", number));
        Actor& actor = workers.emplace_back(world, number, options.seed, progress);
        threads.emplace_back([this, &actor] { work(actor); });
    }
    if (options.fault_ms != 0) {
        breaker = std::make_unique<Breaker>(world, simulator, options.seed,
                                            std::chrono::milliseconds(options.fault_ms),
                                            watchdog.watch("the breaker"));
    }
}

void Run::work(Actor& actor)
{
    if (options.hangs && actor.id == 0) {
        hang(actor);
    }
    for (std::uint64_t number = 0; !is_stopping; ++number) {
        const Action& action = actor.chance.weighted(actions);
        if (options.print_actions) {
            fmt::print("{} {} {}\n", actor.progress.thread, number, action.name);
        }
        actor.progress.begin(action.name);
        action.act(actor);
    }
    actor.progress.end();
}

void Run::stop()
{
    is_stopping = true;
    for (std::thread& thread : threads) {
        thread.join();
    }
    threads.clear();
    if (breaker) {
        breaker->heal();
    }
}

void Run::finish()
{
    own_progress.begin("wait for the threads");
    stop();
    check_aftermath(judge, workers);
    workers.clear();
    check_leftovers();
}

// What the library leaves open on purpose are the links that were up when their connection went.
void Run::check_leftovers()
{
    own_progress.begin("look at what is left");
    Figures now;
    std::size_t links = 0;
    for (const auto end = std::chrono::steady_clock::now() + settling;
         std::chrono::steady_clock::now() < end; std::this_thread::sleep_for(20ms)) {
        own_progress.step("figures");
        links = link_descriptors(doors).size();
        now = figures();
        if (now.threads == at_start.threads && now.descriptors <= at_start.descriptors + links) {
            break;
        }
    }
    fmt::print("at the start {} threads and {} descriptors; at the end {} and {}, of which {} are "
               "links that were up when their connection was closed\n",
               at_start.threads, at_start.descriptors, now.threads, now.descriptors, links);
    judge.check(now.threads == at_start.threads, "threads are left");
    // Less is right too: at the start a link to ask whether the simulator answers may still be
    // there.
    judge.check(now.descriptors <= at_start.descriptors + links, "descriptors are left");
    judge.check(links <= world.opened, "more links are left than there were connections");
    for (const int descriptor : link_descriptors(doors)) {
        close(descriptor);
    }
}

} // namespace stress
