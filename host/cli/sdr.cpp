// The sensor data record repository: its summary and its records.

#include "cli/command_tree.h"
#include "cli/records.h"
#include "cli/sdr_record.h"
#include "cli/times.h"

namespace cli
{

namespace
{

const request_name get_repository_info = {0x0A20, "Get SDR Repository Info"};
const request_name reserve_repository = {0x0A22, "Reserve SDR Repository"};
const request_name get_sdr = {0x0A23, "Get SDR"};

report info(const blade &at)
{
    const auto repository =
        ask_info<sdr_repository_info>(get_repository_info, at, ipmi_location_get_sdr_info);
    return tell({{"version", version_text(repository.version)},
                 {"records", repository.records},
                 {"free_bytes", repository.free_space},
                 {"last_addition", format_time(repository.addition_time, at.utc)},
                 {"last_erase", format_time(repository.erase_time, at.utc)},
                 {"overflow", (repository.operation_support & 0x80) != 0},
                 {"operations", repository_operations(repository.operation_support)}});
}

// Reads the records of one blade under one reservation: each whole where the blade can do that,
// and in parts once it has said that it cannot.
class record_reader
{
  public:
    explicit record_reader(const blade &at) : at_(at), reservation_(reserve()) {}

    chained_record read(uint16_t id)
    {
        const auto renew = [this] { return reserve(); };
        return under_reservation(reservation_, renew, [&](uint16_t) { return read_somehow(id); });
    }

  private:
    uint16_t reserve() const
    {
        return ask<sdr_reservation>(reserve_repository, at_, ipmi_location_reserve_sdr)
            .reservation_id;
    }

    chained_record read_somehow(uint16_t id)
    {
        if (whole_)
            try {
                chained_record found = read_whole(id);
                if (!may_be_cut_short(found.record))
                    return found;
            } catch (const failure &refusal) {
                if (!too_long(refusal))
                    throw;
                whole_ = false;
            }
        return read_in_parts(id);
    }

    chained_record read_whole(uint16_t id) const
    {
        const auto answer = ask<sdr_record>(get_sdr, at_, ipmi_location_get_sdr, reservation_, id);
        const size_t length = std::min(sdr_header_size + answer.data[4], std::size(answer.data));
        return {answer.next_record_id, bytes(answer.data, answer.data + length)};
    }

    chained_record read_in_parts(uint16_t id) const
    {
        constexpr size_t longest_part = 32;
        chained_record found;
        const auto append = [&](size_t already, size_t offset, size_t count) {
            const bytes part = read_part(id, already + offset, count, found.next);
            found.record.insert(found.record.end(), part.begin(), part.end());
            return part.size();
        };
        in_stretches(sdr_header_size, longest_part,
                     [&](size_t offset, size_t count) { return append(0, offset, count); });
        const uint8_t rest = found.record[4];
        in_stretches(rest, longest_part, [&](size_t offset, size_t count) {
            return append(sdr_header_size, offset, count);
        });
        return found;
    }

    // The library's own function reads whole records only.
    bytes read_part(uint16_t id, size_t offset, size_t count, uint16_t &next) const
    {
        const bytes payload = {
            static_cast<uint8_t>(reservation_), static_cast<uint8_t>(reservation_ >> 8),
            static_cast<uint8_t>(id),           static_cast<uint8_t>(id >> 8),
            static_cast<uint8_t>(offset),       static_cast<uint8_t>(count)};
        const bytes answer = exchange(get_sdr, at_, payload, 2);
        next = load_le16(answer.data());
        const size_t given = std::min(answer.size() - 2, count);
        return bytes(answer.begin() + 2, answer.begin() + 2 + static_cast<ptrdiff_t>(given));
    }

    const blade &at_;
    uint16_t reservation_;
    bool whole_ = true;
};

report list(const blade &at)
{
    const auto repository =
        ask_info<sdr_repository_info>(get_repository_info, at, ipmi_location_get_sdr_info);
    record_reader reader(at);
    return list_records(
        at, "records", repository.records, [&](uint16_t id) { return reader.read(id); },
        sdr_summary);
}

struct record_choice {
    uint16_t id = 0;
};

report get(const blade &at, const record_choice &chosen)
{
    record_reader reader(at);
    const chained_record found = reader.read(chosen.id);
    return tell(sdr_details(found.record), found.record);
}

} // namespace

void add_sdr(const noun &root)
{
    const noun sdr = root.noun_below("sdr", "The sensor data records (SDR)");
    sdr.verb("info", "Show the repository's size, room and latest changes", info);
    sdr.verb("list", "Show all records", list).binary();
    sdr.verb("get", "Show one record with all it holds", get)
        .argument("ID", &record_choice::id, number<uint16_t>,
                  "Record ID, e.g. 0x0001; 0x0000 is the first")
        .binary();
}

} // namespace cli
