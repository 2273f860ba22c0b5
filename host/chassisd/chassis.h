// The chassis: which blade stands at which location.
#ifndef RUK_HOST_CHASSISD_CHASSIS_H
#define RUK_HOST_CHASSISD_CHASSIS_H

#include <map>
#include <memory>
#include <utility>

#include "chassisd/config.h"
#include "chassisd/worker.h"
#include "ruk_ipmi/types.h"

namespace chassisd
{

class chassis
{
  public:
    explicit chassis(const chassis_config &config);
    ~chassis();

    // The blade at a location; null when there is none.
    worker *at(const blade_location &location) const;

  private:
    std::map<std::pair<uint8_t, uint8_t>, std::unique_ptr<worker>> blades_;
};

} // namespace chassisd

#endif
