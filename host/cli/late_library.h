// A library that few commands need. It takes longer to load than most commands take from start to
// end, so that waits until one of its functions is called.
#ifndef RUK_HOST_CLI_LATE_LIBRARY_H
#define RUK_HOST_CLI_LATE_LIBRARY_H

#include <string>

namespace cli
{

class late_library
{
  public:
    // Loads a file; whoever lacks it is told the library's name.
    late_library(const char *name, const char *file);

    // Where the library has what goes by that name.
    void *symbol(const char *symbol) const;

  private:
    // Throws that the library is needed, unless it is there.
    void *found(void *what) const;

    std::string name_;
    void *handle_;
};

} // namespace cli

#endif
