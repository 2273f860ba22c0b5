// The functions that the library calls, each handing its call to the platform that lives.

#include <cstdarg>
#include <cstdio>

#include "platform/log.h"
#include "platform/message_service.h"
#include "stage.h"

using namespace ruk_ipmi_testing;

namespace
{

std::string text_of(const char *format, va_list args)
{
    char text[1024];
    vsnprintf(text, sizeof text, format, args);
    return text;
}

} // namespace

void ruk_ipmi_testing::bring_platform_functions() {}

uint32_t attach_ruk_shm()
{
    return stage::current().attach();
}

uint32_t detach_ruk_shm()
{
    stage::current().detach();
    return 0;
}

uint32_t send_ruk_command(uint32_t component, const void *msg, uint32_t length, uint32_t flags,
                          uint32_t *index)
{
    return stage::current().send(component, msg, length, flags, index);
}

uint32_t receive_ruk_response(uint32_t index, uint32_t timeout, uint32_t component, void *buffer,
                              uint32_t *length)
{
    return stage::current().receive(index, timeout, component, buffer, length);
}

const char *ruk_blade_clt_to_str(const blade_location *location)
{
    thread_local char name[16];
    if (!location)
        return "(none)";
    snprintf(name, sizeof name, "blade %d.%d", location->slot_id, location->sub_slot_id);
    return name;
}

void slog_elog(const char *format, ...)
{
    va_list args;
    va_start(args, format);
    stage::current().log(error_line(text_of(format, args)));
    va_end(args);
}

void slog_nlog(const char *format, ...)
{
    va_list args;
    va_start(args, format);
    stage::current().log(notice_line(text_of(format, args)));
    va_end(args);
}

void slog_dlog(const char *format, ...)
{
    va_list args;
    va_start(args, format);
    stage::current().log(debug_line(text_of(format, args)));
    va_end(args);
}

void slog_vlog(const char *format, ...)
{
    va_list args;
    va_start(args, format);
    stage::current().log(verbose_line(text_of(format, args)));
    va_end(args);
}

void slog_dump(const char *title, const void *buffer, uint32_t length, uint32_t reserved)
{
    stage::current().log(dump_line(title, bytes_at(buffer, length), reserved));
}

void os_log(int facility, int level, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    stage::current().log(os_log_line(text_of(format, args), facility, level));
    va_end(args);
}
