// ruk-ipmi: IPMI to the blades of a chassis, for people and scripts.

#include "cli/run.h"

int main(int argc, char **argv)
{
    return cli::run(argc, argv);
}
