#include "scripted_platform.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "platform/message_service.h"

namespace ruk_ipmi_testing
{

namespace
{

std::atomic<scripted_platform *> living{nullptr};

constexpr size_t request_header = offsetof(ipmi_request, data);
constexpr size_t response_header = offsetof(ipmi_response, data);

bytes on_the_way(const ipmi_request &request)
{
    return bytes_at(&request, request_header + request.data_len);
}

} // namespace

// Script.

ipmi_request request_to(const blade_location &location, uint32_t netfn_cmd, const bytes &payload)
{
    ipmi_request request{};
    if (payload.size() > sizeof request.data)
        throw std::length_error("a payload that fits no request");
    request.msg_type = 0x101;
    request.location = location;
    request.netfn_cmd = netfn_cmd;
    request.data_len = static_cast<uint32_t>(payload.size());
    std::copy(payload.begin(), payload.end(), request.data);
    return request;
}

scripted_exchange &scripted_exchange::answers(bytes answer)
{
    if (answer.size() > IPMI_RESPONSE_DATA_SIZE)
        throw std::length_error("an answer that fits no response");
    data = std::move(answer);
    return *this;
}

scripted_exchange &scripted_exchange::with_completion_code(uint32_t code)
{
    completion_code = code;
    return *this;
}

scripted_exchange &scripted_exchange::with_data_len(uint32_t length)
{
    data_len = length;
    return *this;
}

scripted_exchange &scripted_exchange::fails_to_send(uint32_t status)
{
    send_status = status;
    return *this;
}

scripted_exchange &scripted_exchange::keeps_waiting(unsigned times)
{
    waits = times;
    return *this;
}

scripted_exchange &scripted_exchange::fails_to_receive(uint32_t status)
{
    receive_status = status;
    return *this;
}

scripted_platform::scripted_platform()
{
    scripted_platform *none = nullptr;
    if (!living.compare_exchange_strong(none, this))
        throw std::logic_error("there is a scripted platform already");
}

scripted_platform::~scripted_platform()
{
    living = nullptr;
}

scripted_exchange &scripted_platform::expects(const blade_location &location, uint32_t netfn_cmd,
                                              const bytes &payload)
{
    return expects(request_to(location, netfn_cmd, payload));
}

scripted_exchange &scripted_platform::expects(const ipmi_request &request)
{
    const std::lock_guard lock(mutex);
    script.emplace_back().request = request;
    return script.back();
}

void scripted_platform::fails_to_attach(uint32_t status)
{
    const std::lock_guard lock(mutex);
    script.emplace_back().attach_status = status;
}

// What happened.

events scripted_platform::journal() const
{
    const std::lock_guard lock(mutex);
    return happened;
}

events scripted_platform::calls() const
{
    const std::lock_guard lock(mutex);
    events calls;
    std::remove_copy_if(happened.begin(), happened.end(), std::back_inserter(calls), is_log_line);
    return calls;
}

events scripted_platform::log() const
{
    const std::lock_guard lock(mutex);
    events lines;
    std::copy_if(happened.begin(), happened.end(), std::back_inserter(lines), is_log_line);
    return lines;
}

std::string scripted_platform::complaint() const
{
    std::string all = os.complaint(); // before the lock: os writes to the journal under its own
    const std::lock_guard lock(mutex);
    all += complaints;
    for (size_t i = next; i < script.size(); ++i)
        all += script[i].attach_status != 0
                   ? "expected and never tried: to attach\n"
                   : "expected and never sent:\n  " + hex(on_the_way(script[i].request)) + "\n";
    for (const auto &[index, exchange] : in_flight)
        if (exchange.waits == 0)
            all += formatted("answer to message %u: never asked for\n", index);
    return all;
}

std::string scripted_platform::exchanges() const
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

void scripted_platform::forget()
{
    const std::lock_guard lock(mutex);
    happened.clear();
}

uint32_t scripted_platform::attached_times() const
{
    const std::lock_guard lock(mutex);
    return attachments;
}

void scripted_platform::complain(const std::string &text)
{
    complaints += text + "\n";
}

void scripted_platform::echo_log()
{
    const std::lock_guard lock(mutex);
    echoing = true;
}

// The platform's side.

scripted_platform &scripted_platform::current()
{
    if (scripted_platform *platform = living)
        return *platform;
    fputs("the library called its platform, but no scripted_platform lives\n", stderr);
    abort();
}

// A call that fails because of its number has not reached the service: the script stays where it
// is.

uint32_t scripted_platform::attach()
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

void scripted_platform::detach()
{
    const std::lock_guard lock(mutex);
    happened.push_back(detached());
    if (attachments == 0)
        complain("detached without being attached");
    else
        --attachments;
}

uint32_t scripted_platform::send(uint32_t component, const void *message, uint32_t length,
                                 uint32_t flags, uint32_t *index)
{
    const uint32_t rc = os.service_called("send_ruk_command");
    const std::lock_guard lock(mutex);
    happened.push_back(sent(length, component, flags));
    if (rc != 0)
        return rc;
    const bytes came = bytes_at(message, std::min<size_t>(length, sizeof(ipmi_request)));

    if (attachments == 0)
        complain("sent without being attached");
    if (next == script.size()) {
        complain("sent and not expected:\n  " + hex(came));
        return unscripted;
    }
    const scripted_exchange &step = script[next++];
    const bytes expected = on_the_way(step.request);
    if (came != expected || length != came.size() || component != IPMI_COMPONENT || flags != 0) {
        complain(formatted("expected to component %u, flags 0, %zu bytes:\n  ", IPMI_COMPONENT,
                           expected.size()) +
                 hex(expected) +
                 formatted("\nbut sent to component %u, flags %u, %u bytes:\n  ", component, flags,
                           length) +
                 hex(came));
        return unscripted;
    }
    if (step.send_status != 0)
        return step.send_status;
    in_flight[next_index] = step;
    *index = next_index++;
    return 0;
}

uint32_t scripted_platform::receive(uint32_t index, uint32_t timeout, uint32_t component,
                                    void *buffer, uint32_t *length)
{
    const uint32_t rc = os.service_called("receive_ruk_response");
    const std::lock_guard lock(mutex);
    happened.push_back(received(index, timeout, *length, component));
    if (rc != 0)
        return rc;
    if (attachments == 0)
        complain("asked for an answer without being attached");

    const auto waiting = in_flight.find(index);
    if (waiting != in_flight.end() && waiting->second.waits != 0) {
        --waiting->second.waits;
        return RUK_MSG_NOT_ANSWERED;
    }
    const auto message = in_flight.extract(index);
    if (message.empty() || component != IPMI_COMPONENT) {
        complain(formatted("asked component %u for the answer to message %u", component, index));
        return unscripted;
    }
    const scripted_exchange &step = message.mapped();
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

void scripted_platform::log(event line)
{
    const std::lock_guard lock(mutex);
    if (echoing)
        std::cerr << line << std::endl;
    happened.push_back(std::move(line));
}

} // namespace ruk_ipmi_testing
