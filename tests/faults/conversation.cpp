#include "conversation.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <vector>

namespace tests
{

namespace
{

using bytes = std::vector<uint8_t>;

constexpr uint32_t get_sdr = 0x0A23;
constexpr uint32_t read_fru = 0x0A11;
constexpr uint32_t write_fru = 0x0A12;

constexpr uint8_t beyond_the_end = 0xC9;
constexpr uint8_t no_such_record = 0xCB;

ipmi_request request_to(uint8_t slot, uint32_t netfn_cmd, const bytes &data)
{
    ipmi_request request{};
    request.location.slot_id = slot;
    request.netfn_cmd = netfn_cmd;
    request.data_len = static_cast<uint32_t>(data.size());
    std::copy(data.begin(), data.end(), request.data);
    return request;
}

uint8_t low(size_t word)
{
    return static_cast<uint8_t>(word);
}

uint8_t high(size_t word)
{
    return static_cast<uint8_t>(word >> 8);
}

bytes data_of(const ipmi_response &answer)
{
    return {answer.data, answer.data + std::min<size_t>(answer.data_len, sizeof answer.data)};
}

std::string hex(const bytes &data)
{
    std::string text;
    for (const uint8_t byte : data)
        for (const int digit : {byte >> 4, byte & 15})
            text += "0123456789abcdef"[digit];
    return text;
}

std::string unlike(const char *what, const bytes &expected, const bytes &data)
{
    return std::string(what) + ": expected " + hex(expected) + ", got " + hex(data);
}

class drawing
{
  public:
    explicit drawing(uint32_t seed) : random_(seed) {}

    size_t below(size_t bound) { return random_() % bound; }
    bool once_in(size_t times) { return below(times) == 0; }

  private:
    std::mt19937 random_;
};

// A stamp tells whose it is and how many came before it, so no two are alike.
class stamps final : public conversation
{
  public:
    stamps(uint8_t slot, const asker &who, uint32_t seed) : slot_(slot), who_(who), draw_(seed) {}

    ipmi_request next() override
    {
        if (possible_.empty() || draw_.once_in(2))
            return write();
        if (draw_.once_in(16))
            return read_beyond_the_end();
        asked_ = question::stamp;
        return request_to(slot_, read_fru, {fru, low(place()), high(place()), stamp_size});
    }

    std::string judge(const ipmi_response &answer) override
    {
        const bytes data = data_of(answer);
        if (asked_ == question::refusal)
            return data == bytes{beyond_the_end} ? "" : unlike("refusal", {beyond_the_end}, data);
        if (asked_ == question::write) {
            if (data != bytes{0, stamp_size})
                return unlike("write", {0, stamp_size}, data);
            possible_ = {sent_};
            return "";
        }
        return judge_stamp(data);
    }

    void unanswered() override
    {
        if (asked_ == question::write && !possible_.empty())
            possible_.push_back(sent_);
    }

    uint64_t forgotten() const override { return forgotten_; }

  private:
    static constexpr uint8_t fru = 0; // of 512 bytes, of which the last 128 are blank at first
    static constexpr size_t first_place = 384;
    static constexpr uint8_t stamp_size = 16;
    static constexpr uint8_t blank = 0xFF;

    using stamp = std::array<uint8_t, stamp_size>;
    enum class question { write, stamp, refusal };

    size_t place() const
    {
        return first_place + (size_t{who_.client} * 2 + who_.lane) * stamp_size;
    }

    ipmi_request write()
    {
        asked_ = question::write;
        ++count_;
        sent_ = {who_.client, who_.lane, slot_, 0x5A};
        memcpy(&sent_[4], &who_.life, sizeof who_.life);
        memcpy(&sent_[8], &count_, sizeof count_);
        bytes data = {fru, low(place()), high(place())};
        data.insert(data.end(), sent_.begin(), sent_.end());
        return request_to(slot_, write_fru, data);
    }

    ipmi_request read_beyond_the_end()
    {
        asked_ = question::refusal;
        return request_to(slot_, read_fru, {fru, 0xFF, 0xFF, stamp_size});
    }

    // Blades do one thing after the other: once one answers, all that was asked before is done, or
    // will never be.
    std::string judge_stamp(const bytes &data)
    {
        stamp found;
        if (data.size() != 2 + found.size() || data[0] != 0 || data[1] != found.size())
            return unlike("stamp", {sent_.begin(), sent_.end()}, data);
        std::copy(data.begin() + 2, data.end(), found.begin());
        stamp untouched;
        untouched.fill(blank);
        if (std::find(possible_.begin(), possible_.end(), found) == possible_.end()) {
            if (found != untouched)
                return unlike("stamp", {possible_.front().begin(), possible_.front().end()}, data);
            ++forgotten_;
        }
        possible_ = {found};
        return "";
    }

    const uint8_t slot_;
    const asker who_;
    drawing draw_;
    question asked_ = question::write;
    stamp sent_{};
    uint64_t count_ = 0;
    uint64_t forgotten_ = 0;
    std::vector<stamp> possible_; // what may be written there now; none: nobody knows
};

class records final : public conversation
{
  public:
    records(uint8_t slot, const std::string &path, uint32_t seed) : slot_(slot), draw_(seed)
    {
        std::ifstream file(path, std::ios::binary);
        bytes record(record_size);
        while (file.read(reinterpret_cast<char *>(record.data()), record_size))
            records_.push_back(record);
        if (records_.empty())
            throw std::runtime_error("no records in " + path);
    }

    ipmi_request next() override
    {
        if (draw_.once_in(16)) {
            expected_ = {no_such_record};
            return request_to(slot_, get_sdr, {0, 0, 0xEE, 0xEE, 0, least});
        }
        const size_t at = draw_.below(records_.size());
        const size_t id = at + 1;
        const size_t count = least + draw_.below(5);
        const size_t offset = draw_.below(record_size - count + 1);
        const size_t following = id == records_.size() ? 0xFFFF : id + 1;
        expected_ = {0, low(following), high(following)};
        const auto from = records_[at].begin() + static_cast<std::ptrdiff_t>(offset);
        expected_.insert(expected_.end(), from, from + static_cast<std::ptrdiff_t>(count));
        return request_to(slot_, get_sdr, {0, 0, low(id), high(id), low(offset), low(count)});
    }

    std::string judge(const ipmi_response &answer) override
    {
        const bytes data = data_of(answer);
        return data == expected_ ? "" : unlike("record", expected_, data);
    }

  private:
    static constexpr size_t record_size = 53;
    static constexpr size_t least = 16; // bytes at a time, so that no two stretches are alike

    const uint8_t slot_;
    drawing draw_;
    std::vector<bytes> records_;
    bytes expected_;
};

} // namespace

std::unique_ptr<conversation> talk_about_stamps(uint8_t slot, const asker &who, uint32_t seed)
{
    return std::make_unique<stamps>(slot, who, seed);
}

std::unique_ptr<conversation> talk_about_records(uint8_t slot, const std::string &path,
                                                 uint32_t seed)
{
    return std::make_unique<records>(slot, path, seed);
}

std::string strange_head(const ipmi_request &request, const ipmi_response &answer)
{
    if (memcmp(&answer.location, &request.location, sizeof answer.location) != 0)
        return "from slot " + std::to_string(answer.location.slot_id);
    if (answer.netfn_cmd != request.netfn_cmd)
        return "to command " + std::to_string(answer.netfn_cmd);
    if (answer.reserved_0c != request.reserved_0c)
        return "to request " + std::to_string(answer.reserved_0c) + ", not to " +
               std::to_string(request.reserved_0c);
    if (answer.data_len == 0 || answer.data_len > sizeof answer.data)
        return "of " + std::to_string(answer.data_len) + " bytes";
    if (answer.comp_code != answer.data[0])
        return "with two completion codes";
    return "";
}

} // namespace tests
