#include "ruk_ipmi_testing.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <utility>

#include "stage.h"

namespace ruk_ipmi_testing
{

namespace
{

// The notification that says: there is an interrupt in the ring.
constexpr uint32_t interrupt_posted = 0x15;

log_level level_of(channel channel)
{
    switch (channel) {
    case channel::error:
        return log_level::error;
    case channel::notice:
    case channel::os_log:
        return log_level::notice;
    case channel::verbose:
        return log_level::verbose;
    default:
        return log_level::debug;
    }
}

imc_event_set set_of(std::initializer_list<uint32_t> asserted)
{
    imc_event_set set{};
    for (const uint32_t event : asserted) {
        if (event < 1 || event > IMC_EVENTS)
            throw std::out_of_range("an event that is not from 1 to 64");
        uint8_t &byte = set.bytes[(event - 1) / 8];
        byte = static_cast<uint8_t>(byte | 1u << (event - 1) % 8);
    }
    return set;
}

} // namespace

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

// An exchange.

scripted_exchange &scripted_exchange::answers(bytes answer)
{
    if (answer.size() > IPMI_RESPONSE_DATA_SIZE)
        throw std::length_error("an answer that fits no response");
    data = std::move(answer);
    return *this;
}

scripted_exchange &scripted_exchange::refuses(uint8_t code)
{
    return answers({code});
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

// The platform.

scripted_platform::scripted_platform() : behind(std::make_unique<stage>()) {}

scripted_platform::~scripted_platform()
{
    const std::string complaint = behind->unread_complaint();
    if (complaint.empty())
        return;
    fputs(complaint.c_str(), stderr);
    if (std::uncaught_exceptions() == behind->exceptions)
        abort();
}

scripted_exchange &scripted_platform::expects(const blade_location &location, uint32_t netfn_cmd,
                                              const bytes &payload, source_line where)
{
    return expects(request_to(location, netfn_cmd, payload), where);
}

scripted_exchange &scripted_platform::expects(const ipmi_request &request, source_line where)
{
    if (request.data_len > IPMI_REQUEST_DATA_SIZE)
        throw std::length_error("a payload that fits no request");
    scripted_exchange &step = behind->add(where);
    step.request = request;
    return step;
}

void scripted_platform::fails_to_attach(uint32_t status, source_line where)
{
    behind->add(where).attach_status = status;
}

void scripted_platform::posts_interrupt(const blade_location &location,
                                        std::initializer_list<uint32_t> asserted, const bytes &data)
{
    ipmi_interrupt interrupt{};
    if (data.size() > sizeof interrupt.data)
        throw std::length_error("data that fits no interrupt");
    interrupt.location = location;
    interrupt.ies = set_of(asserted);
    interrupt.data_len = static_cast<uint32_t>(data.size());
    std::copy(data.begin(), data.end(), interrupt.data);
    behind->os.append_interrupt(interrupt);
    behind->os.notify(interrupt_posted);
    if (!behind->os.is_callback_thread())
        behind->os.run_callbacks(0);
}

void scripted_platform::run_callbacks(unsigned ticks)
{
    behind->os.run_callbacks(ticks);
}

void scripted_platform::has_information(unsigned word, uint32_t value)
{
    behind->os.platform_info.at(word) = value;
}

std::vector<std::string> scripted_platform::log_lines(log_level level) const
{
    std::vector<std::string> lines;
    for (const event &each : behind->journal())
        if (is_log_line(each) && level_of(each.on) <= level)
            lines.push_back(line_text(each));
    return lines;
}

std::string scripted_platform::complaint() const
{
    return behind->complaint();
}

} // namespace ruk_ipmi_testing
