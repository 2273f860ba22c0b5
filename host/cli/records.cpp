#include "cli/records.h"

#include "cli/names.h"
#include "cli/output.h"
#include "cli/targets.h"

namespace cli
{

void record_chain::follow(uint16_t next)
{
    // The IDs are 16 bits and none comes twice, so this ends.
    if (!seen_.insert(next_).second || next == 0x0000 || seen_.count(next) != 0)
        throw failure(exit_refused, "the records run in a circle: " + hex(next_) +
                                        " is followed by " + hex(next));
    next_ = next;
}

report list_records(const blade &at, const char *name, size_t expected,
                    const std::function<chained_record(uint16_t id)> &read,
                    const std::function<json(const bytes &record)> &describe)
{
    report told;
    told.fields[name] = json::array();
    if (expected == 0)
        return told;
    try {
        progress shown("blade " + target_name(at.location) + ": " + name, expected);
        record_chain chain;
        while (chain.goes_on()) {
            const chained_record found = read(chain.next());
            told.fields[name].push_back(describe(found.record));
            told.binary.insert(told.binary.end(), found.record.begin(), found.record.end());
            chain.follow(found.next);
            shown.reached(chain.length());
        }
    } catch (const failure &why) {
        told.ended = why;
    }
    return told;
}

std::string version_text(uint8_t bcd)
{
    return std::to_string(bcd & 0x0F) + "." + std::to_string(bcd >> 4);
}

json repository_operations(uint8_t support)
{
    return names_of_bits(support, {"get allocation info", "reserve", "partial add", "delete"});
}

} // namespace cli
