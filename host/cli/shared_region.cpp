#include "cli/shared_region.h"

#include "cli/failure.h"
#include "ruk_ipmi/objects.h"

namespace cli
{

ipmi_shm *shared_region()
{
    static void *const region = [] {
        void *holder = nullptr;
        check({0, "shared region"}, get_ipmi_shm_ptr(&holder));
        return holder;
    }();
    return static_cast<ipmi_shm *>(region);
}

ipmi_shm shared_region_copy()
{
    const ipmi_shm *region = shared_region();
    mutex_obj mutex{};
    check({0, "lock of the shared region"}, acquire_mutex("ruk_mutex_ipmi", &mutex, 0));
    const ipmi_shm copy = *region;
    release_mutex(&mutex);
    return copy;
}

uint32_t last_interrupt_number()
{
    return __atomic_load_n(&shared_region()->last_int_num, __ATOMIC_ACQUIRE);
}

} // namespace cli
