/**
 * A singly linked list under a named mutex: items are appended at its tail. The library keeps its
 * outstanding asynchronous commands in one. Nothing here sends anything to a blade.
 *
 * Every function locks the list's mutex, waiting up to 500 operating-system ticks (10 ms each on
 * the host platform), before it looks at its arguments; when the mutex cannot be had, that is
 * written to the debug log and the function goes on without it.
 */
#ifndef RUK_IPMI_LIST_H
#define RUK_IPMI_LIST_H

#include "ruk_ipmi/objects.h"

#ifdef __cplusplus
extern "C" {
#endif

/** One item in a list. The list allocates and frees nodes; items are their owner's. */
typedef struct ipmi_list_node {
    void *data;                  /**< the item */
    struct ipmi_list_node *next; /**< null at the tail */
} ipmi_list_node;

/** A list: its nodes, and the mutex that guards them. */
typedef struct ipmi_list {
    ipmi_list_node *head; /**< null when the list is empty */
    os_mutex mutex;       /**< made by `ipmi_list_init` */
} ipmi_list;

/**
 * Makes a list empty.
 *
 * @param list  the list; null: nothing is done. What it held is forgotten, not freed.
 * @param name  its mutex is called `name`, an underscore and the calling thread's number (99
 *              characters at most): created, or attached to when there is one. Null: the mutex is
 *              left as it is.
 */
RUK_IPMI_API void ipmi_list_init(ipmi_list *list, const char *name);

/**
 * Locks a list.
 *
 * @param list  the list.
 * @return 0, or the platform's status (a null list is one), which is written to the debug log.
 */
RUK_IPMI_API uint32_t get_list_access(ipmi_list *list);

/**
 * Unlocks a list.
 *
 * @param list  the list.
 */
RUK_IPMI_API void release_list_access(ipmi_list *list);

/**
 * Appends an item.
 *
 * @param list  the list.
 * @param data  the item.
 * @return 0, or -1 when `list` is null or there is no memory for the node.
 */
RUK_IPMI_API int list_insert(ipmi_list *list, void *data);

/**
 * Takes a node out of a list and frees it.
 *
 * @param list  the list.
 * @param node  a node of this list: a node that is not in it must not be given, unless the list is
 *              empty.
 * @return the node's item, or null when `list` is null or empty.
 */
RUK_IPMI_API void *list_delete(ipmi_list *list, ipmi_list_node *node);

/**
 * As `list_delete`, and gives the item to `free`.
 *
 * @param list  the list.
 * @param node  as for `list_delete`.
 * @return 0, or -1 when there was no item.
 */
RUK_IPMI_API int list_delete_and_free_data(ipmi_list *list, ipmi_list_node *node);

/**
 * Finds the first node.
 *
 * @param list  the list.
 * @return the first node, null when `list` is null or empty.
 */
RUK_IPMI_API ipmi_list_node *get_list_first(ipmi_list *list);

/**
 * Finds the next node.
 *
 * @param list  the list.
 * @param node  a node of it.
 * @return the node that follows `node`, null at the tail and for a null `node`.
 */
RUK_IPMI_API ipmi_list_node *get_list_next(ipmi_list *list, ipmi_list_node *node);

#ifdef __cplusplus
}
#endif

#endif
