// Events of the blade's sensors, as the log keeps them.
#ifndef RUK_HOST_CHASSISD_SIMULATED_SYSTEM_EVENT_H
#define RUK_HOST_CHASSISD_SIMULATED_SYSTEM_EVENT_H

#include "chassisd/simulated/app.h"
#include "chassisd/simulated/record.h"
#include "chassisd/simulated/sensors.h"

namespace chassisd::simulated
{

// Event types: a threshold was crossed, or a state of the sensor's own type changed. A reading
// that came back and a state that went away set the direction bit.
enum event_type : uint8_t { threshold = 0x01, state = 0x6F, gone = 0x80 };

// A SEL record but for its ID and its time stamp. The first data byte says, besides what happened,
// what the other two are: 0x5_ reading and threshold, 0xC_ and 0x3_ a detail of the sensor's type
// in the second or third.
inline bytes system_event(uint8_t sensor_type, sensor_number sensor, int type, int data_1,
                          int data_2 = 0xFF, int data_3 = 0xFF)
{
    constexpr uint8_t message_format = 0x04;
    return record_of(le16(0), 0x02, le32{0}, le16(controller_address), message_format, sensor_type,
                     sensor, type, data_1, data_2, data_3);
}

} // namespace chassisd::simulated

#endif
