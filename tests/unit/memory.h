// Memory that runs out when a test says so.
#ifndef RUK_IPMI_UNIT_MEMORY_H
#define RUK_IPMI_UNIT_MEMORY_H

namespace ruk_ipmi_testing
{

// While it lives, malloc gives the library nothing on this thread.
class no_memory_left
{
  public:
    no_memory_left();
    ~no_memory_left();
    no_memory_left(const no_memory_left &) = delete;
    no_memory_left &operator=(const no_memory_left &) = delete;
};

} // namespace ruk_ipmi_testing

#endif
