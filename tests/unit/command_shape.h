// What all commands have in common, as a table: a row tells one command's request, answer and
// output, and the tests of command_shape_test.cpp hold it to the frame. A family's own test file
// lists its rows and instantiates `command_shape`; what departs from the frame is tested there by
// hand.
#ifndef RUK_TESTS_UNIT_COMMAND_SHAPE_H
#define RUK_TESTS_UNIT_COMMAND_SHAPE_H

#include <algorithm>
#include <array>
#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "support/guarded.h"
#include "support/scripted_test.h"

using namespace ruk_ipmi_testing;

// What a caller sees of one call.
struct outcome {
    int result;
    bytes output;
    bool untouched;   // the output was not written
    bool guards_hold; // nothing around the output was written
};

// When numbers of the output are in host order; else they are as received.
enum class conversion { after_success, unless_refused, always };

// An output of `Size` bytes, for a function that writes to a plain array.
template <size_t Size, typename Blade>
auto filling(int (*function)(Blade, uint8_t *))
{
    return [=](Blade blade, std::array<uint8_t, Size> *out) {
        return function(blade, out ? out->data() : nullptr);
    };
}

struct command_row {
    std::string name;
    uint32_t netfn_cmd;
    bytes payload;
    bytes answer; // as the blade sends it, completion code 0 first
    bytes output; // what the caller then holds

    std::function<outcome(const blade_location *)> call; // with an output of its own
    std::function<int(const blade_location *)> call_without_output;
    std::function<outcome(int)> call_by_number; // empty: there is no such form
    bool location_is_checked = true;
    bool is_silent = true; // writes no log line of its own
    conversion converts = conversion::after_success;

    // The function checks its output only.
    command_row &&leaves_location_unchecked() &&
    {
        location_is_checked = false;
        return std::move(*this);
    }

    // The function writes lines of its own, which the family's test looks at.
    command_row &&logs() &&
    {
        is_silent = false;
        return std::move(*this);
    }

    // The output is in host order whatever the result.
    command_row &&converts_always() &&
    {
        converts = conversion::always;
        return std::move(*this);
    }

    // The output is in host order after a failure too, but not after a refusal.
    command_row &&converts_unless_refused() &&
    {
        converts = conversion::unless_refused;
        return std::move(*this);
    }

    // The same command by blade number: `function(blade_num, out)`.
    template <typename Record>
    command_row &&by_number(int (*function)(int, Record *)) &&
    {
        call_by_number = [=](int blade_num) { return seen<Record>(function, blade_num); };
        return std::move(*this);
    }

    template <size_t Size>
    command_row &&by_number(int (*function)(int, uint8_t *)) &&
    {
        call_by_number = [=](int blade_num) {
            return seen<std::array<uint8_t, Size>>(filling<Size>(function), blade_num);
        };
        return std::move(*this);
    }

    template <typename Record, typename Function, typename Blade>
    static outcome seen(Function function, Blade blade)
    {
        guarded<Record> out;
        const int result = function(blade, out.get());
        return {result, out.content(), out.untouched(), out.guards_hold()};
    }
};

template <typename Record, typename Function>
command_row row_of(std::string name, Function function, uint32_t netfn_cmd, bytes payload,
                   bytes answer, bytes output)
{
    command_row row{std::move(name),
                    netfn_cmd,
                    std::move(payload),
                    std::move(answer),
                    std::move(output),
                    {},
                    {},
                    {}};
    row.call = [=](const blade_location *location) {
        return command_row::seen<Record>(function, location);
    };
    row.call_without_output = [=](const blade_location *location) {
        return function(location, static_cast<Record *>(nullptr));
    };
    return row;
}

// A row for `function(location, out)`, which after `answer` leaves `output`.
template <typename Record>
command_row row(std::string name, int (*function)(const blade_location *, Record *),
                uint32_t netfn_cmd, bytes payload, bytes answer, const Record &output)
{
    return row_of<Record>(std::move(name), function, netfn_cmd, std::move(payload),
                          std::move(answer), bytes_of(output));
}

// A row for a function that hands over the first `Size` bytes of its answer as they come.
template <size_t Size>
command_row row(std::string name, int (*function)(const blade_location *, uint8_t *),
                uint32_t netfn_cmd, bytes payload, bytes answer)
{
    const bytes output = bytes_at(answer.data(), Size);
    return row_of<std::array<uint8_t, Size>>(std::move(name), filling<Size>(function), netfn_cmd,
                                             std::move(payload), std::move(answer), output);
}

// An answer of which no two neighbours are alike, completion code 0 first.
inline bytes counting_answer(size_t length)
{
    return joined({0x00}, counting(length - 1));
}

inline std::ostream &operator<<(std::ostream &out, const command_row &row)
{
    return out << row.name;
}

class command_shape : public scripted_test, public ::testing::WithParamInterface<command_row>
{
};

// The rows whose function checks its location, those whose function does not, and those that have
// a form by blade number.
class checked_location : public command_shape
{
};

class unchecked_location_death : public command_shape
{
};

class number_form : public command_shape
{
};

template <typename Row, typename Predicate>
std::vector<Row> only(std::vector<Row> rows, Predicate wanted)
{
    rows.erase(std::remove_if(rows.begin(), rows.end(), std::not_fn(wanted)), rows.end());
    return rows;
}

inline bool checks_location(const command_row &row)
{
    return row.location_is_checked;
}

inline bool has_number_form(const command_row &row)
{
    return row.call_by_number != nullptr;
}

template <typename Row>
std::string row_name(const ::testing::TestParamInfo<Row> &info)
{
    return info.param.name;
}

// Leaves bytes on the stack where the next call's records will lie, so that a record that was not
// cleared shows.
void litter_the_stack();

// Holds a family's rows to the frame. A family may lack any kind of row but the first.
#define INSTANTIATE_COMMAND_SHAPE(family, rows)                                                    \
    INSTANTIATE_TEST_SUITE_P(family, command_shape, ::testing::ValuesIn(rows),                     \
                             row_name<command_row>);                                               \
    INSTANTIATE_TEST_SUITE_P(family, checked_location,                                             \
                             ::testing::ValuesIn(only(rows, checks_location)),                     \
                             row_name<command_row>);                                               \
    INSTANTIATE_TEST_SUITE_P(family, unchecked_location_death,                                     \
                             ::testing::ValuesIn(only(rows, std::not_fn(checks_location))),        \
                             row_name<command_row>);                                               \
    INSTANTIATE_TEST_SUITE_P(family, number_form,                                                  \
                             ::testing::ValuesIn(only(rows, has_number_form)),                     \
                             row_name<command_row>)

#endif
