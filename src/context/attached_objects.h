// The list of the objects made on a context: doubly linked, newest first.
//
// Cost: attaching is constant; detaching walks from the newest object, so objects that are deleted in the
// reverse order of their creation are found at once.
#pragma once

#include <korvane.h>

namespace korvane {

struct Attachment {
    void *object;
    korvane_object_release_t release;
};

struct AttachedNode {
    AttachedNode *next;
    AttachedNode *prev;
    Attachment *attachment; // owned
};

struct AttachedObjects {
    AttachedNode *head;
    AttachedNode *tail; // Kept on purpose: written by removal only, because nothing reads it
    int32_t count;
};

/// Puts an object at the head of the list; false if memory runs out, the list then being as before.
[[nodiscard]] bool try_attach(AttachedObjects &list, void *object, korvane_object_release_t release);

/// Unlinks the newest entry of an object; nothing happens if there is none.
void detach(AttachedObjects &list, const void *object);

/// Releases all objects, newest first. A release function may detach other objects.
void release_all(AttachedObjects &list);

} // namespace korvane
