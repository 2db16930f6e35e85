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
 * degrees; identifiers, counts, tags and flags are 32-bit integers: signed, but for the identifiers and tags
 * of CAD faces, edges and points.
 *
 * Statuses. Nearly every function returns a status: ::STATUS_OK, ::STATUS_ERROR or ::STATUS_NOMEM. A function
 * that forwards to a client callback returns the callback's status unchanged, so client-defined codes can be
 * seen there.
 *
 * Unchecked arguments. Null object handles are tested unless stated otherwise. What a function leaves to the
 * caller is marked "(not checked)" in its description: passing anything else there is undefined.
 *
 * Callbacks run on the calling thread, during the call that needs them. They must return normally: an
 * exception or a jump out of a callback is undefined. They may change the mesh that is being read, and
 * replace its callbacks, but must not delete an object that the running call works on.
 *
 * Threads. The library creates none and takes no lock. An object is used by one thread at a time. The table
 * of open files is shared by the process: functions that read or write files must not run concurrently.
 */
#ifndef KORVANE_H
#define KORVANE_H

#include <stdint.h>

/** Marks what the library exports. */
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
    korvane_tag_system_t;                           /**< composite tags and the base tags they stand for */
typedef struct korvane_mesh_s korvane_mesh_t;       /**< a table of mesh callbacks */
typedef struct korvane_sizemap_s korvane_sizemap_t; /**< wanted element sizes */
typedef struct korvane_cad_s korvane_cad_t;         /**< a boundary representation evaluated by the client */
typedef struct korvane_cad_face_s korvane_cad_face_t;   /**< a parametric surface of a CAD model */
typedef struct korvane_cad_edge_s korvane_cad_edge_t;   /**< a curve in the parameter plane of a face */
typedef struct korvane_cad_point_s korvane_cad_point_t; /**< a free vertex on a face */
typedef struct korvane_dcad_s korvane_dcad_t;           /**< discretizations of the edges of a CAD model */
typedef struct korvane_dcad_edge_discretization_s
    korvane_dcad_edge_discretization_t; /**< the vertices along an edge */

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

/** Frees user data. */
typedef void (*korvane_user_data_delete_t)(void *user_data);

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
 * numbers are taken; the output is 0 then. After STATUS_NOMEM a part of the new tag's definition can stay
 * recorded.
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
 * Gives the number of bytes that suffice for the arrays of the two listing functions above: at least 8. It
 * grows with the tags that are declared or handed out, so ask anew before listing. The tag system must not be
 * null (not checked).
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
 * A getter that was never registered gives STATUS_OK and writes one 0 (or 0.0): only the first value,
 * whatever the attribute has; a null output gives STATUS_ERROR. That of extra vertices sets the count to 0
 * first, which must not be null (not checked). A setter that was never registered gives STATUS_ERROR. So a
 * new mesh reads as empty and refuses writes.
 *
 * `count` is the number of entities of a kind; all other attributes are asked for per entity by its index,
 * from 1 to the count. `vertices` are the indices of an element's vertices; `tag` is its reference number;
 * `periodic_id` identifies its periodic counterpart; `required_status` is non-zero for an entity that must be
 * kept; `extra_vertices` is a list of further vertex indices of an element, for which the caller provides
 * room.
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

/** Vertices.
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

/** Edges.
 *  `vertices` hold 2 vertex indices; `tag`, `periodic_id` and `required_status` hold 1 integer each;
 *  `extra_vertices` hold a list of vertex indices.
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

/** Triangles.
 *  `vertices` hold 3 vertex indices; `tag`, `periodic_id` and `required_status` hold 1 integer each;
 *  `extra_vertices` hold a list of vertex indices.
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

/** Quadrangles.
 *  `vertices` hold 4 vertex indices; `tag`, `periodic_id` and `required_status` hold 1 integer each;
 *  `extra_vertices` hold a list of vertex indices.
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

/** Tetrahedra.
 *  `vertices` hold 4 vertex indices; `tag` and `required_status` hold 1 integer each; `extra_vertices` hold a
 *  list of vertex indices.
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

/** Hexahedra.
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

/** Pyramids.
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
 * one: a count of 0 and a first value of 0. A buffer of korvane_mesh_calloc_generic_buffer is large enough
 * if it was made after the last tag was declared or handed out. STATUS_ERROR for a null argument.
 */
KORVANE_API korvane_status_t korvane_mesh_get_composite_tag_list(
    const korvane_mesh_t *mesh, int32_t *count, int32_t *list);

/**
 * Lists the base tags of a tag, as korvane_tag_system_get_composite_tag_defintion. Without a tag system every
 * tag is its own definition. A buffer of korvane_mesh_calloc_generic_buffer is large enough if it was made
 * after the last tag was declared or handed out. STATUS_ERROR for a null argument.
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
 * Outputs and values must not be null (not checked).
 *
 * Kept on purpose: of the extra vertices of an element, only the count modulo 1000 are stored and given back,
 * while the count itself is kept and given back whole: a count of 1003 holds three vertices, and no list
 * needs more room than 999.
 *
 * The client may replace any callback of such a mesh by its own. An attribute of which one callback was
 * replaced is no longer served by the arrays: its other callback gives STATUS_ERROR until it is replaced too.
 * -------------------------------------------------------------------------------------------------- */

/** Creates an empty in-memory mesh. The context must not be null (not checked). Null if memory runs out. */
KORVANE_API korvane_mesh_t *korvane_mesh_new_in_memory(korvane_context_t *context);

/* ----------------------------------------------------------------------------------------------------
 * Mesh files
 *
 * GMF mesh files, text (".mesh") or binary (".meshb") by the end of their name; a name that ends otherwise,
 * or that has more than 1016 characters, cannot be opened. A file holds vertices, edges, triangles,
 * quadrilaterals, tetrahedra, hexahedra and pyramids with one tag each, and the lists of required vertices,
 * edges, triangles and quadrilaterals. Other keywords are passed over by the reader and never written.
 *
 * Failures are reported as messages on the context, whose number is a status.
 * -------------------------------------------------------------------------------------------------- */

/**
 * Writes any mesh to a file, in double precision. A count, tag or required flag that cannot be read counts as
 * 0. STATUS_ERROR, and a message, if the file cannot be opened or written completely, if the mesh does not
 * fit the format (positions in a binary file are 32 bits), or if the coordinates of a vertex or the vertices
 * of an element cannot be read; the file then ends before that vertex or element. STATUS_ERROR alone for a
 * null mesh. A null `file_name` is a file that cannot be opened.
 *
 * Kept on purpose: the message about coordinates has the status of their callback as its number.
 */
KORVANE_API korvane_status_t korvane_mesh_write_mesh(const korvane_mesh_t *mesh, const char *file_name);

/**
 * Reads a file of three dimensions into a new in-memory mesh, or returns null after a message. What a
 * truncated file lacks reads as zeros. Vertex indices are not compared with the number of vertices; indices
 * in the lists of required entities that are not those of an entity are passed over. A null `file_name` is a
 * file that cannot be opened. The context must not be null (not checked).
 */
KORVANE_API korvane_mesh_t *korvane_mesh_new_read_mesh(korvane_context_t *context, const char *file_name);

/* ----------------------------------------------------------------------------------------------------
 * Size maps
 *
 * A size map tells a mesh generator the size of the elements that are wanted at a place, as the length of
 * their edges. The client defines one by a callback with user data; one per vertex of a mesh can also be kept
 * in a GMF solution file (text ".sol" or binary ".solb", by the end of the name), as one scalar per vertex
 * under "SolAtVertices".
 *
 * A size map is attached to the context of the object that it is made on, which deletes it if it is left
 * over. It keeps a pointer to that object, uses it only to be written, and does not keep it alive.
 * -------------------------------------------------------------------------------------------------- */

/**
 * The type of a size map, 1..6. The library queries, writes and reads one size per vertex of a mesh; size
 * maps of the other types it only stores, for the programs that understand them.
 */
enum korvane_sizemap_type_e {
    KORVANE_SIZEMAP_ISO_MESH_VERTEX = 4 /**< the same size in all directions, per vertex of a mesh */
};

/**
 * Writes the size wanted at a vertex of the mesh, numbered from 1, into `size`, one value. When a file is
 * written, that is 0 if the callback leaves it as it is.
 */
typedef korvane_status_t (*korvane_sizemap_function_t)(int32_t vertex, double *size, void *user_data);

/**
 * Creates a size map of a type on an object: a mesh for KORVANE_SIZEMAP_ISO_MESH_VERTEX, and otherwise a mesh
 * or a CAD model (not checked). Of other types the library stores the callback without calling it, so that a
 * callback of another signature may be cast to this one. Null for a null object or callback, another type
 * than 1..6, or if memory runs out. The user data stay the client's, unless
 * korvane_sizemap_set_delete_function hands them over.
 */
KORVANE_API korvane_sizemap_t *korvane_sizemap_new(
    const void *object, int32_t type, korvane_sizemap_function_t function, void *user_data);

/** Detaches a size map from its context and deletes it, with its user data if it owns them. Null is accepted.
 */
KORVANE_API void korvane_sizemap_delete(korvane_sizemap_t *sizemap);

/**
 * Makes a size map the owner of its user data: `function` is called with them, if they are not null, when it
 * is deleted. Null takes the ownership back.
 */
KORVANE_API korvane_status_t korvane_sizemap_set_delete_function(
    korvane_sizemap_t *sizemap, korvane_user_data_delete_t function);

/**
 * Gives the callback and its user data. STATUS_ERROR for a null argument.
 * @{
 */
KORVANE_API korvane_status_t korvane_sizemap_get_function(
    const korvane_sizemap_t *sizemap, korvane_sizemap_function_t *function);
KORVANE_API korvane_status_t korvane_sizemap_get_user_data(
    const korvane_sizemap_t *sizemap, void **user_data);
/** @} */

/** Gives the type. The output must not be null (not checked). */
KORVANE_API korvane_status_t korvane_sizemap_get_type(const korvane_sizemap_t *sizemap, int32_t *type);

/**
 * Asks a size map of type KORVANE_SIZEMAP_ISO_MESH_VERTEX for the size at a vertex, and returns the status of
 * its callback. STATUS_ERROR for a null argument and for other types. A size map that was read from a file
 * gives STATUS_ERROR and the size 0 for a vertex outside 1..count. The vertex is otherwise handed to the
 * callback as it is.
 */
KORVANE_API korvane_status_t korvane_sizemap_iso_mesh_vertex_get_size(
    const korvane_sizemap_t *sizemap, int32_t vertex, double *size);

/**
 * Writes a size map of type KORVANE_SIZEMAP_ISO_MESH_VERTEX to a solution file, in double precision: one size
 * per vertex of its mesh, which must still exist (not checked). If the mesh cannot tell its number of
 * vertices, or if the callback fails for a vertex, the file ends there, and that status is returned after a
 * message. STATUS_ERROR, and one or two messages on the context, for other types, and if the file cannot be
 * opened (null is no name) or written completely; STATUS_ERROR alone for a null size map.
 */
KORVANE_API korvane_status_t korvane_sizemap_write_sol(
    const korvane_sizemap_t *sizemap, const char *file_name);

/**
 * Reads a solution file into a new size map of type KORVANE_SIZEMAP_ISO_MESH_VERTEX on a mesh, or returns
 * null, after a message unless the mesh is null or memory for the sizes runs out. The file must hold one
 * scalar for each vertex of the mesh, and nothing else for them. What a truncated file lacks reads as zeros,
 * and so do all sizes of a text file of version 3. The dimension of the file is not compared with the mesh. A
 * null `file_name` is no file. The sizes belong to the size map.
 *
 * Kept on purpose: the messages have the prefixes and words of other operations.
 */
KORVANE_API korvane_sizemap_t *korvane_sizemap_new_read_sol(
    const korvane_mesh_t *mesh, const char *file_name);

/* ----------------------------------------------------------------------------------------------------
 * NASTRAN
 *
 * Bulk data for the finite element programs that read NASTRAN input: GRID* cards for vertices, and CBAR,
 * CTRIA3, CQUAD4, CTETRA and CHEXA cards for edges, triangles, quadrilaterals, tetrahedra and hexahedra.
 * -------------------------------------------------------------------------------------------------- */

/**
 * Writes any mesh as bulk data. Elements are numbered from 1 across all kinds, in the order above; their tags
 * are their property identifiers, 0 for a tag that cannot be read. Pyramids, required flags and the tags of
 * vertices are not written. Coordinates keep nine digits.
 *
 * STATUS_ERROR, and a message on the context, if the file cannot be opened (null is no name) or written
 * completely, if the coordinates of a vertex cannot be read, or if the number of a vertex of an element has
 * more than 8 characters; the status of the mesh, and a message, if the vertices of an element cannot be
 * read. The file then ends where it failed. STATUS_ERROR alone for a null mesh.
 *
 * Kept on purpose: exactly two blanks follow the name of a card, and a CHEXA card has all vertices on one
 * line. A file without elements is complete, but the status is that of the tag of the last vertex or, without
 * vertices, of their count.
 */
KORVANE_API korvane_status_t korvane_mesh_write_bdf(const korvane_mesh_t *mesh, const char *file_name);

/* ----------------------------------------------------------------------------------------------------
 * Quality
 *
 * Measures of single elements of any mesh. Degenerate elements are not errors: they measure infinite. Failing
 * mesh callbacks are not errors either: what they leave out counts as 0. `index` goes from 1 to the number of
 * elements (not checked); it is handed to the callbacks as int32_t.
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
 * value, in this order:
 *
 *   triangle.ratio, quadrangle.ratio      their shares, if there are both kinds
 *   vertex.count, edge.count, triangle.count, quadrangle.count, tetrahedra.count, hexahedra.count,
 *   pyramid.count                         those that are not 0
 *   triangle.aspect_ratio.*, triangle.angles.*, quadrangle.aspect_ratio.*, quadrangle.angles.*,
 *   quadrangle.planarity.*, tetrahedron.aspect_ratio.*, hexahedron.aspect_ratio.*, surface_edges.length.*,
 *   volume_edges.length.*                 those that there are values of; for each:
 *       min, max, avg, var                as "%e" prints them
 *       count, count                      the sample size, twice
 *       min_achieved, max_achieved        numbers of elements, or of edges in the order of their discovery
 *   free_edge.count, free_edge_component.count, non_manifold_edge.count, non_manifold_edge_component.count,
 *   surface_component_by_edge.count       always
 *
 * Pyramids are counted and not measured. A value that is not a number is printed as "nan" or "-nan". A name
 * of more than about 200 characters makes lines that are cut. Kept on purpose: the two shares are sent in the
 * readable form, too, as "VALID.(null).triangle.ratio" and "VALID.(null).quadrangle.ratio".
 *
 * The sample size counts values: a triangle has three angles. Angles are in degrees, with 3.141593 for pi. An
 * extreme belongs to the first element that reaches it, or to element 0 if no value is below infinity. An
 * infinite value makes the mean infinite, and the variance too as soon as there are two values. A value that
 * is not a number changes no extreme.
 *
 * Kept on purpose: the variance is a running one that weighs the shift of the mean by the new count, so that
 * it comes close to the variance of the sample only when that is large.
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

/* ----------------------------------------------------------------------------------------------------
 * CAD
 *
 * A CAD model describes a boundary representation whose geometry lives in the client. It holds faces; a face
 * holds the edges that bound it and free points. A face is a parametric surface and an edge a curve in the
 * (u, v) plane of its face: both are functions of the client, called with the client's user data, after every
 * output that is asked for was set to zero. Both may be derived from others by the library itself (see
 * Derived geometry).
 *
 * Ownership. A model owns its faces; a face owns its edges, its points and, through its delete function, its
 * user data; an edge likewise owns the user data of its curve.
 *
 * Lifetime. A unit of lifetime is a model with all its faces and their edges, or a face without a model (a
 * free-standing face) with its edges, or an edge without a face. It has one counter of references, and goes
 * as a whole when that comes down to 0: a client gives back every handle that it was given, by its `_delete`,
 * in any order. Deleting a face or an edge never takes it out of its owner. Points are not counted.
 *
 *   what is done                                       counter of the unit that the object is in
 *   -------------------------------------------------  ----------------------------------------------------
 *   korvane_cad_new                                    starts at 1
 *   a face or edge is made in an owner                 1 more
 *   a face or edge is made or copied without an owner  starts at 1 (Kept on purpose: the copy of an edge
 *                                                      starts at the edge's own counter instead: that of a
 *                                                      free-standing edge as it is, 1 for one made on a face,
 *                                                      0 for one that was attached, which goes with the first
 *                                                      handle that is given back)
 *   a free-standing object is attached                 1 more, and the object's own counter is forgotten: of
 *                                                      all references to it and its edges, one remains to be
 *                                                      given back, so give back the others before
 *   korvane_cad_face_clone, korvane_cad_edge_clone     1 more
 *   korvane_cad_delete, _face_delete, _edge_delete     1 less
 *   a face is derived from another                     takes over one reference that the caller holds on the
 *                                                      source, and gives it back with its user data
 *   an edge is derived from another as affine image    none; but its copies take one that they never give
 *                                                      back (Kept on purpose)
 *   a polyline is made with original edges             1 more per run of equal edges, given back with its
 *                                                      user data
 *
 * A model that holds references to itself, through a face derived from one of its own, or that the client
 * forgets, goes with its context, whatever its counter. Free-standing objects are in no context: one that
 * holds references to itself goes only if it is attached to a model. Handles of a model and of its faces,
 * edges and points must not be used after its context. The exception is what was derived from them elsewhere:
 * it may still be deleted, and evaluating it gives STATUS_ERROR.
 *
 * When a unit goes, first all delete functions run, once each, in the order of the faces: those of a face's
 * edges, then its own. Meanwhile every face and edge of the unit still exists, references that are given back
 * to the unit have no effect, and nothing can be added to it: making or attaching fails. Another unit whose
 * last reference a derived face or edge gives back goes in the same way, before the next delete function of
 * the first runs. Records are freed when all of them are through. A context ends its models newest first;
 * their delete functions must not use handles of newer models of that context.
 * -------------------------------------------------------------------------------------------------- */

/** Creates an empty model. Null for a null context, or if memory runs out. */
KORVANE_API korvane_cad_t *korvane_cad_new(korvane_context_t *context);

/** Gives back one reference to a model, which goes with the last one. Null is accepted. */
KORVANE_API void korvane_cad_delete(korvane_cad_t *cad);

/** Gives the number of faces. The output must not be null (not checked). */
KORVANE_API korvane_status_t korvane_cad_get_face_count(const korvane_cad_t *cad, int32_t *count);

/**
 * Gives a face by its index, without a reference. STATUS_ERROR for an index outside 1..count. The output must
 * not be null (not checked).
 */
KORVANE_API korvane_status_t korvane_cad_get_face(
    const korvane_cad_t *cad, int32_t index, korvane_cad_face_t **face);

/**
 * Whether tags were set on points or ends of edges, on edges, or on faces of the model: 0 or 1. Once set, a
 * flag stays. The output must not be null (not checked).
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_get_use_vtag(const korvane_cad_t *cad, int32_t *flag);
KORVANE_API korvane_status_t korvane_cad_get_use_etag(const korvane_cad_t *cad, int32_t *flag);
KORVANE_API korvane_status_t korvane_cad_get_use_ftag(const korvane_cad_t *cad, int32_t *flag);
/** @} */

/**
 * Whether the client's functions may be called by several threads at once: the client's statement (non-zero
 * for yes) to the mesh generators, of which the library takes no notice. STATUS_ERROR for a null output.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_set_thread_safety(korvane_cad_t *cad, int32_t flag);
KORVANE_API korvane_status_t korvane_cad_get_thread_safety(const korvane_cad_t *cad, int32_t *flag);
/** @} */

/**
 * Hands a tag system over to the model, which deletes it with itself: the client must neither delete it nor
 * hand it to another object. One that was set before is forgotten, neither deleted nor returned.
 */
KORVANE_API korvane_status_t korvane_cad_set_tag_system(korvane_cad_t *cad, korvane_tag_system_t *tag_system);

/** Gives the model's tag system, or null. The output must not be null (not checked). */
KORVANE_API korvane_status_t korvane_cad_get_tag_system(
    const korvane_cad_t *cad, korvane_tag_system_t **tag_system);

/**
 * Lists the composite tags of the model's tag system, as korvane_tag_system_get_composite_tag_list, into room
 * of the size of korvane_tag_system_get_buffer_size. Without one: a count of 0 and a first value of 0.
 * STATUS_ERROR for a null argument.
 */
KORVANE_API korvane_status_t korvane_cad_get_composite_tag_list(
    const korvane_cad_t *cad, int32_t *count, int32_t *list);

/**
 * Lists the base tags of a tag, as korvane_tag_system_get_composite_tag_defintion, into room of the size of
 * korvane_tag_system_get_buffer_size. Without a tag system every tag is its own definition. STATUS_ERROR for
 * a null argument.
 */
KORVANE_API korvane_status_t korvane_cad_get_composite_tag_definition(
    const korvane_cad_t *cad, int32_t tag, int32_t *count, int32_t *base_tags);

/** Does nothing, whatever it is given: STATUS_OK. */
KORVANE_API korvane_status_t korvane_cad_merge_edges(korvane_cad_t *cad, ...);

/* ----------------------------------------------------------------------------------------------------
 * Face
 *
 * A face is made in a model, or free-standing as a copy or derived from another face, and can then be
 * attached to a model. Its identifier, its tag, its second identifier (uid) and its orientation are stored
 * and reported, never interpreted. Outputs must not be null (not checked) unless stated otherwise.
 * -------------------------------------------------------------------------------------------------- */

/**
 * Evaluates a surface at the parameters (u, v): the point and the derivatives by u, v, uu, uv and vv, 3
 * doubles each. Any output may be null; the function writes only the others, each of which holds zeros.
 */
typedef korvane_status_t (*korvane_cad_surface_t)(const double uv[2], double xyz[3], double du[3],
    double dv[3], double duu[3], double duv[3], double dvv[3], void *user_data);

/** Makes the user data for a copy of a face or edge; what it returns is stored, be it null. */
typedef void *(*korvane_user_data_clone_t)(void *user_data);

/**
 * Creates a face in a model, with one reference. The surface function must not be null once the face is
 * evaluated (not checked). Null for a null model, or if memory runs out.
 */
KORVANE_API korvane_cad_face_t *korvane_cad_face_new(
    korvane_cad_t *cad, uint32_t id, korvane_cad_surface_t surface, void *user_data);

/** Gives back one reference to a face: to its model, if it has one. Null is accepted. */
KORVANE_API void korvane_cad_face_delete(korvane_cad_face_t *face);

/** Takes one more reference to a face and returns the face itself; nothing is copied. Null for null. */
KORVANE_API korvane_cad_face_t *korvane_cad_face_clone(korvane_cad_face_t *face);

/**
 * Puts a free-standing face into a model, as its last face. Its own counter of references is forgotten: one
 * reference remains to be given back, on the model. STATUS_ERROR for a null argument or a face that has a
 * model, STATUS_NOMEM if memory runs out; nothing has changed then.
 */
KORVANE_API korvane_status_t korvane_cad_face_attach(korvane_cad_face_t *face, korvane_cad_t *cad);

/** Gives the face's model, or null, without a reference. STATUS_ERROR for a null output. */
KORVANE_API korvane_status_t korvane_cad_face_get_cad(const korvane_cad_face_t *face, korvane_cad_t **cad);

/**
 * Evaluates the surface: sets every output that is not null to zeros, calls the surface function and returns
 * its status. `uv` and the six outputs are passed on as they are.
 */
KORVANE_API korvane_status_t korvane_cad_face_surface(const korvane_cad_face_t *face, const double uv[2],
    double xyz[3], double du[3], double dv[3], double duu[3], double duv[3], double dvv[3]);

/** Gives the surface function and its user data. */
KORVANE_API korvane_status_t korvane_cad_face_get_surf(
    const korvane_cad_face_t *face, korvane_cad_surface_t *surface, void **user_data);

/**
 * Registers what frees the user data, and what copies them for a copy of the face. Without a clone function
 * copies share the user data, which are then deleted once per copy. On a derived face the delete function
 * replaces the library's own: the client takes over the record that is the user data, and the reference to
 * the source.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_face_set_delete_function(
    korvane_cad_face_t *face, korvane_user_data_delete_t function);
KORVANE_API korvane_status_t korvane_cad_face_set_clone_function(
    korvane_cad_face_t *face, korvane_user_data_clone_t function);
/** @} */

/**
 * The identifier given at creation, the second identifier, the orientation and the tag; 0 until set. Setting
 * the tag of a face that has a model sets the model's flag of face tags.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_face_set_id(korvane_cad_face_t *face, uint32_t id);
KORVANE_API korvane_status_t korvane_cad_face_get_id(const korvane_cad_face_t *face, uint32_t *id);
KORVANE_API korvane_status_t korvane_cad_face_set_uid(korvane_cad_face_t *face, uint32_t uid);
KORVANE_API korvane_status_t korvane_cad_face_get_uid(const korvane_cad_face_t *face, uint32_t *uid);
KORVANE_API korvane_status_t korvane_cad_face_set_orientation(korvane_cad_face_t *face, int32_t orientation);
KORVANE_API korvane_status_t korvane_cad_face_get_orientation(
    const korvane_cad_face_t *face, int32_t *orientation);
KORVANE_API korvane_status_t korvane_cad_face_set_tag(korvane_cad_face_t *face, uint32_t tag);
KORVANE_API korvane_status_t korvane_cad_face_get_tag(const korvane_cad_face_t *face, uint32_t *tag);
/** @} */

/**
 * Sets the range of the parameters: {umin, umax} and {vmin, vmax}, which are not compared. STATUS_ERROR for a
 * null range.
 */
KORVANE_API korvane_status_t korvane_cad_face_set_surface_parametric_range(
    korvane_cad_face_t *face, const double urange[2], const double vrange[2]);

/** Tells whether a range was set: 0 or 1. STATUS_ERROR for a null output. */
KORVANE_API korvane_status_t korvane_cad_face_has_surface_parametric_range(
    const korvane_cad_face_t *face, int32_t *flag);

/** Gives the range of the parameters, 2 doubles each; from -infinity to infinity if none was set. */
KORVANE_API korvane_status_t korvane_cad_face_get_surface_parametric_range(
    const korvane_cad_face_t *face, double urange[2], double vrange[2]);

/**
 * Clamps the parameters in `uv` into the range, except in periodic directions, and counts in `clamp_count`
 * (which may be null) how often: a parameter below umin of an inverted range (umin > umax) is clamped to umin
 * and then to umax, and counts twice. Values that are not numbers stay. Without a range nothing is written,
 * not even the count. `uv` must not be null (not checked).
 */
KORVANE_API korvane_status_t korvane_cad_face_check_point_parametric_range(
    const korvane_cad_face_t *face, double uv[2], int32_t *clamp_count);

/**
 * Declares in which directions the surface is periodic (non-zero for yes), and its periods. The period of a
 * direction that is not periodic is not stored.
 */
KORVANE_API korvane_status_t korvane_cad_face_set_surface_periodicity(
    korvane_cad_face_t *face, int32_t periodic_u, int32_t periodic_v, double period_u, double period_v);

/** Tells whether periodicity was declared, be it for no direction: 0 or 1. STATUS_ERROR for a null output. */
KORVANE_API korvane_status_t korvane_cad_face_has_surface_periodicity(
    const korvane_cad_face_t *face, int32_t *flag);

/**
 * Gives what was declared: whether the surface is periodic, 0 or 1, and the period, 0 in a direction that is
 * not periodic. Any output may be null.
 */
KORVANE_API korvane_status_t korvane_cad_face_get_surface_periodicity(const korvane_cad_face_t *face,
    int32_t *periodic_u, int32_t *periodic_v, double *period_u, double *period_v);

/**
 * The edges and the points of a face: their number, and each by its index, without a reference. STATUS_ERROR
 * for an index outside 1..count.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_face_get_edge_count(const korvane_cad_face_t *face, int32_t *count);
KORVANE_API korvane_status_t korvane_cad_face_get_edge(
    const korvane_cad_face_t *face, int32_t index, korvane_cad_edge_t **edge);
KORVANE_API korvane_status_t korvane_cad_face_get_point_count(const korvane_cad_face_t *face, int32_t *count);
KORVANE_API korvane_status_t korvane_cad_face_get_point(
    const korvane_cad_face_t *face, int32_t index, korvane_cad_point_t **point);
/** @} */

/* ----------------------------------------------------------------------------------------------------
 * Edge
 *
 * An edge is made on a face, or free-standing as a copy or derived, and can then be attached to a face. The
 * position in space of a parameter t is the face's surface at the curve's (u, v); an edge may also have a
 * curve in space of its own. What is stored for the client is reported and never interpreted. Outputs must
 * not be null (not checked) unless stated otherwise.
 * -------------------------------------------------------------------------------------------------- */

/**
 * Evaluates a curve in the parameter plane at t: the point (u, v) and its first and second derivative by t, 2
 * doubles each. Any output may be null; the function writes only the others, each of which holds zeros.
 */
typedef korvane_status_t (*korvane_cad_curve_t)(
    double t, double uv[2], double dt[2], double dtt[2], void *user_data);

/** Evaluates a curve in space at t: 3 doubles. */
typedef korvane_status_t (*korvane_cad_curve3d_t)(double t, double xyz[3], void *user_data);

/**
 * Creates an edge on a face, with one reference. The curve function must not be null once the edge is
 * evaluated (not checked). Null for a null face, or if memory runs out.
 */
KORVANE_API korvane_cad_edge_t *korvane_cad_edge_new(korvane_cad_face_t *face, uint32_t id, double tmin,
    double tmax, korvane_cad_curve_t curve, void *user_data);

/**
 * Gives back one reference to an edge: to its face's model if there is one, else to its face if it has one.
 * Null is accepted.
 */
KORVANE_API void korvane_cad_edge_delete(korvane_cad_edge_t *edge);

/** Takes one more reference to an edge and returns the edge itself; nothing is copied. Null for null. */
KORVANE_API korvane_cad_edge_t *korvane_cad_edge_clone(korvane_cad_edge_t *edge);

/**
 * Puts a free-standing edge on a face, as its last edge. Its own counter of references is forgotten: one
 * reference remains to be given back, on the face or its model. STATUS_ERROR for a null argument or an edge
 * that has a face, STATUS_NOMEM if memory runs out; nothing has changed then.
 */
KORVANE_API korvane_status_t korvane_cad_edge_attach(korvane_cad_edge_t *edge, korvane_cad_face_t *face);

/**
 * Gives the edge's face, or null, without a reference. STATUS_ERROR for a null output, and for a null edge,
 * in which case null is written.
 */
KORVANE_API korvane_status_t korvane_cad_edge_get_face(
    const korvane_cad_edge_t *edge, korvane_cad_face_t **face);

/**
 * Evaluates the curve: sets every output that is not null to zeros, calls the curve function and returns its
 * status.
 */
KORVANE_API korvane_status_t korvane_cad_edge_curve(
    const korvane_cad_edge_t *edge, double t, double uv[2], double dt[2], double dtt[2]);

/** Gives the curve function and its user data. */
KORVANE_API korvane_status_t korvane_cad_edge_get_curv(
    const korvane_cad_edge_t *edge, korvane_cad_curve_t *curve, void **user_data);

/**
 * The curve in space: registering it (null for none; its user data are never freed), whether there is one (0
 * or 1; STATUS_ERROR for a null output), and the function with its user data.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_edge_set_curve3d(
    korvane_cad_edge_t *edge, korvane_cad_curve3d_t curve3d, void *user_data);
KORVANE_API korvane_status_t korvane_cad_edge_has_curve3d(const korvane_cad_edge_t *edge, int32_t *flag);
KORVANE_API korvane_status_t korvane_cad_edge_get_curve3d(
    const korvane_cad_edge_t *edge, korvane_cad_curve3d_t *curve3d, void **user_data);
/** @} */

/**
 * Evaluates the curve in space: sets `xyz`, unless null, to zeros, calls the function and returns its status.
 * STATUS_ERROR, and nothing written, if there is none.
 */
KORVANE_API korvane_status_t korvane_cad_edge_curve3d(
    const korvane_cad_edge_t *edge, double t, double xyz[3]);

/**
 * The interval of the parameter; the identifiers of the vertices at its ends; their tags; two further
 * identifiers of the ends. Zeros until set, but for the interval. Setting the tags of an edge whose face has
 * a model sets the model's flag of vertex tags.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_edge_set_range(korvane_cad_edge_t *edge, double tmin, double tmax);
KORVANE_API korvane_status_t korvane_cad_edge_get_range(
    const korvane_cad_edge_t *edge, double *tmin, double *tmax);
KORVANE_API korvane_status_t korvane_cad_edge_set_extremities(
    korvane_cad_edge_t *edge, int32_t first, int32_t second);
KORVANE_API korvane_status_t korvane_cad_edge_get_extremities(
    const korvane_cad_edge_t *edge, int32_t *first, int32_t *second);
KORVANE_API korvane_status_t korvane_cad_edge_set_extremities_tag(
    korvane_cad_edge_t *edge, int32_t first_tag, int32_t second_tag);
KORVANE_API korvane_status_t korvane_cad_edge_get_extremities_tag(
    const korvane_cad_edge_t *edge, int32_t *first_tag, int32_t *second_tag);
KORVANE_API korvane_status_t korvane_cad_edge_set_uv_extremities(
    korvane_cad_edge_t *edge, int32_t first, int32_t second);
KORVANE_API korvane_status_t korvane_cad_edge_get_uv_extremities(
    const korvane_cad_edge_t *edge, int32_t *first, int32_t *second);
/** @} */

/**
 * Whether the edge is degenerate: non-zero for yes; 0 or 1.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_edge_set_degenerated(korvane_cad_edge_t *edge, int32_t flag);
KORVANE_API korvane_status_t korvane_cad_edge_get_degenerated(const korvane_cad_edge_t *edge, int32_t *flag);
/** @} */

/**
 * Tells whether the derivatives of the curve are well defined: 1, or 0 for finite differences (see
 * korvane_cad_edge_new0). STATUS_ERROR for a null output, and for a null edge, in which case 0 is written.
 */
KORVANE_API korvane_status_t korvane_cad_edge_get_wdef(const korvane_cad_edge_t *edge, int32_t *wdef);

/**
 * The property bits, which are the client's: setting and clearing those of a mask, and whether any of a mask
 * is set, 0 or 1.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_edge_set_property(korvane_cad_edge_t *edge, uint32_t mask);
KORVANE_API korvane_status_t korvane_cad_edge_unset_property(korvane_cad_edge_t *edge, uint32_t mask);
KORVANE_API korvane_status_t korvane_cad_edge_query_property(
    const korvane_cad_edge_t *edge, uint32_t mask, int32_t *result);
/** @} */

/**
 * The orientation and the co-orientation; 0 until set. Kept on purpose: the edge whose orientation is set
 * must not be null (not checked).
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_edge_set_orientation(korvane_cad_edge_t *edge, int32_t value);
KORVANE_API korvane_status_t korvane_cad_edge_get_orientation(const korvane_cad_edge_t *edge, int32_t *value);
KORVANE_API korvane_status_t korvane_cad_edge_set_coorientation(korvane_cad_edge_t *edge, int32_t value);
KORVANE_API korvane_status_t korvane_cad_edge_get_coorientation(
    const korvane_cad_edge_t *edge, int32_t *value);
/** @} */

/**
 * The identifier given at creation, the second identifier and the tag; 0 until set. Setting the tag of an
 * edge whose face has a model sets the model's flag of edge tags.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_edge_set_id(korvane_cad_edge_t *edge, uint32_t id);
KORVANE_API korvane_status_t korvane_cad_edge_get_id(const korvane_cad_edge_t *edge, uint32_t *id);
KORVANE_API korvane_status_t korvane_cad_edge_set_uid(korvane_cad_edge_t *edge, uint32_t uid);
KORVANE_API korvane_status_t korvane_cad_edge_get_uid(const korvane_cad_edge_t *edge, uint32_t *uid);
KORVANE_API korvane_status_t korvane_cad_edge_set_tag(korvane_cad_edge_t *edge, uint32_t tag);
KORVANE_API korvane_status_t korvane_cad_edge_get_tag(const korvane_cad_edge_t *edge, uint32_t *tag);
/** @} */

/**
 * Registers what frees and what copies the user data of the curve, as for a face.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_edge_set_delete_function(
    korvane_cad_edge_t *edge, korvane_user_data_delete_t function);
KORVANE_API korvane_status_t korvane_cad_edge_set_clone_function(
    korvane_cad_edge_t *edge, korvane_user_data_clone_t function);
/** @} */

/**
 * Sets the number of support vertices: sample points along the edge, given by the client. Those up to the
 * smaller number are kept, new ones hold any values until they are set. Support vertices shared with the copy
 * of an edge, or its original, stay behind: this edge begins anew without any. STATUS_ERROR for a null edge
 * or a negative number, STATUS_NOMEM if memory runs out: the number then stays as it was, or falls to what is
 * still held.
 */
KORVANE_API korvane_status_t korvane_cad_edge_set_support_vertex_count(
    korvane_cad_edge_t *edge, int32_t count);

/**
 * Sets a support vertex: its parameter t, its (u, v) and its (x, y, z). Support vertices that are shared stay
 * behind first, so that the number must be set again. The edge and both arrays must not be null (not
 * checked). STATUS_ERROR for an index outside 1..count, STATUS_NOMEM if memory runs out.
 */
KORVANE_API korvane_status_t korvane_cad_edge_set_support_vertex(
    korvane_cad_edge_t *edge, int32_t index, double t, const double uv[2], const double xyz[3]);

/**
 * Gives the number of support vertices, and the edge's own arrays of it: 1, 2 and 3 doubles per vertex, null
 * if there are none, valid until the number is set again or the edge goes. Of the outputs only the number
 * must not be null (not checked). STATUS_ERROR if the number was never set.
 */
KORVANE_API korvane_status_t korvane_cad_edge_get_support_vertices(
    const korvane_cad_edge_t *edge, int32_t *count, double **params, double **uvs, double **xyzs);

/* ----------------------------------------------------------------------------------------------------
 * Point
 *
 * A point lies on a face, which owns it: it goes with the face, unless the client deletes it before. Outputs
 * must not be null (not checked).
 * -------------------------------------------------------------------------------------------------- */

/**
 * Creates a point at the parameters `uv` (2 doubles), which must not be null (not checked), as the last one
 * of a face. Null for a null face, or if memory runs out.
 */
KORVANE_API korvane_cad_point_t *korvane_cad_point_new(
    korvane_cad_face_t *face, uint32_t id, const double uv[2]);

/** Deletes a point; the last point of its face takes its index. Null is accepted. */
KORVANE_API void korvane_cad_point_delete(korvane_cad_point_t *point);

/**
 * The parameters (2 doubles), the identifier and the tag, 0 until set. Setting the tag of a point whose face
 * has a model sets the model's flag of vertex tags.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_point_get_uv(const korvane_cad_point_t *point, double uv[2]);
KORVANE_API korvane_status_t korvane_cad_point_get_id(const korvane_cad_point_t *point, uint32_t *id);
KORVANE_API korvane_status_t korvane_cad_point_get_tag(const korvane_cad_point_t *point, uint32_t *tag);
KORVANE_API korvane_status_t korvane_cad_point_set_tag(korvane_cad_point_t *point, uint32_t tag);
/** @} */

/* ----------------------------------------------------------------------------------------------------
 * Derived geometry
 *
 * Faces and edges that the library evaluates itself, on top of others or of positions given by the client.
 * They are ordinary faces and edges; their user data is the library's own. Constructors that return null have
 * changed nothing, and taken over no reference.
 *
 * A face or edge that was derived from another evaluates the other's function directly. When that one is gone
 * (a face goes with its context; an edge by affine image does not keep its source), evaluation, and the
 * question for the original geometry, give STATUS_ERROR.
 * -------------------------------------------------------------------------------------------------- */

/**
 * Creates a face whose parameters are transformed: its surface at (u, v) is that of `source` at
 * (u / scale[0] + translation[0], v / scale[1] + translation[1]). It is made in `cad`, or free-standing if
 * that is null. One reference to the source that the caller holds is taken over: a caller that goes on using
 * the source takes one more before, with korvane_cad_face_clone.
 *
 * Tag, orientation, original identifiers, periodicity and range are those of the source, with periods and
 * bounds multiplied by the scale. Kept on purpose: the translation is not applied to the range, although it
 * is to the surface. A scale of 0 is not refused. Neither edges nor points are taken over, whatever
 * `clone_points` says. `reserved` is not used. Null if the source, the scale or the translation (2 doubles
 * each) is null, or if memory runs out.
 */
KORVANE_API korvane_cad_face_t *korvane_cad_face_new_pafftrans(korvane_cad_t *cad, korvane_cad_face_t *source,
    uint32_t id, const double scale[2], const double translation[2], const void *reserved,
    int32_t clone_points);

/**
 * Creates an edge on `face` (null: free-standing) whose curve is (factors[0] u + offsets[0], factors[1] v +
 * offsets[1]) where that of `source` is (u, v), on the same interval. Interval, tag, orientation, properties,
 * whether derivatives are approximate, and original identifiers are those of the source; nothing else is
 * taken over. Kept on purpose: the edge takes no reference to its source, but every copy of it takes one that
 * is never given back, so that the source goes with its context, or, free-standing, never. Null if the
 * source, the factors or the offsets (2 doubles each) are null, or if memory runs out.
 */
KORVANE_API korvane_cad_edge_t *korvane_cad_edge_new_afftrans(korvane_cad_face_t *face,
    korvane_cad_edge_t *source, uint32_t id, const double factors[2], const double offsets[2]);

/**
 * Creates an edge on `face` (null: free-standing) that runs straight from `uv0` at t = 0 to `uv1` at t = 1 (2
 * doubles each), and on beyond. The points must not be null (not checked). Null if memory runs out.
 */
KORVANE_API korvane_cad_edge_t *korvane_cad_edge_new_segment(
    korvane_cad_face_t *face, uint32_t id, const double uv0[2], const double uv1[2]);

/**
 * Creates an edge that is a polyline through the `n` points (u, v) of `uv`, parametrised by the length of its
 * chords from 0 on, and continued straight at both ends. The second derivative is the difference of the
 * slopes of neighbouring segments. Kept on purpose: that difference is divided by the length of the current
 * segment only, and slopes on a segment of no length are taken with a factor of 10000 in place of the inverse
 * length. Null for a null face, for fewer points than one, for null points, or if memory runs out.
 */
KORVANE_API korvane_cad_edge_t *korvane_cad_edge_new_newton1(
    korvane_cad_face_t *face, uint32_t id, int32_t n, const double *uv);

/**
 * Creates a polyline of points that come from other edges: point i from `edges[i]`, at its parameter
 * `params[i]` (arrays of n; each may be null). No length is counted between points of different edges. One
 * reference is taken per run of equal edges, whose first edge must not be null, else null is returned. With
 * both arrays the original geometry of the edge is asked of them; a copy of the edge no longer has it and
 * gives STATUS_ERROR there.
 */
KORVANE_API korvane_cad_edge_t *korvane_cad_edge_new_newton1_with_ea(korvane_cad_face_t *face, uint32_t id,
    int32_t n, const double *uv, korvane_cad_edge_t *const *edges, const double *params);

/**
 * Creates an edge of a function that gives positions only: it is always called with null derivatives, which
 * are taken by differences over h = max(1e-7, (tmax - tmin) / 1000), inside the interval. Evaluation calls it
 * up to six times, for the second derivative, then the first, then the point, and gives up at the first
 * status that is not STATUS_OK. STATUS_ERROR and a zero derivative if the interval is too short for it. The
 * user data are never freed. The function must not be null once the edge is evaluated (not checked). Null for
 * a null face, or if memory runs out.
 */
KORVANE_API korvane_cad_edge_t *korvane_cad_edge_new0(korvane_cad_face_t *face, uint32_t id, double tmin,
    double tmax, korvane_cad_curve_t function, void *user_data);

/**
 * Copies a face, or an edge, into a free-standing one. The user data are copied by the clone function, or
 * shared if there is none. A face is copied without its edges and points; an edge shares its support vertices
 * until either sets them. Null for null, or if memory runs out.
 * @{
 */
KORVANE_API korvane_cad_face_t *korvane_cad_face_new_copy(const korvane_cad_face_t *face);
KORVANE_API korvane_cad_edge_t *korvane_cad_edge_new_copy(const korvane_cad_edge_t *edge);
/** @} */

/**
 * Makes a copy of each point of a face for `target`. Kept on purpose: no list takes the copies, so that
 * neither face changes. STATUS_ERROR for a null face, STATUS_NOMEM if memory runs out.
 */
KORVANE_API korvane_status_t korvane_cad_face_clone_points(
    const korvane_cad_face_t *face, korvane_cad_face_t *target);

/* ----------------------------------------------------------------------------------------------------
 * Periodicity
 *
 * Which faces, edges and points of a model are periodic images of one another, by the client's identifiers,
 * which need not be those of existing objects. The model stores every declaration under both identifiers,
 * once, and lists them per identifier. 0 is no identifier; negative ones are accepted.
 *
 * Edges and points can be given companions: a pair of identifiers, whose meaning is the client's, of which
 * the first belongs to the first object and the second to the second.
 *
 * Records are listed by index from 1 to the count. Their order depends on their values and is not, in
 * general, that of their declaration: a client that needs all of them reads all indices. Later declarations
 * can move records to other indices. Reading a record costs time proportional to its index.
 * -------------------------------------------------------------------------------------------------- */

/**
 * Declares two points periodic. Stored are (companion1, companion2, point2) under `point1` and (companion2,
 * companion1, point1) under `point2`; if either companion is 0, both are stored as 0. STATUS_OK, and nothing
 * stored, if either point is 0 or if the points are the same and the companions are the same. STATUS_ERROR
 * for a null model. Kept on purpose: STATUS_ERROR also if memory runs out; the first record can be stored
 * then without the second.
 */
KORVANE_API korvane_status_t korvane_cad_add_point_periodicity(
    korvane_cad_t *cad, int32_t companion1, int32_t point1, int32_t companion2, int32_t point2);

/**
 * Declares two edges periodic, as korvane_cad_add_point_periodicity does points. Kept on purpose: the
 * orientation of one edge relative to the other, which is the client's to define, is stored unchanged under
 * both edges.
 */
KORVANE_API korvane_status_t korvane_cad_add_edge_periodicity(korvane_cad_t *cad, int32_t companion1,
    int32_t edge1, int32_t companion2, int32_t edge2, int32_t orientation);

/**
 * Declares two faces periodic. STATUS_OK, and nothing stored, if they are the same or either is 0. Statuses
 * as for korvane_cad_add_point_periodicity.
 */
KORVANE_API korvane_status_t korvane_cad_add_face_periodicity(
    korvane_cad_t *cad, int32_t face1, int32_t face2);

/**
 * Gives the number of records under an identifier; 0 for one that was never declared. STATUS_ERROR for a null
 * argument.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_get_point_id_periodicity_count(
    const korvane_cad_t *cad, int32_t point, int32_t *count);
KORVANE_API korvane_status_t korvane_cad_get_edge_id_periodicity_count(
    const korvane_cad_t *cad, int32_t edge, int32_t *count);
KORVANE_API korvane_status_t korvane_cad_get_face_id_periodicity_count(
    const korvane_cad_t *cad, int32_t face, int32_t *count);
/** @} */

/**
 * Gives a record of a point by its index: the companion of `point`, that of the other point, and the other
 * point. STATUS_ERROR for a null argument, and nothing written; STATUS_ERROR for an index outside 1..count,
 * and `other_point` set to 0.
 */
KORVANE_API korvane_status_t korvane_cad_get_point_id_periodicity(const korvane_cad_t *cad, int32_t point,
    int32_t index, int32_t *companion1, int32_t *companion2, int32_t *other_point);

/** The same for an edge. For an index outside 1..count, `other_edge` and `orientation` are set to 0. */
KORVANE_API korvane_status_t korvane_cad_get_edge_id_periodicity(const korvane_cad_t *cad, int32_t edge,
    int32_t index, int32_t *companion1, int32_t *companion2, int32_t *other_edge, int32_t *orientation);

/** The same for a face, whose records are the other face only. */
KORVANE_API korvane_status_t korvane_cad_get_face_id_periodicity(
    const korvane_cad_t *cad, int32_t face, int32_t index, int32_t *other_face);

/* ----------------------------------------------------------------------------------------------------
 * Multiple periodicity
 *
 * A list of faces, or of edges, that is the periodic image of another list under a transformation of space:
 * a function of the client, or an affine map that the library fits to pairs of corresponding points. The
 * model keeps the declarations in the order in which they were made, one list for faces and one for edges,
 * and releases them, with the maps that it fitted, when it goes. Identifiers are the client's and not looked
 * at; a list may be empty, but not null.
 * -------------------------------------------------------------------------------------------------- */

/** Writes the image of `source` into `target`, 3 doubles each. */
typedef korvane_status_t (*korvane_cad_transformation_t)(
    const double source[3], double target[3], void *user_data);

/**
 * Declares that the `target_count` edges, or faces, of `target_ids` are the image of the `source_count` ones
 * of `source_ids` under a function of the client; null declares no transformation. The user data stay the
 * client's. STATUS_ERROR for a null model or list or a negative count, STATUS_NOMEM if memory runs out;
 * nothing is declared then.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_add_edge_multiple_periodicity_with_transformation_function(
    korvane_cad_t *cad, const int32_t *source_ids, int32_t source_count, const int32_t *target_ids,
    int32_t target_count, korvane_cad_transformation_t transformation, void *user_data);
KORVANE_API korvane_status_t korvane_cad_add_face_multiple_periodicity_with_transformation_function(
    korvane_cad_t *cad, const int32_t *source_ids, int32_t source_count, const int32_t *target_ids,
    int32_t target_count, korvane_cad_transformation_t transformation, void *user_data);
/** @} */

/**
 * Declares the same with a transformation that is fitted to pairs of points: the i-th of `source_points` goes
 * with the i-th of `target_points` (3 doubles per point: x, y, z). The transformation maps x to
 * M (x - p1) + q1, with the source points p1, p2, ... and the target points q1, q2, ... M depends on the
 * number of pairs:
 *
 *   1          M = 0. Kept on purpose: every point goes to q1.
 *   2          M = 0 likewise, if the pairs are one translation, that is, if their offsets differ by at most
 *              0.001 of the length of the second one. Otherwise STATUS_OK, but no transformation.
 *   3          M = V U^-1. The columns of U are the unit vectors along p2 - p1 and p3 - p1 and the unit
 *              normal of both; those of V the same of the target points. The cosine of the angle between
 *              the two vectors, without its sign, must be at most 0.99 on both sides, and differ by at most
 *              0.2.
 *   4 or more  M = V U^-1. The columns of U are the unit vectors along p2 - p1, p3 - p1 and p4 - p1; those
 *              of V the same of the target points. Points after the fourth do not count. |det| must be at
 *              least 0.02 on both sides, and differ by at most 0.2: mirror images are accepted.
 *
 * From 3 pairs on, the lengths of corresponding vectors must not be 0 and may differ by at most 8 percent of
 * the longer one; the transformation keeps lengths along the source vectors. V U^-1 is the linear map that
 * carries one basis to the other. Coordinates that are not numbers pass all comparisons, and give a
 * transformation to points of that kind, or none.
 *
 * STATUS_ERROR for a null argument or a negative count of identifiers, STATUS_NOMEM if the declaration cannot
 * be stored: nothing is declared then. Kept on purpose: otherwise the declaration stays, but without a
 * transformation (a null function), when that cannot be had: STATUS_ERROR if the counts of points differ or
 * are below 1, or if the points do not satisfy the above; STATUS_NOMEM if memory runs out.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_add_edge_multiple_periodicity_with_transformation_function_by_points(
    korvane_cad_t *cad, const int32_t *source_ids, int32_t source_count, const int32_t *target_ids,
    int32_t target_count, const double *source_points, int32_t source_point_count,
    const double *target_points, int32_t target_point_count);
KORVANE_API korvane_status_t korvane_cad_add_face_multiple_periodicity_with_transformation_function_by_points(
    korvane_cad_t *cad, const int32_t *source_ids, int32_t source_count, const int32_t *target_ids,
    int32_t target_count, const double *source_points, int32_t source_point_count,
    const double *target_points, int32_t target_point_count);
/** @} */

/**
 * Gives the number of declarations. STATUS_ERROR for a null argument.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_get_edge_multiple_periodicity_count(
    const korvane_cad_t *cad, int32_t *count);
KORVANE_API korvane_status_t korvane_cad_get_face_multiple_periodicity_count(
    const korvane_cad_t *cad, int32_t *count);
/** @} */

/**
 * Gives a declaration by its index: copies of both lists, for each of which a buffer of
 * korvane_cad_calloc_generic_buffer has room, their counts, the transformation and its user data. A null
 * transformation is none. A fitted one and its user data are valid until the model goes. STATUS_ERROR for an
 * index outside 1..count or a null argument; nothing is written then.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_get_edge_multiple_periodicity(const korvane_cad_t *cad,
    int32_t index, int32_t *source_ids, int32_t *source_count, int32_t *target_ids, int32_t *target_count,
    korvane_cad_transformation_t *transformation, void **user_data);
KORVANE_API korvane_status_t korvane_cad_get_face_multiple_periodicity(const korvane_cad_t *cad,
    int32_t index, int32_t *source_ids, int32_t *source_count, int32_t *target_ids, int32_t *target_count,
    korvane_cad_transformation_t *transformation, void **user_data);
/** @} */

/**
 * Allocates a zeroed buffer from the library's heap, with room for the longest list of identifiers declared
 * so far (4 bytes each) and at least 35 bytes. Null for a null model, or if memory runs out. Release it with
 * korvane_cad_free_generic_buffer.
 */
KORVANE_API void *korvane_cad_calloc_generic_buffer(const korvane_cad_t *cad);

/** Releases a generic buffer. Null is accepted. */
KORVANE_API void korvane_cad_free_generic_buffer(void *buffer);

/* ----------------------------------------------------------------------------------------------------
 * Original identifiers
 *
 * Which faces and edges of the client's model a face or edge stands for, and where its parameters lie on the
 * geometry that it was derived from. A face or edge has itself, that is, its own identifier, as its one
 * original until one is added.
 * -------------------------------------------------------------------------------------------------- */

/**
 * Adds an original identifier; the first one replaces the object's own. STATUS_NOMEM, without change, if
 * memory runs out.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_face_add_original_id(korvane_cad_face_t *face, uint32_t id);
KORVANE_API korvane_status_t korvane_cad_edge_add_original_id(korvane_cad_edge_t *edge, uint32_t id);
/** @} */

/**
 * Gives the number of original identifiers. STATUS_ERROR for a null output.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_face_get_original_id_count(
    const korvane_cad_face_t *face, int32_t *count);
KORVANE_API korvane_status_t korvane_cad_edge_get_original_id_count(
    const korvane_cad_edge_t *edge, int32_t *count);
/** @} */

/**
 * Gives an original identifier by its index. STATUS_ERROR for a null output, and for an index other than 1 as
 * long as no identifier was added. Afterwards an index outside 1..count is the caller's error (not checked):
 * it gives either STATUS_ERROR or the content of an unused place of the list.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_face_get_original_id(
    const korvane_cad_face_t *face, int32_t index, uint32_t *id);
KORVANE_API korvane_status_t korvane_cad_edge_get_original_id(
    const korvane_cad_edge_t *edge, int32_t index, uint32_t *id);
/** @} */

/**
 * Removes all identifiers that were added: none remains, not even the object's own. Without effect if none
 * was added.
 * @{
 */
KORVANE_API korvane_status_t korvane_cad_face_reset_original_id(korvane_cad_face_t *face);
KORVANE_API korvane_status_t korvane_cad_edge_reset_original_id(korvane_cad_edge_t *edge);
/** @} */

/**
 * Gives the face that a face was derived from, through any number of derivations, without a reference, and
 * its parameters that correspond to `uv`; an auxiliary 0. A face that was not derived gives itself. Any
 * output may be null; `uv` (2 doubles) may be null only if `original_uv` is (not checked).
 */
KORVANE_API korvane_status_t korvane_cad_face_get_original_geometry(korvane_cad_face_t *face,
    const double uv[2], korvane_cad_face_t **original_face, double original_uv[2], int64_t *aux);

/**
 * Gives the edge that an edge was derived from, without a reference, and its parameter that corresponds to t.
 * An affine image gives its source's original; a polyline with original edges and parameters gives the edge
 * of the run that t lies in, the interpolated parameter, and the interval between the parameters of the two
 * points around t, which are not followed further; any other edge gives itself and t for parameter and both
 * bounds. Any output may be null; of a polyline the interval is written only if the parameter is asked for.
 */
KORVANE_API korvane_status_t korvane_cad_edge_get_original_geometry(korvane_cad_edge_t *edge, double t,
    korvane_cad_edge_t **original_edge, double *original_t, double *original_tmin, double *original_tmax);

/* ----------------------------------------------------------------------------------------------------
 * Discrete CAD
 *
 * A discrete CAD attaches to edges of a CAD model an ordered list of vertices, so that a client can hand
 * prescribed edge meshes to a mesh generator alongside the model. It is not attached to a context and holds
 * no reference to the model: delete it before the model and its context.
 *
 * The discretization of an edge is made on the first request, and lives, always the same object, until the
 * discrete CAD is deleted. Set its vertex count first, then its vertices by index from 1 to the count.
 * -------------------------------------------------------------------------------------------------- */

/**
 * Creates a discrete CAD of a model, sized for the edges that the model has now (a hint: it grows). Null for
 * a null model, or if memory runs out.
 */
KORVANE_API korvane_dcad_t *korvane_dcad_new(korvane_cad_t *cad);

/** Deletes a discrete CAD and all its discretizations. Null is accepted. */
KORVANE_API void korvane_dcad_delete(korvane_dcad_t *dcad);

/** Gives the model, without a reference. The arguments must not be null (not checked). */
KORVANE_API korvane_status_t korvane_dcad_get_cad(const korvane_dcad_t *dcad, korvane_cad_t **cad);

/**
 * Gives the discretization of an edge, which is made, empty, on the first request. STATUS_ERROR, and null in
 * the output, for a null discrete CAD and for an edge that is null or not on a face of the model;
 * STATUS_NOMEM, and null, if memory runs out. The output must not be null (not checked).
 *
 * Kept on purpose: edges are told apart by the low 32 bits of their addresses, so two edges whose addresses
 * differ by a multiple of 4 GiB share one discretization.
 */
KORVANE_API korvane_status_t korvane_dcad_get_edge_discretization(
    korvane_dcad_t *dcad, korvane_cad_edge_t *edge, korvane_dcad_edge_discretization_t **discretization);

/**
 * Gives the discretization of an edge, or null if none was ever requested. The discrete CAD and the output
 * must not be null (not checked); the edge is not looked at.
 */
KORVANE_API korvane_status_t korvane_dcad_query_edge_discretization(const korvane_dcad_t *dcad,
    const korvane_cad_edge_t *edge, korvane_dcad_edge_discretization_t **discretization);

/**
 * Sets the number of vertices; values of vertices up to the smaller count are kept, new vertices are zeros.
 * STATUS_ERROR for a negative count, STATUS_NOMEM if memory runs out; nothing has changed then.
 */
KORVANE_API korvane_status_t korvane_dcad_edge_discretization_set_vertex_count(
    korvane_dcad_edge_discretization_t *discretization, int32_t count);

/** Gives the number of vertices. The output must not be null (not checked). */
KORVANE_API korvane_status_t korvane_dcad_edge_discretization_get_vertex_count(
    const korvane_dcad_edge_discretization_t *discretization, int32_t *count);

/**
 * The coordinates of a vertex: its parameter t on the edge's curve, its position (u, v) on the edge's face
 * (2 doubles) and (x, y, z) in space (3 doubles), which are not compared with one another. A null array is
 * passed over, and so is a null output. The discretization must not be null and the index must lie
 * in 1..count (not checked).
 * @{
 */
KORVANE_API korvane_status_t korvane_dcad_edge_discretization_set_vertex_coordinates(
    korvane_dcad_edge_discretization_t *discretization, int32_t index, double t, const double uv[2],
    const double xyz[3]);
KORVANE_API korvane_status_t korvane_dcad_edge_discretization_get_vertex_coordinates(
    const korvane_dcad_edge_discretization_t *discretization, int32_t index, double *t, double uv[2],
    double xyz[3]);
/** @} */

/**
 * The tag of a vertex; a null output is passed over. The discretization must not be null and the index must
 * lie in 1..count (not checked).
 * @{
 */
KORVANE_API korvane_status_t korvane_dcad_edge_discretization_set_vertex_tag(
    korvane_dcad_edge_discretization_t *discretization, int32_t index, int32_t tag);
KORVANE_API korvane_status_t korvane_dcad_edge_discretization_get_vertex_tag(
    const korvane_dcad_edge_discretization_t *discretization, int32_t index, int32_t *tag);
/** @} */

/** Sets property bits, whose meaning is the client's, beside those set before. No bit can be cleared again.
 */
KORVANE_API korvane_status_t korvane_dcad_edge_discretization_set_property(
    korvane_dcad_edge_discretization_t *discretization, uint32_t bits);

/** Tells whether any of the bits is set: 0 or 1. STATUS_ERROR for a null output. */
KORVANE_API korvane_status_t korvane_dcad_edge_discretization_query_property(
    const korvane_dcad_edge_discretization_t *discretization, uint32_t bits, int32_t *flag);

#ifdef __cplusplus
}
#endif

#endif /* KORVANE_H */
