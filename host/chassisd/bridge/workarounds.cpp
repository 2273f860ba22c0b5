#include "chassisd/bridge/workarounds.h"

#include <algorithm>
#include <freeipmi/freeipmi.h>
#include <iterator>
#include <stdexcept>

#include "chassisd/bridge/bridge.h"

namespace chassisd
{

namespace
{

struct workaround {
    const char *name;
    unsigned flag;
    bool ours_needs_none = false;
};

// A session of our own does not ask for the authentication capabilities, and asks for the privilege
// that it is to have.
constexpr workaround workarounds[] = {
    {"authcap", IPMI_WORKAROUND_FLAGS_OUTOFBAND_2_0_AUTHENTICATION_CAPABILITIES, true},
    {"intel20", IPMI_WORKAROUND_FLAGS_OUTOFBAND_2_0_INTEL_2_0_SESSION},
    {"supermicro20", IPMI_WORKAROUND_FLAGS_OUTOFBAND_2_0_SUPERMICRO_2_0_SESSION},
    {"sun20", IPMI_WORKAROUND_FLAGS_OUTOFBAND_2_0_SUN_2_0_SESSION},
    {"opensesspriv", IPMI_WORKAROUND_FLAGS_OUTOFBAND_2_0_OPEN_SESSION_PRIVILEGE, true},
    {"integritycheckvalue", IPMI_WORKAROUND_FLAGS_OUTOFBAND_2_0_NON_EMPTY_INTEGRITY_CHECK_VALUE},
    {"nochecksumcheck", IPMI_WORKAROUND_FLAGS_OUTOFBAND_2_0_NO_CHECKSUM_CHECK},
};

const workaround *find(const std::string &name)
{
    const auto found = std::find_if(std::begin(workarounds), std::end(workarounds),
                                    [&](const workaround &known) { return name == known.name; });
    return found == std::end(workarounds) ? nullptr : found;
}

} // namespace

std::vector<std::string> workaround_names()
{
    std::vector<std::string> names;
    for (const workaround &known : workarounds)
        names.emplace_back(known.name);
    return names;
}

bool known_workaround(const std::string &name)
{
    return find(name) != nullptr;
}

unsigned workaround_flags(const std::vector<std::string> &names)
{
    unsigned flags = IPMI_WORKAROUND_FLAGS_DEFAULT;
    for (const std::string &name : names) {
        const workaround *known = find(name);
        if (!known)
            throw std::invalid_argument("unknown workaround \"" + name + "\"");
        flags |= known->flag;
    }
    return flags;
}

bool need_freeipmi(const std::vector<std::string> &names)
{
    return std::any_of(names.begin(), names.end(), [](const std::string &name) {
        const workaround *known = find(name);
        return known && !known->ours_needs_none;
    });
}

} // namespace chassisd
