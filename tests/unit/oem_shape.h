// What the commands of the chassis's own have in common, as a table. Unlike those of
// command_shape.h they hand over single fields of an answer, or nothing, and many write log lines
// of their own: a row tells one command's request, answer, output and lines, and the tests of
// oem_shape_test.cpp hold it to them whether the blade agrees, refuses or is not reached. A
// family's own test file lists its rows and instantiates `oem_shape`; all else is tested there.
#ifndef RUK_TESTS_UNIT_OEM_SHAPE_H
#define RUK_TESTS_UNIT_OEM_SHAPE_H

#include <optional>

#include "command_shape.h"

// Which of the two counts when an exchange brought both a failure and a completion code.
enum class preferred { status, completion_code };

struct oem_row {
    std::string name;
    uint32_t netfn_cmd;
    bytes payload;
    bytes answer; // as the blade sends it, completion code 0 first
    bytes output; // what the caller then holds

    std::function<outcome(const blade_location *)> call; // with outputs of its own
    std::function<outcome(int)> call_by_number;          // empty: there is no such form

    uint32_t capacity = 483;
    preferred counts_first = preferred::status;
    bool refusal_is_a_success = false;       // only the log tells it
    bool clears_output_first = false;        // before it looks at anything
    bool writes_output_if_unreached = false; // from what the response record held

    // The log lines: the command's own, apart from those of the exchange itself. The refusal is
    // completion code 0xC1, the failure status 0x5001, and `after_both` is for both of them at
    // once; without lines of its own that is a failure like any.
    events before, after_success, after_refusal, after_failure;
    std::optional<events> after_both;

    // Nothing: a missing location is not caught.
    std::optional<events> missing_location =
        events{error_line("Invalid parameter to IPMI interface\n")};
    bool zero_location_is_sent = true;
};

inline std::ostream &operator<<(std::ostream &out, const oem_row &row)
{
    return out << row.name;
}

// What a caller sees of a call that returned `result`, having had `outputs` to write to.
template <typename... Records>
outcome outcome_of(int result, const guarded<Records> &...outputs)
{
    bytes all;
    ((all = joined(all, outputs.content())), ...);
    return {result, all, (outputs.untouched() && ...), (outputs.guards_hold() && ...)};
}

// A row for a command without output.
inline oem_row oem_command(std::string name,
                           const std::function<int(const blade_location *)> &function,
                           uint32_t netfn_cmd, bytes payload)
{
    oem_row row{};
    row.name = std::move(name);
    row.netfn_cmd = netfn_cmd;
    row.payload = std::move(payload);
    row.answer = {0x00};
    row.call = [=](const blade_location *location) { return outcome_of(function(location)); };
    return row;
}

// A row for a command that after `answer` leaves `output`.
inline oem_row oem_query(std::string name, std::function<outcome(const blade_location *)> function,
                         uint32_t netfn_cmd, bytes payload, bytes answer, bytes output)
{
    oem_row row = oem_command(std::move(name), {}, netfn_cmd, std::move(payload));
    row.answer = std::move(answer);
    row.output = std::move(output);
    row.call = std::move(function);
    return row;
}

inline bytes zero_filled(bytes data, size_t size)
{
    data.resize(size);
    return data;
}

class oem_shape : public scripted_test, public ::testing::WithParamInterface<oem_row>
{
};

// The rows of some kinds only, by what the names say.
class oem_checked_location : public oem_shape
{
};

class oem_unchecked_location_death : public oem_shape
{
};

class oem_location_of_zeros : public oem_shape
{
};

class oem_number_form : public oem_shape
{
};

inline bool checks_its_location(const oem_row &row)
{
    return row.missing_location.has_value();
}

inline bool goes_to_zeros(const oem_row &row)
{
    return row.zero_location_is_sent;
}

inline bool is_there_by_number(const oem_row &row)
{
    return row.call_by_number != nullptr;
}

// Holds a family's rows to the table. A family may lack any kind of row but the first.
#define INSTANTIATE_OEM_SHAPE(family, rows)                                                        \
    INSTANTIATE_TEST_SUITE_P(family, oem_shape, ::testing::ValuesIn(rows), row_name<oem_row>);     \
    INSTANTIATE_TEST_SUITE_P(family, oem_checked_location,                                         \
                             ::testing::ValuesIn(only(rows, checks_its_location)),                 \
                             row_name<oem_row>);                                                   \
    INSTANTIATE_TEST_SUITE_P(family, oem_unchecked_location_death,                                 \
                             ::testing::ValuesIn(only(rows, std::not_fn(checks_its_location))),    \
                             row_name<oem_row>);                                                   \
    INSTANTIATE_TEST_SUITE_P(family, oem_location_of_zeros,                                        \
                             ::testing::ValuesIn(only(rows, goes_to_zeros)), row_name<oem_row>);   \
    INSTANTIATE_TEST_SUITE_P(family, oem_number_form,                                              \
                             ::testing::ValuesIn(only(rows, is_there_by_number)),                  \
                             row_name<oem_row>)

#endif
