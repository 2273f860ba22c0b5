// The records of the SDR repository, encoded.
#ifndef RUK_HOST_CHASSISD_SIMULATED_SDR_RECORDS_H
#define RUK_HOST_CHASSISD_SIMULATED_SDR_RECORDS_H

#include "chassisd/simulated/repository.h"

namespace chassisd::simulated
{

// The controller and its FRU devices, then every sensor.
record_list sensor_data_records(const environment &env);

} // namespace chassisd::simulated

#endif
