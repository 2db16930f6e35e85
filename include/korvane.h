/*
 * korvane: the common programming interface of a family of mesh generators.
 *
 * This header is the whole interface and its manual: plain C99, usable from C++.
 *
 * Objects. Every handle is an opaque pointer made by a `_new` function, which returns null on failure, and
 * released by the matching `_delete` function, which accepts null. A context is made first; meshes and CAD
 * models are made on a context, attach themselves to it and keep a pointer to it. Deleting the context
 * deletes what is still attached, newest first, so an object must not be deleted after its context.
 *
 * Ownership. Input arrays and texts are copied during the call unless a function says that it takes over the
 * object that it is given. Output arrays belong to the caller, who provides room for the stated number of
 * values. User data that is registered beside a callback is passed back to it as it was given and never
 * freed, unless a delete function was registered for it.
 *
 * Indices. Mesh entities, message payload positions and everything else that is counted are numbered from 1:
 * a count of n means valid indices 1..n.
 *
 * Units. Coordinates, parameters and measures are doubles in the client's unit of length; angles are in
 * degrees; identifiers, counts, tags and flags are 32-bit signed integers.
 *
 * Statuses. Nearly every function returns a status: ::STATUS_OK, ::STATUS_ERROR or ::STATUS_NOMEM. A function
 * that forwards to a client callback returns the callback's status unchanged, so client-defined codes can be
 * seen there.
 *
 * Unchecked arguments. Null object handles are tested unless stated otherwise. What a function leaves to the
 * caller is marked "(not checked)" in its description: passing anything else there is undefined.
 *
 * Callbacks run on the calling thread, during the call that needs them. They must return normally: an
 * exception or a jump out of a callback is undefined.
 *
 * Threads. The library creates none and takes no lock. An object is used by one thread at a time. The table
 * of open files is shared by the process: functions that read or write files must not run concurrently.
 */
#ifndef KORVANE_H
#define KORVANE_H

#include <stdint.h>

#if defined(_WIN32)
#if defined(KORVANE_BUILDING)
#define KORVANE_API __declspec(dllexport)
#else
#define KORVANE_API __declspec(dllimport)
#endif
#else
#define KORVANE_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ----------------------------------------------------------------------------------------------------
 * Statuses and handles
 * -------------------------------------------------------------------------------------------------- */

/** What an operation returns. */
typedef int32_t korvane_status_t;

/** The statuses that the library itself produces. */
enum korvane_status_e {
    STATUS_OK = 0,     /**< success */
    STATUS_ERROR = -1, /**< any failure other than memory */
    STATUS_NOMEM = -5  /**< an allocation failed while data were copied or grown */
};

typedef struct korvane_context_s korvane_context_t; /**< callbacks, and the objects made on them */
typedef struct korvane_message_s korvane_message_t; /**< a number, a text and two payloads */
typedef struct korvane_tag_system_s
    korvane_tag_system_t;                     /**< composite tags and the base tags they stand for */
typedef struct korvane_mesh_s korvane_mesh_t; /**< a table of mesh callbacks */
typedef struct korvane_cad_s korvane_cad_t;   /**< a boundary representation evaluated by the client */

/* ----------------------------------------------------------------------------------------------------
 * Context
 *
 * The context is the library's only link to the client's environment: a message callback through which all
 * reports leave the library, an interrupt callback that long computations can poll, and the list of the
 * objects made on it. It lives from korvane_context_new to korvane_context_delete.
 * -------------------------------------------------------------------------------------------------- */

/**
 * Receives a message. The message belongs to the library and lives for the duration of the call: copy what is
 * to be kept, and do not delete it. The result is ignored.
 */
typedef korvane_status_t (*korvane_message_callback_t)(korvane_message_t *message, void *user_data);

/** Writes into `interrupt` whether the computation that polls it should stop: 0 means carry on. */
typedef korvane_status_t (*korvane_interrupt_callback_t)(int32_t *interrupt, void *user_data);

/** Frees an attached object. */
typedef void (*korvane_object_release_t)(void *object);

/**
 * Creates a context whose messages are printed on standard output and whose interrupt callback never
 * interrupts. Null if memory runs out.
 */
KORVANE_API korvane_context_t *korvane_context_new(void);

/** Deletes every object that is still attached, newest first, and the context. Null is accepted. */
KORVANE_API void korvane_context_delete(korvane_context_t *context);

/**
 * Installs the callback that receives all messages. A null callback silences the library (and `user_data` is
 * then not stored); it does not bring back the printing of a new context.
 */
KORVANE_API korvane_status_t korvane_context_set_message_callback(
    korvane_context_t *context, korvane_message_callback_t callback, void *user_data);

/** Gives the message callback and its user data. The outputs must not be null (not checked). */
KORVANE_API korvane_status_t korvane_context_get_message_callback(
    const korvane_context_t *context, korvane_message_callback_t *callback, void **user_data);

/**
 * Installs the interrupt callback. The library only keeps it, for the programs that run long computations on
 * the context and fetch it. A null callback reinstalls the default, which writes 0, with null user data.
 */
KORVANE_API korvane_status_t korvane_context_set_interrupt_callback(
    korvane_context_t *context, korvane_interrupt_callback_t callback, void *user_data);

/** Gives the interrupt callback and its user data. The outputs must not be null (not checked). */
KORVANE_API korvane_status_t korvane_context_get_interrupt_callback(
    const korvane_context_t *context, korvane_interrupt_callback_t *callback, void **user_data);

/**
 * Sends a message from "Korvane" to the message callback and deletes it again. `number` below 0 is an error,
 * above 0 a warning, 0 plain text. The context and the description must not be null (not checked).
 * STATUS_ERROR if the message cannot be made.
 */
KORVANE_API korvane_status_t korvane_context_send_message(
    korvane_context_t *context, int32_t number, const char *description);

/**
 * Sends the three lines that identify the library (version, legal notices, build date) as message 0. The
 * context must not be null (not checked).
 */
KORVANE_API korvane_status_t korvane_context_print_ident(korvane_context_t *context);

/**
 * Attaches an object to the context, which will call `release(object)` when it is deleted. Every mesh, size
 * map and CAD model attaches itself; clients may attach objects of their own. The context and `release` must
 * not be null (not checked). STATUS_OK always: when memory runs out the object is simply not attached.
 */
KORVANE_API korvane_status_t korvane_context_attach_object(
    korvane_context_t *context, void *object, korvane_object_release_t release);

/** Removes an object from the context's list without releasing it. An object that is not attached is ignored.
 */
KORVANE_API void korvane_context_delete_attached_object(korvane_context_t *context, void *object);

/**
 * Gives the context that an object was made on. STATUS_ERROR for a null output, and for a null object, in
 * which case null is written. Both names are one operation.
 * @{
 */
KORVANE_API korvane_status_t korvane_mesh_get_context(
    const korvane_mesh_t *mesh, korvane_context_t **context);
KORVANE_API korvane_status_t korvane_cad_get_context(const korvane_cad_t *cad, korvane_context_t **context);
/** @} */

/* ----------------------------------------------------------------------------------------------------
 * Message
 *
 * A message carries a number whose sign gives its severity, a text, the name of its sender, and two optional
 * payloads: integers and reals. The library's own messages live for one call of the message callback; a
 * client that makes messages of its own deletes them itself. Everything but the payloads is fixed at
 * creation.
 * -------------------------------------------------------------------------------------------------- */

/**
 * Creates a message with copies of both texts and no payload, or null if memory runs out. The texts must not
 * be null (not checked). The context is stored and never looked at.
 */
KORVANE_API korvane_message_t *korvane_message_new(
    korvane_context_t *context, int32_t number, const char *description, const char *sender);

/** Deletes a message and all it holds. Null is accepted. */
KORVANE_API void korvane_message_delete(korvane_message_t *message);

/**
 * The number, the text and the sender. The texts are the message's own copies, valid until it is deleted. The
 * outputs must not be null (not checked).
 * @{
 */
KORVANE_API korvane_status_t korvane_message_get_number(const korvane_message_t *message, int32_t *number);
KORVANE_API korvane_status_t korvane_message_get_description(
    const korvane_message_t *message, const char **text);
KORVANE_API korvane_status_t korvane_message_get_sender(const korvane_message_t *message, const char **text);
/** @} */

/**
 * The number of values in a payload. STATUS_ERROR for a null output.
 * @{
 */
KORVANE_API korvane_status_t korvane_message_get_integer_data_count(
    const korvane_message_t *message, int32_t *count);
KORVANE_API korvane_status_t korvane_message_get_real_data_count(
    const korvane_message_t *message, int32_t *count);
/** @} */

/**
 * Replaces a payload by a copy of `count` values. `values` may be null when `count` is 0. STATUS_ERROR for a
 * negative count or for null values with a positive one, the payload then staying as it is. STATUS_NOMEM if
 * the copy cannot be made: the old values are then gone and the count is stale, so the payload must not be
 * read.
 * @{
 */
KORVANE_API korvane_status_t korvane_message_set_integer_data(
    korvane_message_t *message, const int32_t *values, int32_t count);
KORVANE_API korvane_status_t korvane_message_set_real_data(
    korvane_message_t *message, const double *values, int32_t count);
/** @} */

/**
 * Copies the payload values `first` to `last`, numbered from 1 and both included, into the last - first + 1
 * elements of `values`. STATUS_ERROR if the range leaves the payload, or if `values` is null and the range
 * holds two values or more; for a range of one value it must not be null (not checked). A `first` above
 * `last` copies nothing.
 * @{
 */
KORVANE_API korvane_status_t korvane_message_get_integer_data(
    const korvane_message_t *message, int32_t first, int32_t last, int32_t *values);
KORVANE_API korvane_status_t korvane_message_get_real_data(
    const korvane_message_t *message, int32_t first, int32_t last, double *values);
/** @} */

/* ----------------------------------------------------------------------------------------------------
 * Tag system
 *
 * A tag is a client's integer on a mesh or CAD entity. An entity that belongs to several tagged regions
 * carries one composite tag, which stands for a set of base tags: the same set always gets the same composite
 * tag. Tag systems do not attach to a context; a mesh or CAD model deletes the one that was set on it.
 * -------------------------------------------------------------------------------------------------- */

/**
 * Creates a tag system sized for `base_tag_count` base tags (a hint: it grows). Null for a hint below -2, or
 * if memory runs out.
 */
KORVANE_API korvane_tag_system_t *korvane_tag_system_new(int32_t base_tag_count);

/** Makes a deep copy. Null for null, or if memory runs out. */
KORVANE_API korvane_tag_system_t *korvane_tag_system_clone(const korvane_tag_system_t *tag_system);

/** Deletes a tag system. Null is accepted. */
KORVANE_API void korvane_tag_system_delete(korvane_tag_system_t *tag_system);

/**
 * Declares a base tag, which is its own definition. Declaring it again changes nothing. The tag system must
 * not be null (not checked). STATUS_NOMEM if memory runs out.
 */
KORVANE_API korvane_status_t korvane_tag_system_add_base_tag(korvane_tag_system_t *tag_system, int32_t tag);

/**
 * Gives the tag that stands for the union of the definitions of `count` tags, base or composite: an existing
 * tag whose definition is exactly that union (so one base tag gives itself), else a new composite tag. A new
 * one takes the smallest number above the last one handed out that no tag uses. An empty list gives 0; a list
 * of unknown tags gives a fresh number that is not recorded. The tag system, `tags` (unless `count` is 0) and
 * the output must not be null (not checked). STATUS_NOMEM if memory runs out, STATUS_ERROR if all positive
 * numbers are taken; the output is 0 then.
 */
KORVANE_API korvane_status_t korvane_tag_system_get_composite_tag(
    korvane_tag_system_t *tag_system, const int32_t *tags, int32_t count, int32_t *composite_tag);

/**
 * Lists the base tags that a tag stands for, even ones first, each group in the order of recording.
 * `base_tags` needs the room that korvane_tag_system_get_buffer_size states. A base tag lists itself; an
 * unknown tag gives count 0. STATUS_ERROR if the tag system or an output is null. The name is spelled so.
 */
KORVANE_API korvane_status_t korvane_tag_system_get_composite_tag_defintion(
    const korvane_tag_system_t *tag_system, int32_t tag, int32_t *count, int32_t *base_tags);

/**
 * Lists all composite tags in the order of their creation; base tags are not among them. `tags` needs the
 * room that korvane_tag_system_get_buffer_size states. STATUS_ERROR for a null argument, STATUS_NOMEM if
 * memory runs out.
 */
KORVANE_API korvane_status_t korvane_tag_system_get_composite_tag_list(
    const korvane_tag_system_t *tag_system, int32_t *count, int32_t *tags);

/**
 * Gives the number of bytes that suffice for the arrays of the two listing functions above: at least 8. The
 * tag system must not be null (not checked).
 */
KORVANE_API int32_t korvane_tag_system_get_buffer_size(const korvane_tag_system_t *tag_system);

/* ----------------------------------------------------------------------------------------------------
 * Mesh
 *
 * A mesh is not a container but a table of callbacks: for every kind of entity and every attribute a getter
 * and a setter, registered by the client, by the in-memory storage or by a file reader. The accessors below
 * only dispatch to them, and the library itself reads every mesh only through them, so meshes served by
 * callbacks and meshes held in memory behave alike.
 *
 * There are 36 attributes, each with four functions:
 *
 *   korvane_mesh_get_<entity>_<attribute>      calls the getter with the arguments given and its user data
 *   korvane_mesh_set_<entity>_<attribute>      calls the setter likewise
 *   korvane_mesh_set_get_<entity>_<attribute>  registers the getter
 *   korvane_mesh_set_set_<entity>_<attribute>  registers the setter
 *
 * A null mesh gives STATUS_ERROR. Otherwise a call returns what the callback returns; indices and output
 * pointers are the callback's business. Getter and setter of an attribute share one user data pointer: the
 * last registration of either sets it for both. A registered callback must not be null (not checked).
 *
 * A getter that was never registered gives STATUS_OK and one 0 (or 0.0); a setter that was never registered
 * gives STATUS_ERROR: a new mesh reads as empty and refuses writes.
 *
 * `count` is the number of entities of a kind; all other attributes are asked for per entity by its index,
 * from 1 to the count. `vertices` are the indices of an element's vertices; `tag` is its reference number;
 * `periodic_id` identifies its periodic counterpart; `required_status` is non-zero for an entity that must be
 * kept; `extra_vertices` is a list of further vertex indices of an element, of any length.
 * -------------------------------------------------------------------------------------------------- */

/**
 * Callbacks of a mesh, by kind of attribute. They get the arguments of the accessor, without the mesh, and
 * then the user data. `values` are as many integers as the attribute has per entity.
 * @{
 */
typedef korvane_status_t (*korvane_mesh_count_getter_t)(int32_t *count, void *user_data);
typedef korvane_status_t (*korvane_mesh_count_setter_t)(int32_t count, void *user_data);
typedef korvane_status_t (*korvane_mesh_coordinates_getter_t)(int32_t index, double *xyz, void *user_data);
typedef korvane_status_t (*korvane_mesh_coordinates_setter_t)(
    int32_t index, const double *xyz, void *user_data);
typedef korvane_status_t (*korvane_mesh_values_getter_t)(int32_t index, int32_t *values, void *user_data);
typedef korvane_status_t (*korvane_mesh_values_setter_t)(
    int32_t index, const int32_t *values, void *user_data);
typedef korvane_status_t (*korvane_mesh_extra_vertices_getter_t)(
    int32_t index, int32_t *count, int32_t *vertices, void *user_data);
typedef korvane_status_t (*korvane_mesh_extra_vertices_setter_t)(
    int32_t index, int32_t count, const int32_t *vertices, void *user_data);
/** @} */

/** Creates a mesh without callbacks, which reads as empty. Null for a null context, or if memory runs out. */
KORVANE_API korvane_mesh_t *korvane_mesh_new(korvane_context_t *context);

/** Deletes a mesh, its tag system and its storage if it has one. Null is accepted. */
KORVANE_API void korvane_mesh_delete(korvane_mesh_t *mesh);

/** Accepts any mesh as it is, null included: STATUS_OK. */
KORVANE_API korvane_status_t korvane_mesh_check_consistency(const korvane_mesh_t *mesh);

/** @name Vertices
 *  `coordinates` hold 3 doubles (x, y, z); `tag`, `periodic_id` and `required_status` hold 1 integer each.
 *  @{ */
KORVANE_API korvane_status_t korvane_mesh_get_vertex_count(const korvane_mesh_t *mesh, int32_t *count);
KORVANE_API korvane_status_t korvane_mesh_set_vertex_count(korvane_mesh_t *mesh, int32_t count);
KORVANE_API korvane_status_t korvane_mesh_set_get_vertex_count(
    korvane_mesh_t *mesh, korvane_mesh_count_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_vertex_count(
    korvane_mesh_t *mesh, korvane_mesh_count_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_vertex_coordinates(
    const korvane_mesh_t *mesh, int32_t index, double *xyz);
KORVANE_API korvane_status_t korvane_mesh_set_vertex_coordinates(
    korvane_mesh_t *mesh, int32_t index, const double *xyz);
KORVANE_API korvane_status_t korvane_mesh_set_get_vertex_coordinates(
    korvane_mesh_t *mesh, korvane_mesh_coordinates_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_vertex_coordinates(
    korvane_mesh_t *mesh, korvane_mesh_coordinates_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_vertex_tag(
    const korvane_mesh_t *mesh, int32_t index, int32_t *tag);
KORVANE_API korvane_status_t korvane_mesh_set_vertex_tag(
    korvane_mesh_t *mesh, int32_t index, const int32_t *tag);
KORVANE_API korvane_status_t korvane_mesh_set_get_vertex_tag(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_vertex_tag(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_vertex_periodic_id(
    const korvane_mesh_t *mesh, int32_t index, int32_t *periodic_id);
KORVANE_API korvane_status_t korvane_mesh_set_vertex_periodic_id(
    korvane_mesh_t *mesh, int32_t index, const int32_t *periodic_id);
KORVANE_API korvane_status_t korvane_mesh_set_get_vertex_periodic_id(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_vertex_periodic_id(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_vertex_required_status(
    const korvane_mesh_t *mesh, int32_t index, int32_t *required_status);
KORVANE_API korvane_status_t korvane_mesh_set_vertex_required_status(
    korvane_mesh_t *mesh, int32_t index, const int32_t *required_status);
KORVANE_API korvane_status_t korvane_mesh_set_get_vertex_required_status(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_vertex_required_status(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
/** @} */

/** @name Edges
 *  `vertices` hold 2 vertex indices; `tag`, `periodic_id` and `required_status` hold 1 integer each;
 *  `extra_vertices` hold as many as their count says.
 *  @{ */
KORVANE_API korvane_status_t korvane_mesh_get_edge_count(const korvane_mesh_t *mesh, int32_t *count);
KORVANE_API korvane_status_t korvane_mesh_set_edge_count(korvane_mesh_t *mesh, int32_t count);
KORVANE_API korvane_status_t korvane_mesh_set_get_edge_count(
    korvane_mesh_t *mesh, korvane_mesh_count_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_edge_count(
    korvane_mesh_t *mesh, korvane_mesh_count_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_edge_vertices(
    const korvane_mesh_t *mesh, int32_t index, int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_edge_vertices(
    korvane_mesh_t *mesh, int32_t index, const int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_get_edge_vertices(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_edge_vertices(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_edge_tag(
    const korvane_mesh_t *mesh, int32_t index, int32_t *tag);
KORVANE_API korvane_status_t korvane_mesh_set_edge_tag(
    korvane_mesh_t *mesh, int32_t index, const int32_t *tag);
KORVANE_API korvane_status_t korvane_mesh_set_get_edge_tag(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_edge_tag(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_edge_periodic_id(
    const korvane_mesh_t *mesh, int32_t index, int32_t *periodic_id);
KORVANE_API korvane_status_t korvane_mesh_set_edge_periodic_id(
    korvane_mesh_t *mesh, int32_t index, const int32_t *periodic_id);
KORVANE_API korvane_status_t korvane_mesh_set_get_edge_periodic_id(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_edge_periodic_id(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_edge_required_status(
    const korvane_mesh_t *mesh, int32_t index, int32_t *required_status);
KORVANE_API korvane_status_t korvane_mesh_set_edge_required_status(
    korvane_mesh_t *mesh, int32_t index, const int32_t *required_status);
KORVANE_API korvane_status_t korvane_mesh_set_get_edge_required_status(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_edge_required_status(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_edge_extra_vertices(
    const korvane_mesh_t *mesh, int32_t index, int32_t *count, int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_edge_extra_vertices(
    korvane_mesh_t *mesh, int32_t index, int32_t count, const int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_get_edge_extra_vertices(
    korvane_mesh_t *mesh, korvane_mesh_extra_vertices_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_edge_extra_vertices(
    korvane_mesh_t *mesh, korvane_mesh_extra_vertices_setter_t callback, void *user_data);
/** @} */

/** @name Triangles
 *  `vertices` hold 3 vertex indices; `tag`, `periodic_id` and `required_status` hold 1 integer each;
 *  `extra_vertices` hold as many as their count says.
 *  @{ */
KORVANE_API korvane_status_t korvane_mesh_get_triangle_count(const korvane_mesh_t *mesh, int32_t *count);
KORVANE_API korvane_status_t korvane_mesh_set_triangle_count(korvane_mesh_t *mesh, int32_t count);
KORVANE_API korvane_status_t korvane_mesh_set_get_triangle_count(
    korvane_mesh_t *mesh, korvane_mesh_count_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_triangle_count(
    korvane_mesh_t *mesh, korvane_mesh_count_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_triangle_vertices(
    const korvane_mesh_t *mesh, int32_t index, int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_triangle_vertices(
    korvane_mesh_t *mesh, int32_t index, const int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_get_triangle_vertices(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_triangle_vertices(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_triangle_tag(
    const korvane_mesh_t *mesh, int32_t index, int32_t *tag);
KORVANE_API korvane_status_t korvane_mesh_set_triangle_tag(
    korvane_mesh_t *mesh, int32_t index, const int32_t *tag);
KORVANE_API korvane_status_t korvane_mesh_set_get_triangle_tag(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_triangle_tag(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_triangle_periodic_id(
    const korvane_mesh_t *mesh, int32_t index, int32_t *periodic_id);
KORVANE_API korvane_status_t korvane_mesh_set_triangle_periodic_id(
    korvane_mesh_t *mesh, int32_t index, const int32_t *periodic_id);
KORVANE_API korvane_status_t korvane_mesh_set_get_triangle_periodic_id(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_triangle_periodic_id(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_triangle_required_status(
    const korvane_mesh_t *mesh, int32_t index, int32_t *required_status);
KORVANE_API korvane_status_t korvane_mesh_set_triangle_required_status(
    korvane_mesh_t *mesh, int32_t index, const int32_t *required_status);
KORVANE_API korvane_status_t korvane_mesh_set_get_triangle_required_status(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_triangle_required_status(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_triangle_extra_vertices(
    const korvane_mesh_t *mesh, int32_t index, int32_t *count, int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_triangle_extra_vertices(
    korvane_mesh_t *mesh, int32_t index, int32_t count, const int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_get_triangle_extra_vertices(
    korvane_mesh_t *mesh, korvane_mesh_extra_vertices_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_triangle_extra_vertices(
    korvane_mesh_t *mesh, korvane_mesh_extra_vertices_setter_t callback, void *user_data);
/** @} */

/** @name Quadrangles
 *  `vertices` hold 4 vertex indices; `tag`, `periodic_id` and `required_status` hold 1 integer each;
 *  `extra_vertices` hold as many as their count says.
 *  @{ */
KORVANE_API korvane_status_t korvane_mesh_get_quadrangle_count(const korvane_mesh_t *mesh, int32_t *count);
KORVANE_API korvane_status_t korvane_mesh_set_quadrangle_count(korvane_mesh_t *mesh, int32_t count);
KORVANE_API korvane_status_t korvane_mesh_set_get_quadrangle_count(
    korvane_mesh_t *mesh, korvane_mesh_count_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_quadrangle_count(
    korvane_mesh_t *mesh, korvane_mesh_count_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_quadrangle_vertices(
    const korvane_mesh_t *mesh, int32_t index, int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_quadrangle_vertices(
    korvane_mesh_t *mesh, int32_t index, const int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_get_quadrangle_vertices(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_quadrangle_vertices(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_quadrangle_tag(
    const korvane_mesh_t *mesh, int32_t index, int32_t *tag);
KORVANE_API korvane_status_t korvane_mesh_set_quadrangle_tag(
    korvane_mesh_t *mesh, int32_t index, const int32_t *tag);
KORVANE_API korvane_status_t korvane_mesh_set_get_quadrangle_tag(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_quadrangle_tag(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_quadrangle_periodic_id(
    const korvane_mesh_t *mesh, int32_t index, int32_t *periodic_id);
KORVANE_API korvane_status_t korvane_mesh_set_quadrangle_periodic_id(
    korvane_mesh_t *mesh, int32_t index, const int32_t *periodic_id);
KORVANE_API korvane_status_t korvane_mesh_set_get_quadrangle_periodic_id(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_quadrangle_periodic_id(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_quadrangle_required_status(
    const korvane_mesh_t *mesh, int32_t index, int32_t *required_status);
KORVANE_API korvane_status_t korvane_mesh_set_quadrangle_required_status(
    korvane_mesh_t *mesh, int32_t index, const int32_t *required_status);
KORVANE_API korvane_status_t korvane_mesh_set_get_quadrangle_required_status(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_quadrangle_required_status(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_quadrangle_extra_vertices(
    const korvane_mesh_t *mesh, int32_t index, int32_t *count, int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_quadrangle_extra_vertices(
    korvane_mesh_t *mesh, int32_t index, int32_t count, const int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_get_quadrangle_extra_vertices(
    korvane_mesh_t *mesh, korvane_mesh_extra_vertices_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_quadrangle_extra_vertices(
    korvane_mesh_t *mesh, korvane_mesh_extra_vertices_setter_t callback, void *user_data);
/** @} */

/** @name Tetrahedra
 *  `vertices` hold 4 vertex indices; `tag` and `required_status` hold 1 integer each; `extra_vertices` hold
 *  as many as their count says.
 *  @{ */
KORVANE_API korvane_status_t korvane_mesh_get_tetrahedron_count(const korvane_mesh_t *mesh, int32_t *count);
KORVANE_API korvane_status_t korvane_mesh_set_tetrahedron_count(korvane_mesh_t *mesh, int32_t count);
KORVANE_API korvane_status_t korvane_mesh_set_get_tetrahedron_count(
    korvane_mesh_t *mesh, korvane_mesh_count_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_tetrahedron_count(
    korvane_mesh_t *mesh, korvane_mesh_count_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_tetrahedron_vertices(
    const korvane_mesh_t *mesh, int32_t index, int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_tetrahedron_vertices(
    korvane_mesh_t *mesh, int32_t index, const int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_get_tetrahedron_vertices(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_tetrahedron_vertices(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_tetrahedron_tag(
    const korvane_mesh_t *mesh, int32_t index, int32_t *tag);
KORVANE_API korvane_status_t korvane_mesh_set_tetrahedron_tag(
    korvane_mesh_t *mesh, int32_t index, const int32_t *tag);
KORVANE_API korvane_status_t korvane_mesh_set_get_tetrahedron_tag(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_tetrahedron_tag(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_tetrahedron_required_status(
    const korvane_mesh_t *mesh, int32_t index, int32_t *required_status);
KORVANE_API korvane_status_t korvane_mesh_set_tetrahedron_required_status(
    korvane_mesh_t *mesh, int32_t index, const int32_t *required_status);
KORVANE_API korvane_status_t korvane_mesh_set_get_tetrahedron_required_status(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_tetrahedron_required_status(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_tetrahedron_extra_vertices(
    const korvane_mesh_t *mesh, int32_t index, int32_t *count, int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_tetrahedron_extra_vertices(
    korvane_mesh_t *mesh, int32_t index, int32_t count, const int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_get_tetrahedron_extra_vertices(
    korvane_mesh_t *mesh, korvane_mesh_extra_vertices_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_tetrahedron_extra_vertices(
    korvane_mesh_t *mesh, korvane_mesh_extra_vertices_setter_t callback, void *user_data);
/** @} */

/** @name Hexahedra
 *  `vertices` hold 8 vertex indices; `tag` and `required_status` hold 1 integer each.
 *  @{ */
KORVANE_API korvane_status_t korvane_mesh_get_hexahedron_count(const korvane_mesh_t *mesh, int32_t *count);
KORVANE_API korvane_status_t korvane_mesh_set_hexahedron_count(korvane_mesh_t *mesh, int32_t count);
KORVANE_API korvane_status_t korvane_mesh_set_get_hexahedron_count(
    korvane_mesh_t *mesh, korvane_mesh_count_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_hexahedron_count(
    korvane_mesh_t *mesh, korvane_mesh_count_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_hexahedron_vertices(
    const korvane_mesh_t *mesh, int32_t index, int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_hexahedron_vertices(
    korvane_mesh_t *mesh, int32_t index, const int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_get_hexahedron_vertices(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_hexahedron_vertices(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_hexahedron_tag(
    const korvane_mesh_t *mesh, int32_t index, int32_t *tag);
KORVANE_API korvane_status_t korvane_mesh_set_hexahedron_tag(
    korvane_mesh_t *mesh, int32_t index, const int32_t *tag);
KORVANE_API korvane_status_t korvane_mesh_set_get_hexahedron_tag(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_hexahedron_tag(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_hexahedron_required_status(
    const korvane_mesh_t *mesh, int32_t index, int32_t *required_status);
KORVANE_API korvane_status_t korvane_mesh_set_hexahedron_required_status(
    korvane_mesh_t *mesh, int32_t index, const int32_t *required_status);
KORVANE_API korvane_status_t korvane_mesh_set_get_hexahedron_required_status(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_hexahedron_required_status(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
/** @} */

/** @name Pyramids
 *  `vertices` hold 5 vertex indices; `tag` and `required_status` hold 1 integer each.
 *  @{ */
KORVANE_API korvane_status_t korvane_mesh_get_pyramid_count(const korvane_mesh_t *mesh, int32_t *count);
KORVANE_API korvane_status_t korvane_mesh_set_pyramid_count(korvane_mesh_t *mesh, int32_t count);
KORVANE_API korvane_status_t korvane_mesh_set_get_pyramid_count(
    korvane_mesh_t *mesh, korvane_mesh_count_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_pyramid_count(
    korvane_mesh_t *mesh, korvane_mesh_count_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_pyramid_vertices(
    const korvane_mesh_t *mesh, int32_t index, int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_pyramid_vertices(
    korvane_mesh_t *mesh, int32_t index, const int32_t *vertices);
KORVANE_API korvane_status_t korvane_mesh_set_get_pyramid_vertices(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_pyramid_vertices(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_pyramid_tag(
    const korvane_mesh_t *mesh, int32_t index, int32_t *tag);
KORVANE_API korvane_status_t korvane_mesh_set_pyramid_tag(
    korvane_mesh_t *mesh, int32_t index, const int32_t *tag);
KORVANE_API korvane_status_t korvane_mesh_set_get_pyramid_tag(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_pyramid_tag(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_get_pyramid_required_status(
    const korvane_mesh_t *mesh, int32_t index, int32_t *required_status);
KORVANE_API korvane_status_t korvane_mesh_set_pyramid_required_status(
    korvane_mesh_t *mesh, int32_t index, const int32_t *required_status);
KORVANE_API korvane_status_t korvane_mesh_set_get_pyramid_required_status(
    korvane_mesh_t *mesh, korvane_mesh_values_getter_t callback, void *user_data);
KORVANE_API korvane_status_t korvane_mesh_set_set_pyramid_required_status(
    korvane_mesh_t *mesh, korvane_mesh_values_setter_t callback, void *user_data);
/** @} */
/**
 * Hands a tag system over to the mesh, which deletes it with itself. One that was set before is forgotten,
 * neither deleted nor returned.
 */
KORVANE_API korvane_status_t korvane_mesh_set_tag_system(
    korvane_mesh_t *mesh, korvane_tag_system_t *tag_system);

/** Gives the mesh's tag system, or null. The output must not be null (not checked). */
KORVANE_API korvane_status_t korvane_mesh_get_tag_system(
    const korvane_mesh_t *mesh, korvane_tag_system_t **tag_system);

/**
 * Lists the composite tags of the mesh's tag system, as korvane_tag_system_get_composite_tag_list. Without
 * one: a count of 0 and a first value of 0. A buffer of korvane_mesh_calloc_generic_buffer is large enough.
 * STATUS_ERROR for a null argument.
 */
KORVANE_API korvane_status_t korvane_mesh_get_composite_tag_list(
    const korvane_mesh_t *mesh, int32_t *count, int32_t *list);

/**
 * Lists the base tags of a tag, as korvane_tag_system_get_composite_tag_defintion. Without a tag system every
 * tag is its own definition. A buffer of korvane_mesh_calloc_generic_buffer is large enough. STATUS_ERROR for
 * a null argument.
 */
KORVANE_API korvane_status_t korvane_mesh_get_composite_tag_definition(
    const korvane_mesh_t *mesh, int32_t tag, int32_t *count, int32_t *base_tags);

/**
 * Allocates a zeroed buffer from the library's heap: 80 bytes, or what the mesh's tag system needs for its
 * lists if that is more. Null if memory runs out. Release it with korvane_mesh_free_generic_buffer. The mesh
 * must not be null (not checked).
 */
KORVANE_API void *korvane_mesh_calloc_generic_buffer(const korvane_mesh_t *mesh);

/** Releases a generic buffer. Null is accepted. */
KORVANE_API void korvane_mesh_free_generic_buffer(void *buffer);

/* ----------------------------------------------------------------------------------------------------
 * In-memory mesh
 *
 * A mesh that the library holds itself, in arrays that serve all 36 attributes. Set the count of a kind
 * first, then its attributes by index: each array is sized to exactly the count the first time that its
 * attribute is written after the count changed, so that setting the final count first costs one allocation
 * per attribute. Lowering a count truncates an array at its next write.
 *
 * Reading at an index within the count gives what was written, or zeros where nothing was; an index
 * outside 1..count gives STATUS_ERROR, on reading and on writing. STATUS_NOMEM if an array cannot be grown:
 * it then stays as it was. A count setter takes any value; attributes cannot be written while it is negative.
 *
 * Kept on purpose: of the extra vertices of an element, only the count modulo 1000 are stored and given back,
 * while the count itself is kept and given back whole: a count of 1003 holds three vertices.
 *
 * The client may replace any callback of such a mesh by its own. An attribute of which one callback was
 * replaced is no longer served by the arrays: its other callback gives STATUS_ERROR until it is replaced too.
 * -------------------------------------------------------------------------------------------------- */

/** Creates an empty in-memory mesh. The context must not be null (not checked). Null if memory runs out. */
KORVANE_API korvane_mesh_t *korvane_mesh_new_in_memory(korvane_context_t *context);

/* ----------------------------------------------------------------------------------------------------
 * Mesh files
 *
 * GMF mesh files, text (".mesh") or binary (".meshb") by the end of their name. A file holds vertices, edges,
 * triangles, quadrilaterals, tetrahedra, hexahedra and pyramids with one tag each, and the lists of required
 * vertices, edges, triangles and quadrilaterals. Other keywords are passed over by the reader and never
 * written.
 *
 * Failures are reported as messages on the context, whose number is the status.
 * -------------------------------------------------------------------------------------------------- */

/**
 * Writes any mesh to a file, in double precision. A count that cannot be read counts as 0, a tag or required
 * flag that cannot be read as 0. STATUS_ERROR, and a message, if the file cannot be opened or written
 * completely, if the mesh does not fit the format (positions in a binary file are 32 bits), or if vertices
 * cannot be read. `file_name` must not be null (not checked).
 */
KORVANE_API korvane_status_t korvane_mesh_write_mesh(const korvane_mesh_t *mesh, const char *file_name);

/**
 * Reads a file of three dimensions into a new in-memory mesh, or returns null after a message. What a
 * truncated file lacks reads as zeros. Vertex indices are not compared with the number of vertices. The
 * context and `file_name` must not be null (not checked).
 */
KORVANE_API korvane_mesh_t *korvane_mesh_new_read_mesh(korvane_context_t *context, const char *file_name);

/* ----------------------------------------------------------------------------------------------------
 * Quality
 *
 * Measures of single elements of any mesh. Degenerate elements are not errors: they measure infinite. Failing
 * mesh callbacks are not errors either: the measure works with what they left.
 * -------------------------------------------------------------------------------------------------- */

/**
 * The aspect ratio of a triangle, sqrt(3)/12 hmax p / A, with its longest side hmax, its perimeter p and its
 * area A (that is hmax / (2 sqrt(3) r) with the radius r of the inscribed circle; C. J. Stimpson et al., "The
 * Verdict Geometric Quality Library", Sandia report SAND2007-1751, triangle aspect ratio): 1 for an
 * equilateral triangle, larger is worse, infinite for one without area. `ratio` receives 1 value and must not
 * be null (not checked).
 */
KORVANE_API korvane_status_t korvane_mesh_get_triangle_aspect_ratio(
    const korvane_mesh_t *mesh, uint32_t index, double *ratio);

/**
 * The aspect ratio of a tetrahedron, sqrt(6)/36 hmax S / V, with its longest edge hmax, the area S of its
 * faces and its signed volume V (that is hmax / (2 sqrt(6) r) with the radius r of the inscribed sphere;
 * ibid., tetrahedron aspect ratio): 1 for a regular tetrahedron, larger is worse, infinite for one that is
 * flat or inverted, that is, whose first three vertices turn clockwise as seen from the fourth. `ratio`
 * receives 1 value and must not be null (not checked).
 */
KORVANE_API korvane_status_t korvane_mesh_get_tetrahedron_aspect_ratio(
    const korvane_mesh_t *mesh, uint32_t index, double *ratio);

/* ----------------------------------------------------------------------------------------------------
 * Statistics
 *
 * Reports on a whole mesh, sent as messages with number 0 to its context. The readable form sends one message
 * per heading, count and measure; the keyed form sends one message "VALID.<name>.<key> = <value>\n" per
 * value.
 * -------------------------------------------------------------------------------------------------- */

/**
 * Reports, in readable form, the entity counts and, for every measure, its extremes and where they are
 * reached, its mean, variance and sample size: aspect ratios of triangles, quadrangles, tetrahedra and
 * hexahedra, angles of triangles and quadrangles, planarity of quadrangles, lengths of the distinct edges of
 * the surface elements and of the tetrahedra. STATUS_ERROR for a null mesh. What memory does not suffice for
 * is left out of the report.
 */
KORVANE_API korvane_status_t korvane_mesh_compute_statistics(const korvane_mesh_t *mesh);

/**
 * Reports the same in keyed form under `name`, followed by the topological statistics. STATUS_ERROR for a
 * null mesh or name.
 */
KORVANE_API korvane_status_t korvane_mesh_compute_statistics_valid(
    const korvane_mesh_t *mesh, const char *name);

/**
 * Reports, in readable form, on the graph of the triangles and quadrangles: free edges (of one face only) and
 * their connected components, non-manifold edges (of three faces or more) and their components, and the
 * components of the surface when faces count as neighbours across common edges. STATUS_ERROR for a null mesh.
 * STATUS_OK also when the mesh cannot be read or memory runs out: then only the heading is sent.
 */
KORVANE_API korvane_status_t korvane_mesh_compute_topological_statistics(const korvane_mesh_t *mesh);

#ifdef __cplusplus
}
#endif

#endif /* KORVANE_H */
