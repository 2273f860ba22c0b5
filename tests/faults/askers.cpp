#include "askers.h"

#include <algorithm>
#include <cstdio>
#include <thread>

#include "ruk_ipmi/async.h"

namespace tests
{

namespace
{

using std::chrono::steady_clock;

constexpr milliseconds tick{10};

// Now and then somebody gives up so early that the answer comes too late.
constexpr uint32_t patient = 300;
constexpr unsigned one_in_impatient = 16;

// So often the callback thread looks for the answer to a command.
constexpr uint32_t looks = 100;

// A command that has not called back by then is taken to be forgotten.
constexpr milliseconds given_up_after = std::chrono::seconds(30);

void pause(uint32_t at_least, uint32_t at_most, std::mt19937 &draw)
{
    const uint32_t ms = at_least + static_cast<uint32_t>(draw()) % (at_most - at_least + 1);
    std::this_thread::sleep_for(milliseconds(ms));
}

ipmi_request marked(client_process &process, ipmi_request request)
{
    request.reserved_0c = process.next_mark++;
    return request;
}

void count_failure(client_process &process, const std::string &way, uint32_t status,
                   conversation &talk)
{
    char code[16];
    snprintf(code, sizeof code, " 0x%04x", status);
    process.told.add(way + " failed" + code);
    talk.unanswered();
}

void count_answer(client_process &process, const std::string &way, const ipmi_request &request,
                  const ipmi_response &answer, conversation &talk)
{
    process.told.add(way + " answered");
    const std::string slot = std::to_string(request.location.slot_id);
    std::string wrong = strange_head(request, answer);
    if (wrong.empty()) {
        const uint64_t before = talk.forgotten();
        wrong = talk.judge(answer);
        process.told.add("forgotten", talk.forgotten() - before);
    } else {
        talk.unanswered();
    }
    if (!wrong.empty())
        return process.told.wrong(way + ", slot " + slot + ": " + wrong);
    process.told.good(slot + (way == "async" ? " async" : " sync"));
}

// What a call took beyond its time-out while its process was running.
void count_time(client_process &process, const std::string &way, milliseconds limit, moment began,
                milliseconds missed_before)
{
    const auto beyond = [&, ended = steady_clock::now()] {
        return std::chrono::duration_cast<milliseconds>(ended - began) - limit -
               (process.heart.missed() - missed_before);
    };
    if (beyond() <= milliseconds(0))
        return;
    std::this_thread::sleep_for(3 * pulse::period); // a pause that just ended is not counted yet
    process.told.took(way + " beyond its time-out", beyond());
}

async_askers *called_back = nullptr;

} // namespace

void ask_and_wait(client_process &process, uint8_t slot, conversation &talk)
{
    std::mt19937 draw(process.seed + slot);
    while (!process.stopping) {
        const bool impatient = draw() % one_in_impatient == 0;
        const uint32_t timeout = impatient ? 1 + static_cast<uint32_t>(draw()) % 3 : patient;
        const std::string way = impatient ? "hasty" : "sync";
        ipmi_request request = marked(process, talk.next());
        ipmi_response answer{};
        answer.data_len = sizeof answer;
        process.told.add(way + " asked");
        const milliseconds missed = process.heart.missed();
        const moment began = steady_clock::now();
        const uint32_t rc = get_ruk_ipmi_response(&request, &answer, timeout);
        count_time(process, way, timeout * tick, began, missed);
        if (rc == 0)
            count_answer(process, way, request, answer, talk);
        else
            count_failure(process, way, rc, talk);
        pause(rc == 0 ? 5 : 20, rc == 0 ? 20 : 50, draw);
    }
}

async_askers::async_askers(client_process &process) : process_(process), draw_(process.seed)
{
    called_back = this;
}

void async_askers::add(uint8_t slot, std::unique_ptr<conversation> talk)
{
    askers_.push_back({slot, std::move(talk)});
}

void async_askers::run()
{
    while (!all_done()) {
        for (one_asker &each : askers_) {
            std::unique_lock lock(mutex_);
            if (each.now == state::idle && !process_.stopping && draw_() % 2 == 0)
                ask(each, lock);
            else if (each.now == state::waiting && age(each) > given_up_after) {
                each.now = state::in_vain;
                process_.told.add("async never called back");
            }
        }
        std::this_thread::sleep_for(tick);
    }
}

// Gives up the lock before it sends, since the answer may come at once.
void async_askers::ask(one_asker &one, std::unique_lock<std::mutex> &lock)
{
    one.request = marked(process_, one.talk->next());
    one.asked = steady_clock::now();
    one.missed_before = process_.heart.missed();
    one.now = state::waiting;
    lock.unlock();
    process_.told.add("async asked");
    const uint32_t rc = send_ruk_ipmi_command(&one.request, call_back, looks);
    if (rc == 0)
        return;
    count_failure(process_, "async", rc, *one.talk);
    lock.lock();
    one.now = state::idle;
    lock.unlock();
}

void async_askers::call_back(ipmi_response *answer)
{
    called_back->take(*answer);
}

void async_askers::take(const ipmi_response &answer)
{
    std::unique_lock lock(mutex_);
    one_asker *its = nullptr;
    for (one_asker &each : askers_)
        if (each.now == state::waiting && each.request.reserved_0c == answer.reserved_0c)
            its = &each;
    if (!its)
        return process_.told.add("async called back unasked");
    its->now = state::judging;
    lock.unlock();
    count_time(process_, "async", looks * (askers_.size() + 1) * tick, its->asked,
               its->missed_before);
    if (answer.data_len == 0 && answer.comp_code > 0xFF)
        count_failure(process_, "async", answer.comp_code, *its->talk);
    else
        count_answer(process_, "async", its->request, answer, *its->talk);
    lock.lock();
    its->now = state::idle;
    // A callback may send the next command itself.
    if (!process_.stopping && draw_() % 4 == 0)
        ask(*its, lock);
}

milliseconds async_askers::age(const one_asker &one) const
{
    return std::chrono::duration_cast<milliseconds>(steady_clock::now() - one.asked) -
           (process_.heart.missed() - one.missed_before);
}

bool async_askers::all_done()
{
    const std::lock_guard lock(mutex_);
    if (!process_.stopping)
        return false;
    return std::none_of(askers_.begin(), askers_.end(), [](const one_asker &each) {
        return each.now == state::waiting || each.now == state::judging;
    });
}

} // namespace tests
