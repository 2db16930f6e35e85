// The list of attached objects. Every node that is linked holds an attachment; unlinking frees both.
#include "context/attached_objects.h"

#include "common/memory.h"

namespace korvane {

namespace {

void unlink(AttachedObjects &list, AttachedNode *node)
{
    if (node->next != nullptr)
        node->next->prev = node->prev;
    else
        list.tail = node->prev;
    if (node->prev != nullptr)
        node->prev->next = node->next;
    else
        list.head = node->next;
    --list.count;
    destroy(node->attachment);
    destroy(node);
}

} // namespace

bool try_attach(AttachedObjects &list, void *object, korvane_object_release_t release)
{
    Owned<Attachment> attachment = create_owned<Attachment>();
    Owned<AttachedNode> node = create_owned<AttachedNode>();
    if (!attachment || !node)
        return false;
    *attachment = {object, release};
    *node = {list.head, nullptr, attachment.release()};
    if (list.head != nullptr)
        list.head->prev = node.get();
    ++list.count;
    list.head = node.release();
    return true;
}

void detach(AttachedObjects &list, const void *object)
{
    for (AttachedNode *node = list.head; node != nullptr; node = node->next) {
        if (node->attachment->object == object) {
            unlink(list, node);
            return;
        }
    }
}

void release_all(AttachedObjects &list)
{
    while (list.head != nullptr) {
        // The head has no predecessor, so unlinking it moves the head on.
        // NOLINTNEXTLINE(clang-analyzer-unix.Malloc)
        const Attachment newest = *list.head->attachment;
        unlink(list, list.head);
        newest.release(newest.object);
    }
}

} // namespace korvane
