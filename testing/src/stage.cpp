#include "stage.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <stdexcept>
#include <utility>

#include "platform/message_service.h"

namespace ruk_ipmi_testing
{

namespace
{

std::atomic<stage *> living{nullptr};

constexpr size_t response_header = offsetof(ipmi_response, data);

std::string at(const source_line &where)
{
    return where.file ? formatted("%s:%d: ", where.file, where.line) : "";
}

} // namespace

stage::stage()
{
    bring_platform_functions();
    bring_os_functions();
    stage *none = nullptr;
    if (!living.compare_exchange_strong(none, this))
        throw std::logic_error("there is a scripted platform already");
}

stage::~stage()
{
    os.end_callbacks();
    living = nullptr;
}

stage &stage::current()
{
    stage *const one = living;
    if (!one) {
        fputs("the library called its platform, but no scripted_platform lives\n", stderr);
        abort();
    }
    return *one;
}

scripted_exchange &stage::add(source_line where)
{
    const std::lock_guard lock(mutex);
    script.emplace_back().where = where;
    return script.back();
}

// What happened.

events stage::journal() const
{
    const std::lock_guard lock(mutex);
    return happened;
}

std::string stage::exchanges() const
{
    const std::lock_guard lock(mutex);
    std::string all;
    for (const scripted_exchange &step : script) {
        const ipmi_request &request = step.request;
        if (step.attach_status == 0)
            all += (all.empty() ? "" : ";") + formatted("%04X:", request.netfn_cmd) +
                   hex(bytes_at(request.data, request.data_len)) + ":" +
                   hex(step.data.value_or(bytes{0x00}));
    }
    return all;
}

void stage::forget()
{
    const std::lock_guard lock(mutex);
    happened.clear();
}

uint32_t stage::attached_times() const
{
    const std::lock_guard lock(mutex);
    return attachments;
}

void stage::echo_log()
{
    const std::lock_guard lock(mutex);
    echoing = true;
}

// Complaints.

std::string stage::name_of(size_t step) const
{
    return at(script[step].where) + formatted("exchange %zu of %zu", step + 1, script.size());
}

std::string stage::complaint()
{
    const std::string of_os = os.complaint(); // before the lock: it writes to the journal
    const std::lock_guard lock(mutex);
    told = all_complaints() + of_os;
    return told;
}

std::string stage::unread_complaint()
{
    const std::string of_os = os.complaint();
    const std::lock_guard lock(mutex);
    const std::string all = all_complaints() + of_os;
    return all == told ? "" : all;
}

std::string stage::all_complaints() const
{
    std::string all = complaints;
    for (size_t i = next; i < script.size(); ++i)
        all +=
            script[i].attach_status != 0
                ? name_of(i) + " was expected to fail to attach, and nobody tried\n"
                : name_of(i) + " was expected and never came\n" + expected_text(script[i].request);
    for (const auto &[index, message] : in_flight)
        if (message.waits == 0)
            all += name_of(message.step) +
                   ": its answer was never asked for (one to an asynchronous command is asked for "
                   "in run_callbacks)\n" +
                   expected_text(script[message.step].request);
    return all;
}

// Which other step the message would have been right for.
std::string stage::hint_at_order(const sent_message &came, size_t expected) const
{
    for (size_t i = expected + 1; i < script.size(); ++i)
        if (script[i].attach_status == 0 && is_as_expected(came, script[i].request))
            return formatted("  it is the request of exchange %zu\n", i + 1);
    if (expected != 0 && is_as_expected(came, script[expected - 1].request))
        return formatted("  it is the request of exchange %zu, which has come\n", expected);
    return "";
}

void stage::complain(const std::string &text)
{
    complaints += text;
}

// The platform's side. A call that fails because of its number has not reached the service: the
// script stays where it is.

uint32_t stage::attach()
{
    const uint32_t rc = os.service_called("attach_ruk_shm");
    const std::lock_guard lock(mutex);
    happened.push_back(attached());
    if (rc != 0)
        return rc;
    if (next < script.size() && script[next].attach_status != 0)
        return script[next++].attach_status;
    ++attachments;
    return 0;
}

void stage::detach()
{
    const std::lock_guard lock(mutex);
    happened.push_back(detached());
    if (attachments == 0)
        complain("detached without being attached\n");
    else
        --attachments;
}

uint32_t stage::send(uint32_t component, const void *message, uint32_t length, uint32_t flags,
                     uint32_t *index)
{
    const uint32_t rc = os.service_called("send_ruk_command");
    const std::lock_guard lock(mutex);
    happened.push_back(sent(length, component, flags));
    if (rc != 0)
        return rc;
    const sent_message came = {component, flags, length,
                               bytes_at(message, std::min<size_t>(length, sizeof(ipmi_request)))};

    if (attachments == 0)
        complain("sent without being attached\n");
    if (next == script.size()) {
        const std::string end = next == 0 ? "the script is empty"
                                          : formatted("the script ends with exchange %zu", next);
        complain("a request that nobody expects: " + end + "\n" + received_text(came) +
                 hint_at_order(came, next));
        return scripted_platform::unscripted;
    }
    const scripted_exchange &step = script[next];
    if (!is_as_expected(came, step.request)) {
        complain(name_of(next) + " is not the expected one\n" + difference(came, step.request) +
                 hint_at_order(came, next));
        ++next;
        return scripted_platform::unscripted;
    }
    ++next;
    if (step.send_status != 0)
        return step.send_status;
    in_flight[next_index] = {next - 1, step.waits};
    *index = next_index++;
    return 0;
}

uint32_t stage::receive(uint32_t index, uint32_t timeout, uint32_t component, void *buffer,
                        uint32_t *length)
{
    const uint32_t rc = os.service_called("receive_ruk_response");
    const std::lock_guard lock(mutex);
    happened.push_back(received(index, timeout, *length, component));
    if (rc != 0)
        return rc;
    if (attachments == 0)
        complain("asked for an answer without being attached\n");

    const auto waiting = in_flight.find(index);
    if (waiting == in_flight.end() || component != IPMI_COMPONENT) {
        complain(formatted("asked component %u for the answer to message %u, which is not on its "
                           "way\n",
                           component, index));
        return scripted_platform::unscripted;
    }
    if (waiting->second.waits != 0) {
        --waiting->second.waits;
        return RUK_MSG_NOT_ANSWERED;
    }
    const scripted_exchange &step = script[waiting->second.step];
    in_flight.erase(waiting);
    if (step.receive_status != 0 && !step.data)
        return step.receive_status;

    const bytes data = step.data.value_or(bytes{0x00});
    ipmi_response response{};
    response.location = step.request.location;
    response.reserved_0c = step.request.reserved_0c;
    response.netfn_cmd = step.request.netfn_cmd;
    response.comp_code = step.completion_code.value_or(data.empty() ? 0 : data[0]);
    response.data_len = step.data_len.value_or(static_cast<uint32_t>(data.size()));
    std::copy(data.begin(), data.end(), response.data);
    *length = std::min(*length, static_cast<uint32_t>(response_header + data.size()));
    memcpy(buffer, &response, *length);
    return step.receive_status;
}

void stage::log(event line)
{
    const std::lock_guard lock(mutex);
    if (echoing)
        std::cerr << line << std::endl;
    happened.push_back(std::move(line));
}

} // namespace ruk_ipmi_testing
