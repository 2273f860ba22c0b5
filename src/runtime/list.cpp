// The list of outstanding commands. Callers append to it while the callback thread walks it and
// removes from it; the callback thread reads the links without the lock, so these are single words
// that always lead somewhere.

#include "ruk_ipmi/list.h"

#include <cstdio>
#include <cstdlib>

#include "platform/log.h"
#include "platform/os.h"
#include "runtime/threads.h"
#include "runtime/words.h"

static_assert(sizeof(ipmi_list_node) == 2 * sizeof(void *));
static_assert(sizeof(void *) != 4 || sizeof(ipmi_list_node) == 8);
static_assert(sizeof(ipmi_list) == (sizeof(void *) == 4 ? 88 : 96));
static_assert(offsetof(ipmi_list, mutex) == sizeof(void *));

using namespace ruk;

namespace
{

constexpr uint32_t wait_for_list = 500; // ticks

// Of no list: none, which the platform refuses.
os_mutex *mutex_of(ipmi_list *list)
{
    return list ? &list->mutex : nullptr;
}

} // namespace

void ipmi_list_init(ipmi_list *list, const char *name)
{
    if (!list)
        return;
    store(list->head, static_cast<ipmi_list_node *>(nullptr));
    if (!name)
        return;
    char mutex_name[100];
    snprintf(mutex_name, sizeof mutex_name, "%s_%d", name, thread_number());
    if (os_mutex_create(mutex_name, &list->mutex) != 0)
        os_mutex_ident(mutex_name, &list->mutex);
}

uint32_t get_list_access(ipmi_list *list)
{
    const uint32_t rc = os_mutex_get(mutex_of(list), wait_for_list);
    if (rc != 0)
        slog_dlog("os_mutex_get on %s returned rc %x ", list ? list->mutex.name : "(null)", rc);
    return rc;
}

void release_list_access(ipmi_list *list)
{
    os_mutex_put(mutex_of(list));
}

int list_insert(ipmi_list *list, void *data)
{
    get_list_access(list);
    ipmi_list_node *node =
        list ? static_cast<ipmi_list_node *>(malloc(sizeof(ipmi_list_node))) : nullptr;
    if (node) {
        *node = {data, nullptr};
        // At the first link that leads nowhere, also where another thread, without the lock as this
        // may be, makes one lead somewhere.
        ipmi_list_node **link = &list->head;
        while (ipmi_list_node *at = replace<ipmi_list_node *>(*link, nullptr, node))
            link = &at->next;
    }
    release_list_access(list);
    return node ? 0 : -1;
}

void *list_delete(ipmi_list *list, ipmi_list_node *node)
{
    void *data = nullptr;
    get_list_access(list);
    if (list && load(list->head)) {
        data = node->data;
        ipmi_list_node **link = &list->head;
        while (load(*link) != node) // which is in the list
            link = &load(*link)->next;
        store(*link, load(node->next));
        free(node);
    }
    release_list_access(list);
    return data;
}

int list_delete_and_free_data(ipmi_list *list, ipmi_list_node *node)
{
    void *data = list_delete(list, node);
    free(data);
    return data ? 0 : -1;
}

ipmi_list_node *get_list_first(ipmi_list *list)
{
    get_list_access(list);
    ipmi_list_node *first = list ? load(list->head) : nullptr;
    release_list_access(list);
    return first;
}

ipmi_list_node *get_list_next(ipmi_list *list, ipmi_list_node *node)
{
    get_list_access(list);
    ipmi_list_node *next = node ? load(node->next) : nullptr;
    release_list_access(list);
    return next;
}
