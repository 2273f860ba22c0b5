// The chassis manager's parameter command (network function 0x30, command 0xD0): it writes or reads
// one numbered parameter of the blade. A parameter's value is its own length, 16 bits that count
// themselves too, and then its fields.
//
// Families have parameters as they have commands: rows of a table.
#ifndef RUK_HOST_CHASSISD_SIMULATED_PARAMETER_H
#define RUK_HOST_CHASSISD_SIMULATED_PARAMETER_H

#include <optional>

#include "chassisd/simulated/record.h"

namespace chassisd::simulated
{

// The head of most of the chassis manager's own requests, in bytes: the operation and the
// parameter, then two 16-bit numbers.
constexpr size_t parameter_head = 6;

struct parameter_request {
    enum operation : uint8_t { write = 0x00, read = 0x01 };

    explicit parameter_request(const bytes &request);

    uint8_t operation;
    uint8_t parameter;
    uint16_t count;  // bytes of the value that it carries or asks for
    uint16_t offset; // of these bytes in the value
    bytes rest;      // the bytes it carries, or what selects one of several values
};

// Lets a head pass that writes or reads, and no write that carries more or less than it says.
void check_head(const parameter_request &asked);

// What a 16-bit length can count.
constexpr size_t longest_value = 0xFFFF;

// A value with a part of it that a write carries. At offset 0 it begins anew; any other part lies
// over or behind what is there already, and one that would leave a hole, or make the value longer
// than it may be, is refused.
bytes with_part(bytes value, size_t offset, const bytes &part, size_t longest = longest_value);

struct parameter_writer {
    lengths fields;
    std::function<void(const bytes &fields)> set;
};

struct parameter_reader {
    lengths selector;
    std::function<bytes(const parameter_request &asked)> fields;
    size_t uncounted = 0; // bytes that readers take beyond those they ask for
};

// Without a writer it cannot be written, without a reader not be read.
struct parameter {
    uint8_t number;
    std::optional<parameter_writer> writer;
    std::optional<parameter_reader> reader;
};

using parameter_table = std::vector<parameter>;

command_table parameter_commands(const std::vector<parameter_table> &families);

} // namespace chassisd::simulated

#endif
