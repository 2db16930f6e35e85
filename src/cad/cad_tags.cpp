// The tag system of a model, and the answers of a model that has none: there every tag stands for itself.
//
// The model owns the tag system that was set last.
#include "cad/accessors.h"
#include "tags/tag_system.h"

extern "C" {

korvane_status_t korvane_cad_set_tag_system(korvane_cad_t *cad, korvane_tag_system_t *tag_system)
{
    // Kept on purpose: an earlier tag system is forgotten, not deleted, because the client may still use it.
    return korvane::set_field(cad, &korvane_cad_t::tag_system, tag_system);
}

korvane_status_t korvane_cad_get_tag_system(const korvane_cad_t *cad, korvane_tag_system_t **tag_system)
{
    return korvane::get_field(cad, &korvane_cad_t::tag_system, tag_system);
}

korvane_status_t korvane_cad_get_composite_tag_list(const korvane_cad_t *cad, int32_t *count, int32_t *list)
{
    if (cad == nullptr || count == nullptr || list == nullptr)
        return STATUS_ERROR;
    return korvane::list_composite_tags(cad->tag_system, count, list);
}

korvane_status_t korvane_cad_get_composite_tag_definition(
    const korvane_cad_t *cad, int32_t tag, int32_t *count, int32_t *base_tags)
{
    if (cad == nullptr || count == nullptr || base_tags == nullptr)
        return STATUS_ERROR;
    return korvane::list_definition(cad->tag_system, tag, count, base_tags);
}

} // extern "C"
