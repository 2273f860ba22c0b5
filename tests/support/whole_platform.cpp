#include "support/whole_platform.h"

#include <algorithm>
#include <iterator>

namespace ruk_ipmi_testing
{

whole_platform::whole_platform() : os(behind->os)
{
    os.keeps_callback_thread();
}

whole_platform::~whole_platform()
{
    complaint();
}

events whole_platform::journal() const
{
    return behind->journal();
}

events whole_platform::calls() const
{
    const events happened = journal();
    events calls;
    std::remove_copy_if(happened.begin(), happened.end(), std::back_inserter(calls), is_log_line);
    return calls;
}

events whole_platform::log() const
{
    const events happened = journal();
    events lines;
    std::copy_if(happened.begin(), happened.end(), std::back_inserter(lines), is_log_line);
    return lines;
}

void whole_platform::forget()
{
    behind->forget();
}

uint32_t whole_platform::attached_times() const
{
    return behind->attached_times();
}

std::string whole_platform::exchanges() const
{
    return behind->exchanges();
}

void whole_platform::echo_log()
{
    behind->echo_log();
}

} // namespace ruk_ipmi_testing
