// The sensors of the blade: what its SDRs describe, its events name, and its readings come from.
#ifndef RUK_HOST_CHASSISD_SIMULATED_SENSORS_H
#define RUK_HOST_CHASSISD_SIMULATED_SENSORS_H

#include <array>

#include "chassisd/simulated/power.h"

namespace chassisd::simulated
{

enum sensor_number : uint8_t {
    inlet_temperature = 0x10,
    cpu_1_temperature,
    cpu_2_temperature,
    mezzanine_temperature,
    voltage_12v = 0x20,
    voltage_3v3,
    voltage_battery,
    fan_1 = 0x30,
    fan_2,
    input_power = 0x38,
    power_unit,
    power_supply_1 = 0x40,
    power_supply_2,
    cpu_1_status = 0x48,
    cpu_2_status,
    memory_status = 0x50,
    event_log_status = 0x58,
    watchdog_status,
    firmware_progress,
    system_boot
};

// IPMI's numbers for the parts that sensors and FRU devices belong to.
enum entity_id : uint8_t {
    entity_processor = 0x03,
    entity_system_management = 0x06,
    entity_system_board = 0x07,
    entity_power_supply = 0x0A,
    entity_add_in_card = 0x0B,
    entity_fan = 0x1D,
    entity_memory = 0x20,
    entity_air_inlet = 0x40
};

struct sensor {
    sensor_number number;
    const char *name; // at most 16 characters
    entity_id entity;
    uint8_t instance; // of the entity
    uint8_t type;     // IPMI's sensor type
};

// A quantity. A raw value stands for raw * multiplier * 10^exponent units.
struct threshold_sensor : sensor {
    uint8_t unit; // IPMI's unit code
    uint8_t multiplier;
    int exponent;
    uint8_t nominal; // raw, as are all values below
    uint8_t normal_minimum;
    uint8_t normal_maximum;

    // In the order of IPMI's threshold masks: lower non-critical, lower critical, lower
    // non-recoverable, then the same of upper. 0: the sensor has no such threshold.
    std::array<uint8_t, 6> thresholds;

    // Which of the thresholds it has, one bit each.
    uint8_t threshold_mask() const;
};

// A set of states that are or are not there; their meaning goes with the sensor's type.
struct discrete_sensor : sensor {
    uint16_t possible_states;
    uint16_t states;
};

// By how much a reading has to be back beyond a threshold that it crossed, raw, both ways.
constexpr uint8_t hysteresis = 1;

// The event of each threshold, in the order of the masks: going low through a lower one, high
// through an upper one.
constexpr std::array<uint8_t, 6> threshold_events = {0, 2, 4, 7, 9, 11};

const std::vector<threshold_sensor> &threshold_sensors();
const std::vector<discrete_sensor> &discrete_sensors();

class sensor_set;

std::shared_ptr<sensor_set> make_sensors(const environment &env, std::shared_ptr<event_log> log,
                                         std::shared_ptr<const power_state> power);

// The raw value of a quantity now.
uint8_t reading_of(const sensor_set &sensors, sensor_number quantity);

command_table sensor_commands(const std::shared_ptr<sensor_set> &sensors);

} // namespace chassisd::simulated

#endif
