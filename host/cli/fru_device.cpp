#include "cli/fru_device.h"

namespace cli
{

namespace
{

const request_name get_fru_info = {0x0A10, "Get FRU Inventory Area Info"};
const request_name read_fru = {0x0A11, "Read FRU Data"};
const request_name write_fru = {0x0A12, "Write FRU Data"};

constexpr size_t longest_write = 32; // bytes

} // namespace

fru_device::fru_device(const blade &at, uint8_t id)
    : at_(at),
      id_(id),
      info_(ask<fru_area_info>(get_fru_info, at, ipmi_location_get_fru_info, id))
{
}

// Offset and count in the device's units, the result in bytes.
bytes fru_device::read_stretch(size_t offset, size_t count) const
{
    // Controllers do not agree whether a word device's answer counts words or bytes, so there the
    // count says nothing.
    if (!by_words()) {
        bytes stretch(count);
        fru_read_request read{};
        read.buffer = stretch.data();
        check(read_fru, static_cast<uint32_t>(ipmi_location_read_fru(
                            &at_.location, id_, static_cast<uint16_t>(offset),
                            static_cast<uint8_t>(count), static_cast<uint32_t>(count), &read)));
        stretch.resize(read.count);
        if (!may_be_cut_short(stretch))
            return stretch;
    }
    return read_bare(offset, count);
}

// The same, by the bytes that the answer really holds.
bytes fru_device::read_bare(size_t offset, size_t count) const
{
    const bytes payload = {id_, static_cast<uint8_t>(offset), static_cast<uint8_t>(offset >> 8),
                           static_cast<uint8_t>(count)};
    const bytes answer = exchange(read_fru, at_, payload, 1);
    size_t length = std::min(answer.size() - 1, count * unit());
    if (!by_words())
        length = std::min<size_t>(length, answer[0]);
    length -= length % unit();
    return bytes(answer.begin() + 1, answer.begin() + 1 + static_cast<ptrdiff_t>(length));
}

bytes fru_device::read(size_t offset, size_t length, const watcher &watch) const
{
    // Whole units around what is wanted.
    const size_t first = offset / unit();
    const size_t last = (offset + length + unit() - 1) / unit();
    bytes found;
    const auto read_some = [&](size_t done, size_t count) {
        const bytes part = read_stretch(first + done, count);
        found.insert(found.end(), part.begin(), part.end());
        if (watch)
            watch(found.size());
        return part.size() / unit();
    };
    longest_read_ = in_stretches(last - first, longest_read_ / unit(), read_some) * unit();
    found.erase(found.begin(), found.begin() + static_cast<ptrdiff_t>(offset - first * unit()));
    found.resize(length);
    return found;
}

void fru_device::write(const bytes &image, const watcher &watch) const
{
    in_stretches(image.size() / unit(), longest_write / unit(), [&](size_t done, size_t count) {
        const size_t offset = done * unit();
        const size_t length = count * unit();
        uint8_t completion_code = 0;
        check(write_fru,
              static_cast<uint32_t>(ipmi_location_write_fru(
                  &at_.location, id_, static_cast<uint16_t>(done), static_cast<uint32_t>(length),
                  image.data() + offset, &completion_code)));
        if (watch)
            watch(offset + length);
        return count;
    });
}

} // namespace cli
