/**
 * libruk_ipmi: IPMI to the management controllers of a chassis' blades.
 *
 * The one header a client includes. It gathers a header per family of functions and can be used
 * from C11 and from C++.
 *
 * The text of a command function has a line for who knows IPMI: "Request 0x0A 0x43, 6 bytes;
 * output 19 bytes; refuses a null output." These are the network function and the command, the
 * bytes of its payload, the bytes that it writes, and the calls that it refuses without sending
 * anything. What is not said to be refused is not checked: such a null pointer is dereferenced.
 *
 * Threads: every function declared here may be called from any number of threads at once, unless
 * its own text says otherwise, and from callbacks. Command functions keep all they need on the
 * caller's stack (somewhat over 1 KiB), allocate nothing, and block their caller until the blade
 * has answered or the time-out has passed. None of them may be called from a signal handler.
 */
#ifndef RUK_IPMI_H
#define RUK_IPMI_H

#include "ruk_ipmi/async.h"
#include "ruk_ipmi/blade_status.h"
#include "ruk_ipmi/chassis.h"
#include "ruk_ipmi/events.h"
#include "ruk_ipmi/exchange.h"
#include "ruk_ipmi/extended.h"
#include "ruk_ipmi/features.h"
#include "ruk_ipmi/file_transfer.h"
#include "ruk_ipmi/fru.h"
#include "ruk_ipmi/hardware.h"
#include "ruk_ipmi/imc_event.h"
#include "ruk_ipmi/lan.h"
#include "ruk_ipmi/list.h"
#include "ruk_ipmi/lldp.h"
#include "ruk_ipmi/objects.h"
#include "ruk_ipmi/pass_through.h"
#include "ruk_ipmi/power.h"
#include "ruk_ipmi/ring.h"
#include "ruk_ipmi/sdr.h"
#include "ruk_ipmi/sel.h"
#include "ruk_ipmi/settings.h"
#include "ruk_ipmi/sled_switch.h"
#include "ruk_ipmi/system_info.h"
#include "ruk_ipmi/timeouts.h"
#include "ruk_ipmi/types.h"
#include "ruk_ipmi/users.h"
#include "ruk_ipmi/version.h"

#endif
