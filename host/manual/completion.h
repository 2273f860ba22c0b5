// What shells complete a program's command line with: scripts that know its words by heart, so that
// no program runs when a key is pressed.
#ifndef RUK_HOST_MANUAL_COMPLETION_H
#define RUK_HOST_MANUAL_COMPLETION_H

#include "manual/tree.h"

namespace manual
{

std::string bash_completion(const command &program);
std::string zsh_completion(const command &program);

} // namespace manual

#endif
