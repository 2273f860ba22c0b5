// The tool from its arguments to its exit code.
#ifndef RUK_HOST_CLI_RUN_H
#define RUK_HOST_CLI_RUN_H

namespace cli
{

int run(int argc, char **argv);

} // namespace cli

#endif
