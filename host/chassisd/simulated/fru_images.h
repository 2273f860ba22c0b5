// What the FRU devices hold when the blade is new.
#ifndef RUK_HOST_CHASSISD_SIMULATED_FRU_IMAGES_H
#define RUK_HOST_CHASSISD_SIMULATED_FRU_IMAGES_H

#include "chassisd/simulated/device.h"

namespace chassisd::simulated
{

// One image per device, by device ID.
std::vector<bytes> fru_images(const environment &env);

} // namespace chassisd::simulated

#endif
