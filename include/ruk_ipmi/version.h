/** The version of the library, the one place that states it. */
#ifndef RUK_IPMI_VERSION_H
#define RUK_IPMI_VERSION_H

/** Version of the headers as text, MAJOR.MINOR.PATCH. */
#define RUK_IPMI_VERSION "0.1.0"

#endif
