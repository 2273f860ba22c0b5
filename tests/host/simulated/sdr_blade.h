// A blade whose Sensor Data Records are under test, and FreeIPMI as their judge.
#ifndef RUK_TESTS_HOST_SIMULATED_SDR_BLADE_H
#define RUK_TESTS_HOST_SIMULATED_SDR_BLADE_H

#include <freeipmi/freeipmi.h>
#include <stdexcept>

#include "blade_under_test.h"

namespace chassisd::simulated
{

class sdr_blade : public blade_under_test
{
  public:
    using blade_under_test::blade_under_test;

    uint16_t reserve() { return word_at(1, storage(0x22)); }

    bytes get(uint16_t id, uint8_t offset = 0, uint8_t count = 0xFF, uint16_t reservation = 0)
    {
        return storage(0x23,
                       joined(joined(le16_bytes(reservation), le16_bytes(id)), {offset, count}));
    }

    std::vector<bytes> walk()
    {
        return all_records([this](uint16_t id) { return get(id); });
    }

    std::vector<bytes> records_of_type(uint8_t type)
    {
        std::vector<bytes> records;
        for (const bytes &record : walk())
            if (record.at(3) == type)
                records.push_back(record);
        return records;
    }
};

// One record as FreeIPMI reads it. What it cannot read fails the test.
class parsed_sdr
{
  public:
    explicit parsed_sdr(const bytes &record) : record_(record), context_(ipmi_sdr_ctx_create()) {}
    ~parsed_sdr() { ipmi_sdr_ctx_destroy(context_); }
    parsed_sdr(const parsed_sdr &) = delete;
    parsed_sdr &operator=(const parsed_sdr &) = delete;

    // Calls one of FreeIPMI's functions for records.
    template <typename Function, typename... Outputs>
    int read(Function parse, Outputs... outputs) const
    {
        const int result =
            parse(context_, record_.data(), static_cast<unsigned>(record_.size()), outputs...);
        if (result < 0)
            throw std::runtime_error(ipmi_sdr_ctx_errormsg(context_));
        return result;
    }

    std::string sensor_name() const { return string(ipmi_sdr_parse_id_string); }
    std::string device_name() const { return string(ipmi_sdr_parse_device_id_string); }

    uint8_t sensor_number() const
    {
        uint8_t number = 0;
        read(ipmi_sdr_parse_sensor_number, &number);
        return number;
    }

    // What a raw reading of the sensor means.
    double value(uint8_t raw) const
    {
        int8_t r_exponent, b_exponent;
        int16_t m, b;
        uint8_t linearization, format;
        read(ipmi_sdr_parse_sensor_decoding_data, &r_exponent, &b_exponent, &m, &b, &linearization,
             &format);
        double value = 0;
        if (ipmi_sensor_decode_value(r_exponent, b_exponent, m, b, linearization, format, raw,
                                     &value) < 0)
            throw std::runtime_error("the reading cannot be decoded");
        return value;
    }

  private:
    template <typename Function>
    std::string string(Function parse) const
    {
        char name[64] = "";
        read(parse, name, static_cast<unsigned>(sizeof name));
        return name;
    }

    const bytes record_;
    ipmi_sdr_ctx_t context_;
};

} // namespace chassisd::simulated

#endif
