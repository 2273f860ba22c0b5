// A client process that asks all the blades of a chassis without end, in several threads and
// through callbacks, and looks whether every answer is the one to its request. It is made to be
// killed: what it has seen is in a file. SIGTERM ends it in an orderly way: every exchange then has
// its end.

#include <algorithm>
#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <list>
#include <sys/prctl.h>
#include <thread>
#include <vector>

#include "askers.h"
#include "ruk_ipmi/async.h"

namespace
{

using namespace tests;

struct blade {
    uint8_t slot;
    std::string records; // the file, of a controller; none of a simulated blade
};

blade blade_from(const std::string &text)
{
    const size_t equals = text.find('=');
    const auto slot = static_cast<uint8_t>(std::stoul(text));
    return {slot, equals == std::string::npos ? "" : text.substr(equals + 1)};
}

std::unique_ptr<conversation> talk_with(const blade &with, const asker &who, uint32_t seed)
{
    if (with.records.empty())
        return talk_about_stamps(with.slot, who, seed);
    return talk_about_records(with.slot, with.records, seed);
}

// False once somebody asked for the end.
bool goes_on(const sigset_t &ending, milliseconds time)
{
    const timespec wait = {0, static_cast<long>(time.count()) * 1'000'000};
    return sigtimedwait(&ending, nullptr, &wait) < 0;
}

void ask(client_process &process, const std::vector<blade> &blades, asker who)
{
    constexpr milliseconds between_lines{100};
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);
    std::thread([&process] { process.heart.beat(); }).detach();

    async_askers called_back(process);
    std::list<std::thread> asking;
    for (const blade &each : blades) {
        who.lane = 0;
        const uint32_t seed = process.seed + each.slot;
        asking.emplace_back([&process, each, talk = talk_with(each, who, seed)] {
            ask_and_wait(process, each.slot, *talk);
        });
        who.lane = 1;
        called_back.add(each.slot, talk_with(each, who, ~seed));
    }
    asking.emplace_back([&called_back] { called_back.run(); });

    while (goes_on(ending, between_lines))
        process.told.write(false);
    process.stopping = true;
    for (std::thread &each : asking)
        each.join();
    process.told.write(true);
}

int run(int argc, char **argv)
{
    CLI::App app{"Asks the blades of a chassis until it is ended, and checks every answer."};
    std::string results;
    unsigned client = 0;
    uint32_t life = 0;
    uint32_t seed = 0;
    std::vector<std::string> blades;
    app.add_option("--results", results, "Append what was seen to this file")->required();
    app.add_option("--client", client, "Number of the client")->check(CLI::Range(0, 3));
    app.add_option("--life", life, "How many were killed before it");
    app.add_option("--seed", seed, "What is drawn depends on it");
    app.add_option("blades", blades, "SLOT of a simulated blade, SLOT=RECORDS of a controller")
        ->required();
    CLI11_PARSE(app, argc, argv);

    std::vector<blade> chosen(blades.size());
    std::transform(blades.begin(), blades.end(), chosen.begin(), blade_from);
    const uint32_t first_mark = client << 28 | (life & 15) << 24;
    client_process process(results, first_mark, seed + client + 4 * life);
    if (const uint32_t rc = ruk_ipmi_init(); rc != 0)
        throw std::runtime_error("ruk_ipmi_init: status " + std::to_string(rc));
    ask(process, chosen, {static_cast<uint8_t>(client), 0, life});
    std::_Exit(0); // the callback thread goes on
}

} // namespace

int main(int argc, char **argv)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL); // nobody would look at the results
    try {
        return run(argc, argv);
    } catch (const std::exception &error) {
        fprintf(stderr, "asking_client: %s\n", error.what());
        return 1;
    }
}
